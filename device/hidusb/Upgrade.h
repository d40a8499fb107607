// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrade: writes a firmware file to the one attached device that it fits, which it follows by its port. One
// upgrade runs at a time.
#pragma once

#include "device/hidusb/Channel.h"
#include "device/hidusb/Firmware.h"
#include "device/hidusb/HIDUsb.h"

namespace hidusb
{

// Tests choose shorter ones.
struct UpgradeTimes {
    std::chrono::milliseconds answer = ReplyTimeout; // for each try
    std::chrono::milliseconds slow{6000};            // to erase, and to check the image at the end
    std::chrono::milliseconds leave{1000};           // until the device is back after BootLeave
    std::chrono::milliseconds askAgain{200}; // pause before an attached device that is silent is asked again
    std::chrono::milliseconds whole{120000}; // from the start to the end report
};

// What the end report says.
enum class UpgradeResult : uint8_t {
    Failed = 0,
    Succeeded = 1,
    Refused = 2, // the device answered that it does not enter its boot loader; it is as it was
};

// False when there is not exactly one device to flash, or an upgrade runs.
// `timeoutMs` is the longest wait for the boot loader, and for the device to come back. `callback` is called
// on a thread of its own; from its end report on, another upgrade may start, even from inside that call.
bool startUpgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs,
                  const UpgradeTimes &times = UpgradeTimes());

} // namespace hidusb
