// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Bus.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <tuple>

namespace hidusb
{

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds PollInterval{250};

namespace
{

// In place of a watch that the system does not give, as when a user has used up its inotify instances.
class PolledChanges : public ChangeSource
{
public:
    explicit PolledChanges(Bus &bus) : bus_(bus), seen_(look()) {}

    bool wait(int timeoutMs) override
    {
        const auto end =
            timeoutMs < 0 ? Clock::time_point::max() : Clock::now() + std::chrono::milliseconds(timeoutMs);
        for (;;) {
            Seen now = look();
            if (now != seen_) {
                seen_ = std::move(now);
                return true;
            }
            std::unique_lock lock(mutex_);
            const auto next = std::min(end, Clock::now() + PollInterval);
            changed_.wait_until(lock, next, [this] { return interrupted_; });
            if (interrupted_ || Clock::now() >= end) {
                interrupted_ = false;
                return false;
            }
        }
    }

    void interrupt() override
    {
        const std::lock_guard lock(mutex_);
        interrupted_ = true;
        changed_.notify_all();
    }

private:
    // A node's number may go to the next device.
    using Seen = std::vector<std::tuple<std::string, uint16_t, uint16_t, std::string>>;

    Seen look() const
    {
        Seen seen;
        for (const InterfaceInfo &info : bus_.enumerate())
            seen.emplace_back(info.path, info.productId, info.release, info.port);
        return seen;
    }

    Bus &bus_;
    Seen seen_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool interrupted_ = false;
};

} // namespace

std::unique_ptr<ChangeSource> watchOrPoll(Bus &bus)
{
    std::unique_ptr<ChangeSource> watch = bus.watch();
    return watch ? std::move(watch) : std::make_unique<PolledChanges>(bus);
}

} // namespace hidusb
