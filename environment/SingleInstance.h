// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The one running copy of the program holds a shared memory segment with the application's name from
// acquire() until the object is destroyed, which must not happen before the process ends. Main thread.
#pragma once

#include <QSharedMemory>

class SingleInstance
{
public:
    SingleInstance();

    // False when another living copy holds the memory. True otherwise, also when the memory cannot be
    // made at all: the program then runs without this guard.
    bool acquire();

private:
    QSharedMemory memory_;
};
