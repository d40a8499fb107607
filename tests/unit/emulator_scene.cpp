// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The scene with a time of its own: what falls due when.
#include "emulator/Scene.h"

#include <gtest/gtest.h>

using namespace emulator;
using std::chrono::milliseconds;

namespace
{

class EmulatorScene : public ::testing::Test
{
protected:
    void SetUp() override
    {
        scene_.run(start_);
        mouse_.plugged = true;
    }
    wire::Status ask(wire::Command command, uint8_t argument)
    {
        wire::Report request{};
        request.CommandCode = static_cast<uint8_t>(command);
        request.Sequence = 1;
        request.Length = 1;
        request.Payload[0] = argument;
        return scene_.answer(mouse_, request).status();
    }
    void runTo(milliseconds time) { scene_.run(start_ + time); }

    const Clock::time_point start_{std::chrono::hours(1)};
    Scene scene_;
    Mouse &mouse_ = scene_.addMouse("m");
};

} // namespace

TEST_F(EmulatorScene, BootLoaderTakesItsTime)
{
    ASSERT_EQ(ask(wire::Command::BootEnter, wire::TargetMouse), wire::Status::Ok);
    EXPECT_EQ(scene_.nextDue(), start_ + BootLeaveTime);
    runTo(BootLeaveTime - milliseconds(1));
    EXPECT_EQ(mouse_.mode, Mode::Normal);
    runTo(BootLeaveTime);
    EXPECT_EQ(mouse_.mode, Mode::Absent);
    EXPECT_TRUE(scene_.interfaces().empty());
    runTo(BootLeaveTime + BootReturnTime);
    EXPECT_EQ(mouse_.mode, Mode::Boot);
    EXPECT_EQ(scene_.nextDue(), std::nullopt);
}

TEST_F(EmulatorScene, ADeviceInItsBootLoaderIsNotSentThereAgain)
{
    ASSERT_EQ(ask(wire::Command::BootEnter, wire::TargetMouse), wire::Status::Ok);
    scene_.setBoot(mouse_, true);
    runTo(BootLeaveTime);
    EXPECT_EQ(mouse_.mode, Mode::Boot);
}

TEST_F(EmulatorScene, SleepFallsDueWithTheUnit)
{
    mouse_.plugged = false;
    mouse_.setAutoSleep(milliseconds(10), scene_.now());
    const milliseconds time = milliseconds(10) * mouse_.state.flash[0].StopCloseTime;
    EXPECT_EQ(scene_.nextDue(), start_ + time);
    runTo(time - milliseconds(1));
    EXPECT_FALSE(mouse_.state.asleep);
    runTo(time);
    EXPECT_TRUE(mouse_.state.asleep);
    EXPECT_EQ(scene_.nextDue(), std::nullopt);
}

TEST_F(EmulatorScene, WhatFallsDueTogetherKeepsItsOrder)
{
    std::string order;
    scene_.after(milliseconds(5), [&order] { order += 'b'; });
    scene_.after(milliseconds(5), [&order] { order += 'c'; });
    scene_.after(milliseconds(1), [&order] { order += 'a'; });
    runTo(milliseconds(4));
    EXPECT_EQ(order, "a");
    runTo(milliseconds(9));
    EXPECT_EQ(order, "abc");
}
