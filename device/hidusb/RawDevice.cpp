// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/RawDevice.h"

#include "device/hidusb/Bus.h"
#include "device/hidusb/Channel.h"
#include "device/hidusb/WireLog.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

namespace
{

struct RawDevice {
    RawDevice(std::string openedPath, std::unique_ptr<ReportPort> opened)
        : path(std::move(openedPath)), port(std::move(opened))
    {
    }

    std::mutex mutex; // one exchange at a time
    const std::string path;
    const std::unique_ptr<ReportPort> port;
};

struct RawState {
    std::mutex mutex;
    std::shared_ptr<RawDevice> device;
};

} // namespace

static RawState &rawState()
{
    static auto *state = new RawState;
    return *state;
}

bool openRaw(const char *path)
{
    std::unique_ptr<ReportPort> port = path != nullptr ? bus().open(path) : nullptr;
    const bool opened = port != nullptr;
    const std::lock_guard lock(rawState().mutex);
    rawState().device = opened ? std::make_shared<RawDevice>(path, std::move(port)) : nullptr;
    return opened;
}

static std::shared_ptr<RawDevice> openedDevice()
{
    const std::lock_guard lock(rawState().mutex);
    return rawState().device;
}

// Closes the interface of a device that has gone: an open node keeps its number, and the device would come
// back under another one.
static void closeGone(const std::shared_ptr<RawDevice> &gone)
{
    const std::lock_guard lock(rawState().mutex);
    if (rawState().device == gone)
        rawState().device.reset();
}

// Size of the next report with this id; 0 when none comes in time. Reports of the interface's other
// collections have other ids and may answer other processes.
static std::size_t readAnswer(const RawDevice &device, uint8_t id, uint8_t (&report)[wire::ReportSize])
{
    const Clock::time_point end = Clock::now() + ReplyTimeout;
    for (Clock::time_point now = Clock::now(); now < end; now = Clock::now()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - now);
        const ReportPort::Received received =
            device.port->read(report, sizeof report, static_cast<int>(left.count()));
        if (received.outcome == ReportPort::Outcome::Gone)
            return 0;
        if (received.outcome == ReportPort::Outcome::Report && received.size > 0 && report[0] == id)
            return std::min(received.size, sizeof report);
    }
    logLine(device.path, [] { return "no answer in time to a raw report"; });
    return 0;
}

void exchangeRaw(const uint8_t *request, uint8_t *reply, std::size_t size)
{
    const std::shared_ptr<RawDevice> device = openedDevice();
    size = std::min(size, wire::ReportSize);
    if (!device || request == nullptr || size == 0)
        return;
    const std::lock_guard lock(device->mutex);
    uint8_t report[wire::ReportSize];
    // A late answer to the request before would be taken for the answer to this one. At most 64 are dropped,
    // so that a flood cannot hold the caller.
    for (int i = 0; i < 64; ++i) {
        if (device->port->read(report, sizeof report, 0).outcome != ReportPort::Outcome::Report)
            break;
    }
    const bool written = device->port->write(request, size);
    if (written && reply != nullptr) {
        const std::size_t got = readAnswer(*device, request[0], report);
        std::memcpy(reply, report, std::min(got, size));
    }
    if (device->port->isGone())
        closeGone(device);
}

} // namespace hidusb
