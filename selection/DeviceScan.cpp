// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/DeviceScan.h"

#include "device/DeviceSearch.h"
#include "device/SideBySide.h"
#include "selection/NodePermission.h"

#include <algorithm>
#include <atomic>

namespace
{

// A device that is unplugged during the search does not answer and would be listed as unknown, and two of
// them as duplicates. Only devices that were identified need no second look.
void dropUnplugged(std::vector<DeviceAllInfo> &devices)
{
    const auto isUnknown = [unknown = unknownIndex()](const DeviceAllInfo &device) {
        return device.DriveIndex == unknown;
    };
    if (std::none_of(devices.cbegin(), devices.cend(), isUnknown))
        return;
    QStringList present;
    for (const DeviceAllInfo &device : findDevices(DeviceFinder::Default))
        present << device.DevicePath;
    const auto hasGone = [&](const DeviceAllInfo &device) {
        return isUnknown(device) && !present.contains(device.DevicePath);
    };
    devices.erase(std::remove_if(devices.begin(), devices.end(), hasGone), devices.end());
}

} // namespace

std::vector<DeviceAllInfo> DeviceScan::tiles() const
{
    std::vector<DeviceAllInfo> shown = devices;
    if (tally.settle(shown, unknownIndex()))
        shown.clear();
    return shown;
}

DeviceScan scanDevices()
{
    struct Answer {
        DeviceAllInfo device;
        DeviceMatch match;
    };
    static std::atomic<uint64_t> begun{0};
    DeviceScan scan{++begun, {}, {}, {}};
    std::vector<Answer> answers;
    for (const DeviceAllInfo &device : findDevices(DeviceFinder::Default)) {
        if (isRefused(device.DevicePath))
            scan.refused << device.DevicePath;
        else
            answers.push_back({device, DeviceMatch::LeftOut});
    }
    // Without permission no repair reaches them.
    for (const QString &path : findBootLoaders())
        if (isRefused(path))
            scan.refused << path;
    sideBySide(answers, [](Answer &answer) { answer.match = identifyDevice(answer.device); });
    for (const Answer &answer : answers) {
        if (answer.match != DeviceMatch::LeftOut)
            scan.devices.push_back(answer.device);
    }
    dropUnplugged(scan.devices);
    for (const DeviceAllInfo &device : scan.devices)
        scan.tally.count(device);
    sideBySide(scan.devices, refreshDevice);
    return scan;
}
