// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The one running copy of the program of each user. From acquire() until the object is destroyed, which must
// not happen before the process ends, it holds a lock of the user's own and a shared memory segment with the
// application's name. Main thread.
#pragma once

#include "environment/FileLock.h"

#include <QSharedMemory>
#include <memory>

class SingleInstance
{
public:
    SingleInstance();

    // False when another living copy of this user holds the lock or the memory. True otherwise, also when
    // neither can be had at all: the program then runs without this guard.
    bool acquire();

private:
    bool takeMemory();

    std::unique_ptr<FileLock> lock_;
    QSharedMemory memory_;
};
