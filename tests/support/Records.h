// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Records for tests: as a user can make them, from a seed.
#pragma once

#include "device/hidusb/wire/FlashLayout.h"

#include <random>

namespace support
{

inline void fillEvents(KeyEvent *events, int count, std::mt19937 &random)
{
    for (int i = 0; i < count; ++i) {
        static constexpr uint8_t kinds[] = {0, 1, 2, 4};
        events[i].Direction = random() % 2;
        events[i].Kind = kinds[random() % 4];
        events[i].Code.set(static_cast<uint16_t>(random()));
        events[i].DelayMs.set(random() % 0x10000);
    }
}

// Any record within the ranges that the pages allow, with every block filled in part.
inline FlashDataMap anyRecord(uint32_t seed)
{
    std::mt19937 random(seed);
    FlashDataMap record{};
    auto *bytes = reinterpret_cast<uint8_t *>(&record);
    for (std::size_t i = 0; i < offsetof(FlashDataMap, KeySequences); ++i)
        bytes[i] = static_cast<uint8_t>(random());
    record.DpiStageCount = static_cast<uint8_t>(1 + random() % DpiStageLimit);
    record.CurrentDpiStage = static_cast<uint8_t>(random() % record.DpiStageCount);
    for (int slot = 0; slot < KeySlotCount; ++slot) {
        KeySequence &keys = record.KeySequences[slot];
        keys.Count.set(random() % (KeySequenceEventCount + 1));
        fillEvents(keys.Events, static_cast<int>(keys.Count.get()), random);
        MacroBlock &macro = record.MacroBlocks[slot];
        macro.NameLength = static_cast<uint8_t>(random() % (MacroNameSize + 1));
        // A shorter name leaves the tail of the longer one before it.
        for (char &letter : macro.Name)
            letter = static_cast<char>(random());
        macro.EventCount = static_cast<uint8_t>(random() % (MacroEventCount + 1));
        fillEvents(macro.Events, macro.EventCount, random);
    }
    return record;
}

inline FlashImage anyImage(uint32_t seed)
{
    std::mt19937 random(seed);
    FlashImage image;
    auto *bytes = reinterpret_cast<uint8_t *>(&image);
    for (std::size_t i = 0; i < FlashSize; ++i)
        bytes[i] = static_cast<uint8_t>(random());
    return image;
}

} // namespace support
