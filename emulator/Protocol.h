// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The wire protocol for the emulator's devices: commands, who behind a USB plug answers each, argument
// lengths, and construction of replies and notices.
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
    const char *name; // in orders and logs
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
