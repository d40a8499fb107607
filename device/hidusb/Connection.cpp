// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Connection.h"

#include "device/hidusb/Thread.h"
#include "device/hidusb/WireLog.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

using wire::Command;

constexpr std::size_t FlashWindow = 8; // a larger one is no faster at one report per millisecond
constexpr std::chrono::milliseconds FlashReadLimit{5000};
// Further notices are dropped when so many messages wait, so that a flood stays bounded. The end of a reset
// or of a pairing, for which the program waits, has as much room again.
constexpr std::size_t WaitingNotices = 256;
constexpr std::size_t WaitingEnds = 2 * WaitingNotices;
constexpr std::chrono::milliseconds LeavingReplyTimeout{50};
constexpr int LeavingTries = LeaveTime / LeavingReplyTimeout;

struct NoticeRow {
    Command command;
    uint8_t size;
};

static constexpr NoticeRow NoticeRows[] = {
    {Command::StatusChanged, sizeof(DeviceStatusChange)},
    {Command::ClearSettings, 0},
    {Command::PairStatus, 1},
    {Command::DongleColorChanged, sizeof(DongleRGB)},
    {Command::LongRangeChanged, wire::LongRangeNoticeSize},
};

// One queue for the callbacks of all connections, so that the program never gets two at a time.
static TaskQueue &callbackQueue()
{
    static auto *queue = new TaskQueue;
    return *queue;
}

Connection::Connection(std::string path, ProtocolCallback_t callback, uint64_t generation,
                       std::chrono::milliseconds pairingLimit)
    : path_(std::move(path)), callback_(callback), generation_(generation), pairingLimit_(pairingLimit)
{
}

void Connection::start(std::shared_ptr<Connection> previous)
{
    {
        const std::lock_guard lock(mutex_);
        previous_ = std::move(previous);
    }
    if (startThread([self = shared_from_this()] { self->work(); }))
        return;
    const std::lock_guard lock(mutex_);
    left_ = true;
}

void Connection::leave()
{
    std::shared_ptr<Channel> channel;
    {
        const std::lock_guard lock(mutex_);
        if (leaving_)
            return;
        const Clock::time_point now = Clock::now();
        readsEnd_ = now;
        changesEnd_ = now + LeaveTime - LeaveReserve;
        leaveEnd_ = now + LeaveTime;
        leaving_ = true;
        // The I/O thread may be opening the device, which can take long, and nobody needs to wait for that.
        if (!previous_ && !orders_.changesDevice() && !mirror_.next() && letGo_ != LetGo::Before)
            left_ = true;
        channel = channel_;
        changed_.notify_all();
    }
    if (channel)
        channel->wake();
}

// The wait may begin before leave(), which then sets its end.
void Connection::awaitLeft()
{
    Lock lock(mutex_);
    while (!left_ && Clock::now() < leaveEnd_.load())
        changed_.wait_until(lock, leaveEnd_.load());
}

void Connection::order(const Order &order)
{
    const std::lock_guard lock(mutex_);
    if (order.command == Command::PairEnter)
        ++pairingStarts_;
    orders_.add(order);
    changed_.notify_all();
}

void Connection::update(const FlashImage &wanted)
{
    const std::lock_guard lock(mutex_);
    if (orders_.awaitsProfile())
        deferred_ = wanted;
    else if (mirror_.setWanted(wanted))
        suspended_ = false;
    else
        orders_.requireFullRead();
    changed_.notify_all();
}

bool Connection::finishWrites(Clock::time_point until)
{
    Lock lock(mutex_);
    if (!suspended_)
        return true;
    if (retry_ == Retry::None)
        retry_ = Retry::Wanted;
    changed_.notify_all();
    const bool over = changed_.wait_until(lock, until, [this] { return retry_ == Retry::None || leaving_; });
    return over ? retryWritten_ || leaving_ : retry_ == Retry::Wanted;
}

// ---- The I/O thread

void Connection::work()
{
    Lock lock(mutex_);
    ensureChannel(lock);
    if (const std::shared_ptr<Connection> previous = previous_) {
        lock.unlock();
        previous->awaitLeft();
        lock.lock();
        previous_.reset();
    }
    while (!leaving_) {
        changed_.wait_until(lock, pairing_ ? pairingEnd_ : Clock::time_point::max(),
                            [this] { return hasWork(); });
        if (!leaving_)
            step(lock);
    }
    drain(lock);
    left_ = true;
    changed_.notify_all();
    const std::shared_ptr<Channel> last = std::move(channel_);
    lock.unlock();
}

bool Connection::hasWork() const
{
    return leaving_ || lost_ || retry_ == Retry::Wanted || !orders_.empty() ||
           (!suspended_ && mirror_.next());
}

void Connection::step(Lock &lock)
{
    if (isPairingOver())
        failPairing();
    orders_.beginAll();
    if (!ensureChannel(lock)) {
        // The orders for the absent device are dropped. Those that came during the attempt to open it
        // stay: they may be for a device that has been plugged in since.
        if (orders_.hasBegun(Command::PairEnter))
            endPairingStart(false);
        orders_.removeBegun();
        if (!orders_.awaitsProfile())
            deferred_.reset();
        return endRetry(true);
    }
    orders_.keepBegun();
    if (retry_ == Retry::Wanted)
        retryWrite(lock);
    else if (!suspended_ && mirror_.next())
        writeNext(lock, UsualTries);
    else if (!orders_.empty())
        carryOut(lock, Order(orders_.front()));
}

// A write that fails ends the writing: a binding that waits for its block then stays as it was.
void Connection::drain(Lock &lock)
{
    orders_.prepareForEnd();
    bool writes = true;
    bool repeated = false;
    while (channel_ && !channel_->isDead()) {
        if (writes && mirror_.next()) {
            writes = writeNext(lock, UsualTries);
        } else if (orders_.empty() && letGo_ == LetGo::Before && !repeated) {
            orders_.add({Command::DriverStatus, 0});
            repeated = true;
        } else if (!orders_.empty()) {
            carryOut(lock, Order(orders_.front()));
        } else {
            break;
        }
    }
    if (!orders_.empty() || mirror_.next()) {
        logLine(path_, [orders = orders_.size(), changes = mirror_.next().has_value()] {
            return "left undone: " + std::to_string(orders) + " orders" +
                   (changes ? ", changed settings" : "");
        });
    }
}

// Opens a channel when there is none that works. The mirror is reset then, since the device that is now under
// the path may be another one.
bool Connection::ensureChannel(Lock &lock)
{
    lost_ = false;
    if (channel_ && !channel_->isDead())
        return true;
    const bool hadChannel = channel_ != nullptr;
    suspended_ = false;
    mirror_.forget();
    if (pairing_ && !orders_.holds(Command::PairEnter))
        failPairing(); // a start that is there gets its own result
    lock.unlock();
    std::shared_ptr<Channel> opened = acquireChannel(path_);
    if (opened)
        opened->subscribe(weak_from_this(), generation_);
    lock.lock();
    std::swap(channel_, opened);
    if (channel_ && (hadChannel || fullReadMissing_))
        orders_.requireFullRead();
    fullReadMissing_ = fullReadMissing_ || hadChannel;
    return channel_ != nullptr;
}

void Connection::carryOut(Lock &lock, const Order &order)
{
    orders_.begin(1);
    bool answered = false;
    if (order.command == Command::FlashRead) {
        if (suspended_)
            retryWrite(lock); // changes are written before a later read, which would else return old values
        returned_ = false;
        answered = readFlash(lock, order.address, order.argument > 0 ? order.argument : FlashSize);
        if (isFullRead(order))
            fullReadMissing_ = !answered;
    } else {
        if (letGo_ == LetGo::Last && !isRead(order))
            letGo_ = LetGo::Before;
        lock.unlock();
        const std::optional<wire::Report> reply = request(order);
        lock.lock();
        answered = reply.has_value();
        if (order.command == Command::PairEnter)
            endPairingStart(answered);
        if (order.command == Command::DriverStatus && order.argument == 0)
            letGo_ = answered ? LetGo::Last : LetGo::Before;
        else if (order.command == Command::DriverStatus)
            letGo_ = LetGo::No;
        if (answered)
            deliverAnswer(*reply);
    }
    if (answered)
        suspended_ = false;
    orders_.removeBegun(); // only now, so that a record that came meanwhile counts as later than this order
    if (isFullRead(order) && fullReadMissing_ && returned_)
        orders_.requireFullRead(); // its return was announced before the read had failed
    if (changesProfile(order) && !orders_.awaitsProfile())
        endProfileChange();
}

// Pending changes belong to the old profile. Its known content is kept, to find by comparison what the user
// edits before the next full read.
void Connection::endProfileChange()
{
    mirror_.discardPending();
    if (deferred_)
        mirror_.setWanted(*deferred_);
    deferred_.reset();
}

std::optional<wire::Report> Connection::ask(const wire::Report &request, int tries, const Deadline &until)
{
    Limits limits;
    limits.tries = leaving_ ? LeavingTries : tries;
    limits.answer = leaving_ ? LeavingReplyTimeout : ReplyTimeout;
    limits.until = &until;
    return channel_->ask(request, limits);
}

// True when the device has acknowledged it, or nothing is to be written.
bool Connection::writeNext(Lock &lock, int tries)
{
    const std::optional<FlashWrite> range = mirror_.next();
    if (!range) {
        suspended_ = false;
        return true;
    }
    const wire::Report request =
        makeRequest(Command::FlashWrite, range->address, range->bytes.data(), range->size);
    returned_ = false;
    if (letGo_ == LetGo::Last)
        letGo_ = LetGo::Before;
    lock.unlock();
    const std::optional<wire::Report> reply = ask(request, tries, changesEnd_);
    const bool gone = channel_->isDead();
    lock.lock();
    const bool written = reply && reply->status() == wire::Status::Ok;
    // A mouse that came back meanwhile was announced before the failure was known and is not announced again.
    suspended_ = !written && !gone && !returned_;
    if (written)
        mirror_.acknowledge(*range, request.Payload);
    else if (gone)
        lost_ = true;
    else
        mirror_.markUncertain(*range);
    return written;
}

void Connection::retryWrite(Lock &lock)
{
    if (retry_ == Retry::Wanted)
        retry_ = Retry::Running;
    const bool written = writeNext(lock, 1);
    if (retry_ == Retry::Running)
        endRetry(written);
}

void Connection::endRetry(bool written)
{
    retry_ = Retry::None;
    retryWritten_ = written;
    changed_.notify_all();
}

bool Connection::readFlash(Lock &lock, uint16_t address, std::size_t size)
{
    std::vector<Exchange> batch((size + wire::PayloadSize - 1) / wire::PayloadSize);
    for (std::size_t i = 0; i < batch.size(); ++i) {
        const std::size_t offset = i * wire::PayloadSize;
        const auto part = static_cast<uint8_t>(std::min(size - offset, wire::PayloadSize));
        batch[i].request =
            makeRequest(Command::FlashRead, static_cast<uint16_t>(address + offset), &part, sizeof part);
    }
    Limits limits;
    limits.window = FlashWindow;
    limits.total = FlashReadLimit;
    limits.until = &readsEnd_;
    lock.unlock();
    const bool good = channel_->exchange(batch, limits);
    lock.lock();
    if (!good)
        return false;
    std::vector<uint8_t> bytes;
    for (const Exchange &exchange : batch)
        bytes.insert(bytes.end(), exchange.reply->Payload, exchange.reply->Payload + exchange.reply->Length);
    mirror_.learn(address, bytes.data(), bytes.size());
    deliverFlash(batch.front().request, address, std::move(bytes));
    return true;
}

// The good answer to an order.
std::optional<wire::Report> Connection::request(const Order &order)
{
    const OrderRow *row = findOrderRow(order.command);
    if (row == nullptr)
        return std::nullopt;
    const Deadline &change = order.command == Command::DriverStatus ? leaveEnd_ : changesEnd_;
    auto reply = ask(makeRequest(order.command, order.address, &order.argument, row->requestSize), UsualTries,
                     row->message ? readsEnd_ : change);
    if (!reply || reply->status() != wire::Status::Ok || reply->Length != row->replySize)
        return std::nullopt;
    return reply;
}

// ---- Pairing
//
// The program cannot leave a pairing before it has been told a result, so the newest start gets one: also
// when the receiver refuses, does not answer, is unplugged, forgets that it pairs, or tells none in time. A
// receiver that has refused a start still tells the result of the one before, which would be taken for that
// of the new one.

void Connection::endPairingStart(bool accepted)
{
    pairingRefused_ = !accepted;
    if (!accepted)
        return failPairing();
    pairing_ = pairingEnded_ < pairingStarts_; // the result may have come with the acknowledgement
    pairingEnd_ = Clock::now() + pairingLimit_;
}

void Connection::failPairing()
{
    deliverPairState(makeRequest(Command::PairStatus), wire::PairState::Failed);
}

bool Connection::isPairingOver() const
{
    return pairing_ && Clock::now() >= pairingEnd_ && !orders_.holds(Command::PairEnter);
}

bool Connection::isStale(const wire::Report &pairStatus) const
{
    const bool result = pairStatus.Payload[0] != static_cast<uint8_t>(wire::PairState::Working);
    return result && (pairingRefused_ || orders_.holds(Command::PairEnter));
}

static bool isResult(wire::PairState state)
{
    return state == wire::PairState::Failed || state == wire::PairState::Succeeded;
}

// A receiver that tells no state while it should pair has forgotten that, so the pairing has failed. A result
// that comes before a waiting start was sent, or waits for the program while that starts again, is dropped:
// it belongs to the start before.
void Connection::deliverPairState(const wire::Report &head, wire::PairState state, std::size_t limit)
{
    const uint64_t start = pairingStarts_;
    if (pairing_ && !isResult(state) && state != wire::PairState::Working)
        state = wire::PairState::Failed;
    if (isResult(state)) {
        pairing_ = false;
        if (orders_.awaits(Command::PairEnter))
            return;
        pairingEnded_ = start;
    }
    callbackQueue().post(
        [self = shared_from_this(), head, state, start] {
            if (self->pairingStarts_ == start)
                self->call(head, {static_cast<uint8_t>(state)});
        },
        isResult(state) ? std::max(limit, WaitingEnds) : limit);
}

// ---- Messages for the program

void Connection::lost()
{
    const std::lock_guard lock(mutex_);
    lost_ = true;
    changed_.notify_all();
}

void Connection::notice(const wire::Report &report)
{
    const std::lock_guard lock(mutex_);
    if (report.command() == Command::ClearSettings)
        mirror_.forget();
    const bool returned = report.command() == Command::OnLineChanged &&
                          report.Length == sizeof(wire::OnLineReply) && report.Payload[0] != 0;
    if (returned) {
        suspended_ = false;
        returned_ = true;
    }
    if (returned && fullReadMissing_)
        orders_.requireFullRead();
    changed_.notify_all();
    const bool known =
        std::any_of(std::begin(NoticeRows), std::end(NoticeRows), [&report](const NoticeRow &row) {
            return row.command == report.command() && row.size == report.Length;
        });
    if (known && report.command() == Command::PairStatus)
        deliverPairState(report, static_cast<wire::PairState>(report.Payload[0]), WaitingNotices);
    else if (known)
        deliver(report, {report.Payload, report.Payload + report.Length},
                report.command() == Command::ClearSettings ? WaitingEnds : WaitingNotices);
}

void Connection::deliverAnswer(const wire::Report &reply)
{
    const OrderRow *row = findOrderRow(reply.command());
    if (!row->message)
        return;
    if (reply.command() != Command::PairStatus)
        deliver(reply, {reply.Payload, reply.Payload + row->messageSize});
    else if (!isStale(reply))
        deliverPairState(reply, static_cast<wire::PairState>(reply.Payload[0]));
}

void Connection::deliver(wire::Report head, std::vector<uint8_t> payload, std::size_t limit)
{
    callbackQueue().post(
        [self = shared_from_this(), head, payload = std::move(payload)] { self->call(head, payload); },
        limit);
}

// The bytes are brought up to date at the moment of the call: the mouse or the program may have changed them
// while the message waited, and the older values would revert that.
void Connection::deliverFlash(wire::Report head, uint16_t address, std::vector<uint8_t> bytes)
{
    callbackQueue().post([self = shared_from_this(), head, address, bytes = std::move(bytes)]() mutable {
        {
            const std::lock_guard lock(self->mutex_);
            self->mirror_.publish(address, bytes.data(), bytes.size());
        }
        self->call(head, std::move(bytes));
    });
}

// Runs on the callback thread.
void Connection::call(wire::Report head, std::vector<uint8_t> payload)
{
    const auto size = static_cast<uint32_t>(payload.size());
    payload.resize(std::max(payload.size(), wire::PayloadSize));
    head.Length = static_cast<uint8_t>(std::min<uint32_t>(size, wire::PayloadSize));
    if (!leaving_ && callback_ != nullptr)
        callback_(&head.Id, wire::HeadSize, payload.data(), size);
}

} // namespace hidusb
