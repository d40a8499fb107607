// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The boot loader of a mouse or receiver: erases the old image, receives a new one in blocks of 56 bytes and
// accepts it when it is complete, its CRC matches and its header names this device. A repeated request
// changes nothing. A loss of power drops the received blocks.
#pragma once

#include "emulator/Protocol.h"

#include "device/hidusb/wire/FirmwareFile.h"

#include <chrono>
#include <optional>
#include <vector>

namespace emulator
{

// IEEE 802.3, as zlib's crc32.
uint32_t crc32(const uint8_t *bytes, std::size_t count);

class BootLoader
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    void reset(); // drops the received blocks
    wire::Report answer(const wire::Report &request, const wire::BootIdentityReply &identity, TimePoint now);
    // The version of an image that BootEnd accepted, once.
    std::optional<uint16_t> takeAcceptedVersion();
    // False between the start of an erase and the next accepted image: the device can only be flashed.
    bool holdsImage() const { return holdsImage_; }
    void setHoldsImage(bool holds) { holdsImage_ = holds; }

    std::chrono::milliseconds eraseTime{0}; // BootBegin; requests get Busy meanwhile

private:
    wire::Status begin(const wire::BootBeginRequest &request, TimePoint now);
    wire::Status execute(const wire::Report &request, const wire::BootIdentityReply &identity, TimePoint now);
    bool store(const wire::Report &request);
    bool finish(const wire::BootIdentityReply &identity);
    bool check(const wire::BootIdentityReply &identity);

    bool holdsImage_ = true;
    bool leaving_ = false; // BootLeave has been accepted
    TimePoint erased_{};
    uint32_t crc_ = 0;
    std::vector<uint8_t> image_;
    std::vector<bool> received_;
    std::optional<uint16_t> accepted_;
};

} // namespace emulator
