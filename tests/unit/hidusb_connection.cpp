// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The connection: orders and their messages, the writer in the background, ends and replacements.
#include "device/hidusb/HIDUsb.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Messages.h"
#include "tests/support/Records.h"

#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

using namespace support;
using wire::Command;

class Connection : public testing::Test
{
protected:
    Connection()
    {
        messageLog<0>().clear();
        messageLog<1>().clear();
    }
    ~Connection() override { UsbServer_Exit(); }

    void start() { UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<0>); }

    // Starts, reads the whole flash and fills `record` from it.
    void load()
    {
        start();
        UsbServer_ReadAllFlashData();
        ASSERT_TRUE(eventually([this] { return !lastFullRead().empty(); }));
        ProtocolDataParser(lastFullRead().data(), record.get());
        messages.clear();
        device.clearRequests();
    }
    std::vector<uint8_t> lastFullRead() const
    {
        const auto all = messages.all();
        const auto last = std::find_if(all.rbegin(), all.rend(),
                                       [](const Message &m) { return m.payload.size() == FlashSize; });
        return last != all.rend() ? last->payload : std::vector<uint8_t>();
    }

    void edit(uint8_t rate)
    {
        record->ReportRate = rate;
        ProtocolDataUpdate(record.get());
    }
    bool rateBecomes(uint8_t rate)
    {
        return eventually([this, rate] { return device.flash().ReportRate == rate; });
    }
    std::size_t writes() const { return device.count(Command::FlashWrite); }
    bool isOnLine() const { return UsbFinderC_GetDeviceOnLine(device.path().c_str()) != 0; }

    // Answers the writes alone with `status`, or not at all.
    void spoilWrites(std::optional<wire::Status> status)
    {
        device.setScript([status](const wire::Report &request) -> std::optional<Answers> {
            if (request.command() != Command::FlashWrite)
                return std::nullopt;
            return status ? Answers{datagram(replyTo(request, nullptr, 0, *status))} : Answers{};
        });
    }
    void heal() { device.setScript(nullptr); }

    FakeDevice device;
    MessageLog &messages = messageLog<0>();
    std::unique_ptr<FlashDataMap> record = std::make_unique<FlashDataMap>();
};

// ---- Orders

TEST_F(Connection, FullReadIsOneMessage)
{
    const FlashImage image = anyImage(5);
    device.setFlash(image);
    start();
    UsbServer_ReadAllFlashData();
    ASSERT_TRUE(messages.waitFor(1));
    const Message message = messages.all()[0];
    EXPECT_EQ(message.code(), 8);
    EXPECT_EQ(message.address(), 0);
    EXPECT_EQ(message.header.size(), wire::HeadSize);
    ASSERT_EQ(message.payload.size(), FlashSize);
    EXPECT_EQ(std::memcmp(message.payload.data(), &image, FlashSize), 0);
    EXPECT_EQ(device.count(Command::FlashRead), 124U);
}

struct PartRow {
    void (*read)();
    int address;
    std::size_t size;
};
static const PartRow Parts[] = {
    {UsbServer_ReadReportRate, 0x0000, 1},
    {UsbServer_ReadCurrentDPI, 0x0004, 1},
    {UsbServer_ReadDPILed, 0x004C, 8},
    {UsbServer_ReadLedBar, 0x00A0, 9},
};

TEST_F(Connection, PartialReadsCarryTheirAddress)
{
    const FlashImage image = anyImage(6);
    device.setFlash(image);
    start();
    for (const PartRow &row : Parts)
        row.read();
    ASSERT_TRUE(messages.waitFor(std::size(Parts)));
    for (std::size_t i = 0; i < std::size(Parts); ++i) {
        const Message message = messages.all()[i];
        EXPECT_EQ(message.code(), 8);
        EXPECT_EQ(message.address(), Parts[i].address);
        ASSERT_EQ(message.payload.size(), Parts[i].size);
        const auto *bytes = reinterpret_cast<const uint8_t *>(&image) + Parts[i].address;
        EXPECT_EQ(std::memcmp(message.payload.data(), bytes, Parts[i].size), 0);
    }
}

TEST_F(Connection, AnswersComeInTheOrderOfTheOrders)
{
    start();
    UsbServer_ReadBatteryLevel();
    UsbServer_ReadVersion();
    UsbServer_ReadConfig();
    UsbServer_ReadDonglePairStatus();
    ASSERT_TRUE(messages.waitFor(4));
    const auto all = messages.all();
    EXPECT_EQ(all[0].code(), 4);
    EXPECT_EQ(all[0].payload, (std::vector<uint8_t>{80, 1, 0, 0}));
    EXPECT_EQ(all[1].code(), 18);
    EXPECT_TRUE(all[1].payload.empty());
    EXPECT_EQ(all[2].code(), 14);
    EXPECT_EQ(all[2].payload, (std::vector<uint8_t>{1}));
    EXPECT_EQ(all[3].code(), 6);
    EXPECT_EQ(all[3].payload, (std::vector<uint8_t>{1}));
}

TEST_F(Connection, OrdersWithAnArgumentSendItAndSayNothing)
{
    start();
    UsbServer_SetPCDriverStatus(1);
    UsbServer_SetBatteryOptimizeEnable(0);
    UsbServer_SetClearSetting();
    UsbServer_SetCurrentConfig(3);
    UsbServer_EnterDonglePairOnlyCid(0x1A);
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    const auto requests = device.requests();
    ASSERT_EQ(requests.size(), 6U);
    const std::pair<Command, int> expected[] = {{Command::DriverStatus, 1},
                                                {Command::BatteryOptimize, 0},
                                                {Command::ClearSettings, -1},
                                                {Command::ConfigSelect, 3},
                                                {Command::PairEnter, 0x1A}};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(requests[i].command(), expected[i].first);
        EXPECT_EQ(requests[i].Length, expected[i].second < 0 ? 0 : 1);
        if (expected[i].second >= 0) {
            EXPECT_EQ(requests[i].Payload[0], expected[i].second);
        }
    }
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(Connection, AFailedReadIsNoMessageAndTheNextOrderGoesOn)
{
    device.setScript([](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::FlashRead && request.address() == 56 * 60)
            return Answers{};
        return std::nullopt;
    });
    start();
    UsbServer_ReadAllFlashData();
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    EXPECT_EQ(messages.all()[0].code(), 18);
}

TEST_F(Connection, WithoutAConnectionOrdersDoNothing)
{
    UsbServer_Exit();
    UsbServer_Exit();
    UsbServer_ReadAllFlashData();
    UsbServer_SetCurrentConfig(1);
    ProtocolDataUpdate(record.get());
    ProtocolDataUpdate(nullptr);
    start();
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    EXPECT_EQ(device.requests().size(), 1U);
}

// ---- Notices

struct NoticeRow {
    Command command;
    std::size_t size;
    bool forwarded;
};
static const NoticeRow Notices[] = {
    {Command::StatusChanged, 7, true},     {Command::StatusChanged, 6, false},
    {Command::StatusChanged, 56, false},   {Command::ClearSettings, 0, true},
    {Command::ClearSettings, 1, false},    {Command::PairStatus, 1, true},
    {Command::PairStatus, 0, false},       {Command::DongleColorChanged, 10, true},
    {Command::LongRangeChanged, 10, true}, {Command::LongRangeChanged, 9, false},
    {Command::OnLineChanged, 4, false},    {Command::FlashRead, 56, false},
    {Command::Battery, 4, false},          {static_cast<Command>(0xEE), 0, false},
};

TEST_F(Connection, NoticesOfTheirExactSizeAreMessages)
{
    start();
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    std::size_t expected = 1;
    const uint8_t payload[wire::PayloadSize] = {1, 2, 3};
    for (const NoticeRow &row : Notices) {
        device.send(datagram(noticeOf(row.command, payload, row.size)));
        UsbServer_ReadVersion(); // stands behind the notice
        expected += row.forwarded ? 2 : 1;
        ASSERT_TRUE(messages.waitFor(expected));
        EXPECT_EQ(messages.size(), expected);
        if (row.forwarded) {
            const Message message = messages.all()[expected - 2];
            EXPECT_EQ(message.code(), static_cast<int>(row.command));
            EXPECT_EQ(message.payload.size(), row.size);
        }
    }
}

// ---- The writer

TEST_F(Connection, OneByteIsOneReport)
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

TEST_F(Connection, AnUpdateBeforeTheFirstReadIsDropped)
{
    start();
    edit(64);
    UsbServer_ReadAllFlashData();
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(2));
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(3));
    EXPECT_EQ(writes(), 0U);
}

TEST_F(Connection, ABurstEndsWithItsLastValueInFewReports)
{
    load();
    std::atomic<bool> gate{false};
    device.setScript([&gate](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::FlashWrite && !gate)
            eventually([&gate] { return gate.load(); }); // the first answer takes its time
        return std::nullopt;
    });
    for (int value = 1; value <= 100; ++value)
        edit(static_cast<uint8_t>(value));
    gate = true;
    EXPECT_TRUE(rateBecomes(100));
    EXPECT_LE(writes(), 5U);
    heal();
}

TEST_F(Connection, AWholeRecordArrives)
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

TEST_F(Connection, WritesGivenBeforeAReadGoOutBeforeIt)
{
    load();
    edit(32);
    UsbServer_ReadReportRate();
    ASSERT_TRUE(messages.waitFor(1));
    EXPECT_EQ(messages.all()[0].payload[0], 32);
}

TEST_F(Connection, WhatTheMouseChangedIsNotWrittenBack)
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

TEST_F(Connection, AnotherProfileGetsNothingOfTheOld)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(16); // waits for a mouse that is away
    ASSERT_TRUE(eventually([this] { return writes() > 0; }));
    heal();
    device.setScript([this](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::ConfigSelect)
            device.setFlash(anyImage(12));
        return std::nullopt;
    });
    device.clearRequests();
    UsbServer_SetCurrentConfig(1);
    ProtocolDataUpdate(record.get()); // may still be the old profile's whole record
    record->DebounceTime = 9;
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] { return device.flash().DebounceTime == 9; }));
    FlashImage expected = anyImage(12);
    expected.DebounceTime = 9;
    expected.ReportRate = device.flash().ReportRate; // either value was given
    const FlashImage held = device.flash();
    EXPECT_EQ(std::memcmp(&held, &expected, sizeof held), 0);
    heal();
}

TEST_F(Connection, AfterAResetNothingIsWrittenBeforeTheNextFullRead)
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

// ---- A mouse that does not take a write

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

TEST_F(Connection, AFailedWriteShowsAsOffLineUntilItIsDone)
{
    for (const SpoilRow &row : Spoils) {
        load();
        spoilWrites(row.status);
        edit(static_cast<uint8_t>(record->ReportRate + 1));
        ASSERT_TRUE(eventually([&] { return writes() == row.tries; })) << row.name;
        EXPECT_TRUE(eventually([this] { return !isOnLine(); })) << row.name;
        OnlineAddress address{};
        EXPECT_EQ(UsbFinderC_GetDeviceOnLineWithUsbAddress(device.path().c_str(), &address), 0) << row.name;
        EXPECT_EQ(address.Online, 0);
        heal();
        EXPECT_TRUE(isOnLine()) << row.name;
        EXPECT_EQ(device.flash().ReportRate, record->ReportRate) << row.name;
    }
}

TEST_F(Connection, ARestingWriterDoesNotSpin)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    const std::size_t before = writes();
    for (int i = 0; i < 10; ++i)
        UsbFinderC_GetVersion(device.path().c_str());
    EXPECT_EQ(writes(), before);
    EXPECT_FALSE(isOnLine());
    EXPECT_EQ(writes(), before + 1) << "an on-line question tries once more, not oftener";
    heal();
}

TEST_F(Connection, AReturningMouseWakesTheWriter)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    heal();
    const wire::OnLineReply returned{1, {1, 2, 3}};
    device.send(datagram(noticeOf(Command::OnLineChanged, &returned, sizeof returned)));
    EXPECT_TRUE(rateBecomes(64));
    EXPECT_TRUE(isOnLine());
}

TEST_F(Connection, ANewerUpdateWakesTheWriter)
{
    load();
    spoilWrites(wire::Status::OffLine);
    edit(64);
    ASSERT_TRUE(eventually([this] { return !isOnLine(); }));
    heal();
    edit(32);
    EXPECT_TRUE(rateBecomes(32));
}

TEST_F(Connection, ALostAcknowledgementIsAskedForAgain)
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
    ASSERT_TRUE(eventually([&lost] { return lost == 2; }));
    EXPECT_TRUE(isOnLine());
    EXPECT_EQ(device.flash().ReportRate, 64);
    heal();
}

TEST_F(Connection, AnUnpluggedDeviceLeavesNoMarkOnTheNextOne)
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

// ---- Ends and replacements

TEST_F(Connection, AnEndDropsWhatIsLeftToWrite)
{
    load();
    std::atomic<bool> gate{false};
    device.setScript([&gate](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::FlashWrite)
            eventually([&gate] { return gate.load(); });
        return std::nullopt;
    });
    *record = anyRecord(13);
    ProtocolDataUpdate(record.get());
    ASSERT_TRUE(eventually([this] { return writes() == 1; }));
    UsbServer_Exit();
    gate = true;
    heal();
    start();
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    EXPECT_LE(writes(), 3U) << "no more than the tries of the report that was on its way";
}

TEST_F(Connection, AReplacedCallbackIsCalledNoMore)
{
    load();
    std::atomic<bool> inside{false};
    std::atomic<bool> leave{false};
    messages.setHook([&](const Message &) {
        inside = true;
        eventually([&leave] { return leave.load(); });
    });
    for (int i = 0; i < 5; ++i)
        UsbServer_ReadVersion();
    ASSERT_TRUE(eventually([&inside] { return inside.load(); }));
    UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<1>); // does not wait for it
    UsbServer_ReadConfig();
    leave = true;
    ASSERT_TRUE(messageLog<1>().waitFor(1));
    EXPECT_EQ(messageLog<1>().all()[0].code(), 14);
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(Connection, AnEndedCallbackIsCalledNoMore)
{
    load();
    std::atomic<bool> leave{false};
    messages.setHook([&leave](const Message &) { eventually([&leave] { return leave.load(); }); });
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    UsbServer_ReadVersion();
    device.send(datagram(noticeOf(Command::ClearSettings)));
    UsbServer_Exit(); // returns while the callback runs
    leave = true;
    UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<1>);
    UsbServer_ReadVersion();
    ASSERT_TRUE(messageLog<1>().waitFor(1));
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(Connection, NoticesGoToTheNewestConnection)
{
    for (int i = 0; i < 50; ++i)
        UsbServerC_Start(device.path().c_str(), device.path().c_str(), i % 2 ? logMessage<0> : logMessage<1>);
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    device.send(datagram(noticeOf(Command::ClearSettings)));
    ASSERT_TRUE(messages.waitFor(2));
    EXPECT_EQ(messages.all()[1].code(), 9);
    EXPECT_EQ(messageLog<1>().size(), 0U);
}

TEST_F(Connection, EverythingMayBeCalledFromInsideTheCallback)
{
    std::atomic<int> round{0};
    std::atomic<int> finished{0};
    const std::string path = device.path();
    messages.setHook([&](const Message &message) {
        if (message.code() != 8 || message.payload.size() != FlashSize)
            return;
        ProtocolDataParser(message.payload.data(), record.get());
        record->ReportRate = static_cast<uint8_t>(++round);
        ProtocolDataUpdate(record.get());
        EXPECT_EQ(UsbFinderC_GetDeviceOnLine(path.c_str()), 1);
        EXPECT_EQ(UsbFinderC_GetVersion(path.c_str()), 0x010AU);
        int32_t count = 5;
        UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0005", &count);
        EXPECT_EQ(count, 1);
        ++finished;
        if (round < 5) {
            UsbServer_Exit();
            UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
            UsbServer_ReadAllFlashData();
        }
    });
    start();
    UsbServer_ReadAllFlashData();
    EXPECT_TRUE(eventually([&finished] { return finished == 5; }));
    EXPECT_TRUE(rateBecomes(5));
    messages.setHook(nullptr);
}

TEST_F(Connection, AFloodOfNoticesDoesNotGrowWithoutEnd)
{
    load();
    std::atomic<bool> leave{false};
    messages.setHook([&leave](const Message &) { eventually([&leave] { return leave.load(); }); });
    device.send(datagram(noticeOf(Command::ClearSettings)));
    ASSERT_TRUE(messages.waitFor(1));
    for (int i = 0; i < 2000; ++i) {
        device.send(datagram(noticeOf(Command::ClearSettings)));
        if (i % 50 == 0)
            UsbFinderC_GetVersion(device.path().c_str()); // the reader has taken the ones before
    }
    UsbServer_ReadVersion();
    ASSERT_TRUE(eventually([this] { return device.count(Command::Version) > 40; }));
    messages.setHook(nullptr);
    leave = true;
    ASSERT_TRUE(eventually([this] { return messages.all().back().code() == 18; }));
    EXPECT_LE(messages.size(), 2U + 256U);
}

TEST_F(Connection, ManyThreadsMayCallAtOnce)
{
    load();
    std::vector<std::thread> threads;
    for (int user = 0; user < 4; ++user) {
        threads.emplace_back([this, user] {
            FlashDataMap own = *record;
            for (int i = 0; i < 50; ++i) {
                own.ReportRate = static_cast<uint8_t>(user * 50 + i);
                ProtocolDataUpdate(&own);
                UsbFinderC_GetDeviceOnLine(device.path().c_str());
                UsbServer_ReadReportRate();
                if (user == 0 && i % 10 == 9) {
                    UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<0>);
                    UsbServer_ReadAllFlashData();
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<1>);
    UsbServer_ReadVersion();
    ASSERT_TRUE(messageLog<1>().waitFor(1)); // the last message of the others is through
    messages.clear();
    load();
    edit(201);
    EXPECT_TRUE(rateBecomes(201));
}
