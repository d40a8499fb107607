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
    // The lock orders two copies that one double click started. On a data root that cannot be written there
    // is no lock, and the check runs without it.
    const FileLock decision(dataRoot() + QStringLiteral("/Instance.lock"), DecisionTimeMs);

    // Tries twice: the segment's key is known only once its file is made, and a killed copy may have left a
    // segment under the same key.
    for (int tries = 0; tries < 2; ++tries) {
        // On Unix the segment of a killed copy survives it. The last process to detach removes it, so
        // attaching and detaching removes a dead copy's segment and leaves that of a living one.
        if (memory_.attach(QSharedMemory::ReadWrite))
            memory_.detach();

        if (memory_.attach(QSharedMemory::ReadWrite)) {
            memory_
                .detach(); // a copy whose notice stays open must not keep the segment of one that has ended
            return false;
        }
        if (memory_.create(MemorySize, QSharedMemory::ReadWrite))
            break;
    }
    return true;
}
