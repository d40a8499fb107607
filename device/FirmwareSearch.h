// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Whether the folder "/bin" beside the program holds firmware other than what a device runs. A version
// that differs counts as new, also an older one: the folder decides what a device should run. Any thread;
// each call reads the folder and the head of each file.
#pragma once

#include <QString>

constexpr int TargetMouse = 210;
constexpr int TargetReceiver = 211;

// version: as devices give it, such as "v1.0A"; an empty one yields false. baseName: the firmware's name
// in the catalogue.
bool hasNewFirmware(int target, const QString &version, const QString &baseName, int cid, int mid);

// The key of the firmware's name in a model's catalogue section: "MM" for a mouse, or that of the receiver of
// the class (1, 2, 4 or 8); empty for any other.
QString firmwareKey(int target, int connectionKind);

// hasNewFirmware() with base name and ids from the model's section of the catalogue.
bool checkForNew(int target, const QString &version, int connectionKind, const QString &section);
