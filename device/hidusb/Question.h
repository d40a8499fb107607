// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One request to a device by its path, and its reply. Null, unknown and stale paths have no reply.
#pragma once

#include "device/hidusb/Channel.h"

#include <cstring>

namespace hidusb
{

// True, with the reply's bytes in `payload`, when the status is Ok and the reply has exactly `size` bytes.
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

// What the main thread waits for the on-line question at most, with the opening of the device and the try of
// a write that waits.
constexpr std::chrono::milliseconds OnLineTime{200};
// Asks whether the mouse is on line. A mouse that does not acknowledge its last write counts as off line.
std::optional<wire::OnLineReply> askOnLine(const char *path);

} // namespace hidusb
