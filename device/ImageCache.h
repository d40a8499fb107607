// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The last known image of each model, in "/Device_Info" under the data root, shown while the mouse is
// away. A file is a 32-bit big-endian length and the bytes of a FlashDataMap. Failures are quiet.
#pragma once

#include "device/hidusb/FlashDataMap.h"

class QString;

// True when the file could be opened. The record takes what the file holds: a short one leaves the rest
// as it was, what goes beyond the record is not read.
bool ImageCacheRead(const QString &fileName, FlashDataMap *record);
// The old content or the new stands in the file, whatever happens meanwhile.
void ImageCacheWrite(const QString &fileName, const FlashDataMap &record);
