// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The 64-byte report of the vendor interface, both directions. docs/protocol.md has a table for
// every packet. The host numbers its requests 1..255; the device answers each with one report of the
// same command and sequence number. A report that the device sends unasked is a notice, with sequence number
// 0.
#pragma once

#include "device/hidusb/DeviceRecords.h"

namespace wire
{

constexpr uint8_t ReportId = 0x05;
constexpr std::size_t ReportSize = 64;
constexpr std::size_t PayloadSize = 56;
constexpr std::size_t HeadSize = 7; // the part in front of the payload

enum class Command : uint8_t {
    Identity = 0x01,           // reply: DeviceIdentity
    DriverStatus = 0x02,       // request: 0 or 1
    OnLine = 0x03,             // reply: OnLineReply
    Battery = 0x04,            // reply: BatteryStatus
    PairEnter = 0x05,          // request: customer id
    PairStatus = 0x06,         // reply or notice: PairState
    FlashWrite = 0x07,         // request: address, bytes
    FlashRead = 0x08,          // request: address, one byte count 1..56; reply: address, bytes
    ClearSettings = 0x09,      // acknowledged at once; a notice of the same command when it is done
    StatusChanged = 0x0A,      // notice: DeviceStatusChange
    PairedAddress = 0x0B,      // request: DonglePairing
    BatteryOptimize = 0x0C,    // request: 0 or 1
    ConfigSelect = 0x0D,       // request: 0..3
    Config = 0x0E,             // reply: 0..3
    Version = 0x12,            // reply: VersionReply, the mouse's
    SlaveVersion = 0x13,       // reply: VersionReply, the receiver's
    DongleColor = 0x14,        // reply: DongleRGB
    DongleColorChanged = 0x15, // notice: DongleRGB
    DongleColorWrite = 0x16,   // request: DongleRGB
    LongRangeChanged = 0x17,   // notice: LongRangeNoticeSize bytes, byte 0 the state
    LongRange = 0x18,          // reply: 0 or 1
    LongRangeWrite = 0x19,     // request: 0 or 1
    DongleBar = 0x1A,          // reply: DongleRgbBar
    DongleBarWrite = 0x1B,     // request: DongleRgbBar
    Indicator = 0x1C,          // reply: DongleIndicator
    IndicatorWrite = 0x1D,     // request: DongleIndicator
    BootEnter = 0x20,          // request: target; acknowledged, then the device comes back as a boot loader
    BootIdentity = 0x21,       // reply: BootIdentityReply
    BootBegin = 0x22,          // request: BootBeginRequest
    BootData = 0x23,           // request: block number in the address, up to 56 bytes
    BootEnd = 0x24,            // checks the image; acknowledged, then the device comes back as itself
    BootLeave = 0x25,          // starts the image that is there; refused once it has been erased
    OnLineChanged = 0x30,      // notice: OnLineReply; the mouse came within reach or left it
};

enum class Status : uint8_t {
    Ok = 0,
    OffLine = 1, // the receiver cannot reach its mouse
    Refused = 2, // bad argument, not supported, or a check that failed
    Busy = 3,    // ask again
};

enum class PairState : uint8_t { Working = 1, Failed = 2, Succeeded = 3 };

constexpr std::size_t LongRangeNoticeSize = 10;
constexpr uint8_t TargetMouse = 210;
constexpr uint8_t TargetReceiver = 211;

// The class of a receiver by its DeviceKind; 0 for any other device.
constexpr uint8_t receiverKHz(uint8_t deviceKind)
{
    return deviceKind == 0 ? 1 : deviceKind == 4 ? 2 : deviceKind == 1 ? 4 : deviceKind == 5 ? 8 : 0;
}

// A mouse on its cable, by its DeviceKind.
constexpr bool isCable(uint8_t deviceKind) { return deviceKind == 2 || deviceKind == 3; }

struct Report {
    uint8_t Id;          // ReportId
    uint8_t CommandCode; // Command
    uint8_t Sequence;    // 1..255 in a request and its reply, 0 in a notice
    uint8_t AddressHigh;
    uint8_t AddressLow;
    uint8_t Length;               // bytes of Payload in use, 0..56
    uint8_t StatusCode;           // Status; 0 in a request
    uint8_t Payload[PayloadSize]; // unused bytes are 0
    uint8_t Checksum;             // CRC-8 of the 63 bytes in front of it

    Command command() const { return static_cast<Command>(CommandCode); }
    Status status() const { return static_cast<Status>(StatusCode); }
    uint16_t address() const { return static_cast<uint16_t>((AddressHigh << 8) | AddressLow); }
    void setAddress(uint16_t address)
    {
        AddressHigh = static_cast<uint8_t>(address >> 8);
        AddressLow = static_cast<uint8_t>(address & 0xFF);
    }
};

struct OnLineReply {
    uint8_t Online;
    uint8_t Address[3];
};

struct VersionReply {
    uint8_t Minor;
    uint8_t Major;
};

struct BootIdentityReply {
    uint8_t Target; // TargetMouse or TargetReceiver
    uint8_t Cid;
    uint8_t Mid;
    uint8_t ReceiverKHz; // the receiver's class: 1, 2, 4 or 8; 0 for a mouse
};

struct BootBeginRequest {
    LittleU32 Length; // bytes of the whole image
    LittleU32 Crc32;  // of the whole image
};

// CRC-8, polynomial 0x07, start value 0: detects every flipped bit and every burst of up to 8 bits.
inline uint8_t checksum(const uint8_t *bytes, std::size_t count)
{
    uint8_t crc = 0;
    for (std::size_t i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<uint8_t>((crc & 0x80) ? (crc << 1) ^ 0x07 : crc << 1);
    }
    return crc;
}

inline void seal(Report &report)
{
    report.Checksum = checksum(reinterpret_cast<const uint8_t *>(&report), ReportSize - 1);
}

// True for a report that may be evaluated: full size, own id, length in range, checksum right.
inline bool isSound(const uint8_t *bytes, std::size_t size)
{
    return size == ReportSize && bytes[0] == ReportId && bytes[5] <= PayloadSize &&
           bytes[ReportSize - 1] == checksum(bytes, ReportSize - 1);
}

static_assert(sizeof(Report) == ReportSize && alignof(Report) == 1);
static_assert(offsetof(Report, Payload) == HeadSize && offsetof(Report, CommandCode) == 1);
static_assert(offsetof(Report, AddressHigh) == 3 && offsetof(Report, Length) == 5);
static_assert(std::is_trivially_copyable_v<Report>);
static_assert(sizeof(OnLineReply) == 4 && sizeof(VersionReply) == 2);
static_assert(sizeof(BootIdentityReply) == 4 && sizeof(BootBeginRequest) == 8);

} // namespace wire
