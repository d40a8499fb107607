// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The emulator's bus is a folder with one SEQPACKET socket for each HID interface; one datagram is one
// report. The socket's name holds everything that enumeration needs:
//
//     1209-0005-0103-1-ff05-rx8k
//     vid  pid  rel  i usage serial
//
// vid, pid, release number and usage page are four lower-case hexadecimal digits, the interface number is
// one decimal digit, the serial is 1..32 of [a-z0-9_]. Other names in the folder are not interfaces.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace wire
{

constexpr uint16_t SettingsUsagePage = 0xFF05; // the vendor interface of this protocol
constexpr uint16_t ScreenUsagePage = 0xFF08;   // raw reports for a mouse with a screen
constexpr uint16_t BootUsagePage = 0xFFB0;     // the boot loader's interface
constexpr uint16_t MouseUsagePage = 0x0001;    // interface 0: a plain mouse
constexpr int SettingsInterface = 1;

struct BusName {
    uint16_t vendorId;
    uint16_t productId;
    uint16_t release; // high byte major, low byte minor
    int interfaceNumber;
    uint16_t usagePage;
    std::string serial;
};

inline std::string formatBusName(const BusName &name)
{
    char text[32];
    std::snprintf(text, sizeof text, "%04x-%04x-%04x-%d-%04x-", name.vendorId, name.productId, name.release,
                  name.interfaceNumber % 10, name.usagePage);
    return text + name.serial;
}

inline std::optional<BusName> parseBusName(const std::string &text)
{
    static const char pattern[] = "xxxx-xxxx-xxxx-d-xxxx-";
    constexpr std::size_t prefix = sizeof pattern - 1;
    if (text.size() <= prefix || text.size() > prefix + 32)
        return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool digit = c >= '0' && c <= '9';
        const char wanted = i < prefix ? pattern[i] : 's';
        const bool fits = wanted == 'x'   ? digit || (c >= 'a' && c <= 'f')
                          : wanted == 'd' ? digit
                          : wanted == 's' ? digit || (c >= 'a' && c <= 'z') || c == '_'
                                          : c == wanted;
        if (!fits)
            return std::nullopt;
    }
    const auto hex = [&text](std::size_t at) {
        return static_cast<uint16_t>(std::stoul(text.substr(at, 4), nullptr, 16));
    };
    return BusName{hex(0), hex(5), hex(10), text[15] - '0', hex(17), text.substr(prefix)};
}

} // namespace wire
