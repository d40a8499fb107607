// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finds attached devices and identifies them by the catalogue. Any thread; a question blocks until the device
// answers or its time-out ends.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <QStringList>
#include <vector>

enum class DeviceMatch {
    LeftOut, // there is no catalogue to match against
    Known,   // a model of the catalogue
    Unknown, // shown as unknown: DriveIndex is DeviceTotal
};

enum class DeviceFinder {
    Default,     // the selection page's search
    ByInterface, // the device page's search, by interface and usage
};

// DriveIndex of a device that no section of the catalogue describes.
int unknownIndex();

// Asks for the identity, up to ten times while the device is not ready, and fills Cid, Mid, DeviceKind, Usb,
// DriveIndex and, for a known one, Online.
DeviceMatch identifyDevice(DeviceAllInfo &device);

// Identifies again, then asks for Online and UsbAddress, which stays empty without an answer.
DeviceMatch refreshDevice(DeviceAllInfo &device);

// The PIDs of the catalogue: cable, then the receivers of 1, 2, 4 and 8 kHz.
QStringList searchedProductIds();

// Every path with a VID and PID of the catalogue, in the catalogue's order, at most five for
// a pair, with path, ids and version filled in. No device is asked.
std::vector<DeviceAllInfo> findDevices(DeviceFinder finder);

// The paths of the devices that wait for firmware. No device is asked.
QStringList findBootLoaders();
