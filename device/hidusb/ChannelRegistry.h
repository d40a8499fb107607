// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ChannelRegistry: the open channels by path, and the thread that reads each. A channel that is not held
// closes when its reader's wait runs out; one whose interface is gone is removed at once, so that a device
// that comes back under the path gets a new channel. Process-wide, never destroyed.
#pragma once

#include "device/hidusb/Channel.h"

#include <map>

namespace hidusb
{

class ChannelRegistry
{
public:
    explicit ChannelRegistry(Bus &bus) : bus_(bus) {}
    static ChannelRegistry &instance(); // over the bus of this process
    // With a limit the device is opened on a thread of its own, which goes on when the limit is reached;
    // there is one for each path.
    std::shared_ptr<Channel> acquire(const std::string &path,
                                     Clock::time_point until = Clock::time_point::max());

private:
    using ChannelPtr = std::shared_ptr<Channel>;
    struct Opening {
        bool done = false;
        ChannelPtr channel; // held
    };

    static std::shared_ptr<Channel> hold(const ChannelPtr &channel);
    std::shared_ptr<Channel> holdKnown(const std::string &path);
    std::shared_ptr<Channel> holdNew(const std::string &path, std::unique_ptr<ReportPort> port);
    std::shared_ptr<Channel> openWithin(const std::string &path, Clock::time_point until);
    void open(const std::string &path, const std::shared_ptr<Opening> &opening);
    void read(const std::string &path, const ChannelPtr &channel);
    void drop(const std::string &path, const ChannelPtr &channel);
    bool dropUnheld(const std::string &path, const ChannelPtr &channel);
    void erase(const std::string &path, const ChannelPtr &channel);

    Bus &bus_;
    std::mutex mutex_;
    std::condition_variable opened_;
    std::map<std::string, ChannelPtr> channels_;
    std::map<std::string, std::shared_ptr<Opening>> openings_;
};

} // namespace hidusb
