// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What every device of the emulator needs of the wire: which commands there are, who behind a USB plug
// answers them, how long their arguments are, and the making of replies and notices.
#pragma once

#include "device/hidusb/wire/Report.h"

#include <string>

namespace emulator
{

// Who answers a command that reaches a receiver.
enum class Route : uint8_t {
    Device, // the device at the plug itself
    Mouse,  // a receiver asks its mouse
    Boot,   // only a boot loader
};

struct CommandRow {
    const char *name; // as orders and logs call it
    wire::Command command;
    uint8_t least; // bytes of argument in a request
    uint8_t most;
    Route route;
};

// Null for a code or name that does not exist. Notices are listed too; no device answers them.
const CommandRow *findCommand(uint8_t code);
const CommandRow *findCommand(const std::string &name);

wire::Report makeReply(const wire::Report &request, wire::Status status);
wire::Report makeReply(const wire::Report &request, const void *payload, std::size_t size);
wire::Report makeNotice(wire::Command command, const void *payload, std::size_t size);

template <typename Record> wire::Report replyWith(const wire::Report &request, const Record &record)
{
    return makeReply(request, &record, sizeof record);
}

// The argument of a request as a record; its length has been checked against the table.
template <typename Record> Record argumentOf(const wire::Report &request)
{
    static_assert(sizeof(Record) <= wire::PayloadSize && std::is_trivially_copyable_v<Record>);
    Record record;
    __builtin_memcpy(&record, request.Payload, sizeof record);
    return record;
}

} // namespace emulator
