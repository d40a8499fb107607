// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ScreenFont.h"

#include "presentation/FontScale.h"

#include <QGuiApplication>
#include <QScreen>

void scaleFontsToScreen(QWidget *window)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dotsPerInch = screen ? screen->logicalDotsPerInchX() : 0;
    if (dotsPerInch > 0)
        scaleFonts(window, 96.0 / dotsPerInch);
}
