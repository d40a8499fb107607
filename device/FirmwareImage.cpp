// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/FirmwareImage.h"

#include "device/FirmwareSearch.h"
#include "device/hidusb/wire/FirmwareFile.h"
#include "device/record/DeviceAllInfo.h"

#include <cstddef>
#include <cstring>
#include <zlib.h>

static wire::FirmwareHead headOf(const QByteArray &image)
{
    wire::FirmwareHead head{};
    if (image.size() >= int(sizeof head))
        std::memcpy(&head, image.constData(), sizeof head);
    return head;
}

static bool hasItsLength(const QByteArray &image)
{
    return image.size() >= int(sizeof(wire::FirmwareHead)) &&
           headOf(image).FileLength.get() == uint32_t(image.size());
}

static const uint8_t *bytesOf(const QByteArray &image)
{
    return reinterpret_cast<const uint8_t *>(image.constData());
}

static bool isForADevice(const wire::FirmwareHead &head)
{
    return head.Target == TargetMouse
               ? head.ReceiverKHz == 0
               : head.Target == TargetReceiver && !firmwareKey(TargetReceiver, head.ReceiverKHz).isEmpty();
}

bool isSoundFirmware(const QByteArray &image)
{
    const wire::FirmwareHead head = headOf(image);
    constexpr int from = offsetof(wire::FirmwareHead, Version);
    return hasItsLength(image) && image.size() <= int(wire::FirmwareSizeLimit) &&
           head.Magic.get() == wire::FirmwareMagic && isForADevice(head) &&
           ::crc32(0, bytesOf(image) + from, uInt(image.size() - from)) == head.Crc32.get();
}

QString firmwareVersion(const QByteArray &image) { return versionText(headOf(image).Version.get()); }

int findBootDevices(const QByteArray &image, int most)
{
    int32_t count = most;
    if (!hasItsLength(image))
        return 0;
    UsbUpgradeC_FindBootDevices(bytesOf(image), &count);
    return count;
}

bool startFirmwareUpgrade(const QByteArray &image, UpgradeCallback_t callback, int timeoutMs)
{
    return hasItsLength(image) && UsbUpgrade_Start(bytesOf(image), callback, timeoutMs) != 0;
}
