// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/support/FakeDevice.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace support
{

using wire::Command;

const std::string &busFolder()
{
    static const auto *folder = [] {
        char pattern[] = "/tmp/hidusb-bus-XXXXXX";
        if (mkdtemp(pattern) == nullptr || setenv("HIDUSB_BUS", pattern, 1) != 0)
            throw std::runtime_error("no bus folder");
        std::atexit([] { rmdir(busFolder().c_str()); });
        return new std::string(pattern);
    }();
    return *folder;
}

Datagram datagram(const wire::Report &report)
{
    const auto *bytes = reinterpret_cast<const uint8_t *>(&report);
    return {bytes, bytes + sizeof report};
}

wire::Report replyTo(const wire::Report &request, const void *payload, std::size_t size, wire::Status status)
{
    wire::Report reply{};
    reply.Id = wire::ReportId;
    reply.CommandCode = request.CommandCode;
    reply.Sequence = request.Sequence;
    reply.setAddress(request.address());
    reply.Length = static_cast<uint8_t>(size);
    reply.StatusCode = static_cast<uint8_t>(status);
    if (size > 0)
        std::memcpy(reply.Payload, payload, size);
    wire::seal(reply);
    return reply;
}

wire::Report noticeOf(Command command, const void *payload, std::size_t size)
{
    wire::Report unasked{};
    unasked.CommandCode = static_cast<uint8_t>(command);
    return replyTo(unasked, payload, size);
}

wire::BusName mouseName(const std::string &serial)
{
    return {0x1209, 0x0005, 0x0103, wire::SettingsInterface, wire::SettingsUsagePage, serial};
}

wire::BusName bootName(const std::string &serial)
{
    return {0x1209, 0x00B0, 0x0100, 0, wire::BootUsagePage, serial};
}

static int listenAt(const std::string &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw std::runtime_error("path too long: " + path);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    unlink(path.c_str());
    const int listener = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener, 16) != 0)
        throw std::runtime_error("can't listen at " + path);
    return listener;
}

FakeDevice::FakeDevice(const wire::BusName &name)
    : path_(busFolder() + "/" + wire::formatBusName(name))
    , listener_(listenAt(path_))
    , stop_(eventfd(0, EFD_CLOEXEC))
    , thread_([this] { run(); })
{
}

FakeDevice::~FakeDevice()
{
    unlink(path_.c_str());
    const uint64_t once = 1;
    [[maybe_unused]] const ssize_t size = write(stop_, &once, sizeof once);
    thread_.join();
    for (const int client : clients_)
        close(client);
    close(listener_);
    close(stop_);
}

void FakeDevice::run()
{
    for (;;) {
        std::vector<pollfd> waited{{stop_, POLLIN, 0}, {listener_, POLLIN, 0}};
        {
            const std::lock_guard lock(mutex_);
            for (const int client : clients_)
                waited.push_back({client, POLLIN, 0});
        }
        poll(waited.data(), waited.size(), -1);
        if (waited[0].revents != 0)
            return;
        for (std::size_t i = 2; i < waited.size(); ++i) {
            if (waited[i].revents == 0)
                continue;
            Datagram bytes(256);
            const ssize_t size = recv(waited[i].fd, bytes.data(), bytes.size(), MSG_DONTWAIT);
            bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
            serve(waited[i].fd, bytes);
        }
        const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        const std::lock_guard lock(mutex_);
        if (client >= 0)
            clients_.push_back(client);
    }
}

void FakeDevice::serve(int client, const Datagram &bytes)
{
    if (bytes.empty()) {
        const std::lock_guard lock(mutex_);
        clients_.erase(std::find(clients_.begin(), clients_.end(), client));
        close(client);
        return;
    }
    wire::Report request{};
    std::memcpy(&request, bytes.data(), std::min(bytes.size(), sizeof request));
    std::optional<Answers> scripted;
    {
        const std::lock_guard scriptLock(scriptMutex_);
        {
            const std::lock_guard lock(mutex_);
            requests_.push_back(request);
        }
        if (script_)
            scripted = script_(request);
    }
    for (const Datagram &reply : scripted ? *scripted : answer(request))
        ::send(client, reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

Answers FakeDevice::answer(const wire::Report &request)
{
    const std::lock_guard lock(mutex_);
    auto *flash = reinterpret_cast<uint8_t *>(&flash_) + request.address();
    const wire::OnLineReply onLine{1, {0x11, 0x22, 0x33}};
    const wire::VersionReply version{0x0A, 0x01};
    const BatteryStatus battery{80, 1, {}};
    const uint8_t one = 1;
    switch (request.command()) {
    case Command::Identity:
        return {datagram(replyTo(request, &identity_, sizeof identity_))};
    case Command::OnLine:
        return {datagram(replyTo(request, &onLine, sizeof onLine))};
    case Command::Version:
    case Command::SlaveVersion:
        return {datagram(replyTo(request, &version, sizeof version))};
    case Command::Battery:
        return {datagram(replyTo(request, &battery, sizeof battery))};
    case Command::Config:
    case Command::PairStatus:
    case Command::LongRange:
        return {datagram(replyTo(request, &one, sizeof one))};
    case Command::FlashRead:
        return {datagram(replyTo(request, flash, request.Payload[0]))};
    case Command::FlashWrite:
        std::memcpy(flash, request.Payload, request.Length);
        return {datagram(replyTo(request))};
    default:
        return {datagram(replyTo(request))};
    }
}

void FakeDevice::setScript(Script script)
{
    const std::lock_guard lock(scriptMutex_);
    script_ = std::move(script);
}

void FakeDevice::send(const Datagram &bytes)
{
    const std::lock_guard lock(mutex_);
    for (const int client : clients_)
        ::send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

void FakeDevice::setIdentity(const DeviceIdentity &identity)
{
    const std::lock_guard lock(mutex_);
    identity_ = identity;
}

void FakeDevice::setFlash(const FlashImage &image)
{
    const std::lock_guard lock(mutex_);
    flash_ = image;
}

FlashImage FakeDevice::flash() const
{
    const std::lock_guard lock(mutex_);
    return flash_;
}

void FakeDevice::setFlashByte(uint16_t address, uint8_t value)
{
    const std::lock_guard lock(mutex_);
    reinterpret_cast<uint8_t *>(&flash_)[address] = value;
}

std::vector<wire::Report> FakeDevice::requests() const
{
    const std::lock_guard lock(mutex_);
    return requests_;
}

static bool isSame(const wire::Report &one, const wire::Report &other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

static std::size_t countOf(const std::vector<wire::Report> &requests, Command command)
{
    return static_cast<std::size_t>(
        std::count_if(requests.begin(), requests.end(),
                      [command](const wire::Report &request) { return request.command() == command; }));
}

std::size_t FakeDevice::count(Command command) const { return countOf(requests(), command); }

std::vector<wire::Report> FakeDevice::asked() const
{
    std::vector<wire::Report> first;
    for (const wire::Report &request : requests()) {
        if (std::none_of(first.begin(), first.end(),
                         [&request](const wire::Report &other) { return isSame(request, other); }))
            first.push_back(request);
    }
    return first;
}

std::size_t FakeDevice::asked(Command command) const { return countOf(asked(), command); }

std::size_t FakeDevice::tries(const wire::Report &request) const
{
    const std::vector<wire::Report> all = requests();
    return static_cast<std::size_t>(std::count_if(
        all.begin(), all.end(), [&request](const wire::Report &other) { return isSame(request, other); }));
}

void FakeDevice::clearRequests()
{
    const std::lock_guard lock(mutex_);
    requests_.clear();
}

} // namespace support
