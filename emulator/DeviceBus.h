// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DeviceBus: carries reports between devices and hosts, with one back end for each kind of bus. One thread.
#pragma once

#include "emulator/Scene.h"

#include <functional>
#include <map>
#include <poll.h>

namespace emulator
{

// Results of poll() by file descriptor.
using ReadyMap = std::map<int, short>;

class DeviceBus
{
public:
    using Handler = std::function<void(const Interface &, const uint8_t *, std::size_t)>;
    using Filter = std::function<bool(const Interface &)>;
    using Closed = std::function<void(const Interface &)>;

    virtual ~DeviceBus() = default;
    // Opens missing interfaces and closes those that are not wanted, with their clients. Calls `closed` for
    // each closed interface.
    virtual void sync(const std::vector<Interface> &wanted, const Closed &closed) = 0;
    // Adds the descriptors to poll. Hosts of interfaces for which `reads` is false have to wait.
    virtual void addTo(std::vector<pollfd> &polled, const Filter &reads) const = 0;
    // Hands each report that the host has sent to `handler`.
    virtual void service(const ReadyMap &ready, const Handler &handler) = 0;
    virtual void send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes) = 0;
    // Number of readers of all interfaces.
    virtual std::size_t clientCount() const = 0;
    // When to call sync() again without a change.
    virtual std::optional<Clock::time_point> nextDue() const { return std::nullopt; }
};

} // namespace emulator
