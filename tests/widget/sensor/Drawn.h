// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of self-drawn widgets share: the pointer, and a look at the pixels.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>
#include <QtTest>
#include <cmath>

namespace drawn
{

inline void move(QWidget *widget, const QPointF &at, Qt::MouseButtons buttons = Qt::NoButton)
{
    QMouseEvent event(QEvent::MouseMove, at, Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

inline void press(QWidget *widget, const QPointF &at, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseButtonPress, at, button, button, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

inline void release(QWidget *widget, const QPointF &at)
{
    QMouseEvent event(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

// On black, so that what is painted with opacity shows.
inline QImage painted(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// How many pixels beside that point, within a few, are of the colour.
template <typename Is> int countAround(const QImage &image, const QPointF &at, int reach, Is is)
{
    int count = 0;
    for (int y = int(at.y()) - reach; y <= int(at.y()) + reach; ++y)
        for (int x = int(at.x()) - reach; x <= int(at.x()) + reach; ++x)
            count += image.valid(x, y) && is(image.pixel(x, y)) ? 1 : 0;
    return count;
}

} // namespace drawn
