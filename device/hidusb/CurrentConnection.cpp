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
        current().connection->end();
    current().connection =
        std::make_shared<Connection>(path != nullptr ? path : "", callback, ++current().generation);
    current().connection->start();
}

void closeConnection()
{
    const std::lock_guard lock(current().mutex);
    if (current().connection)
        current().connection->end();
    current().connection.reset();
}

bool finishWrites(const char *path)
{
    const std::shared_ptr<Connection> connection = currentConnection();
    return !connection || path == nullptr || connection->path() != path || connection->finishWrites();
}

} // namespace hidusb
