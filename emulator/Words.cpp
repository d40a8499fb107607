// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Words.h"

#include <cstdio>

namespace emulator
{

std::optional<Words> splitWords(const std::string &line)
{
    Words words;
    bool inWord = false;
    bool quoted = false;
    for (const char c : line) {
        const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!quoted && c == '#')
            break;
        if (!quoted && blank) {
            inWord = false;
            continue;
        }
        if (!inWord)
            words.emplace_back();
        inWord = true;
        if (c == '"')
            quoted = !quoted;
        else
            words.back() += c;
    }
    if (quoted)
        return std::nullopt;
    return words;
}

static int digitOf(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : 16;
}

static std::optional<uint32_t> parseDigits(const std::string &text, int base)
{
    if (text.empty() || text.size() > 10)
        return std::nullopt;
    uint64_t value = 0;
    for (const char c : text) {
        if (digitOf(c) >= base)
            return std::nullopt;
        value = value * static_cast<uint64_t>(base) + static_cast<uint64_t>(digitOf(c));
    }
    if (value > UINT32_MAX)
        return std::nullopt;
    return static_cast<uint32_t>(value);
}

std::optional<uint32_t> parseNumber(const std::string &text, uint32_t least, uint32_t most)
{
    const bool hexadecimal = text.compare(0, 2, "0x") == 0;
    const auto value = hexadecimal ? parseDigits(text.substr(2), 16) : parseDigits(text, 10);
    return value && *value >= least && *value <= most ? value : std::nullopt;
}

std::optional<uint32_t> parseHex(const std::string &text, std::size_t digits)
{
    return text.size() == digits ? parseDigits(text, 16) : std::nullopt;
}

std::optional<uint16_t> parseVersion(const std::string &text)
{
    const std::size_t point = text.find('.');
    if (point == std::string::npos)
        return std::nullopt;
    const auto major = parseDigits(text.substr(0, point), 10);
    const auto minor = parseHex(text.substr(point + 1), 2);
    if (!major || *major > 0xFF || !minor)
        return std::nullopt;
    return static_cast<uint16_t>(*major << 8 | *minor);
}

std::string formatVersion(uint16_t version)
{
    char text[16];
    std::snprintf(text, sizeof text, "%d.%02X", version >> 8, version & 0xFF);
    return text;
}

std::optional<Address> parseAddress(const std::string &text)
{
    const auto value = parseHex(text, 6);
    if (!value)
        return std::nullopt;
    return Address{static_cast<uint8_t>(*value >> 16), static_cast<uint8_t>(*value >> 8 & 0xFF),
                   static_cast<uint8_t>(*value & 0xFF)};
}

std::string formatAddress(const Address &address)
{
    char text[8];
    std::snprintf(text, sizeof text, "%02x%02x%02x", address[0], address[1], address[2]);
    return text;
}

std::optional<bool> parseSwitch(const std::string &text)
{
    if (text == "on" || text == "off")
        return text == "on";
    return std::nullopt;
}

bool isDeviceId(const std::string &text)
{
    const char *allowed = "abcdefghijklmnopqrstuvwxyz0123456789_";
    return !text.empty() && text.size() <= 32 && text.find_first_not_of(allowed) == std::string::npos;
}

} // namespace emulator
