// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ScreenFont.h"

#include "presentation/FontScale.h"

#include <QGuiApplication>
#include <QScreen>

void scaleFontsToScreen(QWidget *window)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    // Whole dots: servers work them out from a size in whole millimetres.
    const int dotsPerInch = screen ? qRound(screen->logicalDotsPerInchX()) : 0;
    if (dotsPerInch > 0)
        scaleFonts(window, 96.0 / dotsPerInch);
}
