// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FlashMirror: two copies of a mouse's flash, the known and the wanted content, and the next range to write
// so that they become equal. Before the first full read nothing is known and nothing is accepted as wanted:
// the program's record then describes another device or another profile. The program learns of a read later
// than the mirror does. Its changes are therefore found by comparing its record with the one that it last
// passed or received, never with the known content; and until it has received the full read it has changed
// nothing. Not thread-safe.
//
// A binding that plays a combination or a macro is written after the block of its button, so that the mouse
// never plays a block that it does not hold yet; any other binding is written before, so that the mouse no
// longer plays a block that is being replaced. A block that is played before and after is replaced by one
// report, or else the button has no action meanwhile. No report ends within a binding.
#pragma once

#include "device/hidusb/wire/FlashLayout.h"
#include "device/hidusb/wire/Report.h"

#include <array>
#include <bitset>
#include <optional>

namespace hidusb
{

struct FlashRange {
    uint16_t address;
    uint8_t size; // 1..wire::PayloadSize
};

struct FlashSpan { // of any size
    std::size_t begin;
    std::size_t end;
    std::size_t size() const { return end - begin; }
};

struct FlashWrite : FlashRange {
    std::array<uint8_t, wire::PayloadSize> bytes; // `size` of them
};

class FlashMirror
{
public:
    // Takes over the bytes that the program has changed since its last record; bytes of `image` that no
    // record describes are ignored. False, and nothing is taken over, before the first full read.
    bool setWanted(const FlashImage &image);
    // Called before a range that was read goes to the program: replaces `bytes` by the newest known content
    // with the program's own later changes. Before the first full read it leaves them as they are.
    void publish(uint16_t address, uint8_t *bytes, std::size_t size);
    // The device was read: at `address` it holds these bytes. A byte without a pending change is wanted as it
    // was read. The range lies within the flash; a partial read is ignored before the first full read.
    void learn(uint16_t address, const uint8_t *bytes, std::size_t size);
    // The device acknowledged these bytes.
    void acknowledge(const FlashRange &range, const uint8_t *bytes);
    // A write was not acknowledged: the device may hold the old bytes or the new ones, so the range is
    // written again even if the old bytes are wanted by then.
    void markUncertain(const FlashRange &range);
    // Drops the changes that are not written yet.
    void discardPending();
    // Back to the state before the first full read.
    void forget();

    bool isLoaded() const { return known_.has_value(); }
    // The next report to write; empty when the device holds the wanted content.
    std::optional<FlashWrite> next() const;

private:
    static const uint8_t *bytesOf(const FlashImage &image)
    {
        return reinterpret_cast<const uint8_t *>(&image);
    }
    static uint8_t *bytesOf(FlashImage &image) { return reinterpret_cast<uint8_t *>(&image); }
    bool differs(const FlashImage &target, std::size_t address) const;
    FlashSpan changesIn(const FlashSpan &span) const;
    void orderBinding(FlashImage *target, std::size_t slot) const;

    std::optional<FlashImage> known_;
    FlashImage wanted_{};
    FlashImage programRecord_{}; // as the program last passed or received it
    bool published_ = false;     // the program has received the full read
    std::bitset<FlashSize> uncertain_;
};

} // namespace hidusb
