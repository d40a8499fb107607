// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What is known of a mouse, what is wanted of it, and the reports in between.
#include "device/hidusb/Codec.h"
#include "device/hidusb/FlashMirror.h"
#include "tests/support/Records.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace hidusb;

static uint8_t *bytesOf(FlashImage &image) { return reinterpret_cast<uint8_t *>(&image); }

class Mirror : public testing::Test
{
protected:
    void load()
    {
        mirror.learn(0, bytesOf(image), FlashSize);
        mirror.tell(0, bytesOf(image), FlashSize);
    }

    // Acknowledges every report until nothing is left; what the device then holds is `device`.
    int writeAll(FlashImage &device)
    {
        int reports = 0;
        while (const auto range = mirror.next()) {
            std::memcpy(bytesOf(device) + range->address, mirror.wanted(range->address), range->size);
            mirror.acknowledge(*range, bytesOf(device) + range->address);
            ++reports;
        }
        return reports;
    }

    FlashImage image = support::anyImage(1);
    FlashMirror mirror;
};

TEST_F(Mirror, WantsNothingBeforeTheFirstLoad)
{
    EXPECT_FALSE(mirror.want(support::anyImage(2)));
    const uint8_t part = 1;
    mirror.learn(4, &part, 1);
    EXPECT_FALSE(mirror.isLoaded());
    load();
    EXPECT_FALSE(mirror.next());
}

// It is still on its way to the program, whose record is that of another device.
TEST_F(Mirror, WantsNothingBeforeTheProgramIsToldOfTheLoad)
{
    mirror.learn(0, bytesOf(image), FlashSize);
    EXPECT_TRUE(mirror.want(support::anyImage(2)));
    mirror.tell(FlashReportRateAddress, &image.ReportRate, 1); // a part tells nothing of the rest
    EXPECT_TRUE(mirror.want(support::anyImage(2)));
    EXPECT_FALSE(mirror.next());
    FlashImage told = support::anyImage(3);
    mirror.tell(0, bytesOf(told), FlashSize);
    EXPECT_EQ(std::memcmp(&told, &image, FlashSize), 0);
    told.ReportRate ^= 1;
    EXPECT_TRUE(mirror.want(told));
    ASSERT_TRUE(mirror.next());
    EXPECT_EQ(mirror.next()->size, 1);
}

TEST_F(Mirror, OneByteIsOneRange)
{
    load();
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.want(image));
    const auto range = mirror.next();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->address, 0);
    EXPECT_EQ(range->size, 1);
    EXPECT_EQ(*mirror.wanted(0), image.ReportRate);
}

TEST_F(Mirror, TheMousesOwnBytesAreNeverWritten)
{
    load();
    FlashImage other;
    for (std::size_t i = 0; i < FlashSize; ++i)
        bytesOf(other)[i] = static_cast<uint8_t>(~bytesOf(image)[i]);
    ASSERT_TRUE(mirror.want(other));
    FlashImage device = image;
    writeAll(device);
    for (std::size_t at = 0; at < FlashSize; ++at) {
        const bool described = flashOwners()[at] != Owner::Mouse;
        ASSERT_EQ(bytesOf(device)[at], bytesOf(described ? other : image)[at]) << "address " << at;
    }
}

TEST_F(Mirror, NeighboursShareAReport)
{
    load();
    image.MacroBlocks[0].Name[0] ^= 1;
    image.MacroBlocks[0].Events[4].Code.bytes[0] ^= 1; // 52 bytes further
    ASSERT_TRUE(mirror.want(image));
    const auto range = mirror.next();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->address, 0x301);
    EXPECT_EQ(range->size, 53);
}

TEST_F(Mirror, WhatTheMouseMayHaveChangedIsNotSentAlong)
{
    load();
    image.KFps ^= 1;            // address 3
    image.LiftOffDistance ^= 1; // address 5; the current stage at 4 is the mouse's to change
    ASSERT_TRUE(mirror.want(image));
    FlashImage device = image;
    EXPECT_EQ(mirror.next()->size, 1);
    EXPECT_EQ(writeAll(device), 2);
}

TEST_F(Mirror, AWholeNewImageTakesNoMoreReportsThanAReadOfIt)
{
    load();
    FlashImage other = support::anyImage(3);
    ASSERT_TRUE(mirror.want(other));
    FlashImage device = image;
    EXPECT_LE(writeAll(device), 124 + 16 * 2);
    EXPECT_FALSE(mirror.next());
}

TEST_F(Mirror, ANewerValueReplacesAWaitingOne)
{
    load();
    for (int value = 0; value < 100; ++value) {
        image.DpiStages[2].Red = static_cast<uint8_t>(value);
        ASSERT_TRUE(mirror.want(image));
    }
    FlashImage device{};
    EXPECT_LE(writeAll(device), 1);
    EXPECT_EQ(device.DpiStages[2].Red, 99);
}

TEST_F(Mirror, AReadTellsWhatIsWantedUnlessThatHasChanged)
{
    load();
    const uint8_t stage = static_cast<uint8_t>(image.CurrentDpiStage + 1);
    mirror.learn(FlashCurrentStageAddress, &stage, 1);
    EXPECT_FALSE(mirror.next()) << "the stage that the mouse chose would be written back";

    image.CurrentDpiStage = stage;
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.want(image));
    const uint8_t rate = 77;
    mirror.learn(FlashReportRateAddress, &rate, 1);
    ASSERT_TRUE(mirror.next());
    EXPECT_EQ(*mirror.wanted(0), image.ReportRate) << "a click during the read would be lost";
}

// The mouse's button was pressed twice; the program has been told of the first press alone.
TEST_F(Mirror, ARecordThatLagsBehindTheMouseTakesNothingBack)
{
    load();
    const uint8_t pressed[] = {1, 2};
    mirror.learn(FlashCurrentStageAddress, &pressed[0], 1);
    mirror.tell(FlashCurrentStageAddress, &image.CurrentDpiStage, 1);
    EXPECT_EQ(image.CurrentDpiStage, 1);
    mirror.learn(FlashCurrentStageAddress, &pressed[1], 1);
    image.LiftOffDistance ^= 1; // an edit of something else meanwhile
    ASSERT_TRUE(mirror.want(image));
    const auto range = mirror.next();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->address, offsetof(FlashImage, LiftOffDistance));
    EXPECT_EQ(range->size, 1);
}

TEST_F(Mirror, TellsTheNewestOfTheMouseAndTheProgramsOwnEdit)
{
    load();
    const uint8_t pressed[] = {1, 2};
    mirror.learn(FlashCurrentStageAddress, &pressed[0], 1);
    mirror.learn(FlashCurrentStageAddress, &pressed[1], 1);
    uint8_t told = pressed[0];
    mirror.tell(FlashCurrentStageAddress, &told, 1);
    EXPECT_EQ(told, 2);
    mirror.learn(FlashReportRateAddress, &pressed[0], 1);
    image.ReportRate = 64;
    image.CurrentDpiStage = told;
    ASSERT_TRUE(mirror.want(image)); // before it was told of the rate
    told = pressed[0];
    mirror.tell(FlashReportRateAddress, &told, 1);
    EXPECT_EQ(told, 64);
    FlashImage device = image;
    EXPECT_EQ(writeAll(device), 1);
    EXPECT_EQ(device.ReportRate, 64);
}

TEST_F(Mirror, WithoutALoadThereIsNothingToTell)
{
    uint8_t told = 7;
    mirror.tell(FlashReportRateAddress, &told, 1);
    EXPECT_EQ(told, 7);
}

TEST_F(Mirror, ADoubtfulWriteIsRepeatedEvenWhenTheOldValueIsWantedAgain)
{
    load();
    const FlashImage before = image;
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.want(image));
    mirror.doubt(*mirror.next());
    ASSERT_TRUE(mirror.want(before));
    ASSERT_TRUE(mirror.next()) << "the device may hold the value that was taken back";
    EXPECT_EQ(*mirror.wanted(0), before.ReportRate);
    const uint8_t held = before.ReportRate;
    mirror.acknowledge(*mirror.next(), &held);
    EXPECT_FALSE(mirror.next());
}

TEST_F(Mirror, SettlingDropsWhatWaits)
{
    load();
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.want(image));
    mirror.doubt(*mirror.next());
    mirror.settle();
    EXPECT_FALSE(mirror.next());
}

TEST_F(Mirror, ForgettingNeedsANewLoad)
{
    load();
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.want(image));
    mirror.forget();
    EXPECT_FALSE(mirror.next());
    EXPECT_FALSE(mirror.want(image));
    load();
    EXPECT_FALSE(mirror.next());
}
