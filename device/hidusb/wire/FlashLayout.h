// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FlashImage: the 6,912 bytes of a mouse's flash as they lie in the device. The partial reads (report rate,
// current stage, indicator light, light bar) fix four addresses; the other fields are packed around them.
// Unused bytes belong to the mouse and are preserved.
#pragma once

#include "device/hidusb/FlashDataMap.h"

constexpr std::size_t FlashSize = 6912;
constexpr uint16_t FlashReportRateAddress = 0x0000;
constexpr uint16_t FlashCurrentStageAddress = 0x0004;
constexpr uint16_t FlashDpiLedAddress = 0x004C;
constexpr uint16_t FlashLedBarAddress = 0x00A0;

// An event in five bytes: its delay is at most 65,535 ms, direction and kind share a byte.
struct FlashEvent {
    uint8_t DirectionAndKind; // bit 7: release; bits 0..6: kind
    LittleU16 Code;
    LittleU16 DelayMs;
};

struct FlashSequence {
    uint8_t Count; // 0..6
    FlashEvent Events[KeySequenceEventCount];
    uint8_t Unused;
};

struct FlashMacro {
    uint8_t NameLength; // 0..30
    char Name[MacroNameSize];
    uint8_t EventCount; // 0..70
    FlashEvent Events[MacroEventCount];
    uint8_t Unused[2];
};

struct FlashImage {
    uint8_t ReportRate;
    uint8_t DpiStageCount;
    uint8_t SpareByte3;
    uint8_t KFps;
    uint8_t CurrentDpiStage;
    uint8_t LiftOffDistance;
    uint8_t DebounceTime;
    uint8_t MotionSync;
    uint8_t StopCloseTime;
    uint8_t StraightLine;
    uint8_t RippeControl;
    uint8_t LightRippeControl;
    uint8_t Performance;
    uint8_t PerformanceOpen;
    uint8_t ModelChoose;
    uint8_t AngleSet;
    uint8_t AngleSetValid;
    uint8_t Unused11[11];
    DpiStage DpiStages[DpiStageLimit];
    uint8_t DpiLedMode;
    uint8_t DpiLedBrightness;
    uint8_t DpiLedSpeed;
    uint8_t DpiLedEnable;
    uint8_t Unused50[4]; // read with the indicator light
    KeyBinding KeyBindings[KeySlotCount];
    uint8_t Unused84[28];
    uint8_t LedBarMode;
    uint8_t LedBarRed, LedBarGreen, LedBarBlue;
    uint8_t LedBarSpeed;
    uint8_t LedBarBrightness;
    uint8_t LedBarEnable;
    uint8_t UnusedA7[2]; // read with the light bar
    uint8_t UnusedA9[7];
    uint8_t MouseOwn[sizeof(FlashDataMap::Untouched17)];
    uint8_t Gap143;
    uint8_t UnusedC4[60];
    FlashSequence KeySequences[KeySlotCount];
    FlashMacro MacroBlocks[KeySlotCount];
};

// The sizes of the partial reads of both lights.
constexpr std::size_t FlashDpiLedSize = SPAN_SIZE(FlashImage, DpiLedMode, Unused50);
constexpr std::size_t FlashLedBarSize = SPAN_SIZE(FlashImage, LedBarMode, UnusedA7);

static_assert(FlashDpiLedSize == 8 && FlashLedBarSize == 9);
static_assert(sizeof(FlashEvent) == 5 && sizeof(FlashSequence) == 32 && sizeof(FlashMacro) == 384);
static_assert(sizeof(FlashImage) == FlashSize && alignof(FlashImage) == 1);
static_assert(std::is_trivially_copyable_v<FlashImage> && std::is_standard_layout_v<FlashImage>);
static_assert(offsetof(FlashImage, ReportRate) == FlashReportRateAddress);
static_assert(offsetof(FlashImage, CurrentDpiStage) == FlashCurrentStageAddress);
static_assert(offsetof(FlashImage, DpiStages) == 0x1C);
static_assert(offsetof(FlashImage, DpiLedMode) == FlashDpiLedAddress);
static_assert(offsetof(FlashImage, KeyBindings) == 0x54);
static_assert(offsetof(FlashImage, LedBarMode) == FlashLedBarAddress);
static_assert(offsetof(FlashImage, MouseOwn) == 0xB0 && offsetof(FlashImage, Gap143) == 0xC3);
static_assert(offsetof(FlashImage, KeySequences) == 0x100 && offsetof(FlashImage, MacroBlocks) == 0x300);
