// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One search for devices, with the questions to each. It blocks for as long as devices take to answer, so it
// runs off the main thread and returns a value.
#pragma once

#include "selection/LinkTally.h"

#include <QStringList>

struct DeviceScan {
    uint64_t
        generation; // counts the searches in the order of their start, so that an older result can be dropped
    std::vector<DeviceAllInfo> devices;
    LinkTally tally;     // of the devices as first identified, before they are refreshed
    QStringList refused; // nodes that this user may not open; their devices are not identified

    // The devices that get a tile: none when two cannot be told apart.
    std::vector<DeviceAllInfo> tiles() const;
};

DeviceScan scanDevices();
