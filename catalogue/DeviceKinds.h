// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What follows from the kind that a device reports: its link, its fastest report rate, and the catalogue keys
// and the tile's badge that go with them.
#pragma once

#include <array>
#include <cstdint>

// A code that is not listed is a cable.
enum DeviceKindCode : uint16_t {
    Receiver1K = 0,
    Receiver4K = 1,
    Cable1K = 2,
    Cable8K = 3,
    Receiver2K = 4,
    Receiver8K = 5,
};

struct DeviceKindRow {
    int code;
    bool wired;
    int kHz;                  // the fastest report rate; 0 when the code does not tell
    const char *productIdKey; // in the catalogue's section "Option"
    const char *firmwareKey;  // in the model's section
    const char *badge;        // picture of the tile, null for none
};

constexpr DeviceKindRow OtherCable = {-1, true, 0, "USB_PID", "MM", nullptr};

// The receivers come first and ascend by rate: the search and the tally of duplicates go by this order.
constexpr std::size_t ReceiverKinds = 4;
constexpr std::array<DeviceKindRow, ReceiverKinds + 2> DeviceKinds = {{
    {Receiver1K, false, 1, "Wireless_PID", "DM", "1KHz.png"},
    {Receiver2K, false, 2, "Wireless2_PID", "D2M", "2KHz.png"},
    {Receiver4K, false, 4, "Wireless4_PID", "D4M", "4KHz.png"},
    {Receiver8K, false, 8, "Wireless8_PID", "D8M", "8KHz.png"},
    {Cable1K, true, 1, OtherCable.productIdKey, OtherCable.firmwareKey, nullptr},
    {Cable8K, true, 8, OtherCable.productIdKey, OtherCable.firmwareKey, "8KHz.png"},
}};

constexpr const DeviceKindRow &deviceKind(int code)
{
    for (const DeviceKindRow &row : DeviceKinds)
        if (row.code == code)
            return row;
    return OtherCable;
}

constexpr bool isWiredKind(int code) { return deviceKind(code).wired; }

// The class of a receiver, its fastest report rate in kHz: 1, 2, 4 or 8; 0 for a cable.
constexpr int connectionKind(int code) { return isWiredKind(code) ? 0 : deviceKind(code).kHz; }
