// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How long the sensor stays at full performance, by the index of the list: FlashDataMap::PerformanceOpen, in
// units of 10 seconds. The list of the page ends before the last two.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

constexpr std::array<uint8_t, 10> PerformanceTimes = {1, 3, 6, 12, 18, 30, 60, 90, 210, 240};
constexpr int ShownPerformanceTimes = 8;

// Index into the list of the page, or -1.
constexpr int performanceIndexOf(int units)
{
    for (int i = 0; i < ShownPerformanceTimes; ++i)
        if (PerformanceTimes[std::size_t(i)] == units)
            return i;
    return -1;
}
