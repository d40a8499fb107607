// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The library's own threads. None is ever joined: a thread may be inside a callback that waits for the
// thread that would join it.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace hidusb
{

// Runs `body` on a detached thread on which all signals are blocked except those of its own faults.
// False when the system gives no thread. `body` does not throw.
bool startThread(std::function<void()> body);

// Runs tasks one at a time, in order, on one thread of its own, which starts with the first task. The
// destructor does not wait; tasks already posted still run, then the thread ends.
class TaskQueue
{
public:
    TaskQueue();
    ~TaskQueue();
    TaskQueue(const TaskQueue &) = delete;
    TaskQueue &operator=(const TaskQueue &) = delete;

    // False when `limit` tasks wait already; this one is dropped.
    bool post(std::function<void()> task, std::size_t limit = SIZE_MAX);

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::function<void()>> tasks;
        bool started = false;
        bool closed = false;
    };
    static void run(const std::shared_ptr<State> &state);

    const std::shared_ptr<State> state_;
};

} // namespace hidusb
