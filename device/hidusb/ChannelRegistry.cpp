// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/ChannelRegistry.h"

#include "device/hidusb/Thread.h"

namespace hidusb
{

ChannelRegistry &ChannelRegistry::instance()
{
    static auto *registry = new ChannelRegistry(bus());
    return *registry;
}

// Opens without the lock: the kernel may take seconds to open a device that does not wake up, and requests to
// devices that are open must not wait for it. Those to a device that is not open do: hidraw nodes are opened
// one at a time.
std::shared_ptr<Channel> ChannelRegistry::acquire(const std::string &path, Clock::time_point until)
{
    if (std::shared_ptr<Channel> known = holdKnown(path))
        return known;
    if (until != Clock::time_point::max())
        return openWithin(path, until);
    std::unique_ptr<ReportPort> port = bus_.open(path);
    return port ? holdNew(path, std::move(port)) : nullptr;
}

std::shared_ptr<Channel> ChannelRegistry::openWithin(const std::string &path, Clock::time_point until)
{
    std::unique_lock lock(mutex_);
    const auto at = openings_.find(path);
    std::shared_ptr<Opening> opening = at != openings_.end() ? at->second : nullptr;
    if (!opening) {
        opening = std::make_shared<Opening>();
        if (!startThread([this, path, opening] { open(path, opening); }))
            return nullptr;
        openings_[path] = opening;
    }
    return opened_.wait_until(lock, until, [&opening] { return opening->done; }) ? opening->channel : nullptr;
}

void ChannelRegistry::open(const std::string &path, const std::shared_ptr<Opening> &opening)
{
    ChannelPtr channel;
    try {
        channel = acquire(path);
    } catch (const std::exception &) {
        channel = nullptr; // as for a device that can't be opened
    }
    const std::lock_guard lock(mutex_);
    opening->channel = channel;
    opening->done = true;
    openings_.erase(path);
    opened_.notify_all();
}

std::shared_ptr<Channel> ChannelRegistry::holdKnown(const std::string &path)
{
    const std::lock_guard lock(mutex_);
    const auto at = channels_.find(path);
    return at != channels_.end() && !at->second->isDead() ? hold(at->second) : nullptr;
}

// When two callers open the same path, both use the channel of the one that comes first.
std::shared_ptr<Channel> ChannelRegistry::holdNew(const std::string &path, std::unique_ptr<ReportPort> port)
{
    const std::lock_guard lock(mutex_);
    const auto at = channels_.find(path);
    if (at != channels_.end() && !at->second->isDead())
        return hold(at->second);
    const auto channel = std::make_shared<Channel>(path, std::move(port));
    if (!startThread([this, path, channel] { read(path, channel); }))
        return nullptr;
    channels_[path] = channel;
    return hold(channel);
}

std::shared_ptr<Channel> ChannelRegistry::hold(const ChannelPtr &channel)
{
    channel->hold();
    return {channel.get(), [channel](Channel *) { channel->release(); }};
}

void ChannelRegistry::read(const std::string &path, const ChannelPtr &channel)
{
    for (;;) {
        const Channel::Reading reading = channel->readOnce();
        if (reading == Channel::Reading::Gone)
            return drop(path, channel);
        if (reading == Channel::Reading::Idle && dropUnheld(path, channel))
            return;
    }
}

void ChannelRegistry::drop(const std::string &path, const ChannelPtr &channel)
{
    channel->setDead();
    const std::lock_guard lock(mutex_);
    erase(path, channel);
}

bool ChannelRegistry::dropUnheld(const std::string &path, const ChannelPtr &channel)
{
    const std::lock_guard lock(mutex_);
    if (channel->isHeld())
        return false;
    erase(path, channel);
    return true;
}

void ChannelRegistry::erase(const std::string &path, const ChannelPtr &channel)
{
    const auto at = channels_.find(path);
    if (at != channels_.end() && at->second == channel)
        channels_.erase(at);
}

std::shared_ptr<Channel> acquireChannel(const std::string &path, Clock::time_point until)
{
    return ChannelRegistry::instance().acquire(path, until);
}

} // namespace hidusb
