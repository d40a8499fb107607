// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FlashDataMap: all settings that a mouse keeps in its flash, in the form that the program edits, caches on
// disk and exports. Every type here has alignment 1 and little-endian fields, so the struct is the byte
// layout. Offsets, sizes and gaps are a file format: a change makes existing files unreadable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

// The bytes of a struct from the first one of `first` to the last one of `last`.
#define SPAN_SIZE(Struct, first, last)                                                                       \
    (offsetof(Struct, last) + sizeof(Struct::last) - offsetof(Struct, first))

// A little-endian integer of N bytes with alignment 1.
template <typename Value, std::size_t N> struct LittleEndian {
    uint8_t bytes[N];

    Value get() const
    {
        Value value = 0;
        for (std::size_t i = N; i-- > 0;)
            value = static_cast<Value>((value << 8) | bytes[i]);
        return value;
    }
    void set(Value value)
    {
        for (std::size_t i = 0; i < N; ++i, value = static_cast<Value>(value >> 8))
            bytes[i] = static_cast<uint8_t>(value & 0xFF);
    }
};
using LittleU16 = LittleEndian<uint16_t, 2>;
using LittleU32 = LittleEndian<uint32_t, 4>;

constexpr int DpiStageLimit = 8;         // stages in the record
constexpr int KeySlotCount = 16;         // bindings, key sequences and macros in the record
constexpr int KeySequenceEventCount = 6; // event places of one key sequence
constexpr int MacroEventCount = 70;      // event places of one macro
constexpr int MacroNameSize = 30;        // bytes for a macro's name

// One step of a key sequence or macro.
struct KeyEvent {
    uint8_t Direction; // 0 press, 1 release
    uint8_t Kind;      // 0 modifier bit, 1 keyboard usage, 2 consumer usage, 4 mouse button bit
    LittleU16 Code;
    LittleU32 DelayMs; // milliseconds to wait after the event
};

struct DpiStage {
    uint8_t LevelX;     // low eight bits of the level
    uint8_t LevelY;     // the program always writes LevelX here
    uint8_t LevelFlags; // 0x11 doubles, 0x22 steps of 100, bits 2..3 and 6..7 are level bits 8..9
    uint8_t Red, Green, Blue;
};

// The classes of the bindings that play a block of their own button.
constexpr uint8_t KeySequenceClass = 5;
constexpr uint8_t MacroBlockClass = 6;

struct KeyBinding {
    uint8_t Class;
    uint8_t First;
    uint8_t Second;
};

struct KeySequence {
    LittleU32 Count; // events in use, 0..6
    KeyEvent Events[KeySequenceEventCount];
};

struct MacroBlock {
    uint8_t NameLength;       // bytes of Name in use, 0..30
    char Name[MacroNameSize]; // local 8-bit encoding, not terminated
    uint8_t EventCount;       // events in use, 0..70
    KeyEvent Events[MacroEventCount];
};

struct FlashDataMap {
    uint8_t ReportRate;        // 8, 4, 2, 1, 16, 32, 64 for 125, 250, 500, 1000, 2000, 4000, 8000 Hz
    uint8_t DpiStageCount;     // 1..8
    uint8_t CurrentDpiStage;   // zero-based
    uint8_t SpareByte3;        // carried unchanged
    uint8_t KFps;              // 0 or 1
    uint8_t LiftOffDistance;   // 1 = 1 mm, 2 = 2 mm, 3 = 0.7 mm
    uint8_t DebounceTime;      // milliseconds, 0..15
    uint8_t MotionSync;        // 0 or 1
    uint8_t StopCloseTime;     // units of 10 seconds
    uint8_t StraightLine;      // angle snapping, 0 or 1
    uint8_t RippeControl;      // ripple control, 0 or 1
    uint8_t LightRippeControl; // lights off while moving, 0 or 1
    uint8_t Performance;       // 0 or 1
    uint8_t PerformanceOpen;   // units of 10 seconds
    uint8_t ModelChoose;       // sensor mode list index
    uint8_t AngleSet;          // a signed byte
    uint8_t AngleSetValid;     // 1 once AngleSet has been written
    uint8_t Untouched17[19];   // bytes 17..35: the mouse's own, carried
    DpiStage DpiStages[DpiStageLimit];
    uint8_t DpiLedMode;
    uint8_t DpiLedBrightness; // 16..255, see the brightness curve
    uint8_t DpiLedSpeed;
    uint8_t DpiLedEnable; // 0 or 1
    uint8_t LedBarMode;
    uint8_t LedBarRed, LedBarGreen, LedBarBlue;
    uint8_t LedBarSpeed;      // zero-based
    uint8_t LedBarBrightness; // zero-based
    uint8_t LedBarEnable;     // 0 or 1
    KeyBinding KeyBindings[KeySlotCount];
    uint8_t Gap143; // keeps the blocks behind it at even offsets
    KeySequence KeySequences[KeySlotCount];
    MacroBlock MacroBlocks[KeySlotCount];
};

static_assert(sizeof(LittleU16) == 2 && alignof(LittleU16) == 1);
static_assert(sizeof(LittleU32) == 4 && alignof(LittleU32) == 1);
static_assert(sizeof(KeyEvent) == 8 && sizeof(DpiStage) == 6 && sizeof(KeyBinding) == 3);
static_assert(sizeof(KeySequence) == 52 && offsetof(KeySequence, Events) == 4);
static_assert(sizeof(MacroBlock) == 592 && offsetof(MacroBlock, Name) == 1);
static_assert(offsetof(MacroBlock, EventCount) == 31 && offsetof(MacroBlock, Events) == 32);
static_assert(sizeof(FlashDataMap) == 10448 && alignof(FlashDataMap) == 1);
static_assert(std::is_trivially_copyable_v<FlashDataMap> && std::is_standard_layout_v<FlashDataMap>);
static_assert(offsetof(FlashDataMap, AngleSetValid) == 16 && offsetof(FlashDataMap, Untouched17) == 17);
static_assert(offsetof(FlashDataMap, DpiStages) == 36 && offsetof(FlashDataMap, DpiLedMode) == 84);
static_assert(offsetof(FlashDataMap, LedBarMode) == 88 && offsetof(FlashDataMap, LedBarEnable) == 94);
static_assert(offsetof(FlashDataMap, KeyBindings) == 95 && offsetof(FlashDataMap, Gap143) == 143);
static_assert(offsetof(FlashDataMap, KeySequences) == 144 && offsetof(FlashDataMap, MacroBlocks) == 976);
