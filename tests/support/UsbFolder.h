// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The folder of a whole USB device in this machine's sysfs.
#pragma once

#include "tests/support/UsbNodes.h"

namespace usbnodes
{

inline std::filesystem::path folderOf(const std::string &serial)
{
    const auto node = std::filesystem::path(nodeOf(serial)).filename();
    // hidrawN/device is the HID device; above it the interface, and above that the device.
    return std::filesystem::canonical("/sys/class/hidraw" / node / "device").parent_path().parent_path();
}

} // namespace usbnodes
