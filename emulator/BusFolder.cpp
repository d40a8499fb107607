// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/BusFolder.h"

#include "device/hidusb/wire/BusName.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <vector>

namespace emulator
{

static constexpr int Backlog = 64;

// A socket's address holds 107 characters; through the folder's descriptor every path fits.
static sockaddr_un addressOf(int folder, const std::string &name)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder, name.c_str());
    return address;
}

static FileDescriptor openFolder(const std::string &path)
{
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

bool BusFolder::open(const std::string &path, std::string &error)
{
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        error = path + ": " + std::strerror(errno);
        return false;
    }
    FileDescriptor folder = openFolder(path);
    if (!folder.valid()) {
        error = path + ": " + std::strerror(errno);
        return false;
    }
    if (::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) {
        error = path + ": another emulator holds this bus";
        return false;
    }
    folder_ = std::move(folder);
    removeStale();
    return true;
}

void BusFolder::removeStale() const
{
    // Closing the stream also closes its descriptor.
    DIR *stream = ::fdopendir(::fcntl(folder_.get(), F_DUPFD_CLOEXEC, 0));
    if (stream == nullptr)
        return;
    std::vector<std::string> stale;
    while (const dirent *entry = ::readdir(stream)) {
        const std::string name = entry->d_name;
        const std::string shown = name.substr(name[0] == '.' ? 1 : 0);
        struct stat status {
        };
        const bool ours = shown == ControlName || wire::parseBusName(shown).has_value();
        if (ours && ::fstatat(folder_.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISSOCK(status.st_mode))
            stale.push_back(name);
    }
    ::closedir(stream);
    for (const std::string &name : stale)
        remove(name);
}

FileDescriptor BusFolder::listen(const std::string &name, int type) const
{
    FileDescriptor socket(::socket(AF_UNIX, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const std::string hidden = "." + name;
    const sockaddr_un address = addressOf(folder_.get(), hidden);
    remove(hidden);
    const bool listens =
        socket.valid() &&
        ::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        ::listen(socket.get(), Backlog) == 0;
    // A link, not a rename, so that a watcher of the folder sees a new name appear.
    const bool shown =
        listens && ::linkat(folder_.get(), hidden.c_str(), folder_.get(), name.c_str(), 0) == 0;
    remove(hidden);
    return shown ? std::move(socket) : FileDescriptor();
}

void BusFolder::remove(const std::string &name) const { ::unlinkat(folder_.get(), name.c_str(), 0); }

FileDescriptor BusFolder::connect(const std::string &path, const std::string &name, int type)
{
    const FileDescriptor folder = openFolder(path);
    if (!folder.valid())
        return FileDescriptor();
    FileDescriptor socket(::socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
    const sockaddr_un address = addressOf(folder.get(), name);
    if (!socket.valid() ||
        ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        return FileDescriptor();
    return socket;
}

} // namespace emulator
