// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Firmware.h"

#include "device/hidusb/Channel.h"

#include <algorithm>
#include <cstring>
#include <zlib.h>

namespace hidusb
{

static uint32_t crcOf(const uint8_t *bytes, std::size_t size)
{
    return static_cast<uint32_t>(crc32(0, bytes, static_cast<uInt>(size)));
}

static bool isForADevice(const wire::FirmwareHead &head)
{
    if (head.Target == wire::TargetMouse)
        return head.ReceiverKHz == 0;
    const uint8_t kHz = head.ReceiverKHz;
    return head.Target == wire::TargetReceiver && (kHz == 1 || kHz == 2 || kHz == 4 || kHz == 8);
}

std::optional<Firmware> readFirmware(const uint8_t *image)
{
    if (image == nullptr)
        return std::nullopt;
    wire::FirmwareHead head;
    std::memcpy(&head, image, SPAN_SIZE(wire::FirmwareHead, Magic, Crc32));
    const std::size_t size = head.FileLength.get();
    if (head.Magic.get() != wire::FirmwareMagic || size < sizeof head || size > wire::FirmwareSizeLimit)
        return std::nullopt;
    std::memcpy(&head, image, sizeof head);
    constexpr std::size_t checkedFrom = offsetof(wire::FirmwareHead, Version);
    if (!isForADevice(head) || crcOf(image + checkedFrom, size - checkedFrom) != head.Crc32.get())
        return std::nullopt;
    return Firmware{
        {image, image + size}, {head.Target, head.Cid, head.Mid, head.ReceiverKHz}, head.Version.get()};
}

wire::BootBeginRequest Firmware::announcement() const
{
    wire::BootBeginRequest request{};
    request.Length.set(static_cast<uint32_t>(bytes.size()));
    request.Crc32.set(crcOf(bytes.data(), bytes.size()));
    return request;
}

wire::Report Firmware::block(std::size_t index) const
{
    const std::size_t offset = index * wire::PayloadSize;
    const std::size_t size = std::min(bytes.size() - offset, wire::PayloadSize);
    return makeRequest(wire::Command::BootData, static_cast<uint16_t>(index), bytes.data() + offset, size);
}

bool Firmware::fitsBootLoader(const wire::BootIdentityReply &identity) const
{
    return std::memcmp(&identity, &fits, sizeof fits) == 0;
}

bool Firmware::fitsDevice(const DeviceIdentity &identity) const
{
    return identity.Mid == fits.Mid && isOfItsKind(identity);
}

bool Firmware::mayFitDevice(const DeviceIdentity &identity) const
{
    const bool unpaired = identity.Mid == 0 && fits.Target == wire::TargetReceiver;
    return fitsDevice(identity) || (unpaired && isOfItsKind(identity));
}

bool Firmware::isOfItsKind(const DeviceIdentity &identity) const
{
    const bool sameKind = fits.Target == wire::TargetMouse
                              ? wire::isCable(identity.DeviceKind)
                              : wire::receiverKHz(identity.DeviceKind) == fits.ReceiverKHz;
    return identity.Cid == fits.Cid && sameKind;
}

} // namespace hidusb
