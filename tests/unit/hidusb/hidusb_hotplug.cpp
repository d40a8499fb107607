// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The hot-plug watch.
#include "device/hidusb/HIDUsb.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

using namespace support;

static std::atomic<int> firstCalls;
static std::atomic<int> firstEnds;
static std::atomic<int> secondCalls;
static std::atomic<bool> hold;
static std::atomic<bool> inside;

static void first()
{
    ++firstCalls;
    inside = true;
    eventually([] { return !hold.load(); });
    ++firstEnds;
}

static void second() { ++secondCalls; }

static void restarting()
{
    if (++firstCalls < 5)
        StartUsbChanged(restarting, 100);
}

class HotPlug : public testing::Test
{
protected:
    HotPlug()
    {
        busFolder();
        firstCalls = 0;
        firstEnds = 0;
        secondCalls = 0;
        hold = false;
        inside = false;
    }
    ~HotPlug() override
    {
        hold = false;
        StopUsbChanged();
        EXPECT_TRUE(eventually([] { return watchCount() == 0; })); // no call comes during the next test
    }
    // The running watches: each holds an inotify descriptor, which it closes after its last call.
    static int watchCount()
    {
        int count = 0;
        for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            count += std::filesystem::read_symlink(entry.path(), gone) == "anon_inode:inotify";
        }
        return count;
    }
    static bool reaches(const std::atomic<int> &calls, int count)
    {
        return eventually([&calls, count] { return calls >= count; });
    }
};

TEST_F(HotPlug, CallsAtOnceAndAfterEachChange)
{
    StartUsbChanged(first, 600);
    ASSERT_TRUE(reaches(firstCalls, 1));
    auto device = std::make_unique<FakeDevice>();
    ASSERT_TRUE(reaches(firstCalls, 2));
    device.reset();
    ASSERT_TRUE(reaches(firstCalls, 3));
}

// A busy machine may pause between the changes, and each pause makes a call. Without joining, every round
// would have a call for each change.
TEST_F(HotPlug, ChangesCloseTogetherMakeOneCall)
{
    bool joins = false;
    for (int round = 0; round < 10 && !joins; ++round) {
        firstCalls = 0;
        StartUsbChanged(first, 600);
        ASSERT_TRUE(reaches(firstCalls, 1));
        std::vector<std::unique_ptr<FakeDevice>> devices;
        for (int i = 0; i < 20; ++i)
            devices.push_back(std::make_unique<FakeDevice>(mouseName("m" + std::to_string(i))));
        devices.clear();
        ASSERT_TRUE(reaches(firstCalls, 2));
        StopUsbChanged();
        ASSERT_TRUE(eventually([] { return watchCount() == 0; }));
        joins = firstCalls <= 10; // for 40 changes
    }
    EXPECT_TRUE(joins);
}

TEST_F(HotPlug, AChangeDuringACallIsNotLost)
{
    StartUsbChanged(first, 600);
    ASSERT_TRUE(reaches(firstEnds, 1));
    hold = true;
    inside = false;
    auto device = std::make_unique<FakeDevice>();
    ASSERT_TRUE(eventually([] { return inside.load(); }));
    device.reset();
    hold = false;
    EXPECT_TRUE(reaches(firstCalls, 3));
}

TEST_F(HotPlug, AReplacedWatchMakesNoMoreCalls)
{
    hold = true;
    StartUsbChanged(first, 600);
    ASSERT_TRUE(reaches(firstCalls, 1));
    StartUsbChanged(second, 600); // does not wait for the running call
    ASSERT_TRUE(reaches(secondCalls, 1));
    hold = false;
    const FakeDevice device;
    ASSERT_TRUE(reaches(secondCalls, 2));
    EXPECT_EQ(firstCalls, 1);
}

TEST_F(HotPlug, AStoppedWatchMakesNoMoreCalls)
{
    StartUsbChanged(first, 600);
    ASSERT_TRUE(reaches(firstCalls, 1));
    ASSERT_EQ(watchCount(), 1);
    StopUsbChanged();
    StopUsbChanged();
    EXPECT_TRUE(eventually([] { return watchCount() == 0; }));
    const FakeDevice device;
    StartUsbChanged(second, 600);
    ASSERT_TRUE(reaches(secondCalls, 1));
    EXPECT_EQ(firstCalls, 1);
}

TEST_F(HotPlug, MayBeReplacedFromInsideItsCall)
{
    StartUsbChanged(restarting, 600);
    EXPECT_TRUE(reaches(firstCalls, 5));
}

TEST_F(HotPlug, OddArgumentsAreAccepted)
{
    StartUsbChanged(nullptr, 600);
    StartUsbChanged(second, -1);
    ASSERT_TRUE(reaches(secondCalls, 1));
    const FakeDevice device;
    EXPECT_TRUE(reaches(secondCalls, 2));
}

TEST_F(HotPlug, EachChangeOfASeriesMakesACall)
{
    StartUsbChanged(first, 0);
    ASSERT_TRUE(reaches(firstCalls, 1));
    for (int i = 0; i < 10; ++i) {
        const int before = firstCalls;
        const FakeDevice device;
        ASSERT_TRUE(reaches(firstCalls, before + 1));
    }
}
