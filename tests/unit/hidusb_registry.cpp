// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Opening a device may take long. Who asks another one does not wait for it, and all who ask the same one
// share a channel.
#include "device/hidusb/ChannelRegistry.h"
#include "tests/support/Eventually.h"

#include <future>
#include <gtest/gtest.h>

using namespace hidusb;
using support::eventually;

namespace
{

// Silent until it is unplugged.
class SilentPort : public ReportPort
{
public:
    SilentPort(std::shared_future<void> unplugged, std::atomic<int> &count)
        : unplugged_(std::move(unplugged)), count_(count)
    {
        ++count_;
    }
    ~SilentPort() override { --count_; }

    bool write(const uint8_t *, std::size_t) override { return true; }
    Received read(uint8_t *, std::size_t, int) override
    {
        unplugged_.wait();
        return {Outcome::Gone, 0};
    }
    void interrupt() override {}
    bool isGone() const override
    {
        return unplugged_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }

private:
    const std::shared_future<void> unplugged_;
    std::atomic<int> &count_;
};

// "slow" opens once it is told to, everything else at once, "none" never.
class SlowBus : public Bus
{
public:
    std::vector<InterfaceInfo> enumerate() override { return {}; }
    std::unique_ptr<ReportPort> open(const std::string &path) override
    {
        ++opening;
        if (path == "slow")
            opened_.wait();
        return path == "none" ? nullptr : std::make_unique<SilentPort>(unplugged_, ports);
    }
    std::unique_ptr<ChangeSource> watch() override { return nullptr; }

    std::atomic<int> opening{0};
    std::atomic<int> ports{0};
    std::promise<void> letOpen;
    std::promise<void> unplug;

private:
    const std::shared_future<void> opened_ = letOpen.get_future().share();
    const std::shared_future<void> unplugged_ = unplug.get_future().share();
};

class Registry : public testing::Test
{
protected:
    void TearDown() override
    {
        bus_.unplug.set_value();
        // A channel's reader lets go of its port last.
        EXPECT_TRUE(eventually([this] { return bus_.ports == 0; }));
    }
    std::future<std::shared_ptr<Channel>> acquireSlow()
    {
        return std::async(std::launch::async, [this] { return registry_.acquire("slow"); });
    }
    SlowBus bus_;
    ChannelRegistry registry_{bus_};
};

} // namespace

TEST_F(Registry, NobodyWaitsForAnothersOpening)
{
    auto slow = acquireSlow();
    ASSERT_TRUE(eventually([this] { return bus_.opening == 1; }));
    auto quick = std::async(std::launch::async, [this] { return registry_.acquire("quick"); });
    EXPECT_EQ(quick.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    bus_.letOpen.set_value();
    EXPECT_TRUE(quick.get());
    EXPECT_TRUE(slow.get());
}

TEST_F(Registry, WhoOpensAtTheSameTimeSharesAChannel)
{
    auto first = acquireSlow();
    auto second = acquireSlow();
    ASSERT_TRUE(eventually([this] { return bus_.opening == 2; }));
    bus_.letOpen.set_value();
    const std::shared_ptr<Channel> channel = first.get();
    EXPECT_TRUE(channel);
    EXPECT_EQ(second.get(), channel);
    EXPECT_EQ(bus_.ports, 1);
    EXPECT_EQ(registry_.acquire("slow"), channel);
    EXPECT_EQ(bus_.opening, 2);
}

TEST_F(Registry, WhatDoesNotOpenIsAskedForAgain)
{
    EXPECT_FALSE(registry_.acquire("none"));
    EXPECT_FALSE(registry_.acquire("none"));
    EXPECT_EQ(bus_.opening, 2);
}
