// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Looks in the folder "/bin" beside the program for firmware other than what a device runs. A version
// that differs counts as new, also an older one: the folder decides what a device should run. Any thread;
// each call reads the folder, the heads of at most 1,000 files and, for one to flash, the last file that
// fits, or up to 8 when the last ones are damaged.
#pragma once

#include <QByteArray>
#include <QString>

constexpr int TargetMouse = 210;
constexpr int TargetReceiver = 211;

// version: as devices give it, such as "v1.0A"; an empty one yields false. baseName: the firmware's name
// in the catalogue. connectionKind: of a receiver, 0 for any. The heads of the files decide.
bool hasNewFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                    int connectionKind = 0);

// The whole file, of several that fit the last in the order of their names; empty without one. Any file that
// fits does for an empty version. A damaged file, or one for another class of receivers, does not count.
QByteArray findFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                        int connectionKind = 0);
// The same for a repair, which compares versions as texts alone.
QByteArray findRepairFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                              int connectionKind = 0);

// The key of the firmware's name in a model's catalogue section: "MM" for a mouse, or that of the receiver of
// the class (1, 2, 4 or 8); empty for any other.
QString firmwareKey(int target, int connectionKind);

// hasNewFirmware() with base name and ids from the model's section of the catalogue.
bool checkForNew(int target, const QString &version, int connectionKind, const QString &section);
