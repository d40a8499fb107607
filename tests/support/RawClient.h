// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A host in the rough: one connection to one interface of the emulated bus, datagrams in and out. It
// knows nothing of the device layer, so that it can also send and see what is wrong.
#pragma once

#include "device/hidusb/wire/BusName.h"
#include "device/hidusb/wire/Report.h"

#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

class RawClient
{
public:
    using Bytes = std::vector<uint8_t>;
    static constexpr std::chrono::seconds Patience{20}; // a failing test's, not a measure

    RawClient() = default;
    RawClient(const std::string &folder, const std::string &serial,
              uint16_t usagePage = wire::SettingsUsagePage)
    {
        open(folder, serial, usagePage);
    }
    ~RawClient() { close(); }
    RawClient(RawClient &&other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    RawClient(const RawClient &) = delete;
    RawClient &operator=(const RawClient &) = delete;

    static std::optional<wire::BusName> find(const std::string &folder, const std::string &serial,
                                             uint16_t usagePage)
    {
        for (const auto &entry : std::filesystem::directory_iterator(folder)) {
            const auto name = wire::parseBusName(entry.path().filename().string());
            if (name && name->serial == serial && name->usagePage == usagePage)
                return name;
        }
        return std::nullopt;
    }

    // Waits for the interface to appear.
    bool open(const std::string &folder, const std::string &serial, uint16_t usagePage)
    {
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        close();
        while (std::chrono::steady_clock::now() < deadline) {
            const auto name = find(folder, serial, usagePage);
            if (name && connectTo(folder + "/" + wire::formatBusName(*name)))
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return false;
    }
    void close()
    {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
    }
    bool isOpen() const { return fd_ >= 0; }
    int descriptor() const { return fd_; }

    bool send(const void *bytes, std::size_t size) const
    {
        return ::send(fd_, bytes, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
    }
    // The next datagram; nothing when none comes in time or the device has gone.
    std::optional<Bytes> receive(std::chrono::milliseconds time = Patience) const
    {
        pollfd polled{fd_, POLLIN, 0};
        Bytes bytes(4096);
        if (::poll(&polled, 1, static_cast<int>(time.count())) <= 0)
            return std::nullopt;
        const ssize_t size = ::recv(fd_, bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (size <= 0)
            return std::nullopt;
        bytes.resize(static_cast<std::size_t>(size));
        return bytes;
    }
    // Waits until the other side has closed the connection.
    bool waitForEnd() const
    {
        pollfd polled{fd_, POLLRDHUP, 0};
        const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(Patience);
        return ::poll(&polled, 1, static_cast<int>(wait.count())) == 1;
    }

    static wire::Report request(wire::Command command, uint8_t sequence, const Bytes &payload = {},
                                uint16_t address = 0)
    {
        wire::Report report{};
        report.Id = wire::ReportId;
        report.CommandCode = static_cast<uint8_t>(command);
        report.Sequence = sequence;
        report.setAddress(address);
        report.Length = static_cast<uint8_t>(payload.size());
        std::copy(payload.begin(), payload.end(), report.Payload);
        wire::seal(report);
        return report;
    }
    uint8_t post(wire::Command command, const Bytes &payload = {}, uint16_t address = 0)
    {
        sequence_ = static_cast<uint8_t>(sequence_ % 255 + 1);
        const wire::Report report = request(command, sequence_, payload, address);
        send(&report, sizeof report);
        return sequence_;
    }
    // Sends a request and waits for its answer; notices that come in between are kept in notices.
    std::optional<wire::Report> ask(wire::Command command, const Bytes &payload = {}, uint16_t address = 0)
    {
        const uint8_t sequence = post(command, payload, address);
        while (const auto report = receiveSound()) {
            if (report->Sequence == sequence && report->command() == command)
                return report;
            notices.push_back(*report);
        }
        return std::nullopt;
    }
    // The next notice of a command, from those kept or still to come.
    std::optional<wire::Report> notice(wire::Command command)
    {
        for (std::size_t i = 0;; ++i) {
            while (i >= notices.size()) {
                const auto report = receiveSound();
                if (!report)
                    return std::nullopt;
                notices.push_back(*report);
            }
            const wire::Report report = notices[i];
            if (report.command() != command || report.Sequence != 0)
                continue;
            notices.erase(notices.begin() + static_cast<std::ptrdiff_t>(i));
            return report;
        }
    }
    static Bytes payloadOf(const wire::Report &report)
    {
        return Bytes(report.Payload,
                     report.Payload + std::min<std::size_t>(report.Length, wire::PayloadSize));
    }

    std::vector<wire::Report> notices;

private:
    std::optional<wire::Report> receiveSound() const
    {
        const auto bytes = receive();
        if (!bytes || !wire::isSound(bytes->data(), bytes->size()))
            return std::nullopt;
        wire::Report report;
        std::memcpy(&report, bytes->data(), sizeof report);
        return report;
    }
    bool connectTo(const std::string &path)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= sizeof address.sun_path)
            return false;
        std::memcpy(address.sun_path, path.c_str(), path.size());
        fd_ = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        if (::connect(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
            return true;
        close();
        return false;
    }

    int fd_ = -1;
    uint8_t sequence_ = 0;
};
