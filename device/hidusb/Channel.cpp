// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Channel.h"

#include "device/hidusb/WireLog.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>

namespace hidusb
{

using std::chrono::milliseconds;

constexpr milliseconds BusyPause{20};
// Searches follow plugs, which are minutes apart, and the kernel takes some 60 ms to open a node.
constexpr milliseconds IdleTimeout{5 * 60 * 1000};

bool answers(const wire::Report &request, const wire::Report &reply)
{
    if (reply.Sequence != request.Sequence || reply.CommandCode != request.CommandCode ||
        reply.address() != request.address())
        return false;
    const bool carriesFlash =
        reply.command() == wire::Command::FlashRead && reply.status() == wire::Status::Ok;
    return !carriesFlash || reply.Length == request.Payload[0];
}

wire::Report makeRequest(wire::Command command, uint16_t address, const void *payload, std::size_t size)
{
    wire::Report report{};
    report.Id = wire::ReportId;
    report.CommandCode = static_cast<uint8_t>(command);
    report.setAddress(address);
    report.Length = static_cast<uint8_t>(size);
    if (size > 0)
        std::memcpy(report.Payload, payload, size);
    return report;
}

// Sequence numbers start at random, so that late answers to an earlier process or channel fit no request.
Channel::Channel(std::string path, std::unique_ptr<ReportPort> port)
    : path_(std::move(path))
    , port_(std::move(port))
    , lastSequence_(static_cast<uint8_t>(std::random_device{}()))
{
}

bool Channel::isDead() const
{
    const std::lock_guard lock(mutex_);
    return dead_ || port_->isGone(); // the reader thread may not have noticed yet
}

// ---- Requests

bool Channel::exchange(std::vector<Exchange> &batch, const Limits &limits)
{
    // On every way out, also by an exception: a late reply would be written into the freed batch.
    struct Withdrawal {
        ~Withdrawal()
        {
            if (!lock.owns_lock())
                lock.lock();
            channel.withdraw(batch);
        }
        Channel &channel;
        const std::vector<Exchange> &batch;
        std::unique_lock<std::mutex> lock;
    } withdrawal{*this, batch, std::unique_lock(mutex_)};
    return run(withdrawal.lock, batch, limits);
}

bool Channel::run(std::unique_lock<std::mutex> &lock, std::vector<Exchange> &batch, const Limits &limits)
{
    const bool limited = limits.total != milliseconds::max();
    const Clock::time_point end = limited ? Clock::now() + limits.total : Clock::time_point::max();
    std::size_t first = 0; // the first request without a reply
    bool good = true;
    while (good && first < batch.size()) {
        const uint64_t seen = arrivals_;
        Clock::time_point wake = limits.until != nullptr ? std::min(end, limits.until->load()) : end;
        const std::size_t last = std::min(first + limits.window, batch.size());
        for (std::size_t i = first; good && i < last; ++i) {
            good = advance(lock, batch[i], limits);
            if (!batch[i].reply)
                wake = std::min(wake, batch[i].resend);
        }
        const std::size_t before = first;
        for (; first < batch.size() && batch[first].reply; ++first)
            good = good && batch[first].reply->status() == wire::Status::Ok;
        if (good && first != before && limits.progress) {
            lock.unlock();
            limits.progress(first);
            lock.lock();
        }
        if (!good || first == batch.size())
            break;
        // The window has moved: its new requests are sent without waiting.
        if (first + limits.window > last && last < batch.size())
            continue;
        arrived_.wait_until(lock, wake, [this, seen] { return arrivals_ != seen || dead_; });
        good = Clock::now() < end;
        if (!good)
            logLine(path_, [total = limits.total.count()] {
                return "not complete in " + std::to_string(total) + " ms, given up";
            });
    }
    return good;
}

void Channel::wake()
{
    const std::lock_guard lock(mutex_);
    ++arrivals_;
    arrived_.notify_all();
}

static void logNoAnswer(const std::string &path, const Exchange &exchange, bool over)
{
    logLine(path, [command = exchange.request.CommandCode, sequence = exchange.request.Sequence,
                   busy = exchange.busy, over] {
        char text[80];
        std::snprintf(text, sizeof text, "%s: command %02x, sequence %02x%s",
                      busy ? "busy" : "no answer in time", command, sequence,
                      over ? ", given up" : ", sent again");
        return std::string(text);
    });
}

// Sends a request when it is due. False when it can have no good answer any more.
bool Channel::advance(std::unique_lock<std::mutex> &lock, Exchange &exchange, const Limits &limits)
{
    if (exchange.reply)
        return exchange.reply->status() == wire::Status::Ok;
    const Clock::time_point now = Clock::now();
    if (dead_ || (limits.until != nullptr && now >= limits.until->load()))
        return false;
    if (exchange.request.Sequence == 0) {
        if (!assignSequence(exchange))
            return false;
        exchange.end = now + limits.tries * limits.answer;
    } else if (now < exchange.resend) {
        return true;
    } else {
        const bool over = now >= exchange.end;
        logNoAnswer(path_, exchange, over);
        if (over)
            return false;
    }
    exchange.busy = false;
    exchange.resend = std::min<Clock::time_point>(now + limits.answer, exchange.end);
    const wire::Report request = exchange.request;
    lock.unlock();
    port_->write(reinterpret_cast<const uint8_t *>(&request), sizeof request);
    lock.lock();
    return true;
}

// Gives a request the next free sequence number. All tries share it, so that a slow answer to the first
// counts.
bool Channel::assignSequence(Exchange &exchange)
{
    for (int i = 0; i < 255; ++i) {
        lastSequence_ = static_cast<uint8_t>(lastSequence_ % 255 + 1);
        if (waiting_[lastSequence_] == nullptr) {
            exchange.request.Sequence = lastSequence_;
            wire::seal(exchange.request);
            waiting_[lastSequence_] = &exchange;
            return true;
        }
    }
    return false;
}

void Channel::withdraw(const std::vector<Exchange> &batch)
{
    for (const Exchange &exchange : batch) {
        Exchange *&place = waiting_[exchange.request.Sequence];
        if (place == &exchange)
            place = nullptr;
    }
}

std::optional<wire::Report> Channel::ask(const wire::Report &request, const Limits &limits)
{
    std::vector<Exchange> one(1);
    one[0].request = request;
    exchange(one, limits);
    return one[0].reply;
}

// ---- Reports of the device

Channel::Reading Channel::readOnce()
{
    {
        const std::lock_guard lock(mutex_);
        endless_ = holders_ > 0;
    }
    uint8_t bytes[2 * wire::ReportSize];
    const Clock::time_point began = Clock::now();
    const ReportPort::Received received =
        port_->read(bytes, sizeof bytes, endless_ ? -1 : static_cast<int>(IdleTimeout.count()));
    if (received.outcome == ReportPort::Outcome::Gone)
        return Reading::Gone;
    // An interruption may come when the wait that it was meant for is over; it then ends this one early.
    if (received.outcome == ReportPort::Outcome::Nothing)
        return endless_ || Clock::now() - began < IdleTimeout ? Reading::Continue : Reading::Idle;
    if (!wire::isSound(bytes, received.size)) {
        logLine(path_, [] { return "dropped: not a sound report"; });
        return Reading::Continue;
    }
    wire::Report report;
    std::memcpy(&report, bytes, sizeof report);
    if (report.Sequence == 0)
        forwardNotice(report);
    else
        acceptReply(report);
    return Reading::Continue;
}

void Channel::acceptReply(const wire::Report &reply)
{
    const std::lock_guard lock(mutex_);
    Exchange *exchange = waiting_[reply.Sequence];
    if (exchange == nullptr || !answers(exchange->request, reply)) {
        logLine(path_, [] { return "dropped: the answer to no waiting request"; });
        return;
    }
    if (reply.status() == wire::Status::Busy) {
        exchange->resend = std::min<Clock::time_point>(Clock::now() + BusyPause, exchange->end);
        exchange->busy = true;
    } else {
        exchange->reply = reply;
        waiting_[reply.Sequence] = nullptr;
    }
    ++arrivals_;
    arrived_.notify_all();
}

void Channel::forwardNotice(const wire::Report &notice)
{
    std::shared_ptr<NoticeSink> sink;
    {
        const std::lock_guard lock(mutex_);
        sink = sink_.lock();
    }
    if (sink)
        sink->notice(notice);
}

void Channel::subscribe(const std::weak_ptr<NoticeSink> &sink, uint64_t generation)
{
    const std::lock_guard lock(mutex_);
    if (generation < sinkGeneration_)
        return;
    sink_ = sink;
    sinkGeneration_ = generation;
}

void Channel::setDead()
{
    std::shared_ptr<NoticeSink> sink;
    {
        const std::lock_guard lock(mutex_);
        dead_ = true;
        sink = sink_.lock();
        arrived_.notify_all();
    }
    if (sink)
        sink->lost();
}

void Channel::hold()
{
    const std::lock_guard lock(mutex_);
    ++holders_;
}

void Channel::release()
{
    const std::lock_guard lock(mutex_);
    if (--holders_ == 0 && endless_)
        port_->interrupt();
}

bool Channel::isHeld() const
{
    const std::lock_guard lock(mutex_);
    return holders_ > 0;
}

} // namespace hidusb
