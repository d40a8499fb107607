// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Emitter: one emission of the hub on another thread, and whether that thread waits. Main thread.
#pragma once

#include "hub/PostMsg.h"

#include <QFile>
#include <atomic>
#include <thread>
#include <unistd.h>

// The thread stands in the kernel and waits.
inline bool sleeps(pid_t thread)
{
    QFile stat(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = stat.readAll();
    return text.mid(text.lastIndexOf(')') + 2, 1) == "S";
}

// Runs the emission on a thread of its own.
struct Emitter {
    explicit Emitter(void (*emission)(PostMsg *hub))
        : worker([this, emission] {
            thread = ::gettid();
            emission(PostMsg::instance());
            returned = true;
        })
    {
    }
    ~Emitter() { worker.join(); }

    std::atomic<pid_t> thread{0};
    std::atomic<bool> returned{false};
    std::thread worker;
};
