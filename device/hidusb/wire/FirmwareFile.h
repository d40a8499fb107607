// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The 728-byte head of a firmware file. The layer gets a file as a pointer without a length, so it relies on
// the length in the first 16 bytes; device/FirmwareImage compares FileLength with the real size of the file
// before.
#pragma once

#include "device/hidusb/FlashDataMap.h"

namespace wire
{

constexpr uint32_t FirmwareMagic = 0x4D57464DU; // "MFWM" in file order
constexpr uint32_t FirmwareSizeLimit = 1024U * 1024U;

struct FirmwareHead {
    LittleU32 Magic;
    LittleU32 FileLength; // head included
    LittleU32 Crc32;      // of the bytes from 16 to the end (IEEE 802.3, as zlib's crc32)
    uint8_t Unused12[4];
    LittleU16 Version;   // high byte major, low byte minor
    uint8_t ReceiverKHz; // the receiver's class: 1, 2, 4 or 8; 0 in a mouse's file
    uint8_t Unused19;
    uint8_t Target; // TargetMouse or TargetReceiver
    uint8_t Cid;
    uint8_t Mid;
    uint8_t Unused23[64];
    char BaseName[64]; // ends at the first zero byte
    uint8_t Unused151[577];
};

static_assert(sizeof(FirmwareHead) == 728 && offsetof(FirmwareHead, Version) == 16);
static_assert(offsetof(FirmwareHead, ReceiverKHz) == 18 && offsetof(FirmwareHead, Target) == 20 &&
              offsetof(FirmwareHead, BaseName) == 87);
static_assert(std::is_trivially_copyable_v<FirmwareHead>);

} // namespace wire
