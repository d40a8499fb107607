// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Where the marker under the stages stands, and which stage a drop means. Pixels of the panel. The bands are
// as wide as the stages look, so they are uneven, and a drop between two of them means no stage.
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

// The pointer may be dropped at this x and to the left of the other one.
constexpr int MarkerLeftLimit = 15;
constexpr int MarkerRightLimit = 707;
// With that many stages less one shown: the last x of a drop. With all of them there is none.
constexpr std::array<int, DpiStageLimit - 1> PermissionLimits = {{69, 160, 251, 342, 433, 524, 612}};

struct MarkerBand {
    int shift; // in stages, to the right; to the left it is the mirrored row
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
// By how many stages a pointer that far right of the marker's own place moves it.
std::optional<int> markerShift(int distance);
