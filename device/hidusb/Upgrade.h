// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrade: writes a firmware file to the one attached device that it fits. One upgrade runs at a time.
#pragma once

#include "device/hidusb/Firmware.h"
#include "device/hidusb/HIDUsb.h"

namespace hidusb
{

// The number of attached boot loaders that the file fits. Each is asked up to twice.
int countBootLoaders(const Firmware &firmware);
// False when there is not exactly one device to flash or an upgrade runs. `callback` is called on a
// thread of its own; from its end report on, another upgrade may start, even from inside that call.
bool startUpgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs);

} // namespace hidusb
