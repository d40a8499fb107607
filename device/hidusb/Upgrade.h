// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrade: brings a firmware file into the one attached device that it fits. One at a time.
#pragma once

#include "device/hidusb/Firmware.h"
#include "device/hidusb/HIDUsb.h"

namespace hidusb
{

// How many attached boot loaders the file fits. Each is asked up to twice.
int countBootLoaders(const Firmware &firmware);
// False when there is not exactly one device to flash or an upgrade runs. `callback` is called on a
// thread of its own; after its end report another upgrade may start, from inside that call too.
bool startUpgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs);

} // namespace hidusb
