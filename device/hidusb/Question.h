// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Questions to a device by its path: one request, its reply. Null, unknown and stale paths have no answer.
#pragma once

#include "device/hidusb/Channel.h"

#include <cstring>

namespace hidusb
{

// The payload of a good reply of exactly `size` bytes goes to `payload`.
bool ask(const char *path, const wire::Report &request, void *payload, std::size_t size,
         int tries = UsualTries);

template <typename Record>
bool fetch(const char *path, wire::Command command, Record *record, int tries = UsualTries)
{
    return record != nullptr && ask(path, makeRequest(command), record, sizeof *record, tries);
}

template <typename Record> bool store(const char *path, wire::Command command, const Record *record)
{
    return record != nullptr && ask(path, makeRequest(command, 0, record, sizeof *record), nullptr, 0);
}

constexpr int OnLineTries = 2;
// The on-line question. A mouse whose last write stayed unanswered counts as away.
std::optional<wire::OnLineReply> askOnLine(const char *path);

} // namespace hidusb
