// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a record may hold. One that was read from a mouse is within these limits; one from a file need not be.
// In the library `codec`, which program and layer share.
#pragma once

#include "device/hidusb/FlashDataMap.h"

namespace hidusb
{

// Cuts counts, lengths and delays to what the record and a mouse can hold.
void clamp(FlashDataMap &record);

} // namespace hidusb
