// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The start-up before the first window. Main thread.
#pragma once

// Folders, scale, old files and the variables that Qt reads. Before the application object is constructed.
void prepareStart();

// Name, fonts, caches and colours of the application, after its object is constructed and when the last
// variable of the environment is set.
void prepareApplication();

// Before the first font is asked for: returns when the files that tell of the fonts are read, which
// prepareApplication() began, but does not wait for a slow disk; false then. What needs no font is best done
// in front of it.
bool awaitFontFiles();
