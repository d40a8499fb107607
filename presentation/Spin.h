// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Waiting on the main thread with the event loop running, because threads with blocking connections to the
// main thread stop until their signal is delivered.
#pragma once

#include <QEventLoop>
#include <QTimer>

inline void spinEventLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}
