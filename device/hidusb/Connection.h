// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Connection: the one open device of the program. An I/O thread carries out its orders first in, first out,
// and writes the changes of the record before each of them; answers and notices go to the callback on the
// process-wide callback thread. A connection that has ended writes nothing more and makes no more calls.
//
// A record is written only to a mouse whose flash has been read, since it would otherwise overwrite the mouse
// with another one's settings: until then a record is answered by a full read. The same holds for a device
// that was unplugged and came back under its old path, and for a mouse that was out of reach during the full
// read.
#pragma once

#include "device/hidusb/Channel.h"
#include "device/hidusb/FlashMirror.h"
#include "device/hidusb/HIDUsb.h"

#include <deque>

namespace hidusb
{

// A request of the program to an open connection.
struct Order {
    wire::Command command;
    uint8_t argument = 0; // for a flash read the number of bytes, 0 for the whole flash
    uint16_t address = 0;
};

class Connection : public NoticeSink, public std::enable_shared_from_this<Connection>
{
public:
    Connection(std::string path, ProtocolCallback_t callback, uint64_t generation);

    // All of these return at once and may be called from any thread.
    void start();
    void end();
    void order(const Order &order);
    void update(const FlashImage &wanted);
    void notice(const wire::Report &report) override;
    void lost() override;

    const std::string &path() const { return path_; }
    // Has a suspended write tried once more. True when none is suspended then. Takes at most 170 ms.
    bool finishWrites();

private:
    using Lock = std::unique_lock<std::mutex>;

    void work();
    bool hasWork() const;
    bool ensureChannel(Lock &lock);
    void requireFullRead();
    bool awaitsProfile() const;
    void carryOut(Lock &lock, const Order &order);
    void writeNext(Lock &lock, int tries);
    bool readFlash(Lock &lock, uint16_t address, std::size_t size);
    bool request(const Order &order);
    std::optional<wire::Report> ask(const wire::Report &request, int tries = UsualTries);
    // Drops the message when `limit` others wait for the program.
    void deliver(wire::Report head, std::vector<uint8_t> payload, std::size_t limit = SIZE_MAX);
    void deliverFlash(wire::Report head, uint16_t address, std::vector<uint8_t> bytes);
    void call(wire::Report head, std::vector<uint8_t> payload);

    const std::string path_;
    const ProtocolCallback_t callback_;
    const uint64_t generation_;
    std::atomic<bool> ended_{false};
    std::shared_ptr<Channel> channel_; // the I/O thread's

    std::mutex mutex_; // guards what follows
    std::condition_variable changed_;
    std::deque<Order> orders_;
    FlashMirror mirror_;
    std::optional<FlashImage> deferred_; // the record to apply behind the queued profile orders
    bool suspended_ = false;             // the last write was not acknowledged; no other is sent
    bool retry_ = false;                 // try the suspended write once
    bool fullReadMissing_ = false;       // a full read was ordered and has failed
    bool returned_ = false;              // the mouse came back since the last read or write began
    bool lost_ = false;                  // the channel is dead and not replaced yet
};

// The open connection of the process; null when there is none.
std::shared_ptr<Connection> currentConnection();
// Each ends the connection before.
void openConnection(const char *path, ProtocolCallback_t callback);
void closeConnection();
// Connection::finishWrites of the open connection when that is to this path; else true.
bool finishWrites(const char *path);

} // namespace hidusb
