// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The kernel's virtual USB host controllers (the module vhci-hcd): sockets whose other end is a device.
#pragma once

#include "emulator/FileDescriptor.h"
#include "emulator/usb/UsbPorts.h"

namespace emulator
{

// Plugs a full-speed device into its port and returns the device's end of its socket. Not valid without
// a controller, permission to use it, or a free port; a port becomes free some time after its device was
// unplugged.
FileDescriptor plugIntoKernel(const std::string &device, UsbPorts &ports);

} // namespace emulator
