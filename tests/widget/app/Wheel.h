// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A wheel over a widget, as the window system reports it: what the widget ignores goes to its parents.
#pragma once

#include <QApplication>
#include <QWheelEvent>
#include <QtTest>

inline void turnWheel(QWidget *widget, int notches)
{
    const QPointF middle(widget->rect().center());
    QWheelEvent event(middle, widget->mapToGlobal(middle.toPoint()), {}, QPoint(0, 120 * notches),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event); // only such ones go to the parents and may give the focus
    qApp->notify(widget, &event);
}
