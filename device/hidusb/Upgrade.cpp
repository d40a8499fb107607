// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Upgrade.h"

#include "device/hidusb/FirmwareTargets.h"
#include "device/hidusb/Thread.h"
#include "device/hidusb/wire/BusName.h"

#include <algorithm>
#include <cstring>

namespace hidusb
{

using std::chrono::milliseconds;
using wire::Command;
using wire::Status;

constexpr std::size_t BlockWindow = 8; // blocks in flight

namespace
{

class Upgrade
{
public:
    Upgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs, const UpgradeTimes &times)
        : firmware_(std::move(firmware))
        , callback_(callback)
        , timeout_(std::max(timeoutMs, 0))
        , times_(times)
        , deadline_(Clock::now() + times.whole)
    {
    }

    // Before anything is sent: the return of the device is watched for before it leaves.
    bool prepare();
    UpgradeResult run();
    void report(uint8_t what, uint8_t value);

private:
    using Result = UpgradeResult;
    using Check = std::function<std::optional<Result>(Channel &)>; // empty: ask again

    Limits limits(milliseconds total) const;
    std::optional<Status> order(Channel &channel, const wire::Report &request, milliseconds total) const;
    template <typename Reply> bool fetch(Channel &channel, Command command, Reply *reply) const;

    std::shared_ptr<Channel> channelAtPort(uint16_t usagePage) const;
    Result waitFor(uint16_t usagePage, milliseconds limit, const Check &check);
    Result enterBootLoader();
    std::optional<Result> checkBootLoader(Channel &channel);
    bool write(Channel &channel);
    bool sendBlocks(Channel &channel);
    void reportProgress(std::size_t blocks);
    void leave(Channel &channel);
    std::optional<Result> checkReturned(Channel &channel) const;

    const Firmware firmware_;
    const UpgradeCallback_t callback_;
    const milliseconds timeout_;
    const UpgradeTimes times_;
    const Clock::time_point deadline_;
    FirmwareTarget target_{};
    std::unique_ptr<ChangeSource> changes_;
    std::shared_ptr<Channel> channel_; // of the boot loader
    int percent_ = -1;
    TaskQueue callbacks_;
};

milliseconds until(Clock::time_point end)
{
    return std::max(std::chrono::duration_cast<milliseconds>(end - Clock::now()), milliseconds(0));
}

bool Upgrade::prepare()
{
    const std::optional<FirmwareTarget> target = findTarget(firmware_);
    if (!target)
        return false;
    target_ = *target;
    changes_ = watchOrPoll(bus());
    return true;
}

// Reports go through a queue, so that a slow callback does not stop the transfer.
void Upgrade::report(uint8_t what, uint8_t value)
{
    callbacks_.post([callback = callback_, what, value] {
        const uint8_t data[] = {7, what, value};
        if (callback != nullptr)
            callback(data);
    });
}

// ---- Questions

Limits Upgrade::limits(milliseconds total) const
{
    Limits limits;
    limits.answer = times_.answer;
    limits.tries = static_cast<int>(std::max<int64_t>(total / times_.answer, 1));
    limits.total = until(deadline_);
    return limits;
}

std::optional<Status> Upgrade::order(Channel &channel, const wire::Report &request, milliseconds total) const
{
    const std::optional<wire::Report> reply = channel.ask(request, limits(total));
    return reply ? std::make_optional(reply->status()) : std::nullopt;
}

template <typename Reply> bool Upgrade::fetch(Channel &channel, Command command, Reply *reply) const
{
    const auto got = channel.ask(makeRequest(command), limits(UsualTries * times_.answer));
    if (!got || got->status() != Status::Ok || got->Length != sizeof *reply)
        return false;
    std::memcpy(reply, got->Payload, sizeof *reply);
    return true;
}

// ---- The device, which leaves its port and comes back there as another one

// Null unless there is exactly one.
std::shared_ptr<Channel> Upgrade::channelAtPort(uint16_t usagePage) const
{
    std::vector<InterfaceInfo> infos = bus().enumerate();
    const auto other = [this, usagePage](const InterfaceInfo &info) {
        return info.port != target_.port || info.usagePage != usagePage;
    };
    infos.erase(std::remove_if(infos.begin(), infos.end(), other), infos.end());
    return infos.size() == 1 ? acquireChannel(infos.front().path, deadline_) : nullptr;
}

UpgradeResult Upgrade::waitFor(uint16_t usagePage, milliseconds limit, const Check &check)
{
    const Clock::time_point end = std::min(deadline_, Clock::now() + limit);
    for (;;) {
        channel_ = channelAtPort(usagePage);
        if (const auto result = channel_ ? check(*channel_) : std::nullopt)
            return *result;
        const milliseconds left = until(end);
        if (left.count() == 0)
            return Result::Failed;
        changes_->wait(static_cast<int>(std::min(left, times_.askAgain).count()));
    }
}

// An unanswered BootEnter may have been carried out: a device may leave before it answers.
UpgradeResult Upgrade::enterBootLoader()
{
    if (!target_.inBootLoader) {
        const std::shared_ptr<Channel> channel = acquireChannel(target_.path, deadline_);
        if (!channel)
            return Result::Failed;
        const auto request = makeRequest(Command::BootEnter, 0, &firmware_.fits.Target, 1);
        const auto status = order(*channel, request, UsualTries * times_.answer);
        if (status && *status != Status::Ok)
            return Result::Refused;
    }
    return waitFor(wire::BootUsagePage, timeout_,
                   [this](Channel &channel) { return checkBootLoader(channel); });
}

std::optional<UpgradeResult> Upgrade::checkBootLoader(Channel &channel)
{
    wire::BootIdentityReply identity{};
    if (!fetch(channel, Command::BootIdentity, &identity))
        return std::nullopt;
    return firmware_.fitsBootLoader(identity) ? Result::Succeeded : Result::Failed;
}

std::optional<UpgradeResult> Upgrade::checkReturned(Channel &channel) const
{
    DeviceIdentity identity{};
    wire::VersionReply version{};
    const bool mouse = firmware_.fits.Target == wire::TargetMouse;
    if (!fetch(channel, Command::Identity, &identity) || !firmware_.mayFitDevice(identity) ||
        !fetch(channel, mouse ? Command::Version : Command::SlaveVersion, &version))
        return std::nullopt;
    return (version.Major << 8 | version.Minor) == firmware_.version ? Result::Succeeded : Result::Failed;
}

// ---- The image

void Upgrade::reportProgress(std::size_t blocks)
{
    const int percent = static_cast<int>(blocks * 100 / firmware_.blockCount());
    if (percent != percent_)
        report(1, static_cast<uint8_t>(percent));
    percent_ = percent;
}

bool Upgrade::sendBlocks(Channel &channel)
{
    std::vector<Exchange> batch(firmware_.blockCount());
    for (std::size_t i = 0; i < batch.size(); ++i)
        batch[i].request = firmware_.block(i);
    Limits some = limits(UsualTries * times_.answer);
    some.window = BlockWindow;
    some.progress = [this](std::size_t blocks) { reportProgress(blocks); };
    return channel.exchange(batch, some);
}

// The device may leave before its last answer is sent; its return then shows whether it took the image.
bool Upgrade::write(Channel &channel)
{
    const wire::BootBeginRequest begin = firmware_.announcement();
    const auto request = makeRequest(Command::BootBegin, 0, &begin, sizeof begin);
    if (order(channel, request, times_.slow) != Status::Ok || !sendBlocks(channel))
        return false;
    return order(channel, makeRequest(Command::BootEnd), times_.slow).value_or(Status::Ok) == Status::Ok;
}

// A device whose image is not erased starts it, and is usually back when the failure is reported; others
// refuse.
void Upgrade::leave(Channel &channel)
{
    if (order(channel, makeRequest(Command::BootLeave), UsualTries * times_.answer) != Status::Ok)
        return;
    waitFor(wire::SettingsUsagePage, std::min(timeout_, times_.leave),
            [this](Channel &returned) -> std::optional<Result> {
                DeviceIdentity identity{};
                return fetch(returned, Command::Identity, &identity) ? std::make_optional(Result::Failed)
                                                                     : std::nullopt;
            });
}

UpgradeResult Upgrade::run()
{
    const Result entered = enterBootLoader();
    if (entered == Result::Refused)
        return entered;
    if (entered != Result::Succeeded || !write(*channel_)) {
        if (channel_)
            leave(*channel_);
        return Result::Failed;
    }
    return waitFor(wire::SettingsUsagePage, timeout_,
                   [this](Channel &channel) { return checkReturned(channel); });
}

} // namespace

static UpgradeResult runQuietly(Upgrade &upgrade)
{
    try {
        return upgrade.run();
    } catch (const std::exception &) {
        return UpgradeResult::Failed;
    }
}

static bool start(const std::shared_ptr<Upgrade> &upgrade, std::atomic<bool> &running)
{
    return upgrade->prepare() && startThread([upgrade, &running] {
               const UpgradeResult result = runQuietly(*upgrade);
               running = false;
               upgrade->report(2, static_cast<uint8_t>(result));
           });
}

bool startUpgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs, const UpgradeTimes &times)
{
    static std::atomic<bool> running{false};
    if (running.exchange(true))
        return false;
    bool started = false;
    try {
        started = start(std::make_shared<Upgrade>(std::move(firmware), callback, timeoutMs, times), running);
    } catch (const std::exception &) {
        started = false;
    }
    if (!started)
        running = false;
    return started;
}

} // namespace hidusb
