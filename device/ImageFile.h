// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The check of an exported image file before it is taken for the selected device: three items, each a
// 32-bit big-endian length and bytes: "Taigri", the sensor's name, the record.
#pragma once

#include "device/hidusb/FlashDataMap.h"

class QString;

enum ImageFileResult {
    ImageAccepted = 0,
    ImageUnreadable = 1, // cannot be opened, cut short, or no image file
    ImageMismatch = 2,   // for another sensor, or with more stages than the model has
};

// The record is filled only when the result is ImageAccepted. `section` is the device's catalogue section.
ImageFileResult checkImageFile(const QString &path, const QString &section, FlashDataMap *record);
