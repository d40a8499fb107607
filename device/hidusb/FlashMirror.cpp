// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/FlashMirror.h"

#include "device/hidusb/Codec.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

namespace
{

// Of what the slot's binding plays, if it plays a block.
std::optional<FlashSpan> blockOf(const FlashImage &image, std::size_t slot)
{
    const auto span = [slot](std::size_t first, std::size_t size) {
        return FlashSpan{first + slot * size, first + (slot + 1) * size};
    };
    switch (image.KeyBindings[slot].Class) {
    case KeySequenceClass:
        return span(offsetof(FlashImage, KeySequences), sizeof(FlashSequence));
    case MacroBlockClass:
        return span(offsetof(FlashImage, MacroBlocks), sizeof(FlashMacro));
    default:
        return std::nullopt;
    }
}

} // namespace

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

bool FlashMirror::differs(const FlashImage &target, std::size_t address) const
{
    return bytesOf(target)[address] != bytesOf(*known_)[address] || uncertain_[address];
}

// From the first byte of the span that is to be written to the last one.
FlashSpan FlashMirror::changesIn(const FlashSpan &span) const
{
    FlashSpan changes{span.end, span.end};
    for (std::size_t at = span.begin; at < span.end; ++at) {
        if (!differs(wanted_, at))
            continue;
        changes.begin = std::min(changes.begin, at);
        changes.end = at + 1;
    }
    return changes;
}

// What the binding is to be until its block is written: as it is known, or no action.
void FlashMirror::orderBinding(FlashImage *target, std::size_t slot) const
{
    const std::optional<FlashSpan> block = blockOf(wanted_, slot);
    if (!block || changesIn(*block).size() == 0)
        return;
    const std::optional<FlashSpan> played = blockOf(*known_, slot);
    const bool torn = played && changesIn(*played).size() > wire::PayloadSize;
    target->KeyBindings[slot] = torn ? KeyBinding{} : known_->KeyBindings[slot];
}

std::optional<FlashWrite> FlashMirror::next() const
{
    if (!known_ || (uncertain_.none() && std::memcmp(&wanted_, &*known_, FlashSize) == 0))
        return std::nullopt;
    FlashImage target = wanted_;
    for (std::size_t slot = 0; slot < KeySlotCount; ++slot)
        orderBinding(&target, slot);
    std::size_t first = 0;
    while (first < FlashSize && !differs(target, first))
        ++first;
    if (first == FlashSize)
        return std::nullopt;
    // Equal bytes between two changed ones are sent too, which saves a report, but none that the mouse itself
    // may have changed since they were read: the write would revert it. Such bytes lie behind each block and
    // before the bindings, so no report reaches into the next one.
    const Owner *owners = flashOwners();
    std::size_t end = first + 1;
    const std::size_t limit = std::min(first + wire::PayloadSize, FlashSize);
    for (std::size_t at = first + 1; at < limit; ++at) {
        if (differs(target, at))
            end = at + 1;
        else if (owners[at] != Owner::Record)
            break;
    }
    FlashWrite write{};
    write.address = static_cast<uint16_t>(first);
    write.size = static_cast<uint8_t>(end - first);
    std::copy(bytesOf(target) + first, bytesOf(target) + end, write.bytes.begin());
    return write;
}

} // namespace hidusb
