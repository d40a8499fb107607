// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/DpiRange.h"

#include "catalogue/DeviceCatalogue.h"

void DpiRanges::read(const QStringList &list)
{
    DpiFlagValue = list.value(list.size() - 1).toInt(nullptr, 16);
    DpiRangeCount = (int(list.size()) - 1) / 3;
    if (DpiRangeCount < 1 || DpiRangeCount > DpiRangeLimit)
        return;
    DpiRangeMins.clear();
    DpiRangeMaxs.clear();
    DpiRangeSteps.clear();
    for (int i = 0; i < DpiRangeCount; ++i) {
        DpiRangeMins.append(list[3 * i].toInt());
        DpiRangeMaxs.append(list[3 * i + 1].toInt());
        DpiRangeSteps.append(qMax(1, list[3 * i + 2].toInt()));
    }
    DpiSliderMin = DpiRangeMins.first();
    DpiSliderMax = DpiRangeMaxs.last();
}

void ReadDpiRange(int driveIndex) { SensorRanges.read(DeviceCatalogue().list(driveIndex, "DPIRange")); }
