// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finding attached devices and recognising them against the catalogue. Questions to devices block for
// as long as a device may stay silent, so none of this runs on the main thread but identifyDevice() and
// refreshDevice() where a page asks for it.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <vector>

enum class DeviceMatch {
    LeftOut, // no catalogue to match against
    Known,   // a model of the catalogue
    Unknown, // gets a tile as unknown: DriveIndex is DeviceTotal
};

// How a search asks the layer for the paths of one pair of ids.
enum class DeviceFinder {
    Default,        // the selection page
    ByInterface,    // the device page
};

// Asks who the device is, up to ten times while it is not ready, and fills Cid, Mid, DeviceKind, Usb,
// DriveIndex and Online.
DeviceMatch identifyDevice(DeviceAllInfo &device);

// Asks for Online and UsbAddress, then identifies again.
DeviceMatch refreshDevice(DeviceAllInfo &device);

// Every path that answers to a VID and PID of the catalogue, in the catalogue's order, at most five for a
// pair, with ids and version filled in. No device is asked.
std::vector<DeviceAllInfo> findDevices(DeviceFinder finder);

// The PIDs of the catalogue: cable, then the receivers of 1, 2, 4 and 8 kHz.
QStringList searchedProductIds();
