// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The small records that the exported functions take and fill. Their layout is part of the interface: all
// fields are bytes or little-endian integers without padding.
#pragma once

#include "device/hidusb/FlashDataMap.h"

struct DeviceIdentity {
    uint8_t Cid;        // customer id; with Mid 0 the device is not ready yet
    uint8_t Mid;        // model id
    uint8_t DeviceKind; // 0, 4, 1, 5: receiver of 1, 2, 4, 8 kHz; others: wired mouse
};

struct UsbAttribute {
    LittleU32 Size; // 12
    LittleU16 VendorId;
    LittleU16 ProductId;
    LittleU16 Version; // high byte major, low byte minor
    uint8_t Unused[2];
};

struct OnlineAddress {
    uint8_t Unused[6];
    uint8_t Online;     // 1: the paired mouse answers
    uint8_t Address[3]; // of the paired mouse
};

struct BatteryStatus {
    uint8_t Level;    // percent
    uint8_t Charging; // non-zero while charging
    uint8_t Unused[2];
};

// A byte above 0: this item has changed on the device.
struct DeviceStatusChange {
    uint8_t CurrentDpi;
    uint8_t ReportRate;
    uint8_t Everything;
    uint8_t DpiLed;
    uint8_t Unused;
    uint8_t LedBar;
    uint8_t Battery;
};

struct DongleRGB {
    uint8_t Scheme;     // 1, 2 or 3; 0: nothing read
    uint8_t Carried[9]; // the receiver's own
};

struct DongleRgbBar {
    uint8_t Mode; // 0 is off
    uint8_t Red, Green, Blue;
    uint8_t Speed;      // zero-based
    uint8_t Brightness; // zero-based
    uint8_t Enabled;    // 1 when Mode is not 0
};

struct DongleIndicator {
    uint8_t Choice[3]; // one list index for each indicator
};

// Sent to a mouse on its cable: the receiver to which it is paired from now on.
struct DonglePairing {
    uint8_t Address[3]; // the bytes of OnlineAddress in reverse order
    uint8_t Zero;
    uint8_t ReceiverClass; // 0: 1 kHz, 1: 2 and 4 kHz, 4: 8 kHz
};

static_assert(sizeof(DeviceIdentity) == 3 && sizeof(UsbAttribute) == 12 &&
              offsetof(UsbAttribute, Version) == 8);
static_assert(sizeof(OnlineAddress) == 10 && offsetof(OnlineAddress, Online) == 6);
static_assert(sizeof(BatteryStatus) == 4 && sizeof(DeviceStatusChange) == 7);
static_assert(sizeof(DongleRGB) == 10 && sizeof(DongleRgbBar) == 7 && sizeof(DongleIndicator) == 3);
static_assert(sizeof(DonglePairing) == 5);
