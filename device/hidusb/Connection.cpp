// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Connection.h"

#include "device/hidusb/Thread.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

using wire::Command;

constexpr std::size_t FlashWindow = 8; // more in flight gain nothing at one report per millisecond
constexpr std::chrono::milliseconds FlashReadLimit{5000};
constexpr std::size_t WaitingNotices = 256; // a device that floods its program loses the rest
constexpr std::size_t WaitingOrders = 256;

// What goes with an order other than a flash read.
struct OrderRow {
    Command command;
    uint8_t requestSize; // 1: the argument goes along
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

static constexpr Order WholeRead{Command::FlashRead};

static bool isWholeRead(const Order &order)
{
    return order.command == Command::FlashRead && order.argument == 0;
}

// One row for the callbacks of all connections: the program never sees two at a time.
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
        later_ = wanted;
    else if (mirror_.want(wanted))
        resting_ = false;
    else
        owe();
    changed_.notify_all();
}

// Sees to it that a whole read is among the orders.
void Connection::owe()
{
    if (std::none_of(orders_.begin(), orders_.end(), isWholeRead))
        orders_.push_back(WholeRead);
}

// After these the mouse holds something else than before.
static bool changesProfile(const Order &order)
{
    return order.command == Command::ConfigSelect || order.command == Command::ClearSettings;
}

bool Connection::awaitsProfile() const { return std::any_of(orders_.begin(), orders_.end(), changesProfile); }

bool Connection::finishWrites()
{
    Lock lock(mutex_);
    if (!resting_)
        return true;
    retry_ = true;
    changed_.notify_all();
    constexpr std::chrono::milliseconds grace{20};
    changed_.wait_for(lock, ReplyTimeout + grace, [this] { return !retry_ || ended_; });
    return !resting_ || ended_;
}

// ---- The I/O thread

bool Connection::hasWork() const
{
    return ended_ || lost_ || retry_ || !orders_.empty() || (!resting_ && mirror_.next());
}

void Connection::work()
{
    Lock lock(mutex_);
    reach(lock);
    for (;;) {
        changed_.wait(lock, [this] { return hasWork(); });
        if (ended_)
            break;
        const auto before = static_cast<std::ptrdiff_t>(orders_.size());
        if (!reach(lock)) {
            // A read to a device that went away yields nothing. What was ordered meanwhile may be for the one
            // that has come since.
            orders_.erase(orders_.begin(), orders_.begin() + before);
            if (!awaitsProfile())
                later_.reset();
        } else if (retry_) {
            writeNext(lock, 1);
        } else if (!resting_ && mirror_.next()) {
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

// Has a living channel, or opens one. Another device may have come back under the path, so nothing is
// known of it then.
bool Connection::reach(Lock &lock)
{
    lost_ = false;
    if (channel_ && !channel_->isDead())
        return true;
    const bool hadChannel = channel_ != nullptr;
    resting_ = false;
    mirror_.forget();
    lock.unlock();
    channel_ = acquireChannel(path_);
    if (channel_)
        channel_->subscribe(weak_from_this(), generation_);
    lock.lock();
    if (channel_ && (hadChannel || readOwed_))
        owe();
    readOwed_ = readOwed_ || hadChannel;
    return channel_ != nullptr;
}

void Connection::carryOut(Lock &lock, const Order &order)
{
    bool answered = false;
    if (order.command == Command::FlashRead) {
        if (resting_)
            writeNext(lock, 1); // what was given before a read goes out before it
        returned_ = false;
        answered = readFlash(lock, order.address, order.argument > 0 ? order.argument : FlashSize);
        if (isWholeRead(order))
            readOwed_ = !answered;
    } else {
        lock.unlock();
        answered = request(order);
        lock.lock();
    }
    if (answered)
        resting_ = false;
    orders_.pop_front(); // only now: an update meanwhile belongs behind it
    if (isWholeRead(order) && readOwed_ && returned_)
        owe(); // it came back before anybody knew that it had been away
    if (changesProfile(order) && !awaitsProfile()) {
        // What is wanted of the one profile isn't wanted of the other. What is known of the one still serves
        // to find an edit that comes before the next full read.
        mirror_.settle();
        if (later_)
            mirror_.want(*later_);
        later_.reset();
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
        resting_ = false;
        return;
    }
    const wire::Report request =
        makeRequest(Command::FlashWrite, range->address, mirror_.wanted(range->address), range->size);
    lock.unlock();
    const std::optional<wire::Report> reply = ask(request, tries);
    const bool gone = channel_->isDead();
    lock.lock();
    const bool written = reply && reply->status() == wire::Status::Ok;
    resting_ = !written && !gone;
    if (written)
        mirror_.acknowledge(*range, request.Payload);
    else if (gone)
        lost_ = true;
    else
        mirror_.doubt(*range);
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
    limits.whole = FlashReadLimit;
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
            resting_ = false;
            returned_ = true;
        }
        if (returned && readOwed_)
            owe();
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

// While a message waits, the mouse may have changed the bytes again or the program may have; what was read
// would then undo that.
void Connection::deliverFlash(wire::Report head, uint16_t address, std::vector<uint8_t> bytes)
{
    callbackQueue().post([self = shared_from_this(), head, address, bytes = std::move(bytes)]() mutable {
        {
            const std::lock_guard lock(self->mutex_);
            self->mirror_.tell(address, bytes.data(), bytes.size());
        }
        self->call(head, std::move(bytes));
    });
}

// On the thread of the callbacks.
void Connection::call(wire::Report head, std::vector<uint8_t> payload)
{
    const auto size = static_cast<uint32_t>(payload.size());
    payload.resize(std::max(payload.size(), wire::PayloadSize));
    head.Length = static_cast<uint8_t>(std::min<uint32_t>(size, wire::PayloadSize));
    if (!ended_ && callback_ != nullptr)
        callback_(&head.Id, wire::HeadSize, payload.data(), size);
}

} // namespace hidusb
