// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The sockets of a bus folder: a port for each interface, and its clients. What a device sends goes to all
// clients of the interface, as all readers of a hidraw node get it; a client that does not read loses
// reports and holds up nobody. One thread.
#pragma once

#include "emulator/Bus.h"
#include "emulator/BusFolder.h"

namespace emulator
{

class BusSockets final : public Bus
{
public:
    // The folder is the caller's and outlives the bus.
    explicit BusSockets(const BusFolder &folder) : folder_(folder) {}

    void sync(const std::vector<Interface> &wanted, const Closed &closed) override;
    void addTo(std::vector<pollfd> &polled, const Filter &reads) const override;
    void service(const ReadyMap &ready, const Handler &handler) override;
    void send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes) override;
    std::size_t clientCount() const override;

private:
    struct Port {
        Interface face;
        FileDescriptor listener;
        std::vector<FileDescriptor> clients;
    };
    static void accept(Port &port);
    // One datagram at a time, so that no client keeps the others waiting. False when the client has gone.
    static bool receive(const Port &port, int client, const Handler &handler);

    const BusFolder &folder_;
    std::map<std::string, Port> ports_; // by name in the folder
};

} // namespace emulator
