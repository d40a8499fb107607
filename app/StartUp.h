// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The start-up before the first window. Main thread.
#pragma once

// Folders, scale, old files and the variables that Qt reads. Before the application object is constructed.
void prepareStart();

// Name, fonts, caches and colours of the application, after its object is constructed. Starts a thread that
// reads the font files and asks the environment for them, so nothing may change a variable from then on until
// awaitFontFiles() has returned true.
void prepareApplication();

// Waits until those files are read, to be called before the first font is asked for. False when a slow disk
// takes longer than the start may wait; the font then reads them itself. Work that needs no font belongs in
// front of this call.
bool awaitFontFiles();
