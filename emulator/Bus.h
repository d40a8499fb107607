// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Bus: where the devices meet their hosts. One back end for each kind of bus; the devices are the same
// behind all of them. One thread.
#pragma once

#include "emulator/Scene.h"

#include <functional>
#include <map>
#include <poll.h>

namespace emulator
{

// What poll() found, by file descriptor.
using ReadyMap = std::map<int, short>;

class Bus
{
public:
    using Handler = std::function<void(const Interface &, const uint8_t *, std::size_t)>;
    using Filter = std::function<bool(const Interface &)>;
    using Closed = std::function<void(const Interface &)>;

    virtual ~Bus() = default;
    // Opens the interfaces that are missing and closes those that are no longer wanted, with whoever reads
    // them. `closed` hears of each interface that went.
    virtual void sync(const std::vector<Interface> &wanted, const Closed &closed) = 0;
    // What is to be polled. The host of an interface for which `reads` is false is left to wait.
    virtual void addTo(std::vector<pollfd> &polled, const Filter &reads) const = 0;
    // Hands each report that the host has sent to `handler`.
    virtual void service(const ReadyMap &ready, const Handler &handler) = 0;
    virtual void send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes) = 0;
    // Who reads, over all interfaces.
    virtual std::size_t clientCount() const = 0;
    // When sync() is worth another call although nothing has changed.
    virtual std::optional<Clock::time_point> nextDue() const { return std::nullopt; }
};

} // namespace emulator
