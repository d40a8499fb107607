// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What every function of the layer does with a path behind which there is no device: nothing.
#pragma once

#include "device/hidusb/HIDUsb.h"

#include <cstring>
#include <gtest/gtest.h>

namespace support
{

// Each function on a path, with records preset to 0x73; nothing may change.
inline void expectQuietFailure(const char *path)
{
    uint8_t preset[16];
    std::memset(preset, 0x73, sizeof preset);
    uint8_t record[16];
    std::memcpy(record, preset, sizeof record);
    uint32_t version = 0x73;

    const DeviceIdentity identity = UsbFinderC_GetDeviceInfo(path, 0);
    EXPECT_EQ(identity.Cid + identity.Mid + identity.DeviceKind, 0);
    UsbFinderC_GetUsbDeviceAttribute(path, reinterpret_cast<UsbAttribute *>(record));
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(path), 0);
    EXPECT_EQ(UsbFinderC_GetDeviceOnLineWithUsbAddress(path, reinterpret_cast<OnlineAddress *>(record)), 0);
    EXPECT_EQ(UsbFinderC_GetVersion(path), 0U);
    EXPECT_EQ(UsbFinderC_GetSlaveVersion(path, &version), 0);
    UsbFinderC_Get4KDongleRGBValue(path, reinterpret_cast<DongleRGB *>(record));
    UsbFinderC_Set4KDongleRGB(path, reinterpret_cast<DongleRGB *>(record));
    UsbFinderC_GetDongleRGBBarMode(path, reinterpret_cast<DongleRgbBar *>(record));
    EXPECT_EQ(UsbFinderC_SetDongleRGBBarMode(path, reinterpret_cast<DongleRgbBar *>(record)), 0);
    UsbFinderC_GetDongleIndicatorLed(path, reinterpret_cast<DongleIndicator *>(record));
    EXPECT_EQ(UsbFinderC_SetDongleIndicatorLed(path, reinterpret_cast<DongleIndicator *>(record)), 0);
    UsbFinderC_GetLongRangeMode(path, record);
    UsbFinderC_SetLongRangeMode(path, 1);
    UsbFinderC_SetDongleIDToMouse(path, record);
    EXPECT_EQ(UsbFinderC_OpenDevice(path), 0);
    UsbFinderC_ReadWriteDeviceData(preset, record, 16);
    UsbServerC_Start(path, path, [](const uint8_t *, int32_t, const uint8_t *, uint32_t) { ADD_FAILURE(); });
    UsbServer_ReadAllFlashData();
    UsbServer_ReadVersion();
    UsbServer_Exit();
    EXPECT_EQ(version, 0x73U);
    EXPECT_EQ(std::memcmp(record, preset, sizeof record), 0);
}

} // namespace support
