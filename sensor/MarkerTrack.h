// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Positions of the marker under the stages, and the stage that a drop selects, in pixels of the panel. The
// bands follow the drawn widths of the stages, so they are uneven; a drop between two bands selects none.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QPoint>
#include <array>
#include <optional>

constexpr std::array<QPoint, DpiStageLimit> StagePoint = {{
    {27, 154},
    {118, 154},
    {209, 154},
    {300, 154},
    {391, 154},
    {483, 154},
    {573, 154},
    {664, 154},
}};
constexpr int MarkerPitch = 91; // of the stages

// A drop selects a stage only at MarkerLeftLimit <= x < MarkerRightLimit.
constexpr int MarkerLeftLimit = 15;
constexpr int MarkerRightLimit = 707;
// Last x at which a drop selects a stage, by the number of shown stages minus 1; no limit with all 8.
constexpr std::array<int, DpiStageLimit - 1> RightLimits = {{69, 160, 251, 342, 433, 524, 612}};

struct MarkerBand {
    int shift; // in stages
    int rightFrom, rightTo;
    int leftFrom, leftTo;
};
constexpr std::array<MarkerBand, DpiStageLimit - 1> MarkerBands = {{
    {1, 78, 129, -102, -51},
    {2, 168, 214, -192, -144},
    {3, 264, 317, -284, -236},
    {4, 361, 389, -369, -327},
    {5, 443, 495, -465, -411},
    {6, 538, 591, -556, -504},
    {7, 623, 669, -646, -599},
}};

bool isBesideTrack(int x);
bool isBehindLastStage(int x, int lastStage);
// Stages by which a drop moves the marker; distance: pixels to the right of the marker's position.
std::optional<int> markerShift(int distance);
