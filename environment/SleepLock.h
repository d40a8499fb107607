// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SleepLock: keeps the machine from sleeping and from being shut down by the desktop, where systemd-logind
// manages it; elsewhere it does nothing. The lock ends with the object and with the process, also when that
// is killed. Main thread; no call waits.
#pragma once

#include <QPointer>
#include <QProcess>

class SleepLock
{
public:
    SleepLock() = default;
    ~SleepLock() { release(); }
    SleepLock(const SleepLock &) = delete;
    SleepLock &operator=(const SleepLock &) = delete;

    // `reason`: for the user, whom the desktop shows it.
    void take(const QString &reason);
    void release();

private:
    QPointer<QProcess> holder_; // holds the lock until its standard input is closed
};
