// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/FileLock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{
constexpr unsigned long PauseMs = 5;
}

FileLock::FileLock(const QString &path, int timeoutMs)
    : file_(open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600))
{
    error_ = file_ < 0 ? errno : 0;
    const QDeadlineTimer deadline(timeoutMs);
    while (file_ >= 0 && !held_) {
        held_ = flock(file_, LOCK_EX | LOCK_NB) == 0;
        error_ = held_ ? 0 : errno;
        taken_ = error_ == EWOULDBLOCK;
        if (!taken_ || deadline.hasExpired())
            return;
        QThread::msleep(PauseMs);
    }
}

FileLock::~FileLock()
{
    if (file_ >= 0)
        close(file_);
}
