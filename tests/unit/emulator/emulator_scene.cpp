// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The scene with a time of its own: what falls due when.
#include "emulator/Scene.h"
#include "tests/support/BootImage.h"

#include <gtest/gtest.h>

using namespace emulator;
using namespace bootimage;
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
    wire::Status ask(wire::Command command, const Bytes &payload = {}, std::size_t address = 0)
    {
        wire::Report request{};
        request.CommandCode = static_cast<uint8_t>(command);
        request.Sequence = 1;
        request.setAddress(static_cast<uint16_t>(address));
        request.Length = static_cast<uint8_t>(payload.size());
        std::copy(payload.begin(), payload.end(), request.Payload);
        return scene_.answer(mouse_, request).status();
    }
    // The order now and once more just before the device leaves the bus for it.
    void expectOneChange(wire::Command command, const Bytes &argument, Mode to)
    {
        const milliseconds begin = std::chrono::duration_cast<milliseconds>(scene_.now() - start_);
        ASSERT_EQ(ask(command, argument), wire::Status::Ok);
        runTo(begin + BootLeaveTime - milliseconds(1));
        EXPECT_EQ(ask(command, argument), wire::Status::Ok);
        runTo(begin + BootLeaveTime);
        EXPECT_EQ(mouse_.mode, Mode::Absent);
        runTo(begin + BootLeaveTime + BootReturnTime - milliseconds(1));
        EXPECT_EQ(mouse_.mode, Mode::Absent);
        runTo(begin + BootLeaveTime + BootReturnTime);
        EXPECT_EQ(mouse_.mode, to);
        EXPECT_FALSE(scene_.interfaces().empty());
    }
    void runTo(milliseconds time) { scene_.run(start_ + time); }

    const Clock::time_point start_{std::chrono::hours(1)};
    Scene scene_;
    Mouse &mouse_ = scene_.addMouse("m");
};

} // namespace

TEST_F(EmulatorScene, BootLoaderTakesItsTime)
{
    ASSERT_EQ(ask(wire::Command::BootEnter, {wire::TargetMouse}), wire::Status::Ok);
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

TEST_F(EmulatorScene, ARepeatedOrderOfAnUpgradeChangesNothing)
{
    expectOneChange(wire::Command::BootEnter, {wire::TargetMouse}, Mode::Boot);
    const wire::BootIdentityReply identity = mouse_.bootIdentity();
    const Bytes image = firmware(identity.Target, identity.Cid, identity.Mid, 0x0203);
    ASSERT_EQ(ask(wire::Command::BootBegin, beginOf(image)), wire::Status::Ok);
    for (std::size_t block = 0; block < blocksOf(image); ++block)
        ASSERT_EQ(ask(wire::Command::BootData, blockOf(image, block), block), wire::Status::Ok);
    expectOneChange(wire::Command::BootEnd, {}, Mode::Normal);
    EXPECT_EQ(mouse_.version, 0x0203);
    runTo(std::chrono::hours(1));
    EXPECT_EQ(mouse_.mode, Mode::Normal);
}

TEST_F(EmulatorScene, ADeviceInItsBootLoaderIsNotSentThereAgain)
{
    ASSERT_EQ(ask(wire::Command::BootEnter, {wire::TargetMouse}), wire::Status::Ok);
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
