// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// BusSockets: the sockets of a bus folder, a listening port and its clients for each interface. A device's
// report goes to all clients of the interface, as to all readers of a hidraw node; a client that does not
// read loses reports and delays nobody. One thread.
#pragma once

#include "emulator/BusFolder.h"
#include "emulator/DeviceBus.h"

namespace emulator
{

class BusSockets final : public DeviceBus
{
public:
    // The caller owns the folder, which must outlive the bus.
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
    // One datagram per call, so that no client delays the others. False when the client disconnected.
    static bool receive(const Port &port, int client, const Handler &handler);

    const BusFolder &folder_;
    std::map<std::string, Port> ports_; // by name in the folder
};

} // namespace emulator
