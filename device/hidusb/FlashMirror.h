// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FlashMirror: what a mouse is known to hold beside what the program wants it to hold, and the next report
// that brings the one to the other. Before the first load nothing is known, and then nothing is wanted
// either: a record from before the load describes another device or another profile. The program's record
// lags behind what was read, since it is told of a read only later; so what counts as its change is what
// differs from what it last gave or was told, not from what is known; and until it is told of the load it has
// changed nothing. Not thread-safe.
#pragma once

#include "device/hidusb/wire/FlashLayout.h"
#include "device/hidusb/wire/Report.h"

#include <bitset>
#include <optional>

namespace hidusb
{

struct FlashRange {
    uint16_t address;
    uint8_t size; // 1..wire::PayloadSize
};

class FlashMirror
{
public:
    // The program's record as it stands; of `image` only the bytes that a record describes count, and of
    // these the changed ones. False: nothing is known yet, the state is not kept.
    bool want(const FlashImage &image);
    // What the program is now to be told of a range that was read: the newest that is known of it, and the
    // program's own changes since. Without a load the bytes stay as they are.
    void tell(uint16_t address, uint8_t *bytes, std::size_t size);
    // The device was read: at `address` it holds these bytes. What nobody has changed meanwhile is wanted as
    // it was read. The range lies within the flash; a part is ignored before the whole is known.
    void learn(uint16_t address, const uint8_t *bytes, std::size_t size);
    // The device acknowledged these bytes.
    void acknowledge(const FlashRange &range, const uint8_t *bytes);
    // A write stayed without a good answer: the device may hold the old bytes or the new ones.
    void doubt(const FlashRange &range);
    // Gives up what is wanted and not yet written.
    void settle();
    // Nothing is known any more.
    void forget();

    bool isLoaded() const { return known_.has_value(); }
    // The first bytes to write, neighbours joined; empty when the device holds what is wanted.
    std::optional<FlashRange> next() const;
    const uint8_t *wanted(uint16_t address) const { return bytesOf(wanted_) + address; }

private:
    static const uint8_t *bytesOf(const FlashImage &image)
    {
        return reinterpret_cast<const uint8_t *>(&image);
    }
    static uint8_t *bytesOf(FlashImage &image) { return reinterpret_cast<uint8_t *>(&image); }
    bool differs(std::size_t address) const;

    std::optional<FlashImage> known_;
    FlashImage wanted_{};
    FlashImage given_{}; // the program's record, as it last gave it or was told
    bool told_ = false;  // of the load
    std::bitset<FlashSize> doubtful_;
};

} // namespace hidusb
