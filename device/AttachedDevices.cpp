// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/AttachedDevices.h"

#include <utility>

void AttachedDevices::set(std::vector<DeviceAllInfo> all, std::vector<DeviceAllInfo> tiles)
{
    all_ = std::move(all);
    tiles_ = std::move(tiles);
}

void AttachedDevices::update(const DeviceAllInfo &device)
{
    for (std::vector<DeviceAllInfo> *list : {&tiles_, &all_})
        for (DeviceAllInfo &entry : *list)
            if (entry.DevicePath == device.DevicePath)
                entry = device;
}
