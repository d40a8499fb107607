// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Codec.h"

#include "device/hidusb/RecordLimits.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

namespace hidusb
{

// Consecutive fields that lie in the record and in the flash in the same order.
struct Span {
    std::size_t record;
    std::size_t flash;
    std::size_t size;
    Owner owner;
};

// Does not compile when the two sides differ in length.
static constexpr Span makeSpan(std::size_t record, std::size_t recordSize, std::size_t flash,
                               std::size_t flashSize, Owner owner)
{
    return recordSize == flashSize ? Span{record, flash, flashSize, owner}
                                   : throw std::logic_error("a span of two lengths");
}

#define SPAN(first, last, owner)                                                                             \
    makeSpan(offsetof(FlashDataMap, first), SPAN_SIZE(FlashDataMap, first, last),                            \
             offsetof(FlashImage, first), SPAN_SIZE(FlashImage, first, last), owner)
#define RENAMED(record, flash, owner)                                                                        \
    makeSpan(offsetof(FlashDataMap, record), sizeof(FlashDataMap::record), offsetof(FlashImage, flash),      \
             sizeof(FlashImage::flash), owner)

// In the order of the record.
static constexpr Span Spans[] = {
    SPAN(ReportRate, ReportRate, Owner::Shared),
    SPAN(DpiStageCount, DpiStageCount, Owner::Record),
    SPAN(CurrentDpiStage, CurrentDpiStage, Owner::Shared),
    SPAN(SpareByte3, KFps, Owner::Record),
    SPAN(LiftOffDistance, AngleSetValid, Owner::Record),
    RENAMED(Untouched17, MouseOwn, Owner::Record),
    SPAN(DpiStages, DpiStages, Owner::Record),
    SPAN(DpiLedMode, DpiLedEnable, Owner::Shared),
    SPAN(LedBarMode, LedBarEnable, Owner::Shared),
    SPAN(KeyBindings, KeyBindings, Owner::Record),
    SPAN(Gap143, Gap143, Owner::Record),
};
#undef SPAN
#undef RENAMED

// True when the spans follow each other from the first byte of the record to the events, without a gap.
static constexpr bool coverTheRecord()
{
    std::size_t end = 0;
    for (const Span &span : Spans) {
        if (span.record != end)
            return false;
        end += span.size;
    }
    return end == offsetof(FlashDataMap, KeySequences);
}

static constexpr bool overlapInTheFlash()
{
    for (const Span &one : Spans) {
        for (const Span &other : Spans) {
            if (&one != &other && one.flash < other.flash + other.size && other.flash < one.flash + one.size)
                return true;
        }
    }
    return false;
}

static_assert(coverTheRecord() && !overlapInTheFlash());

static constexpr uint8_t ReleaseBit = 0x80;

static KeyEvent decodeEvent(const FlashEvent &from)
{
    KeyEvent event{};
    event.Direction = from.DirectionAndKind & ReleaseBit ? 1 : 0;
    event.Kind = from.DirectionAndKind & ~ReleaseBit;
    event.Code = from.Code;
    event.DelayMs.set(from.DelayMs.get());
    return event;
}

static FlashEvent encodeEvent(const KeyEvent &from)
{
    FlashEvent event{};
    event.DirectionAndKind =
        static_cast<uint8_t>((from.Kind & ~ReleaseBit) | (from.Direction != 0 ? ReleaseBit : 0));
    event.Code = from.Code;
    event.DelayMs.set(static_cast<uint16_t>(std::min<uint32_t>(from.DelayMs.get(), 0xFFFF)));
    return event;
}

// Events behind the count are converted too, so that a record that is written and read back is unchanged.
static void decodeBlocks(const FlashImage &image, FlashDataMap &record)
{
    for (int slot = 0; slot < KeySlotCount; ++slot) {
        const FlashSequence &fromKeys = image.KeySequences[slot];
        KeySequence &keys = record.KeySequences[slot];
        keys.Count.set(std::min<uint32_t>(fromKeys.Count, KeySequenceEventCount));
        std::transform(std::begin(fromKeys.Events), std::end(fromKeys.Events), keys.Events, decodeEvent);

        const FlashMacro &fromMacro = image.MacroBlocks[slot];
        MacroBlock &macro = record.MacroBlocks[slot];
        macro.NameLength = std::min<uint8_t>(fromMacro.NameLength, MacroNameSize);
        std::memcpy(macro.Name, fromMacro.Name, MacroNameSize);
        macro.EventCount = std::min<uint8_t>(fromMacro.EventCount, MacroEventCount);
        std::transform(std::begin(fromMacro.Events), std::end(fromMacro.Events), macro.Events, decodeEvent);
    }
}

static void encodeBlocks(const FlashDataMap &record, FlashImage &image)
{
    for (int slot = 0; slot < KeySlotCount; ++slot) {
        const KeySequence &fromKeys = record.KeySequences[slot];
        FlashSequence &keys = image.KeySequences[slot];
        keys.Count = static_cast<uint8_t>(std::min<uint32_t>(fromKeys.Count.get(), KeySequenceEventCount));
        std::transform(std::begin(fromKeys.Events), std::end(fromKeys.Events), keys.Events, encodeEvent);

        const MacroBlock &fromMacro = record.MacroBlocks[slot];
        FlashMacro &macro = image.MacroBlocks[slot];
        macro.NameLength = std::min<uint8_t>(fromMacro.NameLength, MacroNameSize);
        std::memcpy(macro.Name, fromMacro.Name, MacroNameSize);
        macro.EventCount = std::min<uint8_t>(fromMacro.EventCount, MacroEventCount);
        std::transform(std::begin(fromMacro.Events), std::end(fromMacro.Events), macro.Events, encodeEvent);
    }
}

template <typename Side> static void clampStages(Side &side)
{
    side.DpiStageCount = std::min<uint8_t>(side.DpiStageCount, DpiStageLimit);
    side.CurrentDpiStage = std::min<uint8_t>(side.CurrentDpiStage, DpiStageLimit - 1);
}

void decode(const FlashImage &image, FlashDataMap &record)
{
    const auto *from = reinterpret_cast<const uint8_t *>(&image);
    auto *to = reinterpret_cast<uint8_t *>(&record);
    for (const Span &span : Spans)
        std::memcpy(to + span.record, from + span.flash, span.size);
    clampStages(record);
    decodeBlocks(image, record);
}

void encode(const FlashDataMap &record, FlashImage &image)
{
    const auto *from = reinterpret_cast<const uint8_t *>(&record);
    auto *to = reinterpret_cast<uint8_t *>(&image);
    for (const Span &span : Spans)
        std::memcpy(to + span.flash, from + span.record, span.size);
    clampStages(image);
    encodeBlocks(record, image);
}

void clamp(FlashDataMap &record)
{
    FlashImage image{};
    encode(record, image);
    decode(image, record);
}

static std::array<Owner, FlashSize> makeOwners()
{
    std::array<Owner, FlashSize> owners{};
    for (const Span &span : Spans)
        std::fill_n(owners.begin() + static_cast<std::ptrdiff_t>(span.flash), span.size, span.owner);
    const auto fill = [&owners](const void *base, const void *block, std::size_t size) {
        const auto at = static_cast<const uint8_t *>(block) - static_cast<const uint8_t *>(base);
        std::fill_n(owners.begin() + at, size, Owner::Record);
    };
    const FlashImage image{};
    for (int slot = 0; slot < KeySlotCount; ++slot) {
        fill(&image, &image.KeySequences[slot], SPAN_SIZE(FlashSequence, Count, Events));
        fill(&image, &image.MacroBlocks[slot], SPAN_SIZE(FlashMacro, NameLength, Events));
    }
    return owners;
}

const Owner *flashOwners()
{
    static const auto *owners = new std::array<Owner, FlashSize>(makeOwners());
    return owners->data();
}

} // namespace hidusb
