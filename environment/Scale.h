// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The scale of the user interface follows the physical width of the primary screen. It must be decided
// before the application object exists, so a separate connection asks the X server.
#pragma once

#include <QByteArray>
#include <QString>

// The value for QT_SCALE_FACTOR: the whole number width / 1920 as text when the width in pixels is over
// 1920, empty otherwise.
QByteArray scaleFactorText(int physicalWidth);

// Width in pixels of the primary output; of the first active output when none is primary; of the X screen
// when the server has no outputs. 0 without an X server.
int physicalDesktopWidth();

// Sets QT_SCALE_FACTOR when the width asks for it, also over a value of the user's own, and does nothing
// otherwise, nor where the toolkit is expected to draw on Wayland, whose compositor gives each output's
// scale. Main thread, before the application object.
void applyScaleFactor();

// Starts the program anew, in the same process, when that expectation was wrong. Which platform the toolkit
// takes depends on desktop, version and distribution, and it has read the factor by the time it can be asked.
// `platform`: that of the application object. `arguments`: those of main(), with the null at their end.
void correctScaleFactor(const QString &platform, char *const *arguments);
