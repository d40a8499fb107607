// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/LinkTally.h"

#include <algorithm>

namespace
{

std::size_t linkOf(const DeviceAllInfo &device)
{
    if (device.Usb)
        return 0;
    const auto isItsKind = [&](const DeviceKindRow &row) { return row.code == device.DeviceKind; };
    return std::size_t(std::find_if(DeviceKinds.begin(), DeviceKinds.end(), isItsKind) -
                       DeviceKinds.begin()) +
           1;
}

} // namespace

void LinkTally::count(const DeviceAllInfo &device)
{
    const std::size_t link = linkOf(device);
    if (link < Links && device.DriveIndex >= 0 && device.DriveIndex < Models)
        ++counters_[link][std::size_t(device.DriveIndex)];
}

bool LinkTally::settle(std::vector<DeviceAllInfo> &devices, int deviceTotal) const
{
    for (int r = 0; r < deviceTotal; ++r) {
        if (r < int(Links)) {
            const auto &models = counters_[std::size_t(r)];
            if (std::any_of(models.begin(), models.end(), [](uint32_t count) { return count > 1; }))
                return true;
        }
        if (r >= Models || counters_[0][std::size_t(r)] != 1)
            continue;
        devices.erase(std::remove_if(devices.begin(), devices.end(),
                                     [r](const DeviceAllInfo &d) { return !d.Usb && d.DriveIndex == r; }),
                      devices.end());
    }
    return false;
}
