// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Codec.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace hidusb
{

// A run of bytes that stands in the record and in the flash alike.
struct Span {
    std::size_t record;
    std::size_t flash;
    std::size_t size;
    Owner owner;
};

#define SAME_BYTES(field, size, owner)                                                                       \
    Span { offsetof(FlashDataMap, field), offsetof(FlashImage, field), size, owner }

static constexpr Span Spans[] = {
    SAME_BYTES(ReportRate, 1, Owner::Shared),
    SAME_BYTES(DpiStageCount, 1, Owner::Record),
    SAME_BYTES(CurrentDpiStage, 1, Owner::Shared),
    SAME_BYTES(SpareByte3, 2, Owner::Record),       // and KFps
    SAME_BYTES(LiftOffDistance, 12, Owner::Record), // up to AngleSetValid
    SAME_BYTES(DpiStages, sizeof(DpiStage) * DpiStageLimit, Owner::Record),
    SAME_BYTES(DpiLedMode, 4, Owner::Shared), // up to DpiLedEnable
    SAME_BYTES(KeyBindings, sizeof(KeyBinding) * KeySlotCount, Owner::Record),
    SAME_BYTES(LedBarMode, 7, Owner::Shared), // up to LedBarEnable
    {offsetof(FlashDataMap, Untouched17), offsetof(FlashImage, MouseOwn), 19, Owner::Record},
    SAME_BYTES(Gap143, 1, Owner::Record),
};
#undef SAME_BYTES

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

// The places behind the count are carried too: a record comes back as it was.
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
        fill(&image, &image.KeySequences[slot], offsetof(FlashSequence, Unused));
        fill(&image, &image.MacroBlocks[slot], offsetof(FlashMacro, Unused));
    }
    return owners;
}

const Owner *flashOwners()
{
    static const auto *owners = new std::array<Owner, FlashSize>(makeOwners());
    return owners->data();
}

} // namespace hidusb
