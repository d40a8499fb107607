// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The words of an order or of a scenario line, and the few forms that a word can have. Every parser
// gives nothing for a text that is not wholly of its form or out of range.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace emulator
{

using Words = std::vector<std::string>;
using Address = std::array<uint8_t, 3>;

// Words are parted by blanks; "..." holds a word together; # outside quotes starts a comment. Nothing
// for a quote that does not end.
std::optional<Words> splitWords(const std::string &line);

// Decimal, or hexadecimal with 0x in front; least..most.
std::optional<uint32_t> parseNumber(const std::string &text, uint32_t least, uint32_t most);
// Hexadecimal digits without a prefix, exactly `digits` of them.
std::optional<uint32_t> parseHex(const std::string &text, std::size_t digits);
// "1.0A": major decimal 0..255, minor two hexadecimal digits; major in the high byte.
std::optional<uint16_t> parseVersion(const std::string &text);
std::string formatVersion(uint16_t version);
// Six hexadecimal digits.
std::optional<Address> parseAddress(const std::string &text);
std::string formatAddress(const Address &address);
// "on" or "off".
std::optional<bool> parseSwitch(const std::string &text);
// 1..32 of [a-z0-9_]: what can stand as the serial in a bus name.
bool isDeviceId(const std::string &text);

} // namespace emulator
