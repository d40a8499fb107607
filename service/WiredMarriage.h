// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// WiredMarriage: pairs the mouse on its cable with the receiver beside it, without a radio: the receiver
// tells its address, and the mouse stores it. Any thread; each question blocks until the device answers or
// its time-out ends.
#pragma once

#include "device/hidusb/DeviceRecords.h"
#include "device/record/DeviceAllInfo.h"

#include <optional>
#include <vector>

class WiredMarriage
{
public:
    // Asks each receiver of the list in turn and writes its address to each mouse on a cable, so that the
    // last one that answers counts. Returns how many writes were sent; 0 when a receiver or a cable is
    // missing.
    int marry(const std::vector<DeviceAllInfo> &devices);

    // Writes what the last receiver has told to marry() once more, without asking: after an upgrade the
    // receiver may be silent for a while. Does nothing before marry() was answered.
    int marryAgain(const std::vector<DeviceAllInfo> &devices) const;

private:
    std::optional<DonglePairing> record_;
};
