// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The keys of the catalogue whose values are stored as Base64, whichever section they stand in. MID is
// plain although CID is encoded; that is part of the format.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

constexpr std::array<std::string_view, 13> EncodedKeys = {
    "MM",  "DM",      "D2M",          "D4M",           "D8M",           "Sensor",        "CID",
    "VID", "USB_PID", "Wireless_PID", "Wireless2_PID", "Wireless4_PID", "Wireless8_PID",
};

inline bool isEncodedKey(std::string_view key)
{
    return std::find(EncodedKeys.begin(), EncodedKeys.end(), key) != EncodedKeys.end();
}
