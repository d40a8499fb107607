// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How a DPI value keeps to the ranges of a model: where the slider may rest, and where its two step buttons
// lead. Values in DPI; ranges ascend. Without ranges every value stands for itself.
#pragma once

#include "catalogue/DpiRange.h"

struct DpiRest {
    int dpi = 0;
    int step = 0; // of the range that it lies in; 0 outside of all
};

// A value in a gap goes to the range above it.
DpiRest dpiRestAt(int dpi, const DpiRanges &ranges);
int dpiAbove(int dpi, const DpiRanges &ranges);
// From a gap this one too goes up, to the range above.
int dpiBelow(int dpi, const DpiRanges &ranges);
