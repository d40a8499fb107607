// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Rounds a DPI value to the ranges of a model, for the slider and its two step buttons. Values in DPI; ranges
// ascend. Without ranges a value stays as it is.
#pragma once

#include "catalogue/DpiRange.h"

struct DpiRest {
    int dpi = 0;
    int step = 0; // of the range that it lies in; 0 outside of all
};

// A value in a gap goes to the range above it.
DpiRest dpiRestAt(int dpi, const DpiRanges &ranges);
int dpiAbove(int dpi, const DpiRanges &ranges);
// A value in a gap goes up here too, to the range above.
int dpiBelow(int dpi, const DpiRanges &ranges);
