// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Question.h"

#include "device/hidusb/Connection.h"

namespace hidusb
{

bool ask(const char *path, const wire::Report &request, void *payload, std::size_t size, int tries)
{
    const std::shared_ptr<Channel> channel = path != nullptr ? acquireChannel(path) : nullptr;
    if (!channel)
        return false;
    Limits limits;
    limits.tries = tries;
    const std::optional<wire::Report> reply = channel->ask(request, limits);
    if (!reply || reply->status() != wire::Status::Ok || reply->Length != size)
        return false;
    if (size > 0)
        std::memcpy(payload, reply->Payload, size);
    return true;
}

std::optional<wire::OnLineReply> askOnLine(const char *path)
{
    wire::OnLineReply reply{};
    if (!fetch(path, wire::Command::OnLine, &reply, OnLineTries))
        return std::nullopt;
    if (reply.Online != 0 && !finishWrites(path))
        reply.Online = 0;
    return reply;
}

} // namespace hidusb
