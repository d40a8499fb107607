// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The interface between the layer and its back ends, which list, open and watch HID interfaces. There is one
// back end for each kind of bus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace hidusb
{

struct InterfaceInfo {
    std::string path;
    uint16_t vendorId = 0;
    uint16_t productId = 0;
    uint16_t release = 0; // high byte major, low byte minor
    int interfaceNumber = -1;
    uint16_t usagePage = 0;
    // The place where the device is plugged in, which it keeps when it comes back as another device: sysfs
    // path of the USB device, serial on the emulated bus. Empty for a device that is not on a USB port.
    std::string port = {};
};

// One open interface. One thread reads, any thread writes or interrupts.
class ReportPort
{
public:
    enum class Outcome {
        Report,
        Nothing, // timed out or interrupted
        Gone,    // unplugged or closed; no report will come
    };
    struct Received {
        Outcome outcome;
        std::size_t size; // of the report, which is cut when it exceeds the capacity
    };

    virtual ~ReportPort() = default;
    // Never waits for the device. False when the report could not be handed over.
    virtual bool write(const uint8_t *bytes, std::size_t size) = 0;
    // `timeoutMs` below 0 waits without end.
    virtual Received read(uint8_t *bytes, std::size_t capacity, int timeoutMs) = 0;
    virtual void interrupt() = 0;
    virtual bool isGone() const = 0; // without waiting
};

// Detects that interfaces came or went since it was made.
class ChangeSource
{
public:
    virtual ~ChangeSource() = default;
    // True after a change; false after the time-out or an interruption. Below 0 waits without end.
    virtual bool wait(int timeoutMs) = 0;
    virtual void interrupt() = 0; // from any thread
};

// All functions may be called from any thread.
class Bus
{
public:
    virtual ~Bus() = default;
    virtual std::vector<InterfaceInfo> enumerate() = 0;
    virtual std::unique_ptr<ReportPort> open(const std::string &path) = 0; // null when it can't be opened
    virtual std::unique_ptr<ChangeSource> watch() = 0;                     // null when it can't be watched
};

// watch(), or where there can be none, a look at the bus four times a second.
std::unique_ptr<ChangeSource> watchOrPoll(Bus &bus);

// The bus of this process, chosen once: the folder that HIDUSB_BUS names, else the machine's own devices.
// With HIDUSB_LOG set, everything that passes it is logged.
Bus &bus();

} // namespace hidusb
