// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The colour that the screen shows at a place. Main thread.
#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QVector>
#include <functional>

// False in a Wayland session, where no program may look at the screen: one that runs on its X server gets a
// black picture.
bool screenCanBeRead();
// At a place of the toolkit's, as colorOnScreens() says.
QColor colorOnScreen(const QPoint &place);

// The picture of a screen, by its index, from a place that is counted from the screen's own corner.
using ScreenGrab = std::function<QImage(int screen, const QPoint &place)>;
// At a point among the screens. Where they gave no picture, what the last call gave; invalid before any, and
// for a point outside every screen.
QColor colorOnScreens(const QVector<QRect> &screens, const QPoint &point, const ScreenGrab &grab);
