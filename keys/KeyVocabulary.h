// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The conversions between the forms of a key: its name, which is what the pages work with, its code with
// its kind, the same code as text, and the virtual key of a key source. A conversion gives the empty name
// where there is none. All are total: any number and any text may come, since devices and files hold them.
// Main thread, because the mouse buttons' names follow the language; pure but for these.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "keys/KeyTable.h"

#include <QStringList>
#include <optional>

// Names of the mouse buttons in the language in use, in the order of MouseButtonTable. Empty until set.
using MouseButtonTexts = std::array<QString, MouseButtonCount>;
void SetMouseButtonNames(const MouseButtonTexts &names);
const MouseButtonTexts &MouseButtonNames();

// Nothing for a key that is to be ignored; the empty name stands for a key that does nothing.
std::optional<QString> KeyNameFromVirtualKey(int virtualKey);
// The same without the modifiers.
QString GroupKeyNameFromVirtualKey(int virtualKey);

// `codeText` is "0x" and two upper-case digits, compared as it stands. Code and kind must both fit.
QString KeyNameFromCodeText(const QString &codeText, int kind);

// For what a device holds: the kind matters only where a modifier and a key have the same code.
QString KeyNameFromCode(int code, int kind);
QString MouseNameFromBit(int bit);
// The same as KeyNameFromCode but for the modifiers, whose side it does not say.
QString ComboNameFromCode(int code, int kind);

// Code text and kind digit; empty for a name that is none.
QStringList KeyNameToCodeText(const QString &name);

// Kind and code of one event; an unknown name gives a key with code 0. An index outside the block does
// nothing, and direction and delay stay.
void KeyNameToEvent(const QString &name, int index, MacroBlock &block);

// Press and release of the key at `position` of `count`, in opposite orders. Modifiers are known by their
// short names "Ctrl", "Shift", "Alt" and "Win" alone; an unknown name gets the kind of a key and leaves the
// code. Events outside the block are left out.
void ComboKeyToEvents(const QString &name, int position, int count, KeySequence &block);
