// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The only conversions between a DPI value and the bytes of a stage. A sensor with macros in driver_sensor.h
// counts by that table; any other one counts in steps of 50. The flags of a stage then multiply. Main thread.
#pragma once

#include "catalogue/DpiRange.h"
#include "catalogue/SensorDefines.h"

#include <cstdint>
#include <optional>

// The sensor of the device that was shown last, as the catalogue spells it.
inline QString SensorName;

// The codes of one sensor in a pair of lists.
struct SensorCodes {
    QStringList names;
    QVector<int32_t> values;
    QString sensor;

    bool hasTable() const;
    // The first entry for exactly this DPI.
    std::optional<int> codeOf(int dpi) const;
    // The DPI in the name of the first entry with this code.
    std::optional<int> dpiOf(int code) const;
};

struct DpiStageCode {
    int code = 0; // its low byte goes into both axes of the stage
    uint8_t flags = 0;
};

// presentFlags: the stage's flags before the change. A DPI that the table lacks is encoded by its step.
DpiStageCode encodeDpi(int dpi, uint8_t presentFlags, const SensorCodes &codes, const DpiRanges &ranges);
// The DPI to show; 0 when the sensor's table has no such code.
int decodeDpi(uint8_t xCode, uint8_t flags, const SensorCodes &codes);

// The codes of SensorName from the process-wide lists.
SensorCodes currentCodes();
// decodeDpi() with currentCodes(); SensorDpiEncode() of the write family is its counterpart.
int SensorDpiDecode(uint8_t xCode, uint8_t flags);

// The short forms for a DPI that is bound to a button: no ranges, no flags.
int DpiToCodeSimple(int dpi, const SensorCodes &codes);
int CodeToDpiSimple(int code, const SensorCodes &codes);
