// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Discovery and the questions to a device by its path.
#include "device/hidusb/HIDUsb.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/QuietFailure.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace support;
using wire::Command;

static std::vector<std::string> found(const char *vendor, const char *product, int32_t most = 5)
{
    int32_t count = most;
    const char *const *paths = UsbFinderC_FindHidDevicesByDefaultDeviceId(vendor, product, &count);
    return {paths, paths + count};
}

class Finder : public testing::Test
{
protected:
    Finder() { busFolder(); }
};

TEST_F(Finder, FindsByIdsInterfaceAndUsagePage)
{
    const FakeDevice mouse;
    const FakeDevice second(mouseName("second"));
    const FakeDevice screen({0x1209, 0x0005, 0x0103, 1, wire::ScreenUsagePage, "mouse"});
    const FakeDevice plain({0x1209, 0x0005, 0x0103, 0, wire::MouseUsagePage, "mouse"});
    const FakeDevice other({0x1209, 0x0006, 0x0103, 1, wire::SettingsUsagePage, "mouse"});
    const std::vector<std::string> both{mouse.path(), second.path()};
    for (const char *vendor : {"1209", "0x1209", "0X1209"})
        EXPECT_EQ(found(vendor, "0005"), both) << vendor;
    EXPECT_EQ(found("1209", "5"), both);
    EXPECT_EQ(found("1209", "6"), std::vector<std::string>{other.path()});
    EXPECT_EQ(found("1209", "0005", 1).size(), 1U);

    int32_t count = 5;
    const char *const *paths = UsbFinderC_FindHidDevicesByDeviceId("1209", "0005", 1, 8, &count);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(paths[0], screen.path());
}

TEST_F(Finder, InvalidIdsFindNothing)
{
    const FakeDevice mouse;
    for (const char *text : {"", "0x", "xyz", "12095", "-1", " 1209", "1209 ", "1209g", "0x12 09"})
        EXPECT_TRUE(found(text, "0005").empty()) << text;
    EXPECT_TRUE(found(nullptr, "0005").empty());
    EXPECT_TRUE(found("1209", nullptr).empty());
    EXPECT_TRUE(found("1209", "0005", 0).empty());
    EXPECT_TRUE(found("1209", "0005", -3).empty());
    EXPECT_NE(UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0005", nullptr), nullptr);
    for (const int usage : {-1, 256, 0x10005}) {
        int32_t count = 5;
        EXPECT_NE(UsbFinderC_FindHidDevicesByDeviceId("1209", "0005", 1, usage, &count), nullptr);
        EXPECT_EQ(count, 0);
    }
}

TEST_F(Finder, ResultsOfAnotherThreadStayValid)
{
    const FakeDevice mouse;
    int32_t count = 5;
    const char *const *paths = UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0005", &count);
    std::thread([] { found("1209", "0006"); }).join();
    ASSERT_EQ(count, 1);
    EXPECT_EQ(paths[0], mouse.path());
}

TEST_F(Finder, AsksTheDevice)
{
    const FakeDevice mouse;
    const char *path = mouse.path().c_str();
    DeviceIdentity identity{};
    // GetDeviceInfo asks once only, and a busy machine may answer too late.
    ASSERT_TRUE(eventually([&] { return (identity = UsbFinderC_GetDeviceInfo(path, 0)).Cid != 0; }));
    EXPECT_EQ(identity.Cid, 0x1A);
    EXPECT_EQ(identity.Mid, 0x03);
    EXPECT_EQ(identity.DeviceKind, 0x02);
    UsbAttribute attribute{};
    UsbFinderC_GetUsbDeviceAttribute(path, &attribute);
    EXPECT_EQ(attribute.Version.get(), 0x0103);
    EXPECT_EQ(attribute.VendorId.get(), 0x1209);
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(path), 1);
    OnlineAddress address{};
    EXPECT_EQ(UsbFinderC_GetDeviceOnLineWithUsbAddress(path, &address), 1);
    const uint8_t expected[] = {0, 0, 0, 0, 0, 0, 1, 0x11, 0x22, 0x33};
    EXPECT_EQ(std::memcmp(&address, expected, sizeof expected), 0);
    EXPECT_EQ(UsbFinderC_GetVersion(path), 0x010AU);
    uint32_t version = 0;
    EXPECT_EQ(UsbFinderC_GetSlaveVersion(path, &version), 1);
    EXPECT_EQ(version, 0x010AU);
    uint8_t mode = 0x73;
    UsbFinderC_GetLongRangeMode(path, &mode);
    EXPECT_EQ(mode, 1);
}

TEST_F(Finder, AnOffLineMouseStillHasItsAddress)
{
    FakeDevice receiver;
    receiver.setScript([](const wire::Report &request) {
        const wire::OnLineReply away{0, {7, 8, 9}};
        return Answers{datagram(replyTo(request, &away, sizeof away))};
    });
    OnlineAddress address{};
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(receiver.path().c_str()), 0);
    EXPECT_EQ(UsbFinderC_GetDeviceOnLineWithUsbAddress(receiver.path().c_str(), &address), 0);
    EXPECT_EQ(address.Online, 0);
    EXPECT_EQ(address.Address[2], 9);
}

// The receiver stores what is written and returns it.
TEST_F(Finder, ReceiverRecordsAreWrittenAndReadBack)
{
    std::map<uint8_t, Datagram> stored;
    FakeDevice receiver;
    receiver.setScript([&stored](const wire::Report &request) {
        const auto payload = stored[request.CommandCode - 1];
        switch (request.command()) {
        case Command::DongleColorWrite:
            stored[static_cast<uint8_t>(Command::DongleColor)] = {request.Payload,
                                                                  request.Payload + request.Length};
            return Answers{datagram(replyTo(request))};
        case Command::DongleBarWrite:
        case Command::IndicatorWrite:
            stored[request.CommandCode - 1U] = {request.Payload, request.Payload + request.Length};
            return Answers{datagram(replyTo(request))};
        default: {
            const Datagram &record = stored[request.CommandCode];
            return Answers{datagram(replyTo(request, record.data(), record.size()))};
        }
        }
    });
    const char *path = receiver.path().c_str();
    const DongleRGB color{2, {1, 2, 3, 4, 5, 6, 7, 8, 9}};
    UsbFinderC_Set4KDongleRGB(path, &color);
    DongleRGB colorBack{};
    UsbFinderC_Get4KDongleRGBValue(path, &colorBack);
    EXPECT_EQ(std::memcmp(&color, &colorBack, sizeof color), 0);

    const DongleRgbBar bar{1, 2, 3, 4, 5, 6, 1};
    EXPECT_EQ(UsbFinderC_SetDongleRGBBarMode(path, &bar), 1);
    DongleRgbBar barBack{};
    UsbFinderC_GetDongleRGBBarMode(path, &barBack);
    EXPECT_EQ(std::memcmp(&bar, &barBack, sizeof bar), 0);

    const DongleIndicator indicator{{1, 2, 3}};
    EXPECT_EQ(UsbFinderC_SetDongleIndicatorLed(path, &indicator), 1);
    DongleIndicator indicatorBack{};
    UsbFinderC_GetDongleIndicatorLed(path, &indicatorBack);
    EXPECT_EQ(std::memcmp(&indicator, &indicatorBack, sizeof indicator), 0);
}

TEST_F(Finder, SmallOrdersCarryTheirBytes)
{
    const FakeDevice receiver;
    const uint8_t pairing[] = {9, 8, 7, 0, 4};
    UsbFinderC_SetDongleIDToMouse(receiver.path().c_str(), pairing);
    UsbFinderC_SetLongRangeMode(receiver.path().c_str(), 1);
    const auto requests = receiver.asked();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0].command(), Command::PairedAddress);
    EXPECT_EQ(requests[0].Length, 5);
    EXPECT_EQ(std::memcmp(requests[0].Payload, pairing, sizeof pairing), 0);
    EXPECT_EQ(requests[1].command(), Command::LongRangeWrite);
    EXPECT_EQ(requests[1].Payload[0], 1);
}

TEST_F(Finder, NoPathFailsQuietly) { expectQuietFailure(nullptr); }

TEST_F(Finder, UnknownPathsFailQuietly)
{
    for (const char *path : {"", "a", "/dev/null", "/dev/hidraw99999"})
        expectQuietFailure(path);
}

TEST_F(Finder, AStalePathFailsQuietly)
{
    auto device = std::make_unique<FakeDevice>();
    const std::string path = device->path();
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(path.c_str()), 1);
    device.reset();
    expectQuietFailure(path.c_str());
}

TEST_F(Finder, ASilentDeviceIsAskedAsOftenAsDocumented)
{
    struct Row {
        uint32_t (*ask)(const char *path);
        std::size_t tries;
    };
    const Row rows[] = {
        {[](const char *path) -> uint32_t { return UsbFinderC_GetDeviceInfo(path, 0).Cid; }, 1},
        {[](const char *path) -> uint32_t { return UsbFinderC_GetDeviceOnLine(path); }, 2},
        {[](const char *path) -> uint32_t { return UsbFinderC_GetVersion(path); }, 3},
    };
    FakeDevice device;
    device.setScript([](const wire::Report &) { return Answers{}; });
    for (const Row &row : rows) {
        std::size_t tries = 0;
        // The time for all tries is fixed, so that a busy machine may skip one.
        for (int round = 0; round < 10 && tries < row.tries; ++round) {
            const std::size_t before = device.asked().size();
            EXPECT_EQ(row.ask(device.path().c_str()), 0U);
            ASSERT_TRUE(eventually([&] { return device.asked().size() > before; }));
            tries = device.tries(device.asked().back());
        }
        EXPECT_EQ(tries, row.tries);
    }
}

TEST_F(Finder, RepliesOfAnotherSizeAreIgnored)
{
    FakeDevice device;
    device.setScript([](const wire::Report &request) {
        const Datagram wrong(wire::PayloadSize, 0xEE);
        return Answers{datagram(replyTo(request, wrong.data(), wrong.size()))};
    });
    const char *path = device.path().c_str();
    EXPECT_EQ(UsbFinderC_GetDeviceInfo(path, 0).Cid, 0);
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(path), 0);
    EXPECT_EQ(UsbFinderC_GetVersion(path), 0U);
    uint8_t mode = 0x73;
    UsbFinderC_GetLongRangeMode(path, &mode);
    EXPECT_EQ(mode, 0x73);
}

TEST_F(Finder, NullRecordsAreIgnored)
{
    const FakeDevice device;
    const char *path = device.path().c_str();
    UsbFinderC_GetUsbDeviceAttribute(path, nullptr);
    EXPECT_EQ(UsbFinderC_GetDeviceOnLineWithUsbAddress(path, nullptr), 1);
    EXPECT_EQ(UsbFinderC_GetSlaveVersion(path, nullptr), 0);
    UsbFinderC_Get4KDongleRGBValue(path, nullptr);
    UsbFinderC_Set4KDongleRGB(path, nullptr);
    EXPECT_EQ(UsbFinderC_SetDongleRGBBarMode(path, nullptr), 0);
    UsbFinderC_GetLongRangeMode(path, nullptr);
    UsbFinderC_SetDongleIDToMouse(path, nullptr);
}

TEST_F(Finder, RawReportsPassUnchanged)
{
    FakeDevice screen({0x1209, 0x0005, 0x0103, 1, wire::ScreenUsagePage, "mouse"});
    screen.setScript([](const wire::Report &request) {
        // Before the answer, a report of another collection and one with id 0.
        return Answers{{static_cast<uint8_t>(request.Id + 1), 9, 9, 9}, {0}, {request.Id, 2, 3, 4}};
    });
    uint8_t reply[4] = {};
    const uint8_t request[] = {0x55};
    ASSERT_EQ(UsbFinderC_OpenDevice(screen.path().c_str()), 1);
    UsbFinderC_ReadWriteDeviceData(request, reply, 1);
    EXPECT_EQ(reply[0], 0x55);
    EXPECT_EQ(reply[1], 0) << "more than asked for was written";
    const uint8_t longer[] = {0x56, 1};
    UsbFinderC_ReadWriteDeviceData(longer, reply, sizeof longer);
    EXPECT_EQ(reply[0], 0x56);
    EXPECT_EQ(reply[1], 2);
    UsbFinderC_ReadWriteDeviceData(nullptr, reply, 1);
    UsbFinderC_ReadWriteDeviceData(request, reply, 0);
    EXPECT_EQ(screen.requests().size(), 2U);
}

// As the clock of a screen is sent: five times its one byte, whose answers nobody takes.
TEST_F(Finder, WithoutABufferForTheAnswerARawReportIsSentAllTheSame)
{
    FakeDevice screen({0x1209, 0x0005, 0x0103, 1, wire::ScreenUsagePage, "mouse"});
    screen.setScript([](const wire::Report &request) { return Answers{{request.Id, 1}}; });
    const uint8_t request[] = {0x55};
    ASSERT_EQ(UsbFinderC_OpenDevice(screen.path().c_str()), 1);
    for (int i = 0; i < 5; ++i)
        UsbFinderC_ReadWriteDeviceData(request, nullptr, sizeof request);
    ASSERT_TRUE(eventually([&screen] { return screen.requests().size() == 5; }));
    for (const wire::Report &report : screen.requests())
        EXPECT_EQ(report.Id, 0x55);
}

// The page of the lights asks both in a row, and may wait no longer than for one silent question. On a busy
// machine the device may see a try late, and a try whose time has passed is not sent.
TEST_F(Finder, TheLampsOfASilentReceiverAreAskedOnceLess)
{
    FakeDevice receiver;
    receiver.setScript([](const wire::Report &) { return Answers{}; });
    DongleRgbBar bar{};
    DongleIndicator lamps{{7, 7, 7}};
    UsbFinderC_GetDongleRGBBarMode(receiver.path().c_str(), &bar);
    UsbFinderC_GetDongleIndicatorLed(receiver.path().c_str(), &lamps);
    ASSERT_TRUE(eventually([&receiver] {
        return receiver.count(Command::DongleBar) > 0 && receiver.count(Command::Indicator) > 0;
    }));
    EXPECT_LE(receiver.count(Command::DongleBar), 3U);
    EXPECT_LE(receiver.count(Command::Indicator), 2U);
    EXPECT_EQ(lamps.Choice[0], 7);
}
