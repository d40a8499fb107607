// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a device says unasked: buttons, battery, profiles, reach, sleep, pairing.
#include "tests/support/EmulatorFixture.h"

using wire::Command;
using Bytes = RawClient::Bytes;

namespace
{

class EmulatorEvents : public EmulatorFixture
{
protected:
    // The payload of a StatusChanged notice in which one item is set.
    static Bytes changed(std::size_t item)
    {
        Bytes bytes(sizeof(DeviceStatusChange), 0);
        bytes[item] = 1;
        return bytes;
    }
    void expectChange(RawClient &client, std::size_t item)
    {
        EXPECT_EQ(payload(client.notice(Command::StatusChanged)), changed(item));
    }
    // Everything that was sent before the answer of a question has come by then.
    void expectSilence(RawClient &client)
    {
        ASSERT_TRUE(client.ask(Command::Identity));
        EXPECT_TRUE(client.notices.empty());
    }
};

} // namespace

TEST_F(EmulatorEvents, DpiButtonWalksTheStagesInUse)
{
    RawClient client(folder_.path(), "rx1k");
    order("set air1 flash 0x01 03");
    const int stages[] = {2, 0, 1, 2};
    for (const int stage : stages) {
        order("press air1 dpi");
        expectChange(client, 0);
        EXPECT_EQ(emulator_.flash("air1")->CurrentDpiStage, stage);
    }
}

TEST_F(EmulatorEvents, DpiButtonSurvivesNonsense)
{
    for (const char *count : {"00", "ff"}) {
        order("set air1 flash 0x01 " + std::string(count));
        order("set air1 flash 0x04 fe");
        order("press air1 dpi");
        EXPECT_LT(emulator_.flash("air1")->CurrentDpiStage, DpiStageLimit);
    }
}

TEST_F(EmulatorEvents, RateButtonEndsAtTheLinksLimit)
{
    struct Row {
        const char *mouse;
        const char *plug;
        std::vector<int> codes; // pressed through, from 1000 Hz on
    };
    const Row rows[] = {
        {"air1", "rx1k", {8, 4, 2, 1, 8}}, {"air2", "rx2k", {16, 8}},           {"air4", "rx4k", {16, 32, 8}},
        {"air8", "rx8k", {16, 32, 64, 8}}, {"cable", "cable", {16, 32, 64, 8}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.plug);
        RawClient client(folder_.path(), row.plug);
        for (const int code : row.codes) {
            order("press " + std::string(row.mouse) + " rate");
            expectChange(client, 1);
            EXPECT_EQ(emulator_.flash(row.mouse)->ReportRate, code);
        }
    }
}

TEST_F(EmulatorEvents, RateButtonLeavesAnUnknownCode)
{
    order("set air1 flash 0 07");
    order("press air1 rate");
    EXPECT_EQ(emulator_.flash("air1")->ReportRate, 8);
}

TEST_F(EmulatorEvents, ProfileAndLightButtons)
{
    RawClient client(folder_.path(), "rx4k");
    order("press air4 light");
    expectChange(client, 3);
    EXPECT_EQ(emulator_.flash("air4")->DpiLedEnable, 0);
    order("press air4 bar");
    expectChange(client, 5);
    EXPECT_EQ(emulator_.flash("air4")->LedBarEnable, 0);
    order("press air4 profile");
    expectChange(client, 2);
    EXPECT_EQ(payload(client.ask(Command::Config)), Bytes{1});
    EXPECT_EQ(emulator_.flash("air4")->LedBarEnable, 1);
    order("profile air4 3");
    expectChange(client, 2);
    order("press air4 profile");
    EXPECT_EQ(emulator_.mouse("air4")->profile, 0);
}

TEST_F(EmulatorEvents, HostsProfileChoiceIsAnnounced)
{
    RawClient client(folder_.path(), "cable");
    ASSERT_EQ(status(client.ask(Command::ConfigSelect, {3})), Ok);
    expectChange(client, 2);
}

TEST_F(EmulatorEvents, HostsWriteIsNot)
{
    RawClient client(folder_.path(), "rx1k");
    ASSERT_EQ(status(client.ask(Command::FlashWrite, {8})), Ok);
    expectSilence(client);
}

TEST_F(EmulatorEvents, EachItemCanBeAnnounced)
{
    RawClient client(folder_.path(), "rx1k");
    for (std::size_t item = 0; item < sizeof(DeviceStatusChange); ++item) {
        order("notify air1 " + std::to_string(item));
        expectChange(client, item);
    }
}

TEST_F(EmulatorEvents, OwnResetCallsForAWholeRead)
{
    RawClient client(folder_.path(), "rx1k");
    order("set air1 flash 0x300 55");
    order("reset air1");
    expectChange(client, 2);
    EXPECT_EQ(payload(client.ask(Command::FlashRead, {1}, 0x300)), Bytes{0});
}

TEST_F(EmulatorEvents, Battery)
{
    RawClient client(folder_.path(), "rx2k");
    order("battery air2 17 charging");
    expectChange(client, 6);
    EXPECT_EQ(payload(client.ask(Command::Battery)), (Bytes{17, 1, 0, 0}));
    order("battery air2 18");
    expectChange(client, 6);
    EXPECT_EQ(payload(client.ask(Command::Battery)), (Bytes{18, 0, 0, 0}));
}

TEST_F(EmulatorEvents, ButtonOutOfReachChangesFlashInSilence)
{
    RawClient client(folder_.path(), "rx1k");
    order("radio air1 off");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 1}));
    order("press air1 dpi");
    EXPECT_EQ(emulator_.flash("air1")->CurrentDpiStage, 2);
    expectSilence(client);
    order("radio air1 on");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 1}));
    expectSilence(client);
}

TEST_F(EmulatorEvents, SleepAndWake)
{
    RawClient client(folder_.path(), "rx1k");
    order("sleep air1");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 1}));
    EXPECT_EQ(status(client.ask(Command::Config)), OffLine);
    order("wake air1");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 1}));
    order("sleep air1");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 1}));
    order("press air1 dpi");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 1}));
    expectChange(client, 0);
}

TEST_F(EmulatorEvents, SleepsByItself)
{
    RawClient client(folder_.path(), "rx1k");
    order("set air1 flash 0x08 02");
    order("autosleep air1 on 5");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 1}));
    EXPECT_TRUE(emulator_.mouse("air1")->asleep);
    order("autosleep air1 off");
    order("wake air1");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 1}));
    // Neither a time of 0 nor a cable lets it sleep.
    order("set air1 flash 0x08 00");
    order("autosleep air1 on 1");
    order("autosleep cable on 1");
    order("autosleep air2 on 1");
    ASSERT_TRUE(eventually([this] { return emulator_.mouse("air2")->asleep; }));
    EXPECT_FALSE(emulator_.mouse("air1")->asleep);
    EXPECT_FALSE(emulator_.mouse("cable")->asleep);
}

TEST_F(EmulatorEvents, ReceiverChangesByItself)
{
    RawClient client(folder_.path(), "rx8k");
    order("color rx8k 2");
    EXPECT_EQ(payload(client.notice(Command::DongleColorChanged)), (Bytes{2, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_EQ(status(client.ask(Command::LongRangeWrite, {1})), Ok);
    order("longrange rx8k off");
    EXPECT_EQ(payload(client.notice(Command::LongRangeChanged)), Bytes(wire::LongRangeNoticeSize, 0));
    EXPECT_EQ(payload(client.ask(Command::LongRange)), Bytes{0});
    order("longrange rx8k on");
    EXPECT_EQ(payload(client.notice(Command::LongRangeChanged))[0], 1);
}

TEST_F(EmulatorEvents, Pairing)
{
    RawClient client(folder_.path(), "lone");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{1});
    expectSilence(client);
    order("pair spare");
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{3});
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 0x0F}));
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{3});
    EXPECT_EQ(payload(client.ask(Command::Identity)), (Bytes{18, 7, 0}));
    EXPECT_EQ(status(client.ask(Command::FlashRead, {1})), Ok);
}

TEST_F(EmulatorEvents, PairingTakesAMouseFromItsReceiver)
{
    RawClient former(folder_.path(), "rx1k");
    RawClient client(folder_.path(), "lone");
    order("pair air1");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{3});
    EXPECT_EQ(payload(former.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 1}));
    EXPECT_EQ(payload(client.ask(Command::Identity)), (Bytes{18, 6, 0}));
    EXPECT_EQ(payload(former.ask(Command::Identity)), (Bytes{18, 6, 0}));
    EXPECT_EQ(status(former.ask(Command::FlashRead, {1})), OffLine);
}

TEST_F(EmulatorEvents, PairingWaitsForTheRightCustomerWithinReach)
{
    RawClient client(folder_.path(), "lone");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {17})), Ok);
    order("pair spare");
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{1});
    order("radio spare off");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{1});
    order("radio spare on");
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{3});
}

TEST_F(EmulatorEvents, PairingFails)
{
    RawClient client(folder_.path(), "lone");
    EXPECT_EQ(emulator_.order("pairfail lone"), "error lone does not pair\n");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    order("pairfail lone");
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{2});
    order("pair spare");
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{2});
    // A new pairing begins anew.
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{3});
}

TEST_F(EmulatorEvents, PairingFailsAtItsDeadline)
{
    EXPECT_EQ(emulator_.receiver("lone")->pairingTime, std::chrono::seconds(60));
    RawClient client(folder_.path(), "lone");
    order("pairtime lone 30");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{2});
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{2});
    order("pair spare");
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{2}) << "too late";
    // A pairing that has ended has no deadline left.
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{3});
}

// The deadline is that of the newest start.
TEST_F(EmulatorEvents, PairingThatStartsAgainHasItsWholeTime)
{
    RawClient client(folder_.path(), "lone");
    order("pairtime lone 30");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    order("pairtime lone 600000");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    RawClient other(folder_.path(), "rx1k");
    order("pairtime rx1k 60");
    ASSERT_EQ(status(other.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(other.notice(Command::PairStatus)), Bytes{2}); // the first start would be over as well
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{1});
}

TEST_F(EmulatorEvents, PairingIsRefused)
{
    RawClient client(folder_.path(), "lone");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    order("pair spare");
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{3});
    order("pairrefuse lone on");
    EXPECT_EQ(status(client.ask(Command::PairEnter, {18})), Refused);
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{3}) << "the result before, to mislead a host";
    order("pairrefuse lone off");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{1});
}

TEST_F(EmulatorEvents, PairingIsLostWithPower)
{
    RawClient client;
    for (const char *loss : {"unplug lone", "boot lone enter"}) {
        ASSERT_TRUE(client.open(folder_.path(), "lone", wire::SettingsUsagePage)) << loss;
        ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok) << loss;
        order(loss);
        order("boot lone leave");
        order("plug lone");
        ASSERT_TRUE(client.open(folder_.path(), "lone", wire::SettingsUsagePage)) << loss;
        EXPECT_EQ(payload(client.ask(Command::PairStatus)), Bytes{0}) << loss;
        EXPECT_EQ(emulator_.order("pairfail lone"), "error lone does not pair\n");
    }
}

TEST_F(EmulatorEvents, PairingTakesTheReceiverFromItsMouse)
{
    RawClient client(folder_.path(), "rx1k");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    order("pair spare");
    EXPECT_EQ(payload(client.notice(Command::PairStatus)), Bytes{3});
    EXPECT_EQ(payload(client.ask(Command::Identity)), (Bytes{18, 7, 0}));
    order("set spare flash 0 04");
    EXPECT_EQ(payload(client.ask(Command::FlashRead, {1})), Bytes{4}) << "the new mouse answers";
    order("radio spare off");
    EXPECT_EQ(status(client.ask(Command::FlashRead, {1})), OffLine) << "the old one does not";
}

TEST_F(EmulatorEvents, AddressByCableTakesTheReceiverFromItsMouse)
{
    RawClient client(folder_.path(), "rx1k");
    RawClient mouse(folder_.path(), "cable");
    ASSERT_EQ(status(mouse.ask(Command::PairedAddress, {1, 0, 0xA1, 0, 0})), Ok);
    EXPECT_EQ(status(client.ask(Command::FlashRead, {1})), OffLine);
    order("unplug cable");
    order("set cable flash 0 04");
    EXPECT_EQ(payload(client.ask(Command::FlashRead, {1})), Bytes{4});
}

TEST_F(EmulatorEvents, UnpairedReceiverForgets)
{
    RawClient client(folder_.path(), "rx8k");
    order("unpair rx8k");
    EXPECT_EQ(payload(client.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 8}));
    EXPECT_EQ(payload(client.ask(Command::Identity)), (Bytes{18, 0, 5}));
}

// The address of a receiver, written to a mouse on its cable, marries the two.
TEST_F(EmulatorEvents, AddressByCable)
{
    RawClient receiver(folder_.path(), "lone");
    RawClient mouse(folder_.path(), "cable");
    const Bytes address = payload(receiver.ask(Command::OnLine));
    ASSERT_EQ(address.size(), 4U);
    const Bytes pairing = {address[3], address[2], address[1], 0, 4};
    ASSERT_EQ(status(mouse.ask(Command::PairedAddress, pairing)), Ok);
    EXPECT_EQ(payload(mouse.ask(Command::OnLine)), (Bytes{1, address[1], address[2], address[3]}));
    EXPECT_EQ(status(mouse.ask(Command::PairedAddress, {1, 2, 3, 1, 0})), Refused);
    EXPECT_EQ(status(mouse.ask(Command::PairedAddress, {1, 2, 3, 0, 2})), Refused);
    EXPECT_EQ(status(mouse.ask(Command::PairedAddress, {1, 2, 3})), Refused);
    order("unplug cable");
    EXPECT_EQ(payload(receiver.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 0x0F}));
    EXPECT_EQ(payload(receiver.ask(Command::Identity)), (Bytes{18, 6, 0}));
}

TEST_F(EmulatorEvents, NoticesGoToEveryClient)
{
    RawClient first(folder_.path(), "rx1k");
    RawClient second(folder_.path(), "rx1k");
    ASSERT_TRUE(first.ask(Command::Identity));
    ASSERT_TRUE(second.ask(Command::Identity));
    order("press air1 dpi");
    expectChange(first, 0);
    expectChange(second, 0);
}
