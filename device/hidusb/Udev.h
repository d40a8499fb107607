// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Handles of libudev that release themselves, and the lock for all calls to it: even calls on unrelated
// objects write to data that the library shares between them.
#pragma once

#include <libudev.h>
#include <memory>
#include <mutex>
#include <unistd.h>

namespace hidusb
{

struct UdevRelease {
    void operator()(udev *context) const { udev_unref(context); }
    void operator()(udev_device *device) const { udev_device_unref(device); }
    void operator()(udev_monitor *monitor) const { udev_monitor_unref(monitor); }
};
template <typename Object> using UdevHandle = std::unique_ptr<Object, UdevRelease>;

// Held for calls that do not block, and released before a callback is called.
[[nodiscard]] inline std::unique_lock<std::mutex> lockUdev()
{
    static auto *const mutex = new std::mutex;
    return std::unique_lock(*mutex);
}

// Whether udev's daemon runs; in a container it may be missing.
inline bool udevRuns() { return ::access("/run/udev/control", F_OK) == 0; }

} // namespace hidusb
