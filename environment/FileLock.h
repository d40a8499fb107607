// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A lock between processes. The kernel releases it when its process dies. The file at `path` stays behind,
// empty. One object per thread.
#pragma once

#include <QString>

class FileLock
{
public:
    // Waits up to `timeoutMs` for the other holder.
    FileLock(const QString &path, int timeoutMs);
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    bool isHeld() const { return held_; }
    // Another process or object has it. Neither this nor held: the file cannot be made, or its file system
    // knows no locks, and the error says why.
    bool isTaken() const { return taken_; }
    int error() const { return error_; }

private:
    int file_;
    int error_ = 0; // an errno
    bool held_ = false;
    bool taken_ = false;
};
