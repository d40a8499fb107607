// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The background writer: the reports for a record, and a mouse that does not acknowledge them.
#include "tests/support/ConnectionFixture.h"
#include "tests/support/Records.h"

#include <atomic>
#include <future>

using namespace support;
using wire::Command;

using Writer = ConnectionFixture;

// ---- The writer

TEST_F(Writer, OneByteIsOneReport)
{
    load();
    edit(64);
    ASSERT_TRUE(rateBecomes(64));
    ProtocolDataUpdate(record.get()); // nothing has changed
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    ASSERT_EQ(writes(), 1U);
    const wire::Report write = device.requests()[0];
    EXPECT_EQ(write.address(), 0);
    EXPECT_EQ(write.Length, 1);
    EXPECT_EQ(write.Payload[0], 64);
}

TEST_F(Writer, AnUpdateBeforeTheFirstReadIsAnsweredByARead)
{
    start();
    edit(64);
    ASSERT_TRUE(eventually([this] { return !lastFullRead().empty(); }));
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(2));
    EXPECT_EQ(writes(), 0U);
    EXPECT_EQ(device.asked(Command::FlashRead), 124U);
    edit(32);
    EXPECT_TRUE(rateBecomes(32));
}

TEST_F(Writer, ADeviceThatComesBackUnderItsPathIsReadBeforeItIsWritten)
{
    auto first = std::make_unique<FakeDevice>(mouseName("other"));
    const std::string path = first->path();
    UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
    UsbServer_ReadAllFlashData();
    ASSERT_TRUE(messages.waitFor(1));
    ProtocolDataParser(messages.all()[0].payload.data(), record.get());
    first.reset();
    messages.clear();
    edit(64); // of the first device's record, while none is attached
    FakeDevice second(mouseName("other"));
    UsbServer_ReadAllFlashData();
    ASSERT_TRUE(eventually([this] { return !lastFullRead().empty(); }));
    EXPECT_EQ(second.count(Command::FlashWrite), 0U);
    const FlashImage held = second.flash();
    EXPECT_EQ(std::memcmp(lastFullRead().data(), &held, FlashSize), 0);
}

// The program has the record of the first device until its callback has received that of the second.
TEST_F(Writer, ARecordOfTheDeviceBeforeIsNotWrittenDuringTheLoad)
{
    auto first = std::make_unique<FakeDevice>(mouseName("other"));
    const std::string path = first->path();
    UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
    UsbServer_ReadAllFlashData();
    ASSERT_TRUE(messages.waitFor(1));
    ProtocolDataParser(messages.all()[0].payload.data(), record.get());
    std::promise<void> goOn;
    messages.setHook([held = goOn.get_future().share()](const Message &) { held.wait(); });
    UsbServer_ReadBatteryLevel();
    ASSERT_TRUE(messages.waitFor(2)); // the callback blocks the messages that follow
    first.reset();
    FakeDevice second(mouseName("other"));
    second.setFlash(anyImage(2));
    const FlashImage before = second.flash();
    UsbServer_ReadAllFlashData();
    UsbServer_SetBatteryOptimizeEnable(1); // carried out after the full read
    ASSERT_TRUE(eventually([&second] { return second.count(Command::BatteryOptimize) > 0; }));
    edit(64);
    UsbServer_ReadVersion(); // carried out after a write of the edit
    ASSERT_TRUE(eventually([&second] { return second.count(Command::Version) > 0; }));
    const FlashImage after = second.flash();
    EXPECT_EQ(std::memcmp(&before, &after, FlashSize), 0);
    messages.setHook(nullptr);
    goOn.set_value();
    EXPECT_TRUE(eventually([&] {
        const auto read = lastFullRead();
        return std::memcmp(read.data(), &before, FlashSize) == 0;
    }));
}

// On a busy machine the burst may take longer than the tries of a write, and each later value is then a new
// write. Without joining, every round would have a write for each value.
TEST_F(Writer, ABurstEndsWithItsLastValueInFewReports)
{
    load();
    bool joins = false;
    for (int round = 0; round < 10 && !joins; ++round) {
        std::atomic<bool> gate{false};
        device.setScript([&gate](const wire::Report &request) -> std::optional<Answers> {
            if (request.command() == Command::FlashWrite && !gate)
                eventually([&gate] { return gate.load(); }); // delays the first answer
            return std::nullopt;
        });
        device.clearRequests();
        for (int value = 1; value <= 100; ++value)
            edit(static_cast<uint8_t>(value));
        gate = true;
        isOnLine(); // has a write tried again whose tries a busy machine used up
        EXPECT_TRUE(rateBecomes(100));
        heal();
        joins = writes() <= 5;
    }
    EXPECT_TRUE(joins);
}

TEST_F(Writer, EveryByteOfARecordArrives)
{
    load();
    *record = anyRecord(11);
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] {
        const FlashImage image = device.flash();
        FlashDataMap held{};
        ProtocolDataParser(reinterpret_cast<const uint8_t *>(&image), &held);
        return std::memcmp(&held, record.get(), sizeof held) == 0;
    }));
    EXPECT_LE(writes(), 160U);
}

TEST_F(Writer, WritesGivenBeforeAReadGoOutBeforeIt)
{
    load();
    edit(32);
    UsbServer_ReadReportRate();
    ASSERT_TRUE(messages.waitFor(1));
    EXPECT_EQ(messages.all()[0].payload[0], 32);
}

TEST_F(Writer, ChangesOfTheMouseAreNotReverted)
{
    load();
    device.setFlashByte(FlashCurrentStageAddress, 3);
    UsbServer_ReadCurrentDPI();
    ASSERT_TRUE(messages.waitFor(1));
    record->CurrentDpiStage = messages.all()[0].payload[0];
    ProtocolDataUpdate(record.get());
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(2));
    EXPECT_EQ(writes(), 0U);
}

TEST_F(Writer, AnotherProfileGetsNoChangesOfTheOldOne)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(16); // waits for a mouse that is off line
    ASSERT_TRUE(eventually([this] { return writes() > 0; }));
    heal();
    device.setScript([this](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::ConfigSelect)
            device.setFlash(anyImage(12));
        return std::nullopt;
    });
    device.clearRequests();
    UsbServer_SetCurrentConfig(1);
    ProtocolDataUpdate(record.get()); // may still be the old profile's record
    record->DebounceTime = 9;
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] { return device.flash().DebounceTime == 9; }));
    FlashImage expected = anyImage(12);
    expected.DebounceTime = 9;
    expected.ReportRate = device.flash().ReportRate; // the program gave both values
    const FlashImage held = device.flash();
    EXPECT_EQ(std::memcmp(&held, &expected, sizeof held), 0);
    heal();
}

TEST_F(Writer, PendingChangesOfTheOldProfileAreDropped)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(16);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    UsbServer_SetCurrentConfig(1);
    UsbServer_ReadConfig();
    ASSERT_TRUE(messages.waitFor(1));
    EXPECT_TRUE(eventually([this] { return isOnLine(); }));
    UsbServer_ReadConfig();
    ASSERT_TRUE(messages.waitFor(2));
    // The last try for the old profile may have come late, but before the order.
    const auto asked = device.asked();
    const auto isOf = [](Command command) {
        return [command](const wire::Report &request) { return request.command() == command; };
    };
    const auto order = std::find_if(asked.begin(), asked.end(), isOf(Command::ConfigSelect));
    ASSERT_NE(order, asked.end());
    EXPECT_TRUE(std::none_of(order, asked.end(), isOf(Command::FlashWrite)));
}

TEST_F(Writer, AfterAResetNothingIsWrittenBeforeTheNextFullRead)
{
    load();
    device.send(datagram(noticeOf(Command::ClearSettings)));
    ASSERT_TRUE(messages.waitFor(1));
    edit(16);
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(2));
    EXPECT_EQ(writes(), 0U);
    UsbServer_ReadAllFlashData();
    ASSERT_TRUE(messages.waitFor(3));
    edit(32);
    EXPECT_TRUE(rateBecomes(32));
}

// ---- A mouse that does not acknowledge a write

struct SpoilRow {
    const char *name;
    std::optional<wire::Status> status;
    std::size_t tries;
};
static const SpoilRow Spoils[] = {
    {"silent", std::nullopt, 3},
    {"off line", wire::Status::OffLine, 1},
    {"refused", wire::Status::Refused, 1},
};

class SpoiledWriter : public ConnectionFixture
{
protected:
    // Edits, and returns how often the report was sent before the writer was suspended.
    std::size_t triesOfAnEdit()
    {
        const std::size_t before = device.asked().size();
        edit(static_cast<uint8_t>(record->ReportRate + 1));
        EXPECT_TRUE(eventually([this] { return !isOnLine(); }));
        const auto asked = device.asked();
        const auto write = std::find_if(
            asked.begin() + static_cast<std::ptrdiff_t>(before), asked.end(),
            [](const wire::Report &request) { return request.command() == Command::FlashWrite; });
        return write != asked.end() ? device.tries(*write) : 0;
    }
};

TEST_F(SpoiledWriter, AFailedWriteShowsAsOffLineUntilItIsDone)
{
    for (const SpoilRow &row : Spoils) {
        load();
        spoilWrites(row.status);
        // The time for all tries is fixed: a busy machine may skip a try, or add one when the answer is late.
        std::size_t tries = 0;
        for (int round = 0; round < 10 && tries != row.tries; ++round)
            tries = triesOfAnEdit();
        EXPECT_EQ(tries, row.tries) << row.name;
        OnlineAddress address{};
        EXPECT_EQ(UsbFinderC_GetDeviceOnLineWithUsbAddress(device.path().c_str(), &address), 0) << row.name;
        EXPECT_EQ(address.Online, 0);
        heal();
        EXPECT_TRUE(eventually([this] { return isOnLine(); })) << row.name;
        EXPECT_EQ(device.flash().ReportRate, record->ReportRate) << row.name;
    }
}

TEST_F(Writer, ASuspendedWriterSendsNothingByItself)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    std::size_t questions = 0;
    const auto isAway = [this, &questions] { return ++questions > 0 && !isOnLine(); };
    ASSERT_TRUE(eventually(isAway));
    const std::size_t before = writes();
    for (int i = 0; i < 50; ++i)
        UsbFinderC_GetVersion(device.path().c_str());
    // The write that a question caused may still be sent after the answer to that question.
    EXPECT_LE(writes(), 1 + questions);
    EXPECT_TRUE(eventually([&] { return isAway() && writes() > before; }));
    EXPECT_LE(writes(), 1 + questions) << "an on-line question tries the write once only";
    heal();
}

TEST_F(Writer, TheReturnOfTheMouseResumesTheWriter)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    heal();
    const wire::OnLineReply returned{1, {1, 2, 3}};
    device.send(datagram(noticeOf(Command::OnLineChanged, &returned, sizeof returned)));
    EXPECT_TRUE(rateBecomes(64));
    EXPECT_TRUE(eventually([this] { return isOnLine(); }));
}

TEST_F(Writer, ANewerRecordResumesTheWriter)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    heal();
    edit(32);
    EXPECT_TRUE(rateBecomes(32));
}

TEST_F(Writer, ALostAcknowledgementIsAskedForAgain)
{
    load();
    std::atomic<int> lost{0};
    device.setScript([this, &lost](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() != Command::FlashWrite || lost++ > 0)
            return std::nullopt;
        device.setFlashByte(request.address(), request.Payload[0]);
        return Answers{};
    });
    edit(64);
    ASSERT_TRUE(eventually([&lost] { return lost >= 2; }));
    EXPECT_TRUE(eventually([this] { return isOnLine(); }));
    EXPECT_EQ(device.flash().ReportRate, 64);
    heal();
}

TEST_F(Writer, WritesForAnUnpluggedDeviceAreNotSentToTheNextOne)
{
    auto first = std::make_unique<FakeDevice>(mouseName("other"));
    const std::string path = first->path();
    UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
    UsbServer_ReadAllFlashData();
    ASSERT_TRUE(messages.waitFor(1));
    ProtocolDataParser(messages.all()[0].payload.data(), record.get());
    first->setScript([](const wire::Report &request) -> std::optional<Answers> {
        return request.command() == Command::FlashWrite ? std::make_optional(Answers{}) : std::nullopt;
    });
    edit(64);
    ASSERT_TRUE(eventually([&first] { return first->count(Command::FlashWrite) > 0; }));
    first.reset();
    const FakeDevice second(mouseName("other"));
    EXPECT_TRUE(eventually([&path] { return UsbFinderC_GetDeviceOnLine(path.c_str()) != 0; }));
    EXPECT_EQ(second.count(Command::FlashWrite), 0U);
    EXPECT_EQ(second.flash().ReportRate, 0);
}
