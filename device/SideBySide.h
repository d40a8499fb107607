// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// sideBySide: does the same for each element of a vector, many at a time, for tasks that wait more than they
// work, such as questions to devices. The caller's thread takes part, and all have ended when it returns; a
// task must not wait for the caller's thread. Elements are taken in their order.
#pragma once

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

constexpr std::size_t SideBySideLimit = 16; // threads, the caller's among them

template <typename Element, typename Task> void sideBySide(std::vector<Element> &elements, Task task)
{
    std::atomic<std::size_t> next{0};
    const auto work = [&elements, &task, &next] {
        for (std::size_t at = next++; at < elements.size(); at = next++)
            task(elements[at]);
    };
    std::vector<std::thread> helpers;
    const std::size_t wanted = std::min(elements.size(), SideBySideLimit);
    helpers.reserve(wanted);
    try {
        while (helpers.size() + 1 < wanted)
            helpers.emplace_back(work);
    } catch (const std::system_error &) {
        // The threads that there are do the rest.
    }
    work();
    for (std::thread &helper : helpers)
        helper.join();
}
