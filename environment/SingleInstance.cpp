// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/SingleInstance.h"

#include "environment/DataRoot.h"
#include "environment/FileLock.h"

namespace
{
constexpr int DecisionTimeMs = 2000;
constexpr int MemorySize = 1;
} // namespace

SingleInstance::SingleInstance() : memory_(applicationName()) {}

bool SingleInstance::acquire()
{
    // Two copies started by one double click decide one after the other. Without the lock, on a data
    // root that cannot be written, the decision is made all the same.
    const FileLock decision(dataRoot() + QStringLiteral("/Instance.lock"), DecisionTimeMs);

    // A second try: the key of the memory is only known once its file is made, and under a new file's key
    // may lie what a killed copy left under another's.
    for (int tries = 0; tries < 2; ++tries) {
        // The memory of a copy that was killed outlives it here. Whoever detaches last removes it, so this
        // pair clears a dead copy's memory and leaves a living copy's alone.
        if (memory_.attach(QSharedMemory::ReadWrite))
            memory_.detach();

        if (memory_.attach(QSharedMemory::ReadWrite)) {
            memory_.detach(); // a notice left standing must not hold the place of a copy that has ended
            return false;
        }
        if (memory_.create(MemorySize, QSharedMemory::ReadWrite))
            break;
    }
    return true;
}
