// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The last known image of each model, in "/Device_Info" under the data root, shown while the mouse is
// away. A file is a 32-bit big-endian length and the bytes of a FlashDataMap. Failures are quiet.
#pragma once

#include "device/hidusb/FlashDataMap.h"

class QString;

// True when the file could be opened. A short file leaves the rest of the record unchanged; bytes beyond the
// record are not read. Counts and lengths are cut to what the record can hold, as when a mouse is read.
bool ImageCacheRead(const QString &fileName, FlashDataMap *record);
// A failure at any moment leaves the old content or the new one in the file.
void ImageCacheWrite(const QString &fileName, const FlashDataMap &record);
