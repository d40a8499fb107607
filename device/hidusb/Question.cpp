// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Question.h"

#include "device/hidusb/Connection.h"

namespace hidusb
{

constexpr int OnLineTries = 2;
constexpr std::chrono::milliseconds OnLineReplyTimeout{80}; // leaves time for a write after a second try

static bool ask(const std::shared_ptr<Channel> &channel, const Limits &limits, const wire::Report &request,
                void *payload, std::size_t size)
{
    const std::optional<wire::Report> reply = channel ? channel->ask(request, limits) : std::nullopt;
    if (!reply || reply->status() != wire::Status::Ok || reply->Length != size)
        return false;
    if (size > 0)
        std::memcpy(payload, reply->Payload, size);
    return true;
}

bool ask(const char *path, const wire::Report &request, void *payload, std::size_t size, int tries)
{
    Limits limits;
    limits.tries = tries;
    return ask(path != nullptr ? acquireChannel(path) : nullptr, limits, request, payload, size);
}

std::optional<wire::OnLineReply> askOnLine(const char *path)
{
    const Deadline until{Clock::now() + OnLineTime};
    Limits limits;
    limits.tries = OnLineTries;
    limits.answer = OnLineReplyTimeout;
    limits.until = &until;
    wire::OnLineReply reply{};
    if (!ask(path != nullptr ? acquireChannel(path, until) : nullptr, limits,
             makeRequest(wire::Command::OnLine), &reply, sizeof reply))
        return std::nullopt;
    if (reply.Online != 0 && !finishWrites(path, until))
        reply.Online = 0;
    return reply;
}

} // namespace hidusb
