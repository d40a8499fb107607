// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/DeviceRecord.h"

std::mutex &DeviceRecord::lock()
{
    static auto *const instance = new std::mutex; // outlives every thread of the layer
    return *instance;
}

FlashDataMap &DeviceRecord::record()
{
    static auto *const instance = new FlashDataMap();
    return *instance;
}
