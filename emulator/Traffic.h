// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The queues of one USB device: reports that the host has sent and the device has not processed yet, and
// reports that wait to go out. With pacing each direction carries one report per millisecond, as an
// interface with a 1 ms interval does; without it nothing waits.
#pragma once

#include "emulator/Faults.h"

#include "device/hidusb/wire/Report.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>

namespace emulator
{

using Clock = std::chrono::steady_clock;
using Bytes = std::vector<uint8_t>;

constexpr std::chrono::milliseconds PaceInterval{1};

// One direction.
template <typename Item> class Lane
{
public:
    void push(Item item, Clock::time_point now)
    {
        // One interval of credit: a report that is a little late does not delay all later ones.
        if (items_.empty())
            due_ = std::max(due_, now - PaceInterval);
        items_.push_back(std::move(item));
    }
    // The next report that may be sent now.
    std::optional<Item> take(Clock::time_point now, bool paced)
    {
        if (items_.empty() || (paced && due_ > now))
            return std::nullopt;
        std::optional<Item> item = std::move(items_.front());
        items_.pop_front();
        due_ = paced ? due_ + PaceInterval : now;
        return item;
    }
    std::optional<Clock::time_point> nextDue(bool paced) const
    {
        if (items_.empty())
            return std::nullopt;
        return paced ? due_ : Clock::time_point{};
    }
    void clear() { items_.clear(); }
    std::size_t size() const { return items_.size(); }

private:
    std::deque<Item> items_;
    Clock::time_point due_{};
};

struct Incoming {
    uint16_t usagePage; // of the receiving interface
    wire::Report report;
};

struct Outgoing {
    uint16_t usagePage; // of the sending interface
    Bytes bytes;
};

class Traffic
{
public:
    // From this length on, the host's reports stay in its own socket, as with a slow endpoint.
    static constexpr std::size_t InLimit = 16;
    // Requests that a host may have outstanding; any of them may be repeated.
    static constexpr std::size_t Window = 8;

    void count(const wire::Report &report)
    {
        ++total_;
        CommandCount &its = counts_[report.CommandCode];
        ++its.reports;
        if (std::find(its.numbers.begin(), its.numbers.end(), report.Sequence) == its.numbers.end())
            its.numbers[its.requests++ % its.numbers.size()] = report.Sequence;
    }
    uint64_t total() const { return total_; }
    uint64_t countOf(uint8_t command) const { return counts_[command].reports; }
    // The same without repeats, which reuse a recent sequence number because the answer was late.
    uint64_t requestsOf(uint8_t command) const { return counts_[command].requests; }
    // The device left the bus: drops all reports, so that none reaches the next connection.
    void clear()
    {
        in.clear();
        out.clear();
        ++plugging;
        stalledUntil = {};
    }
    bool isStalled(Clock::time_point now) const { return now < stalledUntil; }
    // When a report can next move.
    std::optional<Clock::time_point> nextDue(bool paced) const
    {
        std::optional<Clock::time_point> next = in.nextDue(paced);
        if (const auto due = out.nextDue(paced); due && (!next || *due < *next))
            next = due;
        return next ? std::make_optional(std::max(*next, stalledUntil)) : std::nullopt;
    }

    Lane<Incoming> in;
    Lane<Outgoing> out;
    FaultTable faults;
    Clock::time_point stalledUntil{}; // until then no report moves in either direction
    unsigned plugging = 0;            // how often the device has left the bus

private:
    struct CommandCount {
        uint64_t reports = 0;
        uint64_t requests = 0;
        std::array<uint8_t, Window> numbers{}; // of the last requests; none has the number 0
    };

    uint64_t total_ = 0; // valid reports from the host
    std::array<CommandCount, 256> counts_{};
};

// Applies a fault to a valid answer, as FaultKind describes.
Bytes spoil(const wire::Report &reply, const FaultHit &hit);
Bytes bytesOf(const wire::Report &report);

} // namespace emulator
