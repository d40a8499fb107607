// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The scale of the user interface follows the physical width of the primary screen. It must be decided
// before the application object exists, so a separate connection asks the X server.
#pragma once

#include <QByteArray>

// The value for QT_SCALE_FACTOR: the whole number width / 1920 as text when the width in pixels is over
// 1920, empty otherwise.
QByteArray scaleFactorText(int physicalWidth);

// Width in pixels of the primary output; of the first active output when none is primary; of the X screen
// when the server has no outputs. 0 without an X server.
int physicalDesktopWidth();

// Whether the toolkit will draw on Wayland, where the compositor gives each output's scale. It decides this
// in the application object, so its rule is followed here: the variable QT_QPA_PLATFORM, else the type of the
// session if the plug-in is installed.
bool isWaylandChosen();

// Sets QT_SCALE_FACTOR when the width asks for it, also over a value of the user's own, and does nothing
// otherwise. Main thread, before the application object.
void applyScaleFactor();
