// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// AutoStart: the desktop entry by which the user's desktop starts the program at login, in the folder
// "autostart" of $XDG_CONFIG_HOME (by default ~/.config). The program then starts hidden. Main thread.
#pragma once

#include <QString>

namespace autostart
{

QString entryPath();
// The program's path: that of the command of its name when the shell finds this program by it, since it stays
// the same when another version is installed, else the file that runs.
QString programPath();

// Writes the entry anew or removes it. False when the folder does not take it; the old state stands.
bool enable();
bool disable();
// There is an entry, and the program that it names exists. One with "Hidden" counts as removed: so desktops
// take it.
bool isWhole();

// Whether the entry has started this process; programs that this one starts are told nothing of it.
bool takeHiddenStart();

} // namespace autostart
