// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One search for devices with all its questions. Devices take their time to answer, so it runs off the
// main thread and its result is a value.
#pragma once

#include "selection/LinkTally.h"

#include <QStringList>

struct DeviceScan {
    uint64_t generation; // grows with each search that begins, so that an older result can be told
    std::vector<DeviceAllInfo> devices;
    LinkTally tally;     // of the devices as they were found, before their second question
    QStringList refused; // the nodes that keep this user out; nothing can be known of their devices
};

DeviceScan scanDevices();
