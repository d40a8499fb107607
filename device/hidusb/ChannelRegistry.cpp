// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/ChannelRegistry.h"

#include "device/hidusb/Thread.h"

namespace hidusb
{

ChannelRegistry &ChannelRegistry::instance()
{
    static auto *registry = new ChannelRegistry;
    return *registry;
}

std::shared_ptr<Channel> ChannelRegistry::acquire(const std::string &path)
{
    const std::lock_guard lock(mutex_);
    const auto at = channels_.find(path);
    const ChannelPtr channel = at != channels_.end() && !at->second->isDead() ? at->second : open(path);
    if (!channel)
        return nullptr;
    channel->hold();
    Channel *held = channel.get();
    return {held, [channel](Channel *) { channel->release(); }};
}

ChannelRegistry::ChannelPtr ChannelRegistry::open(const std::string &path)
{
    std::unique_ptr<ReportPort> port = bus().open(path);
    if (!port)
        return nullptr;
    auto channel = std::make_shared<Channel>(std::move(port));
    channels_[path] = channel;
    if (startThread([this, path, channel] { read(path, channel); }))
        return channel;
    channels_.erase(path);
    return nullptr;
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
    channel->die();
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

std::shared_ptr<Channel> acquireChannel(const std::string &path)
{
    return ChannelRegistry::instance().acquire(path);
}

} // namespace hidusb
