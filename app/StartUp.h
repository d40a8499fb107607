// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The start-up before the first window. Main thread.
#pragma once

// Folders, scale, old files and the variables that Qt reads. Before the application object is constructed.
void prepareStart();

// Name, caches and colours of the application, directly after its object is constructed.
void prepareApplication();
