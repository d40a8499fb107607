// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/DeviceScan.h"

#include "catalogue/NodeRight.h"
#include "device/DeviceSearch.h"

#include <atomic>

DeviceScan scanDevices()
{
    static std::atomic<uint64_t> begun{0};
    DeviceScan scan{++begun, {}, {}, {}};
    for (DeviceAllInfo &device : findDevices(DeviceFinder::Default)) {
        if (isRefused(device.DevicePath))
            scan.refused << device.DevicePath;
        else if (identifyDevice(device) != DeviceMatch::LeftOut)
            scan.devices.push_back(device);
    }
    for (DeviceAllInfo &device : scan.devices) {
        scan.tally.count(device);
        refreshDevice(device);
    }
    return scan;
}
