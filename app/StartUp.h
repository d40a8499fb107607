// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What comes before the first window. Main thread.
#pragma once

// Folders, scale and old files, and what Qt reads when the application object is made. Before that object.
void prepareStart();

// Name, caches and colours of the application, right after its object was made.
void prepareApplication();
