// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The known and the wanted content of a mouse's flash, and the reports that make them equal.
#include "device/hidusb/Codec.h"
#include "device/hidusb/FlashMirror.h"
#include "tests/support/Records.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

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
            std::memcpy(bytesOf(device) + range->address, range->bytes.data(), range->size);
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
    EXPECT_EQ(mirror.next()->bytes[0], image.ReportRate);
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
    EXPECT_EQ(mirror.next()->bytes[0], image.ReportRate) << "an edit during the read would be lost";
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
    EXPECT_EQ(mirror.next()->bytes[0], before.ReportRate);
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

// ---- Blocks that bindings play

namespace
{

bool same(const KeyBinding &a, const KeyBinding &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Each binding is that of one record or none, and the block that it plays is that of one record.
testing::AssertionResult isWhole(const FlashImage &device, const std::vector<FlashImage> &records)
{
    const auto isOneOf = [&](const auto &held, const auto &items, std::size_t slot) {
        return std::any_of(records.begin(), records.end(), [&](const FlashImage &record) {
            return std::memcmp(&held, &(record.*items)[slot], sizeof held) == 0;
        });
    };
    for (std::size_t slot = 0; slot < KeySlotCount; ++slot) {
        const KeyBinding &binding = device.KeyBindings[slot];
        if (!same(binding, {}) && !isOneOf(binding, &FlashImage::KeyBindings, slot))
            return testing::AssertionFailure() << "binding " << slot << " is torn";
        if (binding.Class == KeySequenceClass &&
            !isOneOf(device.KeySequences[slot], &FlashImage::KeySequences, slot))
            return testing::AssertionFailure() << "sequence " << slot << " is torn";
        if (binding.Class == MacroBlockClass &&
            !isOneOf(device.MacroBlocks[slot], &FlashImage::MacroBlocks, slot))
            return testing::AssertionFailure() << "macro " << slot << " is torn";
    }
    return testing::AssertionSuccess();
}

FlashMacro fullMacro(uint8_t fill)
{
    FlashMacro macro;
    std::memset(&macro, fill, sizeof macro);
    macro.NameLength = MacroNameSize;
    macro.EventCount = MacroEventCount;
    std::memset(macro.Unused, 0, sizeof macro.Unused);
    return macro;
}

} // namespace

class Blocks : public Mirror
{
protected:
    Blocks() { std::memset(bytesOf(image), 0, FlashSize); }

    // The reports that it takes to get from `image` to `wanted`, each a place to be cut at.
    int reportsTo(const FlashImage &wanted)
    {
        load();
        EXPECT_TRUE(mirror.setWanted(wanted));
        FlashImage device = image;
        int reports = 0;
        for (; const auto write = mirror.next(); ++reports) {
            std::memcpy(bytesOf(device) + write->address, write->bytes.data(), write->size);
            mirror.acknowledge(*write, write->bytes.data());
            EXPECT_TRUE(isWhole(device, {image, wanted})) << "behind report " << reports;
        }
        EXPECT_EQ(std::memcmp(&device, &wanted, FlashSize), 0);
        return reports;
    }
};

TEST_F(Blocks, AMacroGoesBeforeItsBindingInTheLeastReports)
{
    FlashImage wanted = image;
    wanted.KeyBindings[3] = {6, 3, 254};
    wanted.MacroBlocks[3] = fullMacro(0x41);
    EXPECT_EQ(reportsTo(wanted), 8);
}

TEST_F(Blocks, AMacroInUseIsReplacedWhileItsButtonHasNoAction)
{
    for (int slot = 0; slot < KeySlotCount; ++slot) {
        std::memset(bytesOf(image), 0, FlashSize);
        image.KeyBindings[slot] = {6, uint8_t(slot), 254};
        image.MacroBlocks[slot] = fullMacro(0x41);
        FlashImage wanted = image;
        wanted.MacroBlocks[slot] = fullMacro(0x52);
        wanted.KeyBindings[slot].Second = 1;
        mirror.forget();
        EXPECT_EQ(reportsTo(wanted), 9) << "slot " << slot;
    }
}

TEST_F(Blocks, WhatOneReportHoldsNeedsNoPause)
{
    image.KeyBindings[3] = {6, 3, 254};
    image.MacroBlocks[3] = fullMacro(0x41);
    FlashImage wanted = image;
    std::memcpy(wanted.MacroBlocks[3].Name, "Tap", 3);
    wanted.MacroBlocks[3].NameLength = 3;
    EXPECT_EQ(reportsTo(wanted), 1) << "a new name";
    image = wanted;
    mirror.forget();
    wanted.KeyBindings[3].Second = 1;
    EXPECT_EQ(reportsTo(wanted), 1) << "a new cycle mode";
    image = wanted;
    image.KeyBindings[5] = wanted.KeyBindings[5] = {5, 0, 0};
    mirror.forget();
    std::memset(&wanted.KeySequences[5], 1, sizeof(FlashSequence) - 1);
    EXPECT_EQ(reportsTo(wanted), 1) << "a new combination";
}

TEST_F(Blocks, NoReportEndsWithinWhatAButtonPlays)
{
    for (std::size_t slot = 0; slot < KeySlotCount; ++slot) {
        image.KeyBindings[slot] = {5, 0, 0};
        std::memset(&image.KeySequences[slot], 1, sizeof(FlashSequence) - 1);
    }
    FlashImage wanted = image;
    for (std::size_t slot = 0; slot < KeySlotCount; ++slot)
        std::memset(&wanted.KeySequences[slot], 2, sizeof(FlashSequence) - 1);
    EXPECT_EQ(reportsTo(wanted), 16);
}

// The bytes before the bindings push one of them over the end of a report.
TEST_F(Blocks, NoReportEndsWithinABinding)
{
    for (std::size_t lead = 0; lead < sizeof(DpiStage); ++lead) {
        FlashImage wanted = image;
        std::memset(bytesOf(wanted) + offsetof(FlashImage, KeyBindings) - 8 - lead, 1, 8 + lead);
        std::memset(wanted.KeyBindings, 1, sizeof wanted.KeyBindings);
        mirror.forget();
        load();
        ASSERT_TRUE(mirror.setWanted(wanted));
        while (const auto write = mirror.next()) {
            const int into = write->address + write->size - int(offsetof(FlashImage, KeyBindings));
            EXPECT_TRUE(into <= 0 || into % 3 == 0) << lead;
            mirror.acknowledge(*write, write->bytes.data());
        }
    }
}

TEST_F(Blocks, AnotherActionGoesBeforeTheBlockThatItLeaves)
{
    image.KeyBindings[3] = {6, 3, 254};
    image.MacroBlocks[3] = fullMacro(0x41);
    FlashImage wanted = image;
    wanted.KeyBindings[3] = {1, 8, 0};
    std::memset(&wanted.MacroBlocks[3], 0, sizeof(FlashMacro));
    EXPECT_EQ(reportsTo(wanted), 8);
    // From a combination, which is cleared, to a macro that is not there yet.
    image.KeyBindings[3] = {5, 0, 0};
    std::memset(&image.KeySequences[3], 1, sizeof(FlashSequence) - 1);
    std::memset(&image.MacroBlocks[3], 0, sizeof(FlashMacro));
    wanted = image;
    wanted.KeyBindings[3] = {6, 3, 1};
    std::memset(&wanted.KeySequences[3], 0, sizeof(FlashSequence));
    wanted.MacroBlocks[3] = fullMacro(0x41);
    mirror.forget();
    EXPECT_EQ(reportsTo(wanted), 9);
}

// Acknowledgements that are lost, records that come in between, and a cut behind any report.
TEST_F(Blocks, NothingIsTornByLostWrites)
{
    std::mt19937 random(5);
    const auto chance = [&random](uint32_t of) { return random() % of == 0; };
    const auto change = [&](FlashImage &record) {
        for (std::size_t slot = 0; slot < KeySlotCount; ++slot) {
            if (chance(3))
                record.KeyBindings[slot] = {uint8_t(4 + random() % 3), uint8_t(slot), uint8_t(random())};
            if (chance(3))
                std::memset(&record.KeySequences[slot], int(random() % 256), sizeof(FlashSequence) - 1);
            if (chance(3))
                record.MacroBlocks[slot] = fullMacro(uint8_t(random()));
            if (chance(5))
                record.MacroBlocks[slot].Name[random() % 30] ^= 1;
        }
    };
#ifdef __SANITIZE_THREAD__ // makes it fifty times slower, and there is one thread
    constexpr int Rounds = 5;
#else
    constexpr int Rounds = 60;
#endif
    for (int round = 0; round < Rounds; ++round) {
        std::memset(bytesOf(image), 0, FlashSize);
        change(image);
        mirror.forget();
        load();
        FlashImage device = image, wanted = image;
        std::vector<FlashImage> records{image};
        const auto edit = [&] {
            change(wanted);
            records.push_back(wanted);
            return mirror.setWanted(wanted);
        };
        ASSERT_TRUE(edit());
        int reports = 0;
        while (const auto write = mirror.next()) {
            ASSERT_LT(++reports, 2000);
            const bool arrives = !chance(4), acknowledged = arrives && !chance(4);
            if (arrives)
                std::memcpy(bytesOf(device) + write->address, write->bytes.data(), write->size);
            if (acknowledged)
                mirror.acknowledge(*write, write->bytes.data());
            else
                mirror.markUncertain(*write);
            ASSERT_TRUE(isWhole(device, records)) << "round " << round << ", report " << reports;
            const bool edits = records.size() < 6 && chance(20);
            ASSERT_TRUE(!edits || edit());
        }
        ASSERT_EQ(std::memcmp(&device, &wanted, FlashSize), 0);
    }
}
