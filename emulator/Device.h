// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Base of the devices that can be plugged into the bus: a mouse on its cable, a receiver. Devices do not know
// sockets, threads or each other; the Scene routes reports between them. One thread at a time.
#pragma once

#include "emulator/BootLoader.h"

#include <string>
#include <vector>

namespace emulator
{

enum class Mode : uint8_t {
    Normal,
    Absent, // switching to or from its boot loader: neither on the bus nor on the air
    Boot,
};

// The action to take after an answer has been sent.
enum class After : uint8_t { Nothing, EnterBoot, LeaveBoot, ClearDone };

class Device
{
public:
    explicit Device(std::string deviceId) : id(std::move(deviceId)) {}
    virtual ~Device() = default;
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

    // Answers a request addressed to this device; the argument's length has been checked.
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
    unsigned starts = 0;               // how often it has lost its power
    std::vector<wire::Report> notices; // to send over the live link

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
    // Stores an argument of one byte, at most `most`.
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
