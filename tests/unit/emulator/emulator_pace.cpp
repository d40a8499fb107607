// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Pacing. The rule is tested with a time of its own; on the wire only its lower bound can be.
#include "tests/support/EmulatorFixture.h"

#include "emulator/Traffic.h"

using namespace emulator;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using wire::Command;

namespace
{

int takeAll(Lane<int> &lane, Clock::time_point now, bool paced = true)
{
    int count = 0;
    while (lane.take(now, paced))
        ++count;
    return count;
}

} // namespace

TEST(EmulatorLane, OneReportEachMillisecond)
{
    const Clock::time_point start{std::chrono::hours(1)};
    Lane<int> lane;
    for (int i = 0; i < 100; ++i)
        lane.push(i, start);
    int sent = 0;
    for (int ms = 0; ms < 99; ++ms) {
        sent += takeAll(lane, start + milliseconds(ms) + microseconds(300));
        EXPECT_LE(sent, ms + 2);
        EXPECT_GE(sent, ms + 1);
    }
    EXPECT_EQ(sent, 100);
}

TEST(EmulatorLane, CatchesUpAfterALateTurn)
{
    const Clock::time_point start{std::chrono::hours(1)};
    Lane<int> lane;
    for (int i = 0; i < 50; ++i)
        lane.push(i, start);
    EXPECT_EQ(takeAll(lane, start), 2);
    EXPECT_EQ(takeAll(lane, start + milliseconds(20)), 20);
}

TEST(EmulatorLane, AnIdleTimeIsNoCredit)
{
    const Clock::time_point start{std::chrono::hours(1)};
    Lane<int> lane;
    lane.push(0, start);
    EXPECT_EQ(takeAll(lane, start), 1);
    const auto later = start + milliseconds(500);
    for (int i = 0; i < 50; ++i)
        lane.push(i, later);
    EXPECT_EQ(takeAll(lane, later), 2);
    EXPECT_EQ(takeAll(lane, later + milliseconds(10)), 10);
}

TEST(EmulatorLane, WithoutPacingNothingWaitsOrPilesUp)
{
    const Clock::time_point start{std::chrono::hours(1)};
    Lane<int> lane;
    for (int i = 0; i < 1000; ++i)
        lane.push(i, start);
    EXPECT_EQ(takeAll(lane, start, false), 1000);
    lane.push(0, start);
    EXPECT_LE(*lane.nextDue(true), start + milliseconds(1));
    EXPECT_LE(*lane.nextDue(false), start);
}

TEST(EmulatorLane, KeepsTheOrder)
{
    const Clock::time_point start{std::chrono::hours(1)};
    Lane<int> lane;
    for (int i = 0; i < 5; ++i)
        lane.push(i, start);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(lane.take(start, false), i);
    EXPECT_EQ(lane.nextDue(true), std::nullopt);
}

class EmulatorPace : public EmulatorFixture
{
};

// A busy machine may be slower than the pace, never faster.
TEST_F(EmulatorPace, NotFasterOnTheWire)
{
    constexpr int rounds = 200;
    order("pace on");
    RawClient client(folder_.path(), "rx1k");
    ASSERT_TRUE(client.ask(Command::Identity));
    const auto begin = Clock::now();
    for (int i = 0; i < rounds; ++i)
        ASSERT_TRUE(client.ask(Command::FlashRead, {56}));
    EXPECT_GE(Clock::now() - begin, milliseconds(rounds - 2));
}

TEST_F(EmulatorPace, AFloodWaitsAndArrivesWhole)
{
    constexpr int reports = 100;
    order("pace on");
    RawClient client(folder_.path(), "rx1k");
    const auto begin = Clock::now();
    for (int i = 0; i < reports; ++i)
        client.post(Command::Identity);
    for (int i = 0; i < reports; ++i)
        ASSERT_TRUE(client.receive()) << i;
    EXPECT_GE(Clock::now() - begin, milliseconds(reports - 4));
    EXPECT_EQ(emulator_.reportCount("rx1k"), static_cast<uint64_t>(reports));
}

// On a busy machine the flood may be through before the other's questions are. With a pace for both it would
// be in every round.
TEST_F(EmulatorPace, DevicesDoNotShareTheirPace)
{
    order("pace on");
    bool isOvertaken = false;
    for (int round = 0; round < 10 && !isOvertaken; ++round) {
        RawClient flood(folder_.path(), "rx1k");
        RawClient other(folder_.path(), "rx2k");
        const uint64_t whole = emulator_.reportCount("rx1k") + 200;
        for (int i = 0; i < 200; ++i)
            flood.post(Command::Identity);
        for (int i = 0; i < 20; ++i)
            ASSERT_TRUE(other.ask(Command::Identity));
        isOvertaken = emulator_.reportCount("rx1k") < whole;
        ASSERT_TRUE(eventually([&] { return emulator_.reportCount("rx1k") == whole; }));
    }
    EXPECT_TRUE(isOvertaken);
}
