// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Firmware for the emulator's boot loader, and the payloads of the requests that bring it there.
#pragma once

#include "device/hidusb/wire/FirmwareFile.h"
#include "device/hidusb/wire/Report.h"
#include "emulator/BootLoader.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace bootimage
{

using Bytes = std::vector<uint8_t>;

constexpr std::size_t ImageSize = 1500; // 26 whole blocks and a short one

inline Bytes firmware(uint8_t target, uint8_t cid, uint8_t mid, uint16_t version,
                      std::size_t size = ImageSize, uint8_t receiverKHz = 8)
{
    Bytes image(size);
    for (std::size_t i = 0; i < size; ++i)
        image[i] = static_cast<uint8_t>(i * 7);
    wire::FirmwareHead head{};
    head.Magic.set(wire::FirmwareMagic);
    head.FileLength.set(static_cast<uint32_t>(size));
    head.Version.set(version);
    head.ReceiverKHz = target == wire::TargetReceiver ? receiverKHz : 0; // not used for a mouse
    head.Target = target;
    head.Cid = cid;
    head.Mid = mid;
    std::memcpy(image.data(), &head, sizeof head);
    head.Crc32.set(emulator::crc32(image.data() + 16, size - 16));
    std::memcpy(image.data(), &head, sizeof head);
    return image;
}

inline Bytes beginOf(const Bytes &image, uint32_t flip = 0)
{
    wire::BootBeginRequest begin{};
    begin.Length.set(static_cast<uint32_t>(image.size()));
    begin.Crc32.set(emulator::crc32(image.data(), image.size()) ^ flip);
    const auto *bytes = reinterpret_cast<const uint8_t *>(&begin);
    return Bytes(bytes, bytes + sizeof begin);
}

inline Bytes blockOf(const Bytes &image, std::size_t block)
{
    const std::size_t offset = block * wire::PayloadSize;
    const std::size_t end = std::min(offset + wire::PayloadSize, image.size());
    return Bytes(image.begin() + static_cast<std::ptrdiff_t>(offset),
                 image.begin() + static_cast<std::ptrdiff_t>(end));
}

inline std::size_t blocksOf(const Bytes &image)
{
    return (image.size() + wire::PayloadSize - 1) / wire::PayloadSize;
}

} // namespace bootimage
