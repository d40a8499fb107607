// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/ReportDescriptor.h"

#include <algorithm>
#include <cstddef>

namespace hidusb
{

namespace
{

// The first byte of a short item without the two bits of its size.
enum Tag : uint8_t { UsagePage = 0x04, Collection = 0xA0, EndCollection = 0xC0 };

// A long item: the next byte is its size, the one behind it a tag. No defined long item exists.
constexpr uint8_t LongItem = 0xFE;

} // namespace

// Number of bytes behind the first one of the item at `at`.
static std::size_t sizeOfData(const std::vector<uint8_t> &descriptor, std::size_t at)
{
    const uint8_t item = descriptor[at];
    if (item == LongItem)
        return at + 1 < descriptor.size() ? std::size_t(2) + descriptor[at + 1] : 2;
    return (item & 3) == 3 ? 4 : item & 3;
}

std::vector<uint16_t> usagePages(const std::vector<uint8_t> &descriptor)
{
    std::vector<uint16_t> pages;
    uint16_t page = 0;
    int depth = 0;
    for (std::size_t at = 0, size = 0; at < descriptor.size(); at += 1 + size) {
        size = sizeOfData(descriptor, at);
        if (size > descriptor.size() - at - 1)
            break;
        const uint8_t tag = descriptor[at] & 0xFC;
        if (tag == UsagePage && size > 0)
            page = static_cast<uint16_t>(descriptor[at + 1] | (size > 1 ? descriptor[at + 2] << 8 : 0));
        else if (tag == EndCollection)
            depth = std::max(depth - 1, 0);
        else if (tag == Collection && depth++ == 0 &&
                 std::find(pages.begin(), pages.end(), page) == pages.end())
            pages.push_back(page);
    }
    return pages;
}

} // namespace hidusb
