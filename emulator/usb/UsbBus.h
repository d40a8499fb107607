// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UsbBus: the devices as USB devices of the running kernel, which enumerates and drives them like any others.
// Programs with permission for a node read and write there. One thread.
#pragma once

#include "emulator/DeviceBus.h"
#include "emulator/usb/UsbPlug.h"

namespace emulator
{

class UsbBus final : public DeviceBus
{
public:
    // Plugs the device with this id into a host controller and returns the device's end of the socket, not
    // valid when no port is free.
    using Controller = std::function<FileDescriptor(const std::string &device)>;

    explicit UsbBus(Controller controller);

    void sync(const std::vector<Interface> &wanted, const Closed &closed) override;
    void addTo(std::vector<pollfd> &polled, const Filter &reads) const override;
    void service(const ReadyMap &ready, const Handler &handler) override;
    void send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes) override;
    std::size_t clientCount() const override;
    std::optional<Clock::time_point> nextDue() const override { return retry_; }

private:
    const Controller controller_;
    std::map<std::string, UsbPlug> plugs_; // by the device's interfaces
    std::optional<Clock::time_point> retry_;
};

} // namespace emulator
