// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// New names of macros that did not reach the blocks of the mouse's buttons, where an older one still stands.
// The next read of the same mouse sends them. Buttons and records are those of the selected mouse. Main
// thread.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QString>

namespace macro
{

// The selected mouse, among those for which something waits. When the last device has been unplugged none is
// selected, while its page still shows: then it is the one that was.
QString selectedMouse();

void setMissedName(int button, const QString &older, const QString &name);
// The macro was renamed again, on buttons that are not shown and for other mice as well.
void renameMissed(const QString &name, const QString &newName);
// The button's block was written since.
void dropMissedName(int button);
// The macro was deleted.
void dropMissedNamesOf(const QString &name);

// The name of the macro in the button's block; the new one where the block still has an older one.
QString macroName(const FlashDataMap &record, int button);

} // namespace macro
