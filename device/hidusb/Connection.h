// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Connection: the one open device of the program. An I/O thread carries out its orders first in, first out,
// and writes the changes of the record before each of them; answers and notices go to the callback on the
// process-wide callback thread. A connection that has left makes no more calls.
//
// Leaving drains: changes of the record and orders are still carried out for a limited time, the driver
// status last; reads are not, since nobody would get their answers. What is not done then is dropped. The
// next connection sends nothing before that.
//
// A record is written only to a mouse whose flash has been read, since it would otherwise overwrite the mouse
// with another one's settings: until then a record is answered by a full read. The same holds for a device
// that was unplugged and came back under its old path, and for a mouse that was out of reach during the full
// read.
#pragma once

#include "device/hidusb/Channel.h"
#include "device/hidusb/FlashMirror.h"
#include "device/hidusb/HIDUsb.h"
#include "device/hidusb/OrderQueue.h"

namespace hidusb
{

// How long leaving may take, and the share of it that is kept for the driver status.
constexpr std::chrono::milliseconds LeaveTime{300};
constexpr std::chrono::milliseconds LeaveReserve{50};

// How long an accepted start of a pairing may stay without a result: longer than the 60 s of a receiver.
constexpr std::chrono::seconds PairingLimit{65};

class Connection : public NoticeSink, public std::enable_shared_from_this<Connection>
{
public:
    Connection(std::string path, ProtocolCallback_t callback, uint64_t generation,
               std::chrono::milliseconds pairingLimit = PairingLimit);

    // All of these return at once and may be called from any thread. The connection sends nothing before the
    // previous one, which may be null, has left.
    void start(std::shared_ptr<Connection> previous);
    void leave();
    void order(const Order &order);
    void update(const FlashImage &wanted);
    void notice(const wire::Report &report) override;
    void lost() override;

    // Returns when nothing is left to do after leave(), at the latest LeaveTime after it. Does not wait for a
    // callback.
    void awaitLeft();
    const std::string &path() const { return path_; }
    // Has a suspended write tried once more. False when that try has failed, or has not been acknowledged by
    // `until`; a try that has not begun by then says nothing about the mouse.
    bool finishWrites(Clock::time_point until);

private:
    using Lock = std::unique_lock<std::mutex>;
    enum class Retry : uint8_t { None, Wanted, Running };
    enum class LetGo : uint8_t {
        No,
        Last,   // the driver status 0 was answered, and nothing has changed the device since
        Before, // it was not answered, or something has changed the device since
    };

    void work();
    bool hasWork() const;
    void step(Lock &lock);
    void drain(Lock &lock);
    bool ensureChannel(Lock &lock);
    void carryOut(Lock &lock, const Order &order);
    void endProfileChange();
    bool writeNext(Lock &lock, int tries);
    void retryWrite(Lock &lock);
    void endRetry(bool written);
    bool readFlash(Lock &lock, uint16_t address, std::size_t size);
    std::optional<wire::Report> request(const Order &order);
    std::optional<wire::Report> ask(const wire::Report &request, int tries, const Deadline &until);

    void endPairingStart(bool accepted);
    void failPairing();
    bool isPairingOver() const;
    bool isStale(const wire::Report &pairStatus) const;
    void deliverAnswer(const wire::Report &reply);
    void deliverPairState(const wire::Report &head, wire::PairState state, std::size_t limit = SIZE_MAX);
    // Drops the message when `limit` others wait for the program.
    void deliver(wire::Report head, std::vector<uint8_t> payload, std::size_t limit = SIZE_MAX);
    void deliverFlash(wire::Report head, uint16_t address, std::vector<uint8_t> bytes);
    void call(wire::Report head, std::vector<uint8_t> payload);

    const std::string path_;
    const ProtocolCallback_t callback_;
    const uint64_t generation_;
    const std::chrono::milliseconds pairingLimit_;
    std::atomic<bool> leaving_{false};
    Deadline readsEnd_{Clock::time_point::max()};
    Deadline changesEnd_{Clock::time_point::max()}; // for writes and orders
    Deadline leaveEnd_{Clock::time_point::max()};   // for the driver status

    mutable std::mutex mutex_; // guards what follows
    std::condition_variable changed_;
    std::shared_ptr<Channel> channel_; // replaced by the I/O thread alone, which reads it without the lock
    std::shared_ptr<Connection> previous_; // until it has left
    OrderQueue orders_;
    FlashMirror mirror_;
    std::optional<FlashImage> deferred_; // the record to apply behind the queued profile orders
    bool left_ = false;
    LetGo letGo_ = LetGo::No;
    bool suspended_ = false;       // the last write was not acknowledged; no other is sent
    Retry retry_ = Retry::None;    // of the suspended write
    bool retryWritten_ = true;     // how the last one ended
    bool fullReadMissing_ = false; // a full read was ordered and has failed
    bool returned_ = false;        // the mouse came back since the last read or write began
    bool lost_ = false;            // the channel is dead and not replaced yet
    bool pairing_ = false;         // the receiver has accepted a start and told no result
    Clock::time_point pairingEnd_ = Clock::time_point::max(); // when that start has failed
    bool pairingRefused_ = false; // the newest start; the receiver still tells the result before it
    std::atomic<uint64_t> pairingStarts_{0};
    uint64_t pairingEnded_ = 0; // the start whose result was told
};

// The open connection of the process; null when there is none.
std::shared_ptr<Connection> currentConnection();
// Each has the connection before leave; only closing waits for that.
void openConnection(const char *path, ProtocolCallback_t callback);
void closeConnection();
// Connection::finishWrites of the open connection when that is to this path; else true.
bool finishWrites(const char *path, Clock::time_point until);

} // namespace hidusb
