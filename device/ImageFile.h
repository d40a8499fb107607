// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A record as a file that the user exports and imports: three items, each a 32-bit big-endian length and
// bytes: "Taigri" and the sensor's name, 12 bytes each, then the record; 10,484 bytes. `section` is the
// device's catalogue section.
#pragma once

#include "device/hidusb/FlashDataMap.h"

class QString;

// Bytes of a file that an import looks at; a larger one is no image file. What follows a valid image within
// it is not read: a copy may be padded to whole blocks, a newer program may add items.
constexpr int ImageFileLimit = 16 * 1024 * 1024;

enum ImageFileResult {
    ImageAccepted = 0,
    ImageUnreadable = 1, // cannot be opened, cut short, or no image file
    ImageMismatch = 2,   // for another sensor, or with more stages than the model has
};

// False when nothing was written; a file that existed is unchanged.
bool writeImageFile(const QString &path, const QString &section, const FlashDataMap &record);
// The record is filled only when the result is ImageAccepted, its counts and lengths cut to what it can hold.
ImageFileResult checkImageFile(const QString &path, const QString &section, FlashDataMap *record);
