// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How a sensor without a table of codes counts its DPI, and how the flags of a stage multiply them. For the
// program's conversions, and for the check that the ranges of a model can be counted so.
#pragma once

#include <cstdint>
#include <string_view>

constexpr int DpiStep = 50;              // DPI of one count; count 0 is 50 DPI
constexpr uint8_t DoublesDpi = 0x11;     // the DPI counts twice
constexpr uint8_t DoublesDpiStep = 0x22; // each count is worth two steps
constexpr uint8_t FourTimesDpi = 0x33;   // both
constexpr int DpiRangeLimit = 4;         // ranges of a model
constexpr int ByteCounts = 256;          // counts of a sensor, of eight bits
constexpr int WideCounts = 1024;         // those of a wide sensor, of ten bits
constexpr std::string_view WideSensors[] = {"3395", "3950"};

constexpr bool isWideSensor(std::string_view sensor)
{
    for (const std::string_view name : WideSensors) {
        if (name == sensor)
            return true;
    }
    return false;
}

struct DpiMultiplier {
    uint8_t flags;
    int divisor;
};
// By range, for a model that marks each of its ranges.
constexpr DpiMultiplier RangeMultipliers[DpiRangeLimit] = {
    {0, 1}, {DoublesDpiStep, 2}, {DoublesDpi, 2}, {FourTimesDpi, 4}};

// The multiplier of a stage in the range `range`, counted from 0, of a model with this flag value.
constexpr DpiMultiplier dpiMultiplier(int flagValue, int range)
{
    if (flagValue == FourTimesDpi)
        return RangeMultipliers[range];
    const bool marksAll = flagValue == DoublesDpiStep || flagValue == DoublesDpi;
    return marksAll && range > 0 ? DpiMultiplier{uint8_t(flagValue), 2} : RangeMultipliers[0];
}
