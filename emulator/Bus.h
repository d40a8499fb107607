// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The sockets of the bus: a port for each interface, and its clients. What a device sends goes to all
// clients of the interface, as all readers of a hidraw node get it; a client that does not read loses
// reports and holds up nobody. One thread.
#pragma once

#include "emulator/BusFolder.h"
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

    // Opens the ports that are missing and closes those that are no longer wanted, with their clients.
    // `closed` hears of each interface that went.
    void sync(const BusFolder &folder, const std::vector<Interface> &wanted,
              const std::function<void(const Interface &)> &closed);
    // Clients of an interface for which `reads` is false are left to wait.
    void addTo(std::vector<pollfd> &polled, const Filter &reads) const;
    // Takes in clients and hands each datagram to `handler`.
    void service(const ReadyMap &ready, const Handler &handler);
    void send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes);
    std::size_t clientCount() const;

private:
    struct Port {
        Interface face;
        FileDescriptor listener;
        std::vector<FileDescriptor> clients;
    };
    static void accept(Port &port);
    static bool receive(const Port &port, int client, const Handler &handler);

    std::map<std::string, Port> ports_; // by name in the folder
};

} // namespace emulator
