// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/FirmwareImage.h"

#include "device/hidusb/wire/FirmwareFile.h"

#include <cstring>

static bool hasItsLength(const QByteArray &image)
{
    wire::FirmwareHead head;
    if (image.size() < int(sizeof head))
        return false;
    std::memcpy(&head, image.constData(), sizeof head);
    return head.FileLength.get() == uint32_t(image.size());
}

static const uint8_t *bytesOf(const QByteArray &image)
{
    return reinterpret_cast<const uint8_t *>(image.constData());
}

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
