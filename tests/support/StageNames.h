// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How the controls of the DPI stages are named: "BlueButton" selects the first stage, "BlueButtonA" is its
// colour bar.
#pragma once

#include "device/hidusb/FlashDataMap.h"

constexpr const char *StageNames[DpiStageLimit] = {"Blue",  "BrightRed", "Red",       "Yellow",
                                                   "Green", "Purple",    "LightBlue", "LightYellow"};
