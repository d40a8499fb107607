// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/ModelDevices.h"

#include "device/DeviceSearch.h"
#include "device/SideBySide.h"

#include <algorithm>

std::vector<DeviceAllInfo> attachedOfModel(const ModelFirmware &model)
{
    std::vector<DeviceAllInfo> devices = findDevices(DeviceFinder::Default);
    sideBySide(devices, identifyDevice);
    const auto isOther = [&model](const DeviceAllInfo &device) {
        const bool isOfModel = device.Cid == model.cid && device.Mid == model.mid;
        if (device.Usb)
            return !isOfModel;
        return connectionKind(device.DeviceKind) != model.connectionKind || !(isOfModel || device.Mid == 0);
    };
    devices.erase(std::remove_if(devices.begin(), devices.end(), isOther), devices.end());
    return devices;
}
