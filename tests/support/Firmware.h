// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Firmware files for tests: a sound head, and content that differs from block to block.
#pragma once

#include "device/hidusb/wire/FirmwareFile.h"
#include "device/hidusb/wire/Report.h"

#include <algorithm>
#include <cstring>
#include <vector>
#include <zlib.h>

namespace support
{

// The sum of what has been changed by hand.
inline void seal(std::vector<uint8_t> &file)
{
    auto *head = reinterpret_cast<wire::FirmwareHead *>(file.data());
    constexpr std::size_t from = offsetof(wire::FirmwareHead, Version);
    head->Crc32.set(
        static_cast<uint32_t>(crc32(0, file.data() + from, static_cast<uInt>(file.size() - from))));
}

// `receiverKHz` is not used for a mouse. Without a base name the head has one that is none.
inline std::vector<uint8_t> makeFirmware(uint8_t target, std::size_t size, uint8_t cid, uint8_t mid,
                                         uint16_t version = 0x0203, uint8_t receiverKHz = 8,
                                         const char *baseName = nullptr)
{
    std::vector<uint8_t> file(size);
    for (std::size_t i = 0; i < size; ++i)
        file[i] = static_cast<uint8_t>(i * 7 + i / 256);
    auto *head = reinterpret_cast<wire::FirmwareHead *>(file.data());
    head->Magic.set(wire::FirmwareMagic);
    head->FileLength.set(static_cast<uint32_t>(size));
    head->Version.set(version);
    head->ReceiverKHz = target == wire::TargetReceiver ? receiverKHz : 0;
    head->Target = target;
    head->Cid = cid;
    head->Mid = mid;
    if (baseName != nullptr)
        std::memcpy(head->BaseName, baseName, std::min(std::strlen(baseName) + 1, sizeof head->BaseName));
    seal(file);
    return file;
}

} // namespace support
