// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Control.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>

namespace emulator
{

static constexpr std::size_t LineLimit = 65536; // a whole flash fits
static constexpr std::size_t OutputLimit = 1048576;
static constexpr std::size_t FollowLimit = 65536; // bytes that wait for one follower
static constexpr std::size_t ControlClientLimit = 16;

bool Control::open(const BusFolder &folder)
{
    listener_ = folder.listen(BusFolder::ControlName, SOCK_STREAM);
    return listener_.valid();
}

void Control::close(const BusFolder &folder)
{
    folder.remove(BusFolder::ControlName);
    listener_.reset();
    clients_.clear();
}

void Control::addTo(std::vector<pollfd> &polled) const
{
    polled.push_back({listener_.get(), POLLIN, 0});
    for (const Client &client : clients_) {
        // Reads no further orders from a client that does not read its answers.
        const short events = client.output.empty() ? POLLIN : POLLOUT;
        polled.push_back({client.socket.get(), events, 0});
    }
}

void Control::service(const ReadyMap &ready, const Runner &run)
{
    for (Client &client : clients_) {
        if (ready.count(client.socket.get()) == 0)
            continue;
        if (client.output.empty())
            read(client, run);
        write(client);
    }
    clients_.erase(
        std::remove_if(clients_.begin(), clients_.end(), [](const Client &client) { return client.gone; }),
        clients_.end());
    if (ready.count(listener_.get()) > 0)
        accept();
}

bool Control::hasFollowers() const
{
    return std::any_of(clients_.begin(), clients_.end(),
                       [](const Client &client) { return !client.followed.empty(); });
}

void Control::publish(const std::string &device, const std::string &line)
{
    for (Client &client : clients_) {
        if (client.followed != device && client.followed != Everything)
            continue;
        if (client.output.size() + line.size() > FollowLimit) {
            ++client.lost;
            continue;
        }
        if (client.lost > 0)
            client.output += "-- " + std::to_string(client.lost) + " lost\n";
        client.lost = 0;
        client.output += line;
    }
}

void Control::accept()
{
    FileDescriptor socket(::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket.valid() && clients_.size() < ControlClientLimit) {
        clients_.emplace_back();
        clients_.back().socket = std::move(socket);
    }
}

void Control::read(Client &client, const Runner &run)
{
    char bytes[4096];
    const ssize_t size = ::recv(client.socket.get(), bytes, sizeof bytes, MSG_DONTWAIT);
    if (size <= 0) {
        client.gone = size == 0 || (errno != EAGAIN && errno != EINTR);
        return;
    }
    client.input.append(bytes, static_cast<std::size_t>(size));
    std::size_t end = 0;
    while ((end = client.input.find('\n')) != std::string::npos) {
        const std::string line = client.input.substr(0, end);
        client.input.erase(0, end + 1);
        const Answer answer = run(line);
        client.output += answer.text;
        if (!answer.followed.empty())
            client.followed = answer.followed;
    }
    client.gone = client.input.size() > LineLimit || client.output.size() > OutputLimit;
}

void Control::write(Client &client)
{
    if (client.gone || client.output.empty())
        return;
    const ssize_t size =
        ::send(client.socket.get(), client.output.data(), client.output.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (size >= 0)
        client.output.erase(0, static_cast<std::size_t>(size));
    else
        client.gone = errno != EAGAIN && errno != EINTR;
}

// The last line of a text, without its end; empty while the text does not end with a line.
static std::string lastLine(const std::string &text)
{
    if (text.size() < 2 || text.back() != '\n')
        return {};
    const std::size_t before = text.rfind('\n', text.size() - 2);
    const std::size_t begin = before == std::string::npos ? 0 : before + 1;
    return text.substr(begin, text.size() - 1 - begin);
}

bool isErrorAnswer(const std::string &answer) { return lastLine(answer).compare(0, 6, "error ") == 0; }

std::optional<std::string> sendOrder(const std::string &folder, const std::string &line)
{
    const FileDescriptor socket = BusFolder::connect(folder, BusFolder::ControlName, SOCK_STREAM);
    const std::string text = line + "\n";
    if (!socket.valid() ||
        ::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size()))
        return std::nullopt;
    std::string answer;
    char bytes[4096];
    while (lastLine(answer) != "ok" && !isErrorAnswer(answer)) {
        const ssize_t size = ::recv(socket.get(), bytes, sizeof bytes, 0);
        if (size <= 0)
            return std::nullopt;
        answer.append(bytes, static_cast<std::size_t>(size));
    }
    return answer;
}

} // namespace emulator
