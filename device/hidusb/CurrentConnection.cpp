// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The one open connection of the process.
#include "device/hidusb/Connection.h"

namespace hidusb
{

namespace
{

struct ConnectionState {
    std::mutex mutex;
    std::shared_ptr<Connection> connection;
    std::weak_ptr<Connection> last; // also after it was closed
    uint64_t generation = 0;
};

} // namespace

static ConnectionState &current()
{
    static auto *state = new ConnectionState;
    return *state;
}

std::shared_ptr<Connection> currentConnection()
{
    const std::lock_guard lock(current().mutex);
    return current().connection;
}

void openConnection(const char *path, ProtocolCallback_t callback)
{
    const std::lock_guard lock(current().mutex);
    if (current().connection)
        current().connection->leave();
    const auto made =
        std::make_shared<Connection>(path != nullptr ? path : "", callback, ++current().generation);
    made->start(current().last.lock());
    current().connection = made;
    current().last = made;
}

// The closed connection leaves before the lock is let go, so that it makes no more calls behind a start.
void closeConnection()
{
    std::unique_lock lock(current().mutex);
    const std::shared_ptr<Connection> closed = std::move(current().connection);
    if (!closed)
        return;
    closed->leave();
    lock.unlock();
    closed->awaitLeft();
}

bool finishWrites(const char *path, Clock::time_point until)
{
    const std::shared_ptr<Connection> connection = currentConnection();
    return !connection || path == nullptr || connection->path() != path || connection->finishWrites(until);
}

} // namespace hidusb
