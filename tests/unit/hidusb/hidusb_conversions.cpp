// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The conversions that the library exports.
#include "device/hidusb/HIDUsb.h"
#include "device/hidusb/wire/FlashLayout.h"

#include <cstring>
#include <gtest/gtest.h>

TEST(Conversions, ParserFillsTheRecord)
{
    FlashImage image{};
    image.CurrentDpiStage = 3;
    image.MacroBlocks[2].EventCount = 255;
    FlashDataMap record{};
    ProtocolDataParser(reinterpret_cast<const uint8_t *>(&image), &record);
    EXPECT_EQ(record.CurrentDpiStage, 3);
    EXPECT_EQ(record.MacroBlocks[2].EventCount, 70);
}

TEST(Conversions, LightsFillTheirBytesAlone)
{
    const uint8_t payload[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    FlashDataMap record{};
    BufferToDPILed(payload, &record.DpiLedMode);
    const uint8_t led[] = {1, 2, 3, 4, 0};
    EXPECT_EQ(std::memcmp(&record.DpiLedMode, led, sizeof led), 0);
    record = {};
    BufferToLedBar(payload, &record.LedBarMode);
    const uint8_t bar[] = {1, 2, 3, 4, 5, 6, 7, 0};
    EXPECT_EQ(std::memcmp(&record.LedBarMode, bar, sizeof bar), 0);
}

TEST(Conversions, StatusRecordsAreTheirBytes)
{
    const uint8_t payload[] = {81, 1, 3, 4, 5, 6, 7, 8};
    BatteryStatus battery{};
    GetDeviceBatteryStatus(payload, &battery);
    EXPECT_EQ(battery.Level, 81);
    EXPECT_EQ(battery.Charging, 1);
    DeviceStatusChange change{};
    GetDeviceStatusChanged(payload, &change);
    EXPECT_EQ(change.CurrentDpi, 81);
    EXPECT_EQ(change.Battery, 7);
}

TEST(Conversions, NullIsIgnored)
{
    FlashDataMap record{};
    ProtocolDataParser(nullptr, &record);
    ProtocolDataParser(reinterpret_cast<const uint8_t *>(&record), nullptr);
    BufferToDPILed(nullptr, &record.DpiLedMode);
    BufferToLedBar(nullptr, &record.LedBarMode);
    GetDeviceBatteryStatus(nullptr, nullptr);
    GetDeviceStatusChanged(nullptr, nullptr);
    const FlashDataMap untouched{};
    EXPECT_EQ(std::memcmp(&record, &untouched, sizeof record), 0);
}
