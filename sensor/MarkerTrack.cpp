// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/MarkerTrack.h"

bool isBesideTrack(int x) { return x < MarkerLeftLimit || x >= MarkerRightLimit; }

bool isBehindLastStage(int x, int lastStage)
{
    return lastStage >= 0 && lastStage < int(RightLimits.size()) && x > RightLimits[std::size_t(lastStage)];
}

std::optional<int> markerShift(int distance)
{
    for (const MarkerBand &band : MarkerBands) {
        if (band.rightFrom <= distance && distance <= band.rightTo)
            return band.shift;
        if (band.leftFrom <= distance && distance <= band.leftTo)
            return -band.shift;
    }
    return {};
}
