// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Channel: requests and replies over one open interface. A reader thread checks each report once; a reply
// goes to the request with its sequence number, command and address, and one that fits no waiting request
// (late, doubled, unsound) is dropped. Finder functions and connection share one channel per path.
#pragma once

#include "device/hidusb/Bus.h"
#include "device/hidusb/wire/ReplyTimeout.h"
#include "device/hidusb/wire/Report.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace hidusb
{

using Clock = std::chrono::steady_clock;
constexpr int UsualTries = 3;

// True when `reply` answers `request`.
bool answers(const wire::Report &request, const wire::Report &reply);
// A request without its sequence number. `size` is 0..56.
wire::Report makeRequest(wire::Command command, uint16_t address = 0, const void *payload = nullptr,
                         std::size_t size = 0);

struct Exchange {
    wire::Report request;
    std::optional<wire::Report> reply; // of any status but Busy
    bool busy = false;                 // the answer to the last try was Busy
    Clock::time_point resend{};
    Clock::time_point end{};
};

// Another thread may bring it nearer, and then calls Channel::wake.
using Deadline = std::atomic<Clock::time_point>;

struct Limits {
    int tries = UsualTries;                                             // for each request
    std::chrono::milliseconds answer = ReplyTimeout;                    // for each try
    std::size_t window = 1;                                             // requests in flight
    std::chrono::milliseconds total = std::chrono::milliseconds::max(); // for all of them together
    const Deadline *until = nullptr;                                    // when to give up
    std::function<void(std::size_t answered)> progress = nullptr;       // of the requests in their order
};

// Receives the notices of a channel, on the channel's reader thread; must not wait.
class NoticeSink
{
public:
    virtual ~NoticeSink() = default;
    virtual void notice(const wire::Report &report) = 0;
    virtual void lost() = 0; // the interface is gone
};

class Channel
{
public:
    // `path` is how the log names the interface.
    Channel(std::string path, std::unique_ptr<ReportPort> port);

    // Sends all requests, repeats those whose answer does not come, and waits for the replies. Stops at the
    // first one that stays unanswered or has another status than Ok. True when all replies are Ok.
    bool exchange(std::vector<Exchange> &batch, const Limits &limits);
    // One request. The reply may have any status.
    std::optional<wire::Report> ask(const wire::Report &request, const Limits &limits = {});
    // Has the waiting exchanges look at their limits again.
    void wake();

    // Notices go to the sink with the highest generation seen.
    void subscribe(const std::weak_ptr<NoticeSink> &sink, uint64_t generation);
    bool isDead() const;

private:
    friend class ChannelRegistry;

    enum class Reading {
        Continue,
        Idle, // no report within IdleTimeout, and the channel was not held when the wait began
        Gone,
    };
    Reading readOnce(); // for the reader thread
    void acceptReply(const wire::Report &reply);
    void forwardNotice(const wire::Report &notice);
    void setDead();
    void hold();
    void release();
    bool isHeld() const;

    bool advance(std::unique_lock<std::mutex> &lock, Exchange &exchange, const Limits &limits);
    bool run(std::unique_lock<std::mutex> &lock, std::vector<Exchange> &batch, const Limits &limits);
    bool assignSequence(Exchange &exchange);
    void withdraw(const std::vector<Exchange> &batch);

    const std::string path_;
    const std::unique_ptr<ReportPort> port_;
    mutable std::mutex mutex_;
    std::condition_variable arrived_;
    std::array<Exchange *, 256> waiting_{}; // by sequence number
    uint64_t arrivals_ = 0;
    uint8_t lastSequence_;
    int holders_ = 0;
    bool endless_ = false; // the reader waits without a limit
    bool dead_ = false;
    std::weak_ptr<NoticeSink> sink_;
    uint64_t sinkGeneration_ = 0;
};

// The channel of an interface, opened when there is none; null when it can't be opened, or not by `until`. It
// stays open while a pointer is held and for a few seconds longer.
std::shared_ptr<Channel> acquireChannel(const std::string &path,
                                        Clock::time_point until = Clock::time_point::max());

} // namespace hidusb
