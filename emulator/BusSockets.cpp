// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/BusSockets.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>

namespace emulator
{

static constexpr std::size_t PortClientLimit = 64; // of one interface
static constexpr std::size_t DatagramLimit = 4096;

void BusSockets::sync(const std::vector<Interface> &wanted, const Closed &closed)
{
    std::map<std::string, Interface> missing;
    for (const Interface &face : wanted)
        missing.emplace(wire::formatBusName(face.name), face);
    for (auto port = ports_.begin(); port != ports_.end();) {
        if (missing.erase(port->first) > 0) {
            ++port;
            continue;
        }
        folder_.remove(port->first);
        closed(port->second.face);
        port = ports_.erase(port);
    }
    for (const auto &[name, face] : missing) {
        FileDescriptor listener = folder_.listen(name, SOCK_SEQPACKET);
        if (listener.valid())
            ports_.emplace(name, Port{face, std::move(listener), {}});
    }
}

void BusSockets::addTo(std::vector<pollfd> &polled, const Filter &reads) const
{
    for (const auto &[name, port] : ports_) {
        polled.push_back({port.listener.get(), POLLIN, 0});
        if (!reads(port.face))
            continue;
        for (const FileDescriptor &client : port.clients)
            polled.push_back({client.get(), POLLIN, 0});
    }
}

void BusSockets::service(const ReadyMap &ready, const Handler &handler)
{
    for (auto &[name, port] : ports_) {
        const auto gone = [&ready, &port = port, &handler](const FileDescriptor &client) {
            return ready.count(client.get()) > 0 && !receive(port, client.get(), handler);
        };
        port.clients.erase(std::remove_if(port.clients.begin(), port.clients.end(), gone),
                           port.clients.end());
        if (ready.count(port.listener.get()) > 0)
            accept(port);
    }
}

void BusSockets::accept(Port &port)
{
    for (;;) {
        FileDescriptor client(::accept4(port.listener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!client.valid())
            return;
        if (port.clients.size() < PortClientLimit)
            port.clients.push_back(std::move(client));
    }
}

bool BusSockets::receive(const Port &port, int client, const Handler &handler)
{
    uint8_t bytes[DatagramLimit];
    const ssize_t size = ::recv(client, bytes, sizeof bytes, MSG_DONTWAIT);
    if (size < 0)
        return errno == EAGAIN || errno == EINTR;
    if (size == 0) {
        // An empty datagram looks like the end of the connection.
        pollfd state{client, POLLIN | POLLRDHUP, 0};
        return ::poll(&state, 1, 0) == 0 || (state.revents & (POLLRDHUP | POLLHUP | POLLERR)) == 0;
    }
    handler(port.face, bytes, static_cast<std::size_t>(size));
    return true;
}

void BusSockets::send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes)
{
    for (auto &[name, port] : ports_) {
        if (port.face.device != device || port.face.name.usagePage != usagePage)
            continue;
        for (const FileDescriptor &client : port.clients)
            // A full queue drops the report; a client that has gone is found at the next poll.
            (void)::send(client.get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
}

std::size_t BusSockets::clientCount() const
{
    std::size_t count = 0;
    for (const auto &[name, port] : ports_)
        count += port.clients.size();
    return count;
}

} // namespace emulator
