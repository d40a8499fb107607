// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/FlashMirror.h"

#include "device/hidusb/Codec.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

bool FlashMirror::setWanted(const FlashImage &image)
{
    if (!known_)
        return false;
    if (!published_)
        return true; // this record is older than the full read that is on its way to the program
    const Owner *owners = flashOwners();
    for (std::size_t at = 0; at < FlashSize; ++at) {
        if (owners[at] == Owner::Mouse || bytesOf(image)[at] == bytesOf(programRecord_)[at])
            continue;
        bytesOf(wanted_)[at] = bytesOf(image)[at];
        bytesOf(programRecord_)[at] = bytesOf(image)[at];
    }
    return true;
}

void FlashMirror::publish(uint16_t address, uint8_t *bytes, std::size_t size)
{
    if (!known_)
        return;
    std::memcpy(bytes, bytesOf(wanted_) + address, size);
    std::memcpy(bytesOf(programRecord_) + address, bytes, size);
    published_ = published_ || size == FlashSize;
}

void FlashMirror::learn(uint16_t address, const uint8_t *bytes, std::size_t size)
{
    if (!known_ && size < FlashSize)
        return;
    if (!known_) {
        known_.emplace();
        wanted_ = *known_;
        uncertain_.reset();
        published_ = false;
    }
    uint8_t *known = bytesOf(*known_) + address;
    uint8_t *wanted = bytesOf(wanted_) + address;
    for (std::size_t i = 0; i < size; ++i) {
        if (wanted[i] == known[i] && !uncertain_[address + i])
            wanted[i] = bytes[i];
        known[i] = bytes[i];
        uncertain_.reset(address + i);
    }
}

void FlashMirror::acknowledge(const FlashRange &range, const uint8_t *bytes)
{
    if (!known_)
        return;
    std::memcpy(bytesOf(*known_) + range.address, bytes, range.size);
    for (std::size_t i = 0; i < range.size; ++i)
        uncertain_.reset(range.address + i);
}

void FlashMirror::markUncertain(const FlashRange &range)
{
    for (std::size_t i = 0; i < range.size; ++i)
        uncertain_.set(range.address + i);
}

void FlashMirror::discardPending()
{
    if (known_)
        wanted_ = *known_;
    uncertain_.reset();
}

void FlashMirror::forget()
{
    known_.reset();
    uncertain_.reset();
}

bool FlashMirror::differs(std::size_t address) const
{
    return bytesOf(wanted_)[address] != bytesOf(*known_)[address] || uncertain_[address];
}

bool FlashMirror::differs(std::size_t address, std::size_t size) const
{
    bool any = false;
    for (std::size_t at = address; at < address + size; ++at)
        any = any || differs(at);
    return any;
}

// True for a byte of a binding whose block is not written yet.
bool FlashMirror::awaitsItsBlock(std::size_t address) const
{
    constexpr std::size_t first = offsetof(FlashImage, KeyBindings);
    if (address < first || address >= first + sizeof wanted_.KeyBindings)
        return false;
    const std::size_t slot = (address - first) / sizeof(KeyBinding);
    switch (wanted_.KeyBindings[slot].Class) {
    case KeySequenceClass:
        return differs(offsetof(FlashImage, KeySequences) + slot * sizeof(FlashSequence),
                       sizeof(FlashSequence));
    case MacroBlockClass:
        return differs(offsetof(FlashImage, MacroBlocks) + slot * sizeof(FlashMacro), sizeof(FlashMacro));
    default:
        return false;
    }
}

std::optional<FlashRange> FlashMirror::next() const
{
    if (!known_)
        return std::nullopt;
    const std::size_t tail = FlashSize;
    std::size_t first = 0;
    if (uncertain_.none()) {
        const auto pair = std::mismatch(bytesOf(wanted_), bytesOf(wanted_) + tail, bytesOf(*known_));
        first = static_cast<std::size_t>(pair.first - bytesOf(wanted_));
    }
    while (first < tail && (!differs(first) || awaitsItsBlock(first)))
        ++first;
    if (first == tail)
        return std::nullopt;
    // Equal bytes between two changed ones are sent too, which saves a report, but none that the mouse itself
    // may have changed since they were read: the write would revert it.
    const Owner *owners = flashOwners();
    std::size_t last = first;
    const std::size_t limit = std::min(first + wire::PayloadSize, tail);
    for (std::size_t at = first + 1; at < limit && !awaitsItsBlock(at); ++at) {
        if (differs(at))
            last = at;
        else if (owners[at] != Owner::Record)
            break;
    }
    return FlashRange{static_cast<uint16_t>(first), static_cast<uint8_t>(last - first + 1)};
}

} // namespace hidusb
