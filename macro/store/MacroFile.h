// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A macro as text: the number of the cycle mode in the first line, then one line a row, "10ms" for a delay
// and "0x1E 1 0" for an event, which is the key's code, its kind and 1 for a release. Lines are written with
// a line feed and read with either line end. A new macro's file is empty. Files come from anywhere, so a line
// that has no such form is dropped, a number alone is a delay, and a file past the limits is refused whole.
// Main thread, because the names of the mouse buttons follow the language.
#pragma once

#include "macro/store/MacroRow.h"

#include <optional>

namespace macro
{

constexpr qint64 MacroFileLimit = 1024LL * 1024; // bytes
constexpr int MacroRowLimit = 10'000;

struct MacroText {
    std::optional<int> cycle; // the number of the first line as it stands; none in an empty file
    MacroRows rows;
};

// None for a text of too many bytes or rows.
std::optional<MacroText> parseMacro(const QByteArray &text);
QByteArray macroText(int cycle, const MacroRows &rows);
QByteArray rowsText(const MacroRows &rows); // the same without the first line

// The file of the macro of that name in the folder of macros. None: there is no such file, or it is a link,
// a folder, a pipe or too large.
std::optional<MacroText> loadMacro(const QString &name);
// False when nothing was written: a full disk or a read-only folder leaves the old file.
bool saveMacro(const QString &name, int cycle, const MacroRows &rows);
// Appends the rows in one safe write, without a first line. False: the file is as it was.
bool AppendMacroRows(const QString &name, const MacroRows &rows);
// The number of the first line as a binding holds it, 0 for one that is no byte.
constexpr uint8_t cycleByte(int cycle) { return cycle >= 0 && cycle <= 0xFF ? uint8_t(cycle) : uint8_t(0); }

} // namespace macro
