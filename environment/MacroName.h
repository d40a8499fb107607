// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a macro may be called: the name is stored in a mouse, where it has 30 bytes in the local encoding, and
// names a file. Pure functions, any thread.
#pragma once

#include <QString>

constexpr int MacroNameBytes = 30;

// The typed name as it can be used: a trailing blank removes all blanks; what no file's name holds goes: "/",
// control characters, a dot in front, and the last letter of "xml", which hides a file from the lists. The
// rest is cut to 30 bytes at a character's end.
QString fittingMacroName(const QString &typed);

// The longest beginning that has room in a mouse.
QString cutToMacroBytes(const QString &name);

// Whether a macro may have this name. A name of a mouse or a file is to be asked before it becomes a path.
bool isMacroName(const QString &name);
