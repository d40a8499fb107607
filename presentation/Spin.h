// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Waiting on the main thread. The event loop turns meanwhile, because threads that deliver to the main
// thread stand still until it has taken what they bring.
#pragma once

#include <QEventLoop>
#include <QTimer>

inline void spinEventLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}
