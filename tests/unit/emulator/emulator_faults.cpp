// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Each kind of fault as the host sees it, and where it strikes.
#include "tests/support/EmulatorFixture.h"

#include "emulator/Protocol.h"

using wire::Command;
using Bytes = RawClient::Bytes;

namespace
{

class EmulatorFaults : public EmulatorFixture
{
protected:
    void SetUp() override
    {
        EmulatorFixture::SetUp();
        ASSERT_TRUE(client_.open(folder_.path(), "rx1k", wire::SettingsUsagePage));
    }
    // The raw answer to a write of one byte.
    std::optional<Bytes> write(uint8_t value)
    {
        sequence_ = client_.post(Command::FlashWrite, {value});
        return client_.receive();
    }
    Bytes soundAnswer() const
    {
        const wire::Report request = RawClient::request(Command::FlashWrite, sequence_, {0});
        const wire::Report reply = emulator::makeReply(request, wire::Status::Ok);
        const auto *bytes = reinterpret_cast<const uint8_t *>(&reply);
        return Bytes(bytes, bytes + sizeof reply);
    }
    int rate() { return emulator_.flash("air1")->ReportRate; }

    RawClient client_;
    uint8_t sequence_ = 0;
};

int bitsApart(const Bytes &left, const Bytes &right)
{
    int count = 0;
    for (std::size_t i = 0; i < left.size(); ++i)
        count += __builtin_popcount(static_cast<unsigned>(left[i] ^ right[i]));
    return count;
}

} // namespace

TEST_F(EmulatorFaults, NoReplyIsCarriedOut)
{
    order("fault rx1k noreply at 1");
    const uint8_t lost = client_.post(Command::FlashWrite, {8});
    const auto next = client_.ask(Command::Identity);
    ASSERT_TRUE(next);
    EXPECT_NE(next->Sequence, lost);
    EXPECT_TRUE(client_.notices.empty());
    EXPECT_EQ(rate(), 8);
}

TEST_F(EmulatorFaults, LateIsCarriedOutAndComesAfterOthers)
{
    uint8_t late = 0;
    std::optional<Bytes> answer;
    // On a busy machine the late time may be over before the question is there.
    for (int round = 0; round < 10 && !answer; ++round) {
        client_.notices.clear();
        order("fault rx1k late 30 at 1");
        late = client_.post(Command::FlashWrite, {8});
        ASSERT_TRUE(client_.ask(Command::Identity));
        if (client_.notices.empty())
            answer = client_.receive();
    }
    ASSERT_TRUE(answer);
    EXPECT_EQ((*answer)[2], late);
    EXPECT_EQ(rate(), 8);
}

TEST_F(EmulatorFaults, LateAnswerDoesNotOutliveThePlug)
{
    order("fault rx1k late 10 at 1");
    client_.post(Command::FlashWrite, {8});
    ASSERT_TRUE(eventually([this] { return emulator_.reportCount("rx1k") > 0; }));
    order("unplug rx1k");
    order("plug rx1k");
    order("fault rx1k late 30 at 1");
    RawClient again(folder_.path(), "rx1k");
    // By the time of the second late answer the first would have come.
    const auto answer = again.ask(Command::Identity);
    ASSERT_TRUE(answer);
    EXPECT_TRUE(again.notices.empty());
}

TEST_F(EmulatorFaults, Doubled)
{
    order("fault rx1k doubled at 1");
    const auto answer = write(8);
    EXPECT_EQ(answer, soundAnswer());
    EXPECT_EQ(client_.receive(), answer);
}

TEST_F(EmulatorFaults, ShortAndOversized)
{
    order("fault rx1k short at 1");
    order("fault rx1k oversized at 2");
    const auto cut = write(8);
    ASSERT_TRUE(cut);
    Bytes expected = soundAnswer();
    expected.resize(cut->size());
    EXPECT_LT(cut->size(), wire::ReportSize);
    EXPECT_EQ(*cut, expected);
    const auto longer = write(8);
    ASSERT_TRUE(longer);
    ASSERT_GT(longer->size(), wire::ReportSize);
    EXPECT_EQ(Bytes(longer->begin(), longer->begin() + wire::ReportSize), soundAnswer());
}

TEST_F(EmulatorFaults, WrongSequenceIsSoundOtherwise)
{
    order("fault rx1k wrongseq at 1");
    const auto answer = write(8);
    ASSERT_TRUE(answer);
    EXPECT_TRUE(wire::isSound(answer->data(), answer->size()));
    EXPECT_NE((*answer)[2], sequence_);
    EXPECT_NE((*answer)[2], 0);
}

TEST_F(EmulatorFaults, OneBitIsFlipped)
{
    order("fault rx1k flipbit random 5 100");
    for (int i = 0; i < 50; ++i) {
        const auto answer = write(8);
        ASSERT_TRUE(answer);
        ASSERT_EQ(answer->size(), wire::ReportSize);
        EXPECT_FALSE(wire::isSound(answer->data(), answer->size()));
        EXPECT_EQ(bitsApart(*answer, soundAnswer()), 1);
    }
}

TEST_F(EmulatorFaults, RefusalIsNotCarriedOut)
{
    order("fault rx1k refuse at 1");
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), Refused);
    EXPECT_EQ(rate(), 1);
}

TEST_F(EmulatorFaults, BusyIsNotCarriedOut)
{
    order("fault rx1k busy at 1");
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), Busy);
    EXPECT_EQ(rate(), 1);
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), Ok);
    EXPECT_EQ(rate(), 8);
}

TEST_F(EmulatorFaults, UnstoredIsAcknowledgedOnly)
{
    order("fault rx1k unstored at 1");
    const auto answer = write(8);
    EXPECT_EQ(answer, soundAnswer());
    EXPECT_EQ(rate(), 1);
}

TEST_F(EmulatorFaults, AStalledDeviceAnswersWhenTheStallEnds)
{
    order("fault rx1k stall 60000 at 1");
    const uint8_t stalled = client_.post(Command::FlashWrite, {8});
    ASSERT_TRUE(eventually([this] { return rate() == 8; })) << "it is carried out";
    const uint8_t next = client_.post(Command::FlashWrite, {4});
    RawClient other(folder_.path(), "rx2k");
    ASSERT_TRUE(other.ask(Command::Identity)) << "another device";
    EXPECT_EQ(rate(), 8);
    order("fault rx1k clear");
    for (const uint8_t sequence : {stalled, next}) {
        const auto answer = client_.receive();
        ASSERT_TRUE(answer);
        EXPECT_EQ((*answer)[2], sequence);
    }
    order("fault rx1k stall 20 at 1");
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {2})), Ok) << "it ends by itself";
}

TEST_F(EmulatorFaults, APowerCutTakesTheDeviceOffTheBusForAMoment)
{
    order("fault rx1k powercut at 1");
    client_.post(Command::FlashWrite, {8});
    EXPECT_TRUE(client_.waitForEnd());
    RawClient again(folder_.path(), "rx1k");
    EXPECT_EQ(status(again.ask(Command::FlashWrite, {4})), Ok);
    EXPECT_EQ(rate(), 4);
}

TEST_F(EmulatorFaults, Unplug)
{
    order("fault rx1k unplug at 2");
    EXPECT_EQ(status(client_.ask(Command::Identity)), Ok);
    client_.post(Command::FlashWrite, {8});
    EXPECT_TRUE(client_.waitForEnd());
    EXPECT_FALSE(client_.receive());
    EXPECT_FALSE(RawClient::find(folder_.path(), "rx1k", wire::SettingsUsagePage));
    EXPECT_EQ(rate(), 1);
}

TEST_F(EmulatorFaults, Radio)
{
    order("fault rx1k radio at 1");
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), OffLine);
    EXPECT_EQ(payload(client_.notice(Command::OnLineChanged))[0], 0);
    EXPECT_FALSE(emulator_.mouse("air1")->radio);
    EXPECT_EQ(rate(), 1);
}

TEST_F(EmulatorFaults, AtCountsFromNowOn)
{
    ASSERT_TRUE(client_.ask(Command::Identity));
    order("fault rx1k refuse at 3");
    const int expected[] = {Ok, Ok, Refused, Ok, Ok};
    for (const int each : expected)
        EXPECT_EQ(status(client_.ask(Command::Identity)), each);
}

TEST_F(EmulatorFaults, OnlyOneCommand)
{
    order("fault rx1k refuse at 2 command flashwrite");
    EXPECT_EQ(status(client_.ask(Command::Identity)), Ok);
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), Ok);
    EXPECT_EQ(status(client_.ask(Command::Identity)), Ok);
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), Refused);
    EXPECT_EQ(status(client_.ask(Command::FlashWrite, {8})), Ok);
}

TEST_F(EmulatorFaults, AlwaysUntilCleared)
{
    order("fault rx1k refuse always command 0x01");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(status(client_.ask(Command::Identity)), Refused);
    EXPECT_EQ(status(client_.ask(Command::OnLine)), Ok);
    order("fault rx1k clear");
    EXPECT_EQ(status(client_.ask(Command::Identity)), Ok);
}

TEST_F(EmulatorFaults, RandomRepeatsWithItsSeed)
{
    const auto run = [this](int seed, int percent) {
        order("fault rx1k clear");
        order("fault rx1k refuse random " + std::to_string(seed) + " " + std::to_string(percent));
        std::vector<int> results;
        for (int i = 0; i < 200; ++i)
            results.push_back(status(client_.ask(Command::Identity)));
        return results;
    };
    const auto first = run(7, 30);
    EXPECT_EQ(run(7, 30), first);
    EXPECT_NE(run(8, 30), first);
    const auto refused = std::count(first.begin(), first.end(), Refused);
    EXPECT_GT(refused, 30);
    EXPECT_LT(refused, 90);
    EXPECT_EQ(run(7, 100), std::vector<int>(200, Refused));
}

TEST_F(EmulatorFaults, FirstRuleThatStrikesHappens)
{
    order("fault rx1k refuse at 1");
    order("fault rx1k radio at 1");
    order("fault rx1k unplug at 3");
    EXPECT_EQ(status(client_.ask(Command::Config)), Refused);
    // The second rule's moment has passed with the first one's.
    EXPECT_EQ(status(client_.ask(Command::Config)), Ok);
    client_.post(Command::Config);
    EXPECT_TRUE(client_.waitForEnd());
}

TEST_F(EmulatorFaults, OtherDevicesAreSpared)
{
    order("fault rx1k refuse always");
    RawClient other(folder_.path(), "rx2k");
    EXPECT_EQ(status(other.ask(Command::Identity)), Ok);
}

TEST_F(EmulatorFaults, RulesThatAreNone)
{
    const char *bad[] = {
        "fault rx1k",
        "fault nobody noreply always",
        "fault rx1k nothing always",
        "fault rx1k noreply",
        "fault rx1k noreply sometimes",
        "fault rx1k noreply at",
        "fault rx1k noreply at 0",
        "fault rx1k noreply at x",
        "fault rx1k noreply at 1000001",
        "fault rx1k late always",
        "fault rx1k late 0 always",
        "fault rx1k late 60001 always",
        "fault rx1k noreply random 1",
        "fault rx1k noreply random 1 0",
        "fault rx1k noreply random 1 101",
        "fault rx1k noreply random -1 50",
        "fault rx1k noreply always for",
        "fault rx1k noreply always command",
        "fault rx1k noreply always command nothing",
        "fault rx1k noreply always command 0x77",
        "fault rx1k noreply always command identity more",
        "fault rx1k clear all",
    };
    for (const char *line : bad)
        EXPECT_EQ(emulator_.order(line).compare(0, 6, "error "), 0) << line;
    EXPECT_EQ(status(client_.ask(Command::Identity)), Ok);
}
