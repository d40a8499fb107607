// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DeviceRecord: the process's one FlashDataMap, zero at the start, behind the one lock. Pages work on
// copies. A change is passed to the layer under the same lock, so the layer's last copy always equals the
// record; ProtocolDataUpdate returns in microseconds and makes no callback.
#pragma once

#include "device/hidusb/HIDUsb.h"

#include <mutex>

class DeviceRecord
{
public:
    static FlashDataMap copy()
    {
        const std::lock_guard<std::mutex> guard(lock());
        return record();
    }
    // change(FlashDataMap &), without telling the device.
    template <typename Change> static void edit(Change change)
    {
        const std::lock_guard<std::mutex> guard(lock());
        change(record());
    }
    // change(FlashDataMap &), then the whole record is the device's new wanted state.
    template <typename Change> static void update(Change change)
    {
        const std::lock_guard<std::mutex> guard(lock());
        change(record());
        ProtocolDataUpdate(&record());
    }
    static void push()
    {
        update([](FlashDataMap &) {});
    }

private:
    static std::mutex &lock();
    static FlashDataMap &record();
};
