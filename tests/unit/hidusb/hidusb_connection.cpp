// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The connection: orders and their messages, notices, its end and its replacement.
#include "tests/support/ConnectionFixture.h"
#include "tests/support/Records.h"

#include <atomic>

using namespace support;
using wire::Command;

using Connection = ConnectionFixture;

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
    EXPECT_EQ(device.asked(Command::FlashRead), 124U);
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

TEST_F(Connection, OrdersWithAnArgumentSendItAndGiveNoMessage)
{
    start();
    UsbServer_SetPCDriverStatus(1);
    UsbServer_SetBatteryOptimizeEnable(0);
    UsbServer_SetClearSetting();
    UsbServer_SetCurrentConfig(3);
    UsbServer_EnterDonglePairOnlyCid(0x1A);
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(1));
    const auto requests = device.asked();
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

TEST_F(Connection, AFailedReadGivesNoMessageAndTheNextOrderIsCarriedOut)
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
    EXPECT_EQ(device.asked().size(), 1U);
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
        UsbServer_ReadVersion(); // its message comes after the notice
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
    EXPECT_EQ(writes(), 1U) << "more than the report that was being sent";
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
    UsbServerC_Start(device.path().c_str(), device.path().c_str(),
                     logMessage<1>); // does not wait for the running call
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
        if (round < 5) {
            UsbServer_Exit();
            UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
            UsbServer_ReadAllFlashData();
        }
        ++finished; // last: the test and what this uses of it may end then
    });
    start();
    UsbServer_ReadAllFlashData();
    EXPECT_TRUE(eventually([&finished] { return finished == 5; }));
    EXPECT_TRUE(rateBecomes(5));
    messages.setHook(nullptr);
}

TEST_F(Connection, TheQueueOfNoticesIsBounded)
{
    load();
    std::atomic<bool> leave{false};
    messages.setHook([&leave](const Message &) { eventually([&leave] { return leave.load(); }); });
    device.send(datagram(noticeOf(Command::ClearSettings)));
    ASSERT_TRUE(messages.waitFor(1));
    for (int i = 0; i < 2000; ++i) {
        device.send(datagram(noticeOf(Command::ClearSettings)));
        if (i % 50 == 0)
            UsbFinderC_GetVersion(device.path().c_str()); // the layer has read the notices before it
    }
    // So that no notice is added while the queue is emptied.
    ASSERT_TRUE(hasReadAll());
    const std::size_t asked = device.asked(Command::Version);
    UsbServer_ReadVersion();
    ASSERT_TRUE(eventually([&] { return device.asked(Command::Version) > asked; }));
    messages.setHook(nullptr);
    leave = true;
    ASSERT_TRUE(eventually([this] { return messages.all().back().code() == 18; }));
    EXPECT_LE(messages.size(), 2U + 512U);
}

// The program waits for these, and would do so for ever.
TEST_F(Connection, AFloodOfNoticesPushesOutNoEnd)
{
    load();
    std::atomic<bool> leave{false};
    messages.setHook([&leave](const Message &) { eventually([&leave] { return leave.load(); }); });
    const DeviceStatusChange change{};
    const auto notify = [&] {
        device.send(datagram(noticeOf(Command::StatusChanged, &change, sizeof change)));
    };
    notify();
    ASSERT_TRUE(messages.waitFor(1));
    for (int i = 0; i < 400; ++i) {
        notify();
        if (i % 50 == 0)
            UsbFinderC_GetVersion(device.path().c_str()); // the layer has read the notices before it
    }
    const auto result = wire::PairState::Succeeded;
    device.send(datagram(noticeOf(Command::ClearSettings)));
    device.send(datagram(noticeOf(Command::PairStatus, &result, sizeof result)));
    ASSERT_TRUE(hasReadAll());
    messages.setHook(nullptr);
    leave = true;
    const auto isTold = [this](int code) {
        return eventually([this, code] {
            const auto all = messages.all();
            return std::any_of(all.begin(), all.end(), [code](const Message &m) { return m.code() == code; });
        });
    };
    EXPECT_TRUE(isTold(9));
    EXPECT_TRUE(isTold(6));
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
    ASSERT_TRUE(messageLog<1>().waitFor(1)); // no message of the other connections comes later
    messages.clear();
    load();
    edit(201);
    EXPECT_TRUE(rateBecomes(201));
}
