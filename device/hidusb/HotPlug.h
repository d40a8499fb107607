// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The one watch for attached and removed devices. Each watch has a thread of its own that sleeps until a
// device comes or goes; the thread of a replaced watch ends by itself.
#pragma once

#include "device/hidusb/HIDUsb.h"

namespace hidusb
{

// Both return at once and may be called from any thread, the callback included.
void startWatch(UsbChangedCallback_t callback, int settleMs);
void stopWatch();

} // namespace hidusb
