// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// TimedApplication: knows how long the longest event held the main thread, all that it led to included, and
// how much of such a time the thread itself ran: the rest is other programs'. Times in milliseconds.
#pragma once

#include <QApplication>
#include <algorithm>
#include <ctime>

class TimedApplication : public QApplication
{
public:
    using QApplication::QApplication;
    static TimedApplication *instance() { return static_cast<TimedApplication *>(qApp); }

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (inside)
            return QApplication::notify(receiver, event);
        inside = true;
        const double start = now(CLOCK_MONOTONIC);
        const double startOwn = now(CLOCK_THREAD_CPUTIME_ID);
        const bool taken = QApplication::notify(receiver, event);
        longest = std::max(longest, now(CLOCK_MONOTONIC) - start);
        longestOwn = std::max(longestOwn, now(CLOCK_THREAD_CPUTIME_ID) - startOwn);
        inside = false;
        return taken;
    }
    void forget() { longest = longestOwn = 0; }

    static double now(clockid_t clock)
    {
        timespec time{};
        clock_gettime(clock, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    }

    double longest = 0;
    double longestOwn = 0;

private:
    bool inside = false;
};
