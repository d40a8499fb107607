// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Connection.h"

#include "device/hidusb/Thread.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

using wire::Command;

constexpr std::size_t FlashWindow = 8; // a larger one is no faster at one report per millisecond
constexpr std::chrono::milliseconds FlashReadLimit{5000};
constexpr std::size_t WaitingNotices = 256; // further ones are dropped, so that a flood stays bounded
constexpr std::size_t WaitingOrders = 256;

// Sizes and message of an order; flash reads have a routine of their own.
struct OrderRow {
    Command command;
    uint8_t requestSize; // 1: the argument is the payload
    uint8_t replySize;
    bool message;        // the reply is a message for the program
    uint8_t messageSize; // bytes of the reply that the message carries
};

static constexpr OrderRow OrderRows[] = {
    {Command::DriverStatus, 1, 0, false, 0},
    {Command::Battery, 0, sizeof(BatteryStatus), true, sizeof(BatteryStatus)},
    {Command::PairEnter, 1, 0, false, 0},
    {Command::PairStatus, 0, 1, true, 1},
    {Command::ClearSettings, 0, 0, false, 0},
    {Command::BatteryOptimize, 1, 0, false, 0},
    {Command::ConfigSelect, 1, 0, false, 0},
    {Command::Config, 0, 1, true, 1},
    {Command::Version, 0, sizeof(wire::VersionReply), true, 0},
};

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

static constexpr Order FullRead{Command::FlashRead};

static bool isFullRead(const Order &order)
{
    return order.command == Command::FlashRead && order.argument == 0;
}

// One queue for the callbacks of all connections, so that the program never gets two at a time.
static TaskQueue &callbackQueue()
{
    static auto *queue = new TaskQueue;
    return *queue;
}

Connection::Connection(std::string path, ProtocolCallback_t callback, uint64_t generation)
    : path_(std::move(path)), callback_(callback), generation_(generation)
{
}

void Connection::start()
{
    startThread([self = shared_from_this()] { self->work(); });
}

void Connection::end()
{
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

void Connection::order(const Order &order)
{
    const std::lock_guard lock(mutex_);
    if (orders_.size() < WaitingOrders)
        orders_.push_back(order);
    changed_.notify_all();
}

void Connection::update(const FlashImage &wanted)
{
    const std::lock_guard lock(mutex_);
    if (awaitsProfile())
        deferred_ = wanted;
    else if (mirror_.setWanted(wanted))
        suspended_ = false;
    else
        requireFullRead();
    changed_.notify_all();
}

// Orders a full read unless one waits already.
void Connection::requireFullRead()
{
    if (std::none_of(orders_.begin(), orders_.end(), isFullRead))
        orders_.push_back(FullRead);
}

// These orders replace the content of the flash.
static bool changesProfile(const Order &order)
{
    return order.command == Command::ConfigSelect || order.command == Command::ClearSettings;
}

bool Connection::awaitsProfile() const { return std::any_of(orders_.begin(), orders_.end(), changesProfile); }

bool Connection::finishWrites()
{
    Lock lock(mutex_);
    if (!suspended_)
        return true;
    retry_ = true;
    changed_.notify_all();
    constexpr std::chrono::milliseconds grace{20};
    changed_.wait_for(lock, ReplyTimeout + grace, [this] { return !retry_ || ended_; });
    return !suspended_ || ended_;
}

// ---- The I/O thread

bool Connection::hasWork() const
{
    return ended_ || lost_ || retry_ || !orders_.empty() || (!suspended_ && mirror_.next());
}

void Connection::work()
{
    Lock lock(mutex_);
    ensureChannel(lock);
    for (;;) {
        changed_.wait(lock, [this] { return hasWork(); });
        if (ended_)
            break;
        const auto before = static_cast<std::ptrdiff_t>(orders_.size());
        if (!ensureChannel(lock)) {
            // The orders for the absent device are dropped. Those that came during the attempt to open it
            // stay: they may be for a device that has been plugged in since.
            orders_.erase(orders_.begin(), orders_.begin() + before);
            if (!awaitsProfile())
                deferred_.reset();
        } else if (retry_) {
            writeNext(lock, 1);
        } else if (!suspended_ && mirror_.next()) {
            writeNext(lock, UsualTries);
        } else if (!orders_.empty()) {
            const Order order = orders_.front();
            carryOut(lock, order);
        }
        if (retry_) {
            retry_ = false;
            changed_.notify_all();
        }
    }
    lock.unlock();
    channel_.reset();
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
    lock.unlock();
    channel_ = acquireChannel(path_);
    if (channel_)
        channel_->subscribe(weak_from_this(), generation_);
    lock.lock();
    if (channel_ && (hadChannel || fullReadMissing_))
        requireFullRead();
    fullReadMissing_ = fullReadMissing_ || hadChannel;
    return channel_ != nullptr;
}

void Connection::carryOut(Lock &lock, const Order &order)
{
    bool answered = false;
    if (order.command == Command::FlashRead) {
        if (suspended_)
            writeNext(lock, 1); // changes are written before a later read, which would else return old values
        returned_ = false;
        answered = readFlash(lock, order.address, order.argument > 0 ? order.argument : FlashSize);
        if (isFullRead(order))
            fullReadMissing_ = !answered;
    } else {
        lock.unlock();
        answered = request(order);
        lock.lock();
    }
    if (answered)
        suspended_ = false;
    orders_.pop_front(); // only now, so that a record that came meanwhile counts as later than this order
    if (isFullRead(order) && fullReadMissing_ && returned_)
        requireFullRead(); // its return was announced before the read had failed
    if (changesProfile(order) && !awaitsProfile()) {
        // Pending changes belong to the old profile. Its known content is kept, to find by comparison what
        // the user edits before the next full read.
        mirror_.discardPending();
        if (deferred_)
            mirror_.setWanted(*deferred_);
        deferred_.reset();
    }
}

std::optional<wire::Report> Connection::ask(const wire::Report &request, int tries)
{
    Limits limits;
    limits.tries = tries;
    limits.stop = &ended_;
    return channel_->ask(request, limits);
}

void Connection::writeNext(Lock &lock, int tries)
{
    const std::optional<FlashRange> range = mirror_.next();
    if (!range) {
        suspended_ = false;
        return;
    }
    const wire::Report request =
        makeRequest(Command::FlashWrite, range->address, mirror_.wanted(range->address), range->size);
    returned_ = false;
    lock.unlock();
    const std::optional<wire::Report> reply = ask(request, tries);
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
    limits.stop = &ended_;
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

bool Connection::request(const Order &order)
{
    const auto row = std::find_if(std::begin(OrderRows), std::end(OrderRows),
                                  [&order](const OrderRow &other) { return other.command == order.command; });
    if (row == std::end(OrderRows))
        return false;
    const auto reply = ask(makeRequest(order.command, order.address, &order.argument, row->requestSize));
    if (!reply || reply->status() != wire::Status::Ok || reply->Length != row->replySize)
        return false;
    if (row->message)
        deliver(*reply, {reply->Payload, reply->Payload + row->messageSize});
    return true;
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
            requireFullRead();
        changed_.notify_all();
    }
    const bool known =
        std::any_of(std::begin(NoticeRows), std::end(NoticeRows), [&report](const NoticeRow &row) {
            return row.command == report.command() && row.size == report.Length;
        });
    if (known)
        deliver(report, {report.Payload, report.Payload + report.Length}, WaitingNotices);
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
    if (!ended_ && callback_ != nullptr)
        callback_(&head.Id, wire::HeadSize, payload.data(), size);
}

} // namespace hidusb
