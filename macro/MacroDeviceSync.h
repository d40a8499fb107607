// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Keeps the macros of the folder and those of the mouse in step. The page of the macros says which of them
// must not be written from a mouse's copy, because they are edited or recorded. Main thread.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QString>

namespace macro
{

// While held, a macro's file is not touched by what is read from a mouse. The page holds the macro that is
// recorded and every one with rows or a cycle mode that are not saved, and releases it with the save or when
// the changes are dropped.
void hold(const QString &name);
void release(const QString &name);
bool isHeld(const QString &name);

// A saved macro that did not reach every button of the selected mouse. The next read of that mouse does not
// take its old rows: it sends the file again. Until then what another mouse plays under that name is kept
// beside the file, not written over it.
void setMissed(const QString &name, bool missed);
// A renamed macro keeps its marks.
void moveMarks(const QString &name, const QString &newName);
// A deleted one has none.
void dropMarks(const QString &name);

// Body of SlotButtonToMacro: brings the macro of the button's block into the folder. The file that it
// replaces is kept first. Nothing is written for a held macro, for a name that cannot be a file's, and when
// the file gives the same block and cycle mode already. A macro that the mouse missed goes the other way.
struct Taken {
    QString name;       // empty: the folder is as it was
    bool isNew = false; // there was no such macro, so a list needs an item for it
};
Taken takeFromMouse(const FlashDataMap &record, int button);

// Body of SlotMacroDownLoadData: sends the macro's file, as saved, to the button that has it. False: it did
// not reach the mouse.
bool sendSaved(const QString &name, int button);

// Ends a save whose rows or cycle mode, or both, have been sent: the macro is missed unless each button of
// the selected mouse that plays it has them. What was sent while a read is awaited is missed as well, because
// the read replaces it. A mouse that has the whole macro misses nothing any more.
void noteSent(const QString &name, bool rows, bool cycle);

} // namespace macro
