// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The ranges in which a model's DPI can be set. The catalogue's list is min, max and step of one to four
// ranges, ascending, and a last hexadecimal number, the flags with which a value above the first range is
// stored. Main thread.
#pragma once

#include "catalogue/DpiCounts.h"

#include <QStringList>
#include <QVector>

struct DpiRanges {
    int DpiFlagValue = 0;  // 0x33, 0x22 or 0x11; anything else means nothing
    int DpiRangeCount = 0; // of the last list
    // The ranges of the last list that had 1 to DpiRangeLimit of them; the three are always equally long.
    QVector<int> DpiRangeMins;
    QVector<int> DpiRangeMaxs;
    QVector<int> DpiRangeSteps; // at least 1, so that they can be divided by
    int DpiSliderMin = 50;
    int DpiSliderMax = 32000;

    // A list with another number of ranges changes nothing but DpiFlagValue and DpiRangeCount.
    void read(const QStringList &list);
};

// The ranges of the device that was shown last.
inline DpiRanges SensorRanges;

// Reads the model's key "DPIRange" into SensorRanges.
void ReadDpiRange(int driveIndex);
