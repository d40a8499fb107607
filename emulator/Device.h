// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Anything that can be plugged into the bus: what a mouse on its cable and a receiver have in common.
// Devices know nothing of sockets, threads or each other; the Scene moves reports between them. One
// thread at a time.
#pragma once

#include "emulator/BootLoader.h"

#include <string>
#include <vector>

namespace emulator
{

enum class Mode : uint8_t {
    Normal,
    Absent, // between itself and its boot loader: not on the bus, not on the air
    Boot,
};

// What has to follow an answer once it has been sent.
enum class After : uint8_t { Nothing, EnterBoot, LeaveBoot, ClearDone };

class Device
{
public:
    explicit Device(std::string deviceId) : id(std::move(deviceId)) {}
    virtual ~Device() = default;
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

    // Answers a request that reached this device as itself; the argument's length has been checked.
    virtual wire::Report answer(const wire::Report &request) = 0;
    virtual wire::BootIdentityReply bootIdentity() const = 0;
    virtual uint8_t bootTarget() const = 0;

    After takeAfter()
    {
        const After what = after_;
        after_ = After::Nothing;
        return what;
    }

    const std::string id; // also the serial in the bus name
    bool plugged = false;
    Mode mode = Mode::Normal;
    uint16_t version = 0x0100; // high byte major, low byte minor
    BootLoader boot;
    std::vector<wire::Report> notices; // to be sent through whatever link is live

protected:
    wire::Report enterBoot(const wire::Report &request)
    {
        if (request.Payload[0] != bootTarget())
            return makeReply(request, wire::Status::Refused);
        after_ = After::EnterBoot;
        return makeReply(request, wire::Status::Ok);
    }
    static wire::Report accept(const wire::Report &request, bool done)
    {
        return makeReply(request, done ? wire::Status::Ok : wire::Status::Refused);
    }
    // Keeps an argument of one byte that is at most `most`.
    static wire::Report keep(const wire::Report &request, uint8_t &value, uint8_t most)
    {
        const bool fits = request.Payload[0] <= most;
        if (fits)
            value = request.Payload[0];
        return accept(request, fits);
    }
    wire::VersionReply versionReply() const
    {
        return {static_cast<uint8_t>(version & 0xFF), static_cast<uint8_t>(version >> 8)};
    }

    After after_ = After::Nothing;
};

} // namespace emulator
