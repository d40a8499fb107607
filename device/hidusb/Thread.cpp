// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Thread.h"

#include <csignal>
#include <thread>

namespace hidusb
{

bool startThread(std::function<void()> body)
{
    // Faults stay unblocked, so that the program's crash handler runs.
    sigset_t blocked;
    sigset_t before;
    sigfillset(&blocked);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP})
        sigdelset(&blocked, fault);
    pthread_sigmask(SIG_SETMASK, &blocked, &before);
    bool started = true;
    try {
        std::thread(std::move(body)).detach();
    } catch (const std::exception &) {
        started = false;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return started;
}

TaskQueue::TaskQueue() : state_(std::make_shared<State>()) {}

TaskQueue::~TaskQueue()
{
    const std::lock_guard lock(state_->mutex);
    state_->closed = true;
    state_->changed.notify_all();
}

bool TaskQueue::post(std::function<void()> task, std::size_t limit)
{
    const std::lock_guard lock(state_->mutex);
    if (state_->tasks.size() >= limit)
        return false;
    if (!state_->started)
        state_->started = startThread([state = state_] { run(state); });
    if (!state_->started)
        return false;
    state_->tasks.push_back(std::move(task));
    state_->changed.notify_all();
    return true;
}

void TaskQueue::run(const std::shared_ptr<State> &state)
{
    std::unique_lock lock(state->mutex);
    for (;;) {
        state->changed.wait(lock, [&state] { return state->closed || !state->tasks.empty(); });
        if (state->tasks.empty())
            return;
        {
            const std::function<void()> task = std::move(state->tasks.front());
            state->tasks.pop_front();
            lock.unlock();
            task();
        }
        lock.lock();
    }
}

} // namespace hidusb
