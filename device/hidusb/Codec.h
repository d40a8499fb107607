// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Codec: converts between the record that the program edits and the flash image that a mouse holds. Pure
// functions. Neither side is trusted: counts and lengths are cut to what the other side can hold.
#pragma once

#include "device/hidusb/wire/FlashLayout.h"

namespace hidusb
{

// Fills the whole record.
void decode(const FlashImage &image, FlashDataMap &record);
// Overwrites the bytes that the record describes; the mouse's own bytes in `image` stay.
void encode(const FlashDataMap &record, FlashImage &image);

enum class Owner : uint8_t {
    Mouse,  // unused or the mouse's own: never written
    Shared, // described by the record, and a button on the mouse may change it
    Record, // described by the record alone
};
// An array with one entry for each address of the flash.
const Owner *flashOwners();

} // namespace hidusb
