// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Firmware: a checked copy of a firmware file.
#pragma once

#include "device/hidusb/wire/FirmwareFile.h"
#include "device/hidusb/wire/Report.h"

#include <optional>
#include <vector>

namespace hidusb
{

struct Firmware {
    std::vector<uint8_t> bytes; // the whole file
    wire::BootIdentityReply fits;
    uint16_t version = 0; // high byte major, low byte minor

    wire::BootBeginRequest announcement() const;
    std::size_t blockCount() const { return (bytes.size() + wire::PayloadSize - 1) / wire::PayloadSize; }
    wire::Report block(std::size_t index) const; // the BootData request

    bool fitsBootLoader(const wire::BootIdentityReply &identity) const;
    bool fitsDevice(const DeviceIdentity &identity) const;
    // True also for a receiver without a mouse, which does not know its model outside its boot loader.
    bool mayFitDevice(const DeviceIdentity &identity) const;

private:
    bool isOfItsKind(const DeviceIdentity &identity) const;
};

// `image` is readable for the length that its head gives. Empty when it is not a complete, undamaged file.
std::optional<Firmware> readFirmware(const uint8_t *image);

} // namespace hidusb
