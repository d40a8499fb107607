// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Opening a device may take long. Requests to another device do not wait for it, and all callers for one
// device share a channel.
#include "device/hidusb/ChannelRegistry.h"
#include "tests/support/Eventually.h"

#include <functional>
#include <future>
#include <gtest/gtest.h>

using namespace hidusb;
using support::eventually;

namespace
{

// The state that the test and all ports share.
struct Ports {
    std::mutex mutex;
    std::condition_variable changed;
    int open = 0;
    int reads = 0;
    int interruptions = 0; // those that have not ended a wait yet
    int limit = 0;         // of the last wait, in milliseconds; negative for none
    bool unplugged = false;
};

// A device without reports. Its waits end by interruption or unplugging, never by time.
class SilentPort : public ReportPort
{
public:
    explicit SilentPort(Ports &ports) : ports_(ports)
    {
        const std::lock_guard lock(ports_.mutex);
        ++ports_.open;
    }
    ~SilentPort() override
    {
        const std::lock_guard lock(ports_.mutex);
        --ports_.open;
    }

    bool write(const uint8_t *, std::size_t) override { return true; }
    Received read(uint8_t *, std::size_t, int timeoutMs) override
    {
        std::unique_lock lock(ports_.mutex);
        ++ports_.reads;
        ports_.limit = timeoutMs;
        ports_.changed.wait(lock, [this] { return ports_.interruptions > 0 || ports_.unplugged; });
        if (ports_.unplugged)
            return {Outcome::Gone, 0};
        --ports_.interruptions;
        return {Outcome::Nothing, 0};
    }
    void interrupt() override
    {
        const std::lock_guard lock(ports_.mutex);
        ++ports_.interruptions;
        ports_.changed.notify_all();
    }
    bool isGone() const override
    {
        const std::lock_guard lock(ports_.mutex);
        return ports_.unplugged;
    }

private:
    Ports &ports_;
};

// "slow" opens once the test lets it, "none" never, "no memory" throws, every other path opens at once.
class SlowOpeningBus : public Bus
{
public:
    std::vector<InterfaceInfo> enumerate() override { return {}; }
    std::unique_ptr<ReportPort> open(const std::string &path) override
    {
        ++opening;
        if (path == "slow")
            opened_.wait();
        if (path == "no memory")
            throw std::bad_alloc();
        return path == "none" ? nullptr : std::make_unique<SilentPort>(ports);
    }
    std::unique_ptr<ChangeSource> watch() override { return nullptr; }

    std::atomic<int> opening{0};
    Ports ports;
    std::promise<void> letOpen;

private:
    const std::shared_future<void> opened_ = letOpen.get_future().share();
};

class Registry : public testing::Test
{
protected:
    void TearDown() override
    {
        ports([](Ports &ports) {
            ports.unplugged = true;
            ports.changed.notify_all();
            return 0;
        });
        // The reader thread destroys the port at its end.
        EXPECT_TRUE(eventually([this] { return ports(&Ports::open) == 0; }));
    }
    template <typename Look> int ports(Look look)
    {
        const std::lock_guard lock(bus_.ports.mutex);
        return std::invoke(look, bus_.ports);
    }
    std::future<std::shared_ptr<Channel>> acquireSlow()
    {
        return std::async(std::launch::async, [this] { return registry_.acquire("slow"); });
    }
    SlowOpeningBus bus_;
    ChannelRegistry registry_{bus_};
};

} // namespace

TEST_F(Registry, OpeningOneDeviceDoesNotDelayAnother)
{
    auto slow = acquireSlow();
    ASSERT_TRUE(eventually([this] { return bus_.opening == 1; }));
    auto quick = std::async(std::launch::async, [this] { return registry_.acquire("quick"); });
    EXPECT_EQ(quick.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    bus_.letOpen.set_value();
    EXPECT_TRUE(quick.get());
    EXPECT_TRUE(slow.get());
}

TEST_F(Registry, CallersThatOpenAtTheSameTimeShareAChannel)
{
    auto first = acquireSlow();
    auto second = acquireSlow();
    ASSERT_TRUE(eventually([this] { return bus_.opening == 2; }));
    bus_.letOpen.set_value();
    const std::shared_ptr<Channel> channel = first.get();
    EXPECT_TRUE(channel);
    EXPECT_EQ(second.get(), channel);
    EXPECT_EQ(ports(&Ports::open), 1);
    EXPECT_EQ(registry_.acquire("slow"), channel);
    EXPECT_EQ(bus_.opening, 2);
}

TEST_F(Registry, AFailedOpeningIsTriedAgain)
{
    EXPECT_FALSE(registry_.acquire("none"));
    EXPECT_FALSE(registry_.acquire("none"));
    EXPECT_EQ(bus_.opening, 2);
}

TEST_F(Registry, AnOpeningThatThrowsIsTriedAgain)
{
    const auto patience = Clock::now() + std::chrono::hours(1); // it is told, not waited for
    for (int times = 1; times <= 2; ++times) {
        EXPECT_FALSE(registry_.acquire("no memory", patience));
        EXPECT_EQ(bus_.opening, times);
    }
}

// The kernel takes 50 ms to open a node, so requests that follow each other share one opening.
TEST_F(Registry, ALateInterruptionClosesNothing)
{
    const Channel *first = registry_.acquire("quick").get(); // held for this moment only
    ASSERT_TRUE(eventually([this] { return ports(&Ports::reads) > 0 && ports(&Ports::limit) > 0; }));
    const int reads = ports(&Ports::reads);
    ports([](Ports &ports) {
        ports.changed.notify_all();
        return ++ports.interruptions;
    });
    EXPECT_TRUE(eventually([&] { return ports(&Ports::reads) > reads || ports(&Ports::open) == 0; }));
    EXPECT_EQ(registry_.acquire("quick").get(), first);
    EXPECT_EQ(bus_.opening, 1);
}

TEST_F(Registry, ADeviceStaysOpenUntilTheNextSearch)
{
    const int aMinute = 60 * 1000;
    registry_.acquire("quick").reset();
    EXPECT_TRUE(eventually([&] { return ports(&Ports::limit) >= aMinute; }));
}
