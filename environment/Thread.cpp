// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/Thread.h"

#include <system_error>
#include <thread>

bool startThread(const std::function<void()> &body)
{
    try {
        std::thread(body).detach();
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}
