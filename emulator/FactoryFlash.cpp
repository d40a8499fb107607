// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/FactoryFlash.h"

#include <algorithm>
#include <iterator>

namespace emulator
{

namespace
{

struct FactoryStage {
    int dpi;
    uint8_t red, green, blue;
};

constexpr FactoryStage Stages[DpiStageLimit] = {
    {400, 255, 0, 0},    {800, 0, 255, 0},    {1600, 0, 0, 255},   {2400, 255, 255, 0},
    {3200, 0, 255, 255}, {6400, 255, 0, 255}, {8000, 255, 128, 0}, {12000, 255, 255, 255},
};

constexpr KeyBinding Bindings[] = {
    {1, 1, 0},  // left
    {1, 2, 0},  // right
    {1, 4, 0},  // middle
    {1, 8, 0},  // back
    {1, 16, 0}, // forward
    {2, 1, 0},  // DPI cycle
    {2, 2, 0},  // DPI up
    {2, 3, 0},  // DPI down
    {7, 0, 0},  // report rate
    {7, 0, 0},  // report rate
    {4, 30, 3}, // fire key: 30 ms, three shots
    {0, 0, 0},  // disabled
};
static_assert(std::size(Bindings) <= KeySlotCount);

} // namespace

static DpiStage encodeStage(const FactoryStage &row)
{
    // Levels of 50 DPI; the low byte holds up to 12,800, so that no flag is needed.
    const auto level = static_cast<uint8_t>(row.dpi / 50 - 1);
    return {level, level, 0, row.red, row.green, row.blue};
}

FlashImage factoryFlash()
{
    FlashImage image{};
    image.ReportRate = 1;
    image.DpiStageCount = FactoryStageCount;
    image.CurrentDpiStage = 1;
    image.LiftOffDistance = 1;
    image.DebounceTime = 8;
    image.MotionSync = 1;
    image.StopCloseTime = 6;
    image.PerformanceOpen = 6;
    std::transform(std::begin(Stages), std::end(Stages), image.DpiStages, encodeStage);
    image.DpiLedMode = 1;
    image.DpiLedBrightness = 128;
    image.DpiLedSpeed = 3;
    image.DpiLedEnable = 1;
    std::copy(std::begin(Bindings), std::end(Bindings), image.KeyBindings);
    image.LedBarMode = 1;
    image.LedBarRed = 255;
    image.LedBarSpeed = 4;
    image.LedBarBrightness = 7;
    image.LedBarEnable = 1;
    return image;
}

} // namespace emulator
