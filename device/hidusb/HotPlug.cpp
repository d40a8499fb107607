// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/HotPlug.h"

#include "device/hidusb/Bus.h"
#include "device/hidusb/Thread.h"

#include <algorithm>
#include <atomic>
#include <chrono>

namespace hidusb
{

// The interfaces of one device come a few milliseconds apart.
constexpr int JoinMs = 30;

namespace
{

class Watch : public std::enable_shared_from_this<Watch>
{
public:
    Watch(UsbChangedCallback_t callback, int settleMs) : callback_(callback), settleMs_(settleMs) {}

    void start()
    {
        startThread([self = shared_from_this()] { self->run(); });
    }

    void end()
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        if (changes_)
            changes_->interrupt();
    }

private:
    // The watch is set up before the first call: a change during that call makes another one.
    void run()
    {
        const std::shared_ptr<ChangeSource> changes = watchOrPoll(bus());
        {
            const std::lock_guard lock(mutex_);
            changes_ = changes;
        }
        if (!ended_)
            callback_();
        while (changes && !ended_) {
            if (!changes->wait(-1))
                continue;
            settle(*changes);
            if (!ended_)
                callback_();
        }
    }

    void settle(ChangeSource &changes) const
    {
        using namespace std::chrono;
        const auto end = steady_clock::now() + milliseconds(settleMs_);
        while (!ended_) {
            const auto left = duration_cast<milliseconds>(end - steady_clock::now()).count();
            if (left <= 0 || !changes.wait(static_cast<int>(std::min<int64_t>(left, JoinMs))))
                return;
        }
    }

    const UsbChangedCallback_t callback_;
    const int settleMs_;
    std::atomic<bool> ended_{false};
    std::mutex mutex_;
    std::shared_ptr<ChangeSource> changes_;
};

struct WatchState {
    std::mutex mutex;
    std::shared_ptr<Watch> watch;
};

} // namespace

static void replaceWatch(std::shared_ptr<Watch> watch)
{
    static auto *current = new WatchState;
    const std::lock_guard lock(current->mutex);
    if (current->watch)
        current->watch->end();
    current->watch = std::move(watch);
    if (current->watch)
        current->watch->start();
}

void startWatch(UsbChangedCallback_t callback, int settleMs)
{
    replaceWatch(callback != nullptr ? std::make_shared<Watch>(callback, std::max(settleMs, 0)) : nullptr);
}

void stopWatch() { replaceWatch(nullptr); }

} // namespace hidusb
