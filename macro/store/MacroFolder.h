// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The folder that holds the macros, one file each: a macro's name is its file's name. The folder may change
// behind the program's back; every function looks at it anew and follows no link. What may be typed as a name
// is in environment/MacroName.h. Any thread.
#pragma once

#include <QByteArray>
#include <QStringList>

namespace macro
{

// Both lie below the data root. A file that a mouse's copy replaces goes to the second one, which no list
// shows.
QString macroFolder();
QString keptFolder();
constexpr int KeptFiles = 10;

QString macroPath(const QString &name); // of its file

// All macros, by name without regard to case. Left out: links, names with "xml" in them, and what a save that
// was killed left behind.
QStringList macroNames();
bool macroExists(const QString &name); // a plain file, listed or not

// Each is false, and changes nothing, for a name that cannot be a macro's and when the system refuses.
bool createMacro(const QString &name);                         // an empty file; never touches an old one
bool renameMacro(const QString &name, const QString &newName); // never overwrites another macro
bool removeMacro(const QString &name);
// The whole file, read or replaced in one safe write. Null for what is no plain file or too large.
QByteArray readMacroFile(const QString &name);
bool writeMacroFile(const QString &name, const QByteArray &text);

// Copies the macro's file to the kept ones, of which the oldest go; the same bytes of the same name are kept
// once, an empty file never. False when there is a file and it could not be kept.
bool keepMacro(const QString &name);

} // namespace macro
