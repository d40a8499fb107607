// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Threads for what would make the main thread wait. None is ever joined.
#pragma once

#include <functional>

// Runs `body` on a detached thread. False when the system gives no thread; `body` has then not run. Any
// thread.
bool startThread(const std::function<void()> &body);
