// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Upgrade.h"

#include "device/hidusb/Finder.h"
#include "device/hidusb/Question.h"
#include "device/hidusb/Thread.h"
#include "device/hidusb/wire/BusName.h"

#include <algorithm>

namespace hidusb
{

using wire::Command;

constexpr int IdentityTries = 2;
constexpr int SlowTries = 20; // 3 s: a boot loader erases before its first block and checks at the end
constexpr std::size_t BlockWindow = 8;   // blocks in flight
constexpr std::size_t BlocksAtOnce = 16; // between two progress reports
constexpr int AskAgainMs = 200; // pause before an attached device that does not answer is asked again

static bool fitsBootLoader(const Firmware &firmware, const std::string &path)
{
    wire::BootIdentityReply identity{};
    return fetch(path.c_str(), Command::BootIdentity, &identity, IdentityTries) &&
           firmware.fitsBootLoader(identity);
}

static bool fitsDevice(const Firmware &firmware, const std::string &path)
{
    DeviceIdentity identity{};
    return fetch(path.c_str(), Command::Identity, &identity, IdentityTries) && firmware.fitsDevice(identity);
}

using Fits = bool(const Firmware &, const std::string &);

static std::vector<std::string> findFitting(const Firmware &firmware, uint16_t usagePage, Fits *fits)
{
    std::vector<std::string> paths;
    for (const InterfaceInfo &info : findByUsagePage(usagePage)) {
        if (fits(firmware, info.path))
            paths.push_back(info.path);
    }
    return paths;
}

int countBootLoaders(const Firmware &firmware)
{
    return static_cast<int>(findFitting(firmware, wire::BootUsagePage, fitsBootLoader).size());
}

namespace
{

class Upgrade
{
public:
    Upgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs)
        : firmware_(std::move(firmware)), callback_(callback), timeoutMs_(std::max(timeoutMs, 0))
    {
    }

    bool findTarget();
    bool run();
    void report(uint8_t what, uint8_t value);

private:
    std::string waitFor(ChangeSource *changes, uint16_t usagePage, Fits *fits) const;
    bool enterBootLoader(ChangeSource *changes);
    bool sendBlocks(Channel &channel);
    bool flash();

    const Firmware firmware_;
    const UpgradeCallback_t callback_;
    const int timeoutMs_;
    std::string path_;
    bool inBootLoader_ = false;
    int percent_ = -1;
    TaskQueue callbacks_;
};

// A device in its boot loader has precedence: without this file it does not work.
bool Upgrade::findTarget()
{
    std::vector<std::string> paths = findFitting(firmware_, wire::BootUsagePage, fitsBootLoader);
    inBootLoader_ = !paths.empty();
    if (!inBootLoader_)
        paths = findFitting(firmware_, wire::SettingsUsagePage, fitsDevice);
    if (paths.size() != 1)
        return false;
    path_ = paths.front();
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

// Waits for a fitting interface and returns its path; empty when none comes in time.
std::string Upgrade::waitFor(ChangeSource *changes, uint16_t usagePage, Fits *fits) const
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(timeoutMs_);
    for (;;) {
        const std::vector<std::string> paths = findFitting(firmware_, usagePage, fits);
        if (!paths.empty())
            return paths.front();
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0 || changes == nullptr)
            return {};
        changes->wait(static_cast<int>(std::min<int64_t>(left, AskAgainMs)));
    }
}

static std::optional<wire::Status> askSlowly(Channel &channel, const wire::Report &request)
{
    Limits limits;
    limits.tries = SlowTries;
    const std::optional<wire::Report> reply = channel.ask(request, limits);
    return reply ? std::make_optional(reply->status()) : std::nullopt;
}

bool Upgrade::enterBootLoader(ChangeSource *changes)
{
    if (inBootLoader_)
        return true;
    // The answer is ignored: the device may leave before it is sent. Success shows by the boot loader.
    ask(path_.c_str(), makeRequest(Command::BootEnter, 0, &firmware_.fits.Target, 1), nullptr, 0);
    path_ = waitFor(changes, wire::BootUsagePage, fitsBootLoader);
    return !path_.empty();
}

bool Upgrade::sendBlocks(Channel &channel)
{
    Limits limits;
    limits.window = BlockWindow;
    const std::size_t count = firmware_.blockCount();
    for (std::size_t first = 0; first < count; first += BlocksAtOnce) {
        std::vector<Exchange> batch(std::min(BlocksAtOnce, count - first));
        for (std::size_t i = 0; i < batch.size(); ++i)
            batch[i].request = firmware_.block(first + i);
        if (!channel.exchange(batch, limits))
            return false;
        const int percent = static_cast<int>((first + batch.size()) * 100 / count);
        if (percent != percent_)
            report(1, static_cast<uint8_t>(percent));
        percent_ = percent;
    }
    return true;
}

bool Upgrade::flash()
{
    const std::shared_ptr<Channel> channel = acquireChannel(path_);
    const wire::BootBeginRequest begin = firmware_.announcement();
    if (!channel ||
        askSlowly(*channel, makeRequest(Command::BootBegin, 0, &begin, sizeof begin)) != wire::Status::Ok ||
        !sendBlocks(*channel))
        return false;
    // The device may leave before its answer is sent; its return then shows whether the upgrade succeeded.
    const std::optional<wire::Status> end = askSlowly(*channel, makeRequest(Command::BootEnd));
    return !end || *end == wire::Status::Ok;
}

bool Upgrade::run()
{
    const std::unique_ptr<ChangeSource> changes = bus().watch();
    return enterBootLoader(changes.get()) && flash() &&
           !waitFor(changes.get(), wire::SettingsUsagePage, fitsDevice).empty();
}

} // namespace

static bool start(Firmware firmware, UpgradeCallback_t callback, int timeoutMs, std::atomic<bool> &running)
{
    const auto upgrade = std::make_shared<Upgrade>(std::move(firmware), callback, timeoutMs);
    return upgrade->findTarget() && startThread([upgrade, &running] {
               const bool good = upgrade->run();
               running = false;
               upgrade->report(2, good ? 1 : 0);
           });
}

bool startUpgrade(Firmware firmware, UpgradeCallback_t callback, int timeoutMs)
{
    static std::atomic<bool> running{false};
    if (running.exchange(true))
        return false;
    bool started = false;
    try {
        started = start(std::move(firmware), callback, timeoutMs, running);
    } catch (const std::exception &) {
        started = false;
    }
    if (!started)
        running = false;
    return started;
}

} // namespace hidusb
