// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SystemEnd: ends the program in order when that is asked for from outside, by SIGTERM, SIGINT or SIGHUP, and
// lets the device go when the X server or the Wayland compositor is gone, at which the toolkit ends the
// process, and when the event loop has ended. A signal that was ignored when the program started, as under
// nohup, stays ignored. More than one may come, as at the end of a session. Each is refused while firmware is
// written; else, and when the main thread cannot refuse it, the process has ended 3 s later in any case. One
// object, after the application object. Main thread.
#pragma once

#include <QSocketNotifier>

class DialogMain;

class SystemEnd
{
public:
    explicit SystemEnd(DialogMain *window);
    ~SystemEnd();
    SystemEnd(const SystemEnd &) = delete;
    SystemEnd &operator=(const SystemEnd &) = delete;

private:
    QSocketNotifier notifier_;
};
