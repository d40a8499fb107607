// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Conversions between the forms of a key: its name, with which the pages work, its code with its kind, the
// same code as text, and the virtual key of a KeySource. The result is the empty name where there is none.
// Any number and any text are accepted, since they come from devices and files. Main thread, because the
// mouse buttons' names follow the language; otherwise pure.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "keys/KeyTable.h"

#include <QStringList>
#include <optional>

// Names of the mouse buttons in the language in use, in the order of MouseButtonTable. Empty until set.
using MouseButtonTexts = std::array<QString, MouseButtonCount>;
void SetMouseButtonNames(const MouseButtonTexts &names);
const MouseButtonTexts &MouseButtonNames();

// No value for a key that is to be ignored, the empty name for a key without function.
std::optional<QString> KeyNameFromVirtualKey(int virtualKey);
// The same without the modifiers.
QString GroupKeyNameFromVirtualKey(int virtualKey);

// `codeText` is "0x" and two upper-case digits, compared as it stands. Code and kind must both fit.
QString KeyNameFromCodeText(const QString &codeText, int kind);

// For what a device holds: the kind matters only where a modifier and a key have the same code.
QString KeyNameFromCode(int code, int kind);
QString MouseNameFromBit(int bit);
// Like KeyNameFromCode, but the names of modifiers leave out their side.
QString ComboNameFromCode(int code, int kind);

// Code text and kind digit; empty for an unknown name.
QStringList KeyNameToCodeText(const QString &name);

// Kind and code of one event; an unknown name gives a key with code 0. An index outside the block does
// nothing, and direction and delay stay.
void KeyNameToEvent(const QString &name, int index, MacroBlock &block);

// Press and release of the key at `position` of `count`, in opposite orders. Modifiers are known by their
// short names "Ctrl", "Shift", "Alt" and "Win" alone; an unknown name gets the kind of a key and leaves the
// code. Events outside the block are left out.
void ComboKeyToEvents(const QString &name, int position, int count, KeySequence &block);
