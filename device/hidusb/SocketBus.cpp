// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/SocketBus.h"

#include "device/hidusb/WaitableFile.h"
#include "device/hidusb/WireLog.h"
#include "device/hidusb/wire/BusName.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace hidusb
{

namespace
{

class SocketPort : public ReportPort
{
public:
    SocketPort(int socket, std::string path) : path_(std::move(path)), socket_(socket) {}

    bool write(const uint8_t *bytes, std::size_t size) override
    {
        const ssize_t sent = send(socket_.file(), bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0)
            logFailure(path_, "send", errno);
        return sent == static_cast<ssize_t>(size);
    }

    Received read(uint8_t *bytes, std::size_t capacity, int timeoutMs) override
    {
        switch (socket_.wait(timeoutMs)) {
        case WaitableFile::Outcome::Nothing:
            return {Outcome::Nothing, 0};
        case WaitableFile::Outcome::Gone:
            return {Outcome::Gone, 0};
        case WaitableFile::Outcome::Readable:
            break;
        }
        const ssize_t size = recv(socket_.file(), bytes, capacity, MSG_DONTWAIT | MSG_TRUNC);
        if (size < 0)
            logFailure(path_, "recv", errno);
        if (size <= 0)
            return {Outcome::Gone, 0};
        return {Outcome::Report, static_cast<std::size_t>(size)};
    }

    void interrupt() override { socket_.interrupt(); }
    bool isGone() const override { return socket_.isHungUp(); }

private:
    const std::string path_;
    WaitableFile socket_;
};

class FolderChanges : public ChangeSource
{
public:
    explicit FolderChanges(int inotify) : events_(inotify) {}

    bool wait(int timeoutMs) override
    {
        if (events_.wait(timeoutMs) != WaitableFile::Outcome::Readable)
            return false;
        alignas(inotify_event) char buffer[4096];
        while (::read(events_.file(), buffer, sizeof buffer) > 0) {
        }
        return true;
    }

    void interrupt() override { events_.interrupt(); }

private:
    WaitableFile events_;
};

} // namespace

SocketBus::SocketBus(std::string folder) : folder_(std::move(folder) + "/") {}

std::vector<InterfaceInfo> SocketBus::enumerate()
{
    std::vector<InterfaceInfo> found;
    DIR *folder = opendir(folder_.c_str());
    if (folder == nullptr) {
        logFailure(folder_, "opendir", errno);
        return found;
    }
    while (const dirent *entry = readdir(folder)) {
        const auto name = wire::parseBusName(entry->d_name);
        if (name)
            found.push_back({folder_ + entry->d_name, name->vendorId, name->productId, name->release,
                             name->interfaceNumber, name->usagePage, name->serial});
    }
    closedir(folder);
    std::sort(found.begin(), found.end(),
              [](const InterfaceInfo &a, const InterfaceInfo &b) { return a.path < b.path; });
    return found;
}

// A socket address holds 107 characters and a folder's path may be longer, so the path goes through the
// folder's descriptor.
static bool connectIn(int folder, const std::string &name, int socket)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + "/" + name;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

std::unique_ptr<ReportPort> SocketBus::open(const std::string &path)
{
    if (path.compare(0, folder_.size(), folder_) != 0 || !wire::parseBusName(path.substr(folder_.size())))
        return nullptr;
    const int folder = ::open(folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        logFailure(folder_, "open", errno);
        return nullptr;
    }
    const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const bool connected = socket >= 0 && connectIn(folder, path.substr(folder_.size()), socket);
    if (!connected)
        logFailure(path, socket >= 0 ? "connect" : "socket", errno);
    close(folder);
    if (connected)
        return std::make_unique<SocketPort>(socket, path);
    if (socket >= 0)
        close(socket);
    return nullptr;
}

std::unique_ptr<ChangeSource> SocketBus::watch()
{
    // An emulator that starts after the program uses this folder.
    mkdir(folder_.c_str(), S_IRWXU);
    const int inotify = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (inotify < 0) {
        logFailure(folder_, "inotify_init1", errno);
        return nullptr;
    }
    auto changes = std::make_unique<FolderChanges>(inotify);
    constexpr uint32_t mask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
    if (inotify_add_watch(inotify, folder_.c_str(), mask) < 0) {
        logFailure(folder_, "inotify_add_watch", errno);
        return nullptr;
    }
    return changes;
}

} // namespace hidusb
