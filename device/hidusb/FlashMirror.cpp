// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/FlashMirror.h"

#include "device/hidusb/Codec.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

bool FlashMirror::want(const FlashImage &image)
{
    if (!known_)
        return false;
    if (!told_)
        return true; // of what was before the load, which is on its way to the program
    const Owner *owners = flashOwners();
    for (std::size_t at = 0; at < FlashSize; ++at) {
        if (owners[at] == Owner::Mouse || bytesOf(image)[at] == bytesOf(given_)[at])
            continue;
        bytesOf(wanted_)[at] = bytesOf(image)[at];
        bytesOf(given_)[at] = bytesOf(image)[at];
    }
    return true;
}

void FlashMirror::tell(uint16_t address, uint8_t *bytes, std::size_t size)
{
    if (!known_)
        return;
    std::memcpy(bytes, bytesOf(wanted_) + address, size);
    std::memcpy(bytesOf(given_) + address, bytes, size);
    told_ = told_ || size == FlashSize;
}

void FlashMirror::learn(uint16_t address, const uint8_t *bytes, std::size_t size)
{
    if (!known_ && size < FlashSize)
        return;
    if (!known_) {
        known_.emplace();
        wanted_ = *known_;
        doubtful_.reset();
        told_ = false;
    }
    uint8_t *known = bytesOf(*known_) + address;
    uint8_t *wanted = bytesOf(wanted_) + address;
    for (std::size_t i = 0; i < size; ++i) {
        if (wanted[i] == known[i] && !doubtful_[address + i])
            wanted[i] = bytes[i];
        known[i] = bytes[i];
        doubtful_.reset(address + i);
    }
}

void FlashMirror::acknowledge(const FlashRange &range, const uint8_t *bytes)
{
    if (!known_)
        return;
    std::memcpy(bytesOf(*known_) + range.address, bytes, range.size);
    for (std::size_t i = 0; i < range.size; ++i)
        doubtful_.reset(range.address + i);
}

void FlashMirror::doubt(const FlashRange &range)
{
    for (std::size_t i = 0; i < range.size; ++i)
        doubtful_.set(range.address + i);
}

void FlashMirror::settle()
{
    if (known_)
        wanted_ = *known_;
    doubtful_.reset();
}

void FlashMirror::forget()
{
    known_.reset();
    doubtful_.reset();
}

bool FlashMirror::differs(std::size_t address) const
{
    return bytesOf(wanted_)[address] != bytesOf(*known_)[address] || doubtful_[address];
}

std::optional<FlashRange> FlashMirror::next() const
{
    if (!known_)
        return std::nullopt;
    const std::size_t tail = FlashSize;
    std::size_t first = 0;
    if (doubtful_.none()) {
        const auto pair = std::mismatch(bytesOf(wanted_), bytesOf(wanted_) + tail, bytesOf(*known_));
        first = static_cast<std::size_t>(pair.first - bytesOf(wanted_));
    } else {
        while (first < tail && !differs(first))
            ++first;
    }
    if (first == tail)
        return std::nullopt;
    // Equal bytes in between are sent along, except those that a button on the mouse may have changed
    // since they were read.
    const Owner *owners = flashOwners();
    std::size_t last = first;
    const std::size_t limit = std::min(first + wire::PayloadSize, tail);
    for (std::size_t at = first + 1; at < limit; ++at) {
        if (differs(at))
            last = at;
        else if (owners[at] != Owner::Record)
            break;
    }
    return FlashRange{static_cast<uint16_t>(first), static_cast<uint8_t>(last - first + 1)};
}

} // namespace hidusb
