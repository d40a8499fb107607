// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/ScreenColor.h"

#include <QCursor>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <algorithm>

bool screenCanBeRead() { return !QGuiApplication::platformName().startsWith(QLatin1String("wayland")); }

QColor colorUnderPointer()
{
    static QColor last;
    const QPoint pointer = QCursor::pos();
    const QList<QScreen *> screens = QGuiApplication::screens();
    if (std::none_of(screens.begin(), screens.end(),
                     [&pointer](const QScreen *screen) { return screen->geometry().contains(pointer); }))
        return {};
    // The pointer's place is in the toolkit's pixels, and grabWindow() turns it into those of the screen
    // itself.
    const QImage picture =
        QGuiApplication::primaryScreen()->grabWindow(0, pointer.x(), pointer.y(), 2, 2).toImage();
    if (!picture.isNull() && picture.valid(0, 0))
        last = picture.pixelColor(0, 0);
    return last;
}
