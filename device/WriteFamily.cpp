// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/WriteFamily.h"

#include "catalogue/DpiCodes.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "hub/PostMsg.h"

namespace
{

// Widgets that a page fills from a record call their change handlers; those open no notice.
bool fromPerson() { return !ButtonPageBusy && !LightPageBusy && !SensorPageBusy; }

template <typename Change> bool write(Change change)
{
    if (!CheckOnline())
        return false;
    DeviceRecord::update(change);
    return true;
}

bool writeByte(uint8_t FlashDataMap::*field, uint8_t value)
{
    return write([=](FlashDataMap &record) { record.*field = value; });
}

// Off keeps the stored effect, so that turning the light on again brings it back.
bool writeMode(uint8_t FlashDataMap::*mode, uint8_t FlashDataMap::*enable, uint8_t value)
{
    return write([=](FlashDataMap &record) {
        if (value)
            record.*mode = value;
        record.*enable = value ? 1 : 0;
    });
}

bool isStage(int stage) { return stage >= 0 && stage < DpiStageLimit; }
bool isKey(int key) { return key >= 0 && key < KeySlotCount; }

} // namespace

bool SetReportRate(uint8_t value) { return writeByte(&FlashDataMap::ReportRate, value); }
bool SetDpiStageCount(uint8_t value) { return writeByte(&FlashDataMap::DpiStageCount, value); }
bool SetCurrentDpiStage(uint8_t value) { return writeByte(&FlashDataMap::CurrentDpiStage, value); }
bool SetSpareByte3(uint8_t value) { return writeByte(&FlashDataMap::SpareByte3, value); }
bool SetKFps(uint8_t value) { return writeByte(&FlashDataMap::KFps, value); }
bool SetLiftOffDistance(uint8_t value) { return writeByte(&FlashDataMap::LiftOffDistance, value); }
bool SetDebounceTime(uint8_t value) { return writeByte(&FlashDataMap::DebounceTime, value); }
bool SetMotionSync(uint8_t value) { return writeByte(&FlashDataMap::MotionSync, value); }
bool SetStopCloseTime(uint8_t value) { return writeByte(&FlashDataMap::StopCloseTime, value); }
bool SetStraightLine(uint8_t value) { return writeByte(&FlashDataMap::StraightLine, value); }
bool SetRippeControl(uint8_t value) { return writeByte(&FlashDataMap::RippeControl, value); }
bool SetLightRippeControl(uint8_t value) { return writeByte(&FlashDataMap::LightRippeControl, value); }
bool SetPerformance(uint8_t value) { return writeByte(&FlashDataMap::Performance, value); }
bool SetPerformanceOpen(uint8_t value) { return writeByte(&FlashDataMap::PerformanceOpen, value); }
bool SetModelChoose(uint8_t value) { return writeByte(&FlashDataMap::ModelChoose, value); }
bool SetDpiLedBrightness(uint8_t value) { return writeByte(&FlashDataMap::DpiLedBrightness, value); }
bool SetDpiLedSpeed(uint8_t value) { return writeByte(&FlashDataMap::DpiLedSpeed, value); }
bool SetLedBarSpeed(uint8_t value) { return writeByte(&FlashDataMap::LedBarSpeed, value); }
bool SetLedBarBrightness(uint8_t value) { return writeByte(&FlashDataMap::LedBarBrightness, value); }

bool SetAngleSet(uint8_t value)
{
    return write([=](FlashDataMap &record) {
        record.AngleSet = value;
        record.AngleSetValid = 1;
    });
}

bool SetDpiLevel(int stage, uint8_t x, uint8_t y, uint8_t flags)
{
    return isStage(stage) && write([=](FlashDataMap &record) {
               DpiStage &entry = record.DpiStages[stage];
               entry.LevelX = x;
               entry.LevelY = y;
               entry.LevelFlags = flags;
           });
}

bool SensorDpiEncode(int stage, int dpi)
{
    if (!isStage(stage))
        return false;
    const uint8_t present = DeviceRecord::copy().DpiStages[stage].LevelFlags;
    const DpiStageCode encoded = encodeDpi(dpi, present, currentCodes(), SensorRanges);
    const auto level = uint8_t(encoded.code);
    return SetDpiLevel(stage, level, level, encoded.flags);
}

bool SetDpiColor(int stage, uint8_t red, uint8_t green, uint8_t blue)
{
    return isStage(stage) && write([=](FlashDataMap &record) {
               DpiStage &entry = record.DpiStages[stage];
               entry.Red = red;
               entry.Green = green;
               entry.Blue = blue;
           });
}

bool SetDpiStages(const DpiStage &first, const DpiStage &second, int firstIndex, int secondIndex,
                  uint8_t current)
{
    return isStage(firstIndex) && isStage(secondIndex) && write([=](FlashDataMap &record) {
               record.DpiStages[firstIndex] = first;
               record.DpiStages[secondIndex] = second;
               record.CurrentDpiStage = current;
               record.DpiStageCount = static_cast<uint8_t>(current + 1);
           });
}

bool SetDpiLedMode(uint8_t value)
{
    return writeMode(&FlashDataMap::DpiLedMode, &FlashDataMap::DpiLedEnable, value);
}

bool SetLedBarMode(uint8_t value)
{
    return writeMode(&FlashDataMap::LedBarMode, &FlashDataMap::LedBarEnable, value);
}

bool SetLedBarColor(uint8_t red, uint8_t green, uint8_t blue)
{
    return write([=](FlashDataMap &record) {
        record.LedBarRed = red;
        record.LedBarGreen = green;
        record.LedBarBlue = blue;
    });
}

bool SetBinding(int key, const KeyBinding &binding)
{
    return isKey(key) && write([=](FlashDataMap &record) { record.KeyBindings[key] = binding; });
}

bool SetKeySequence(int key, const KeyBinding &binding, const KeySequence &sequence)
{
    return isKey(key) && write([&](FlashDataMap &record) {
               record.KeyBindings[key] = binding;
               record.KeySequences[key] = sequence;
           });
}

bool SetMacroBinding(int key, const KeyBinding &binding, const MacroBlock &macro)
{
    return isKey(key) && write([&](FlashDataMap &record) {
               record.KeyBindings[key] = binding;
               record.MacroBlocks[key] = macro;
           });
}

bool CheckOnline()
{
    if (UsbFinderC_GetDeviceOnLine(CurrentDevicePath()))
        return true;
    if (fromPerson())
        emit PostMsg::instance()->SigMouseOffLineo(0);
    return false;
}

void PushRecord() { DeviceRecord::push(); }
