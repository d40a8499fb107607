// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/RawDevice.h"

#include "device/hidusb/Bus.h"
#include "device/hidusb/Channel.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

namespace
{

struct RawDevice {
    explicit RawDevice(std::unique_ptr<ReportPort> opened) : port(std::move(opened)) {}

    std::mutex mutex; // one exchange at a time
    const std::unique_ptr<ReportPort> port;
};

struct Current {
    std::mutex mutex;
    std::shared_ptr<RawDevice> device;
};

} // namespace

static Current &current()
{
    static auto *state = new Current;
    return *state;
}

bool openRaw(const char *path)
{
    std::unique_ptr<ReportPort> port = path != nullptr ? bus().open(path) : nullptr;
    const bool opened = port != nullptr;
    const std::lock_guard lock(current().mutex);
    current().device = opened ? std::make_shared<RawDevice>(std::move(port)) : nullptr;
    return opened;
}

static std::shared_ptr<RawDevice> openedDevice()
{
    const std::lock_guard lock(current().mutex);
    return current().device;
}

void exchangeRaw(const uint8_t *request, uint8_t *reply, std::size_t size)
{
    const std::shared_ptr<RawDevice> device = openedDevice();
    size = std::min(size, wire::ReportSize);
    if (!device || request == nullptr || reply == nullptr || size == 0)
        return;
    const std::lock_guard lock(device->mutex);
    uint8_t report[wire::ReportSize];
    // An answer that came after its time would pass for this one's. A flood isn't drained for ever.
    for (int i = 0; i < 64; ++i) {
        if (device->port->read(report, sizeof report, 0).outcome != ReportPort::Outcome::Report)
            break;
    }
    if (!device->port->write(request, size))
        return;
    const int timeoutMs = static_cast<int>(ReplyTimeout.count());
    const ReportPort::Received received = device->port->read(report, sizeof report, timeoutMs);
    if (received.outcome == ReportPort::Outcome::Report)
        std::memcpy(reply, report, std::min({received.size, size, sizeof report}));
}

} // namespace hidusb
