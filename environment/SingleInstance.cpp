// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/SingleInstance.h"

#include "environment/DataRoot.h"

#include <QDebug>
#include <QFile>

namespace
{

constexpr int MemorySize = 1;

// A file system without locks, as some network ones are, answers ENOLCK to each start: without a line nobody
// would know why there are two windows.
std::unique_ptr<FileLock> triedLock(const QString &path)
{
    auto lock = std::make_unique<FileLock>(path, 0);
    if (!lock->isHeld() && !lock->isTaken())
        qDebug() << "No lock for a single window:" << path << qt_error_string(lock->error());
    return lock;
}

// In the data root, where nobody else has a file; if that cannot be written, in the folder of the session.
std::unique_ptr<FileLock> ownLock()
{
    auto lock = triedLock(dataRoot() + QStringLiteral("/Instance.lock"));
    const QString session = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    if (lock->isHeld() || lock->isTaken() || session.isEmpty())
        return lock;
    return triedLock(session + QStringLiteral("/morlen.lock"));
}

} // namespace

SingleInstance::SingleInstance() : memory_(applicationName()) {}

// The memory alone does not decide: its files in the temporary folder belong to whoever started the program
// there first, and a copy of any other user can neither attach to it nor make its own.
bool SingleInstance::acquire()
{
    lock_ = ownLock();
    if (!lock_->isTaken() && takeMemory())
        return true;
    lock_.reset(); // a copy whose notice stays open must not keep the lock of one that has ended
    return false;
}

// False when another copy holds the memory.
bool SingleInstance::takeMemory()
{
    // Tries twice: the segment's key is known only once its file is made, and a killed copy may have left a
    // segment under the same key.
    for (int tries = 0; tries < 2; ++tries) {
        // On Unix the segment of a killed copy survives it. The last process to detach removes it, so
        // attaching and detaching removes a dead copy's segment and leaves that of a living one.
        if (memory_.attach(QSharedMemory::ReadWrite))
            memory_.detach();

        if (memory_.attach(QSharedMemory::ReadWrite)) {
            memory_.detach(); // for the same reason as the lock
            return false;
        }
        if (memory_.create(MemorySize, QSharedMemory::ReadWrite))
            break;
    }
    return true;
}
