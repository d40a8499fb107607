// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Leaving: what was ordered is still carried out, for a limited time, and what is not done by then leaves the
// mouse with bindings that are true.
#include "tests/support/ConnectionFixture.h"
#include "tests/support/Records.h"

#include <atomic>

using namespace support;
using wire::Command;

namespace
{

constexpr int Slot = 3;

// What a binding plays.
struct BlockRow {
    const char *name;
    uint8_t bindingClass;
};
constexpr BlockRow Blocks[] = {{"macro", MacroBlockClass}, {"combination", KeySequenceClass}};

class Leaving : public ConnectionFixture
{
protected:
    // Gives button `Slot` another action than it has, with a new block.
    void bind(const BlockRow &row, uint8_t number)
    {
        const FlashDataMap other = anyRecord(number);
        record->KeySequences[Slot] = other.KeySequences[Slot];
        record->MacroBlocks[Slot] = other.MacroBlocks[Slot];
        record->KeyBindings[Slot] = {row.bindingClass, Slot, number};
        ProtocolDataUpdate(record.get());
    }
    bool isBound(uint8_t number) const
    {
        const FlashImage flash = device.flash();
        return flash.KeyBindings[Slot].Second == number;
    }
    bool holdsTheBlock(const BlockRow &row) const
    {
        const FlashImage flash = device.flash();
        FlashDataMap held{};
        ProtocolDataParser(reinterpret_cast<const uint8_t *>(&flash), &held);
        return row.bindingClass == MacroBlockClass
                   ? std::memcmp(&held.MacroBlocks[Slot], &record->MacroBlocks[Slot], sizeof(MacroBlock)) == 0
                   : std::memcmp(&held.KeySequences[Slot], &record->KeySequences[Slot],
                                 sizeof(KeySequence)) == 0;
    }
    // A mouse that plays none of the blocks.
    void loadUnbound()
    {
        device.setFlash({});
        load();
    }
    Command lastCommand() const
    {
        const auto requests = device.requests();
        return requests.empty() ? Command::Identity : requests.back().command();
    }
};

} // namespace

// A busy machine may not be done in time; then the binding is still the old one.
TEST_F(Leaving, WhatWasBoundIsStored)
{
    bool stored = false;
    for (uint8_t round = 1; round < 20 && !stored; ++round) {
        loadUnbound();
        bind(Blocks[0], round);
        UsbServer_SetPCDriverStatus(0);
        UsbServer_Exit();
        stored = isBound(round) && holdsTheBlock(Blocks[0]) && lastCommand() == Command::DriverStatus;
        EXPECT_TRUE(!isBound(round) || holdsTheBlock(Blocks[0]));
    }
    EXPECT_TRUE(stored);
}

TEST_F(Leaving, ACutLeavesTheOldActionOrTheWholeNewOne)
{
    for (const BlockRow &row : Blocks) {
        bool bound = false;
        for (int taken = 0; !bound && taken < 20; ++taken) {
            loadUnbound();
            std::atomic<int> writes{0};
            device.setScript([&](const wire::Report &request) -> std::optional<Answers> {
                const bool cut = request.command() == Command::FlashWrite && writes++ >= taken;
                return cut ? std::make_optional(Answers{}) : std::nullopt;
            });
            bind(row, 7);
            UsbServer_Exit();
            bound = isBound(7);
            EXPECT_TRUE(!bound || holdsTheBlock(row)) << row.name << " after " << taken;
            heal();
        }
        EXPECT_TRUE(bound) << row.name;
    }
}

// The button changes to another action while its block is replaced: it must not play that meanwhile.
TEST_F(Leaving, ABindingThatLetsGoOfItsBlockIsWrittenBeforeIt)
{
    loadUnbound();
    bind(Blocks[0], 7);
    ASSERT_TRUE(eventually([this] { return isBound(7); }));
    device.clearRequests();
    record->MacroBlocks[Slot] = anyRecord(8).MacroBlocks[Slot];
    record->KeyBindings[Slot] = {1, 2, 0};
    ProtocolDataUpdate(record.get());
    ASSERT_TRUE(eventually([this] { return holdsTheBlock(Blocks[0]); }));
    EXPECT_EQ(device.asked()[0].address(), offsetof(FlashImage, KeyBindings) + Slot * sizeof(KeyBinding));
}

TEST_F(Leaving, ALoadThatRunsIsGivenUpAndTheDriverStatusSent)
{
    device.setScript([](const wire::Report &request) -> std::optional<Answers> {
        const bool stuck = request.command() == Command::FlashRead && request.address() == 56;
        return stuck ? std::make_optional(Answers{}) : std::nullopt;
    });
    bool told = false;
    for (int round = 1; round < 20 && !told; ++round) {
        device.clearRequests();
        start();
        UsbServer_SetPCDriverStatus(1);
        UsbServer_ReadAllFlashData();
        UsbServer_ReadBatteryLevel();
        ASSERT_TRUE(eventually([this] { return device.count(Command::FlashRead) > 0; }));
        UsbServer_SetPCDriverStatus(0);
        UsbServer_Exit();
        told = device.asked(Command::DriverStatus) == 2 && lastCommand() == Command::DriverStatus &&
               device.requests().back().Payload[0] == 0;
        EXPECT_TRUE(!told || device.count(Command::Battery) == 0) << "nobody would get its answer";
    }
    EXPECT_TRUE(told);
    heal();
}

TEST_F(Leaving, AnUnansweredReadTakesNoTimeFromTheChangesBehindIt)
{
    const std::pair<Command, void (*)()> reads[] = {{Command::Battery, UsbServer_ReadBatteryLevel},
                                                    {Command::Version, UsbServer_ReadVersion},
                                                    {Command::Config, UsbServer_ReadConfig},
                                                    {Command::PairStatus, UsbServer_ReadDonglePairStatus}};
    for (const auto &[command, read] : reads) {
        bool stored = false;
        for (uint8_t round = 1; round < 20 && !stored; ++round) {
            loadUnbound();
            device.setScript([stuck = command](const wire::Report &request) {
                return request.command() == stuck ? std::make_optional(Answers{}) : std::nullopt;
            });
            read();
            ASSERT_TRUE(eventually([&, stuck = command] { return device.count(stuck) > 0; }));
            edit(round);
            UsbServer_SetCurrentConfig(2);
            UsbServer_Exit();
            stored = device.flash().ReportRate == round && device.asked(Command::ConfigSelect) == 1;
            heal();
        }
        EXPECT_TRUE(stored) << static_cast<int>(command);
    }
}

// The mouse is silent when the program lets go, and answers while it leaves.
TEST_F(Leaving, TheDriverStatusIsSentAgainBehindAWriteThatWasHeld)
{
    bool told = false;
    for (uint8_t round = 1; round < 20 && !told; ++round) {
        loadUnbound();
        std::atomic<bool> silent{true};
        device.setScript([&silent](const wire::Report &request) -> std::optional<Answers> {
            return silent && request.command() == Command::FlashWrite ? std::make_optional(Answers{})
                                                                      : std::nullopt;
        });
        edit(round);
        ASSERT_TRUE(eventually([this] { return writes() > 0; }));
        UsbServer_SetPCDriverStatus(0);
        ASSERT_TRUE(eventually([this] { return device.count(Command::DriverStatus) > 0; }));
        silent = false;
        UsbServer_Exit();
        told = device.flash().ReportRate == round && lastCommand() == Command::DriverStatus;
        heal();
    }
    EXPECT_TRUE(told);
}

TEST_F(Leaving, ADriverStatusWithoutAnswerIsSentAgain)
{
    bool told = false;
    for (int round = 1; round < 20 && !told; ++round) {
        loadUnbound();
        std::atomic<bool> silent{true};
        device.setScript([&silent](const wire::Report &request) {
            return silent && request.command() == Command::DriverStatus ? std::make_optional(Answers{})
                                                                        : std::nullopt;
        });
        UsbServer_SetPCDriverStatus(0);
        UsbServer_ReadVersion();
        ASSERT_TRUE(messages.waitFor(1)); // the status is given up
        silent = false;
        device.clearRequests();
        UsbServer_Exit();
        told = device.asked(Command::DriverStatus) == 1;
        heal();
    }
    EXPECT_TRUE(told);
}

TEST_F(Leaving, TheDriverStatusIsSentAgainBehindAnOrderThatChangesTheDevice)
{
    void (*const orders[])() = {[] { UsbServer_SetCurrentConfig(2); }, UsbServer_SetClearSetting,
                                [] { UsbServer_SetBatteryOptimizeEnable(0); },
                                [] { UsbServer_EnterDonglePairOnlyCid(1); }};
    for (const auto order : orders) {
        bool told = false;
        for (int round = 1; round < 20 && !told; ++round) {
            loadUnbound();
            UsbServer_SetPCDriverStatus(0);
            order();
            UsbServer_ReadVersion();
            ASSERT_TRUE(messages.waitFor(1)); // both are carried out
            UsbServer_Exit();
            told = device.asked(Command::DriverStatus) == 2 && lastCommand() == Command::DriverStatus &&
                   device.requests().back().Payload[0] == 0;
        }
        EXPECT_TRUE(told);
    }
}

TEST_F(Leaving, DoesNotWaitForACallback)
{
    bool told = false;
    for (uint8_t round = 1; round < 20 && !told; ++round) {
        loadUnbound();
        const auto goOn = std::make_shared<std::atomic<bool>>(false); // the callback may outlive the test
        messages.setHook([goOn](const Message &) { eventually([&goOn] { return goOn->load(); }); });
        UsbServer_ReadVersion();
        ASSERT_TRUE(messages.waitFor(1)); // the callback runs
        UsbServer_SetPCDriverStatus(0);
        edit(round);
        UsbServer_Exit();
        // The status comes once or twice, since it may have been sent before the edit was there.
        told = device.flash().ReportRate == round && lastCommand() == Command::DriverStatus;
        messages.setHook(nullptr);
        *goOn = true;
    }
    EXPECT_TRUE(told);
}

TEST_F(Leaving, ANewStartFollowsWhatWasOrderedBefore)
{
    loadUnbound();
    std::atomic<bool> gate{false};
    device.setScript([&gate](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::FlashWrite && !gate)
            eventually([&gate] { return gate.load(); });
        return std::nullopt;
    });
    edit(32);
    ASSERT_TRUE(eventually([this] { return writes() == 1; }));
    UsbServer_SetCurrentConfig(2);
    UsbServer_SetPCDriverStatus(0);
    UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<1>);
    UsbServer_SetPCDriverStatus(1);
    UsbServer_ReadVersion();
    gate = true;
    ASSERT_TRUE(messageLog<1>().waitFor(1));
    const auto asked = device.asked();
    ASSERT_GE(asked.size(), 5U);
    const Command expected[] = {Command::FlashWrite, Command::ConfigSelect, Command::DriverStatus,
                                Command::DriverStatus, Command::Version};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(asked[i].command(), expected[i]) << i;
    EXPECT_EQ(asked[2].Payload[0], 0);
    EXPECT_EQ(asked[3].Payload[0], 1);
    heal();
}

// ---- Orders that wait

TEST_F(Leaving, AFloodOfNoticesPushesOutNoOrder)
{
    loadUnbound();
    std::atomic<bool> gate{false};
    device.setScript([&gate](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::Battery && !gate)
            eventually([&gate] { return gate.load(); });
        return std::nullopt;
    });
    UsbServer_ReadBatteryLevel();
    ASSERT_TRUE(eventually([this] { return device.count(Command::Battery) > 0; }));
    for (int i = 0; i < 1000; ++i) { // as the program answers a notice of changes
        UsbServer_ReadCurrentDPI();
        UsbServer_ReadReportRate();
        UsbServer_ReadLedBar();
    }
    UsbServer_SetCurrentConfig(2);
    UsbServer_ReadCurrentDPI();
    gate = true;
    EXPECT_TRUE(eventually([this] { return device.asked(Command::ConfigSelect) == 1; }));
    UsbServer_ReadVersion();
    ASSERT_TRUE(eventually([this] { return messages.size() > 0 && messages.all().back().code() == 18; }));
    // Four, as long as the first question's tries last; a busy machine may carry out some more in the flood.
    EXPECT_LT(device.asked(Command::FlashRead), 40U) << "equal reads that wait are one, but for the last";
    heal();
}

TEST_F(Leaving, AQuestionDuringAnOrderHasTheWriteTriedBehindIt)
{
    loadUnbound();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    std::atomic<bool> asking{true};
    device.setScript([&asking](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() != Command::ConfigSelect && request.command() != Command::Config)
            return std::nullopt;
        return asking ? Answers{} : Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Refused))};
    });
    UsbServer_ReadConfig(); // its tries take longer than the question
    ASSERT_TRUE(eventually([this] { return device.count(Command::Config) > 0; }));
    EXPECT_TRUE(isOnLine()) << "the mouse is there, and its write was not tried";
    asking = false;
    EXPECT_TRUE(rateBecomes(64)) << "it is tried once the order is over";
    heal();
}
