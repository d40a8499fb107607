// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Work on another thread, as the layer's callbacks do it, while the main thread turns its event loop.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <atomic>
#include <functional>
#include <thread>

// Returns when the work is done. Work that never ends can't be left behind, as it uses the test's own
// objects: the process ends with it.
inline void runOnOtherThread(const std::function<void()> &work)
{
    std::atomic<bool> done{false};
    std::thread thread([&] {
        work();
        done = true;
    });
    QElapsedTimer patience;
    patience.start();
    while (!done) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (patience.hasExpired(60000))
            qFatal("The other thread does not come to its end.");
    }
    thread.join();
}
