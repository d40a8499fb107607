// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Waiting in tests: for a condition with a deadline, never for a time.
#pragma once

#include <chrono>
#include <thread>

namespace support
{

// True as soon as `condition` holds; false when it does not within ten seconds.
template <typename Condition> bool eventually(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace support
