// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Passes work from other threads to the main thread.
#pragma once

#include <functional>

// Runs the function on the main thread the next time its event loop turns, never in this call, in the order
// of the calls of a thread. Without an event loop any more it is dropped. Any thread.
void runOnMainThread(std::function<void()> function);
