// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The colour that the screen shows under the pointer. Main thread.
#pragma once

#include <QColor>

// False under Wayland, where no program may look at the screen.
bool screenCanBeRead();
// At the pointer. Where the screen gave no picture, what the last call gave; invalid before any, and while
// the pointer is outside every screen.
QColor colorUnderPointer();
