// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Any bytes as a firmware file, as they are and with length and checksum made right: the program's check and
// the layer's agree, so that nothing is offered that the layer refuses, and neither reads beyond the end.
#include "device/FirmwareImage.h"
#include "device/hidusb/Firmware.h"
#include "tests/fuzz/Target.h"

#include <cstdlib>
#include <cstring>
#include <vector>
#include <zlib.h>

namespace
{

using Bytes = std::vector<uint8_t>;

void check(const Bytes &bytes)
{
    const bool sound = isSoundFirmware(
        QByteArray::fromRawData(reinterpret_cast<const char *>(bytes.data()), int(bytes.size())));
    wire::FirmwareHead head{};
    if (bytes.size() >= sizeof head)
        std::memcpy(&head, bytes.data(), sizeof head);
    // The layer gets no length, so it is asked about those alone whose head tells the true one.
    const bool told = bytes.size() >= sizeof head && head.FileLength.get() == bytes.size();
    if (sound != (told && hidusb::readFirmware(bytes.data()).has_value()))
        std::abort();
}

void seal(Bytes &bytes)
{
    wire::FirmwareHead head{};
    constexpr std::size_t from = offsetof(wire::FirmwareHead, Version);
    if (bytes.size() < sizeof head)
        return;
    std::memcpy(&head, bytes.data(), sizeof head);
    head.FileLength.set(uint32_t(bytes.size()));
    head.Crc32.set(uint32_t(crc32(0, bytes.data() + from, uInt(bytes.size() - from))));
    std::memcpy(bytes.data(), &head, sizeof head);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Bytes bytes(data, data + size);
    check(bytes);
    seal(bytes);
    check(bytes);
    return 0;
}
