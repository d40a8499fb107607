// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The write family: pages change parameters by these functions alone. Main thread only. Each function asks
// whether the mouse is on line. If it is, the record is changed and passed to the layer, and the result is
// true. If not, the record is unchanged, and the off-line notice opens unless a page is filling its widgets.
// Values are the bytes of FlashDataMap.
#pragma once

#include "device/hidusb/DeviceRecords.h"

bool SetReportRate(uint8_t value);
bool SetDpiStageCount(uint8_t value);
bool SetCurrentDpiStage(uint8_t value);
bool SetSpareByte3(uint8_t value);
bool SetKFps(uint8_t value);
bool SetLiftOffDistance(uint8_t value);
bool SetDebounceTime(uint8_t value);
bool SetMotionSync(uint8_t value);
bool SetStopCloseTime(uint8_t value);
bool SetStraightLine(uint8_t value);
bool SetRippeControl(uint8_t value);
bool SetLightRippeControl(uint8_t value);
bool SetPerformance(uint8_t value);
bool SetPerformanceOpen(uint8_t value);
bool SetModelChoose(uint8_t value);
bool SetAngleSet(uint8_t value); // also marks the angle as valid

// Stages and keys are indices into the record; an index outside it is refused without asking the device.
bool SetDpiLevel(int stage, uint8_t x, uint8_t y, uint8_t flags);
// Encodes the DPI value for the current sensor and its ranges.
bool SensorDpiEncode(int stage, int dpi);
bool SetDpiColor(int stage, uint8_t red, uint8_t green, uint8_t blue);
// Writes both entries to their indices; `current` becomes the stage in use and the last one.
bool SetDpiStages(const DpiStage &first, const DpiStage &second, int firstIndex, int secondIndex,
                  uint8_t current);

// Mode 0 turns the light off and keeps the stored effect.
bool SetDpiLedMode(uint8_t value);
bool SetDpiLedBrightness(uint8_t value);
bool SetDpiLedSpeed(uint8_t value);
bool SetLedBarMode(uint8_t value);
bool SetLedBarColor(uint8_t red, uint8_t green, uint8_t blue);
bool SetLedBarSpeed(uint8_t value);
bool SetLedBarBrightness(uint8_t value);

bool SetBinding(int key, const KeyBinding &binding);
bool SetKeySequence(int key, const KeyBinding &binding, const KeySequence &sequence);
bool SetMacroBinding(int key, const KeyBinding &binding, const MacroBlock &macro);

// Asks whether the mouse is on line, with the notice; changes nothing.
bool CheckOnline();
// Passes the record to the layer without asking the mouse.
void PushRecord();
