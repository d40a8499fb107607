// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The known and the wanted content of a mouse's flash, and the reports that make them equal.
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
        mirror.publish(0, bytesOf(image), FlashSize);
    }

    // Writes to `device` and acknowledges until nothing is left to write.
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

TEST_F(Mirror, WantsNothingBeforeTheFirstFullRead)
{
    EXPECT_FALSE(mirror.setWanted(support::anyImage(2)));
    const uint8_t part = 1;
    mirror.learn(4, &part, 1);
    EXPECT_FALSE(mirror.isLoaded());
    load();
    EXPECT_FALSE(mirror.next());
}

// Until then the program's record is that of another device.
TEST_F(Mirror, WantsNothingBeforeTheProgramHasTheFullRead)
{
    mirror.learn(0, bytesOf(image), FlashSize);
    EXPECT_TRUE(mirror.setWanted(support::anyImage(2)));
    mirror.publish(FlashReportRateAddress, &image.ReportRate, 1); // a partial read is not enough
    EXPECT_TRUE(mirror.setWanted(support::anyImage(2)));
    EXPECT_FALSE(mirror.next());
    FlashImage received = support::anyImage(3);
    mirror.publish(0, bytesOf(received), FlashSize);
    EXPECT_EQ(std::memcmp(&received, &image, FlashSize), 0);
    received.ReportRate ^= 1;
    EXPECT_TRUE(mirror.setWanted(received));
    ASSERT_TRUE(mirror.next());
    EXPECT_EQ(mirror.next()->size, 1);
}

TEST_F(Mirror, OneByteIsOneRange)
{
    load();
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.setWanted(image));
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
    ASSERT_TRUE(mirror.setWanted(other));
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
    ASSERT_TRUE(mirror.setWanted(image));
    const auto range = mirror.next();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->address, 0x301);
    EXPECT_EQ(range->size, 53);
}

TEST_F(Mirror, BytesThatTheMouseMayHaveChangedAreNotSentAlong)
{
    load();
    image.KFps ^= 1;            // address 3
    image.LiftOffDistance ^= 1; // address 5; the mouse itself may change the current stage at 4
    ASSERT_TRUE(mirror.setWanted(image));
    FlashImage device = image;
    EXPECT_EQ(mirror.next()->size, 1);
    EXPECT_EQ(writeAll(device), 2);
}

TEST_F(Mirror, ANewImageTakesAboutAsManyReportsAsAFullRead)
{
    load();
    FlashImage other = support::anyImage(3);
    ASSERT_TRUE(mirror.setWanted(other));
    FlashImage device = image;
    EXPECT_LE(writeAll(device), 124 + 16 * 2);
    EXPECT_FALSE(mirror.next());
}

TEST_F(Mirror, ANewerValueReplacesAWaitingOne)
{
    load();
    for (int value = 0; value < 100; ++value) {
        image.DpiStages[2].Red = static_cast<uint8_t>(value);
        ASSERT_TRUE(mirror.setWanted(image));
    }
    FlashImage device{};
    EXPECT_LE(writeAll(device), 1);
    EXPECT_EQ(device.DpiStages[2].Red, 99);
}

TEST_F(Mirror, AReadBecomesWantedUnlessAChangeIsPending)
{
    load();
    const uint8_t stage = static_cast<uint8_t>(image.CurrentDpiStage + 1);
    mirror.learn(FlashCurrentStageAddress, &stage, 1);
    EXPECT_FALSE(mirror.next()) << "the stage that the mouse chose would be reverted";

    image.CurrentDpiStage = stage;
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.setWanted(image));
    const uint8_t rate = 77;
    mirror.learn(FlashReportRateAddress, &rate, 1);
    ASSERT_TRUE(mirror.next());
    EXPECT_EQ(*mirror.wanted(0), image.ReportRate) << "an edit during the read would be lost";
}

// The mouse's button was pressed twice; the program has received the first press only.
TEST_F(Mirror, ARecordThatLagsBehindTheMouseRevertsNothing)
{
    load();
    const uint8_t pressed[] = {1, 2};
    mirror.learn(FlashCurrentStageAddress, &pressed[0], 1);
    mirror.publish(FlashCurrentStageAddress, &image.CurrentDpiStage, 1);
    EXPECT_EQ(image.CurrentDpiStage, 1);
    mirror.learn(FlashCurrentStageAddress, &pressed[1], 1);
    image.LiftOffDistance ^= 1; // an edit of something else meanwhile
    ASSERT_TRUE(mirror.setWanted(image));
    const auto range = mirror.next();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->address, offsetof(FlashImage, LiftOffDistance));
    EXPECT_EQ(range->size, 1);
}

TEST_F(Mirror, PublishesTheNewestContentAndTheProgramsOwnEdit)
{
    load();
    const uint8_t pressed[] = {1, 2};
    mirror.learn(FlashCurrentStageAddress, &pressed[0], 1);
    mirror.learn(FlashCurrentStageAddress, &pressed[1], 1);
    uint8_t received = pressed[0];
    mirror.publish(FlashCurrentStageAddress, &received, 1);
    EXPECT_EQ(received, 2);
    mirror.learn(FlashReportRateAddress, &pressed[0], 1);
    image.ReportRate = 64;
    image.CurrentDpiStage = received;
    ASSERT_TRUE(mirror.setWanted(image)); // before it received the rate
    received = pressed[0];
    mirror.publish(FlashReportRateAddress, &received, 1);
    EXPECT_EQ(received, 64);
    FlashImage device = image;
    EXPECT_EQ(writeAll(device), 1);
    EXPECT_EQ(device.ReportRate, 64);
}

TEST_F(Mirror, BeforeTheFirstFullReadNothingIsPublished)
{
    uint8_t received = 7;
    mirror.publish(FlashReportRateAddress, &received, 1);
    EXPECT_EQ(received, 7);
}

TEST_F(Mirror, AnUncertainWriteIsRepeatedEvenWhenTheOldValueIsWantedAgain)
{
    load();
    const FlashImage before = image;
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.setWanted(image));
    mirror.markUncertain(*mirror.next());
    ASSERT_TRUE(mirror.setWanted(before));
    ASSERT_TRUE(mirror.next()) << "the device may hold the withdrawn value";
    EXPECT_EQ(*mirror.wanted(0), before.ReportRate);
    const uint8_t held = before.ReportRate;
    mirror.acknowledge(*mirror.next(), &held);
    EXPECT_FALSE(mirror.next());
}

TEST_F(Mirror, DiscardingDropsPendingChanges)
{
    load();
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.setWanted(image));
    mirror.markUncertain(*mirror.next());
    mirror.discardPending();
    EXPECT_FALSE(mirror.next());
}

TEST_F(Mirror, AfterForgettingAFullReadIsNeeded)
{
    load();
    image.ReportRate ^= 1;
    ASSERT_TRUE(mirror.setWanted(image));
    mirror.forget();
    EXPECT_FALSE(mirror.next());
    EXPECT_FALSE(mirror.setWanted(image));
    load();
    EXPECT_FALSE(mirror.next());
}
