// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The scale of the user interface follows the physical width of the primary screen. It must be decided
// before the application object exists, so the X server is asked on a connection of its own.
#pragma once

#include <QByteArray>

// The value for QT_SCALE_FACTOR: the whole number width / 1920 as text when the width in pixels is over
// 1920, empty otherwise.
QByteArray scaleFactorText(int physicalWidth);

// Pixels of the primary output's mode; of the first lit output when none is primary; of the X screen
// when the server has no outputs. 0 without an X server.
int physicalDesktopWidth();

// Sets QT_SCALE_FACTOR when the width asks for it and leaves it alone otherwise. Main thread, before the
// application object.
void applyScaleFactor();
