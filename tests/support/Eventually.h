// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Waiting in tests: for a condition with a deadline, never for a time.
#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

namespace support
{

// True as soon as `condition` holds; false when it does not within ten seconds. The longer it has waited the
// less often it looks, since in an emulated machine the looking is what takes the time.
template <typename Condition> bool eventually(Condition condition)
{
    using std::chrono::milliseconds;
    const auto start = std::chrono::steady_clock::now();
    while (!condition()) {
        const auto waited =
            std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
        if (waited > std::chrono::seconds(10))
            return false;
        std::this_thread::sleep_for(std::clamp(waited / 16, milliseconds(1), milliseconds(50)));
    }
    return true;
}

} // namespace support
