// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Splits orders and scenario lines into words and parses words. A parser returns none for a text that does
// not match its form completely or is out of range.
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

// Blanks separate words; quotes ("...") enclose a word with blanks; # outside quotes starts a comment. None
// for an unclosed quote.
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
// 1..32 of [a-z0-9_]: valid as the serial in a bus name.
bool isDeviceId(const std::string &text);

} // namespace emulator
