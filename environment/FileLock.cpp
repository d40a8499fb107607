// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/FileLock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{
constexpr unsigned long PauseMs = 5;
}

FileLock::FileLock(const QString &path, int timeoutMs)
    : m_file(open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600))
{
    const QDeadlineTimer deadline(timeoutMs);
    while (m_file >= 0 && !m_held) {
        m_held = flock(m_file, LOCK_EX | LOCK_NB) == 0;
        if (m_held || deadline.hasExpired())
            return;
        QThread::msleep(PauseMs);
    }
}

FileLock::~FileLock()
{
    if (m_file >= 0)
        close(m_file);
}
