// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The boot loader of a mouse or receiver: receives a firmware image in blocks of 56 bytes and accepts it when
// it is complete, its CRC matches and its header names this device. A loss of power drops the received
// blocks.
#pragma once

#include "emulator/Protocol.h"

#include "device/hidusb/wire/FirmwareFile.h"

#include <optional>
#include <vector>

namespace emulator
{

// IEEE 802.3, as zlib's crc32.
uint32_t crc32(const uint8_t *bytes, std::size_t count);

class BootLoader
{
public:
    void reset();
    wire::Report answer(const wire::Report &request, const wire::BootIdentityReply &identity);
    // The version of an image that BootEnd accepted, once.
    std::optional<uint16_t> takeAcceptedVersion();

private:
    bool begin(const wire::BootBeginRequest &request);
    bool store(const wire::Report &request);
    bool finish(const wire::BootIdentityReply &identity);

    uint32_t crc_ = 0;
    std::vector<uint8_t> image_;
    std::vector<bool> received_;
    std::optional<uint16_t> accepted_;
};

} // namespace emulator
