// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The USB form of a device, with the test in the place of the kernel's host controller.
#include "emulator/usb/UsbBus.h"
#include "emulator/usb/UsbPorts.h"

#include "device/hidusb/wire/Report.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/socket.h>

using namespace emulator;
using Bytes = std::vector<uint8_t>;

namespace
{

constexpr uint32_t Submit = 1;
constexpr uint32_t Unlink = 2;
constexpr std::size_t HeadSize = 48;

void putWord(Bytes &bytes, uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<uint8_t>(value >> shift));
}

Bytes message(uint32_t command, uint32_t sequence, bool in, uint32_t endpoint, uint32_t length,
              Bytes setup = Bytes(8), const Bytes &data = {})
{
    Bytes bytes;
    for (const uint32_t value : {command, sequence, 1U, in ? 1U : 0U, endpoint, 0U, length, 0U, 0U, 0U})
        putWord(bytes, value);
    bytes.insert(bytes.end(), setup.begin(), setup.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

uint32_t word(const Bytes &bytes, std::size_t at)
{
    return uint32_t(bytes[at]) << 24 | uint32_t(bytes[at + 1]) << 16 | uint32_t(bytes[at + 2]) << 8 |
           bytes[at + 3];
}

struct Answer {
    uint32_t command = 0;
    uint32_t sequence = 0;
    int32_t status = 1;
    uint32_t length = 0;
    Bytes data;
};

std::vector<Interface> receiver(bool screen = false)
{
    std::vector<Interface> faces{{"rx", {0x1209, 0x0005, 0x0102, 0, wire::MouseUsagePage, "rx"}},
                                 {"rx", {0x1209, 0x0005, 0x0102, 1, wire::SettingsUsagePage, "rx"}}};
    if (screen)
        faces.push_back({"rx", {0x1209, 0x0005, 0x0102, 1, wire::ScreenUsagePage, "rx"}});
    return faces;
}

class UsbTest : public testing::Test
{
protected:
    void SetUp() override { plug(receiver()); }

    void plug(const std::vector<Interface> &faces)
    {
        wanted_ = faces;
        bus_.sync(wanted_, [this](const Interface &face) { closed_.push_back(face.name.usagePage); });
    }
    // What the device makes of these bytes.
    void give(const Bytes &bytes)
    {
        ASSERT_EQ(::send(host_.get(), bytes.data(), bytes.size(), 0), ssize_t(bytes.size()));
        serve();
    }
    void serve()
    {
        std::vector<pollfd> polled;
        bus_.addTo(polled, [this](const Interface &) { return reads_; });
        ReadyMap ready;
        for (const pollfd &each : polled)
            ready[each.fd] = POLLIN;
        bus_.service(ready, [this](const Interface &face, const uint8_t *bytes, std::size_t size) {
            reports_.push_back({face.name.usagePage, Bytes(bytes, bytes + size)});
        });
    }
    // The next answer; command 0 when there is none.
    Answer answer()
    {
        Bytes head(HeadSize);
        if (::recv(host_.get(), head.data(), head.size(), MSG_DONTWAIT) != ssize_t(HeadSize))
            return {};
        Answer answer{word(head, 0), word(head, 4), static_cast<int32_t>(word(head, 20)), word(head, 24), {}};
        answer.data.resize(in_ ? answer.length : 0);
        if (!answer.data.empty()) {
            EXPECT_EQ(::recv(host_.get(), answer.data.data(), answer.data.size(), MSG_DONTWAIT),
                      ssize_t(answer.data.size()));
        }
        return answer;
    }
    Answer control(const Bytes &setup, uint32_t length, const Bytes &data = {})
    {
        in_ = (setup[0] & 0x80) != 0;
        give(message(Submit, ++sequence_, in_, 0, length, setup, data));
        const Answer got = answer();
        EXPECT_EQ(got.sequence, sequence_);
        in_ = true;
        return got;
    }
    Bytes descriptor(uint8_t type, uint8_t index, uint8_t face = 0, uint8_t request = 0x80)
    {
        return control({request, 6, index, type, face, 0, 0xFF, 0}, 255).data;
    }

    FileDescriptor host_;
    bool full_ = false;
    bool reads_ = true;
    bool in_ = true;
    uint32_t sequence_ = 0;
    std::vector<Interface> wanted_;
    std::vector<uint16_t> closed_;
    std::vector<std::pair<uint16_t, Bytes>> reports_;
    UsbBus bus_{[this](const std::string &) {
        int ends[2];
        if (full_ || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            return FileDescriptor();
        host_ = FileDescriptor(ends[0]);
        return FileDescriptor(ends[1]);
    }};
};

Bytes reportOf(uint8_t id, uint8_t fill)
{
    Bytes report(wire::ReportSize, fill);
    report[0] = id;
    return report;
}

} // namespace

TEST_F(UsbTest, SaysWhatItIs)
{
    const Bytes device = descriptor(1, 0);
    ASSERT_EQ(device.size(), 18U);
    EXPECT_EQ(Bytes(device.begin() + 8, device.begin() + 14), (Bytes{0x09, 0x12, 0x05, 0x00, 0x02, 0x01}));
    const Bytes configuration = descriptor(2, 0);
    ASSERT_EQ(configuration.size(), 9U + 9 + 9 + 7 + 9 + 9 + 7 + 7);
    EXPECT_EQ(configuration[2] | configuration[3] << 8, int(configuration.size()));
    EXPECT_EQ(configuration[4], 2); // interfaces
    EXPECT_EQ(descriptor(3, 3), (Bytes{6, 3, 'r', 0, 'x', 0}));
    EXPECT_EQ(control({0x80, 6, 9, 3, 0, 0, 0xFF, 0}, 255).status, -EPIPE);
    EXPECT_EQ(control({0xC0, 1, 0, 0, 0, 0, 4, 0}, 4).status, -EPIPE);
}

TEST_F(UsbTest, AnswersNoMoreThanIsAskedFor)
{
    const Answer head = control({0x80, 6, 0, 2, 0, 0, 9, 0}, 9);
    EXPECT_EQ(head.length, 9U);
    EXPECT_EQ(head.data[2], 66); // says its whole length all the same
}

TEST_F(UsbTest, ReportDescriptorsNameTheirPages)
{
    EXPECT_EQ(descriptor(0x22, 0, 0, 0x81)[1], 0x01);
    const Bytes settings = descriptor(0x22, 0, 1, 0x81);
    EXPECT_EQ(Bytes(settings.begin(), settings.begin() + 3), (Bytes{0x06, 0x05, 0xFF}));
    EXPECT_EQ(control({0x81, 6, 0, 0x22, 2, 0, 0xFF, 0}, 255).status, -EPIPE);
}

TEST_F(UsbTest, ReportsOfTheHostArrive)
{
    in_ = false;
    const Bytes report = reportOf(wire::ReportId, 7);
    give(message(Submit, 1, false, 2, wire::ReportSize, Bytes(8), report));
    EXPECT_EQ(answer().length, wire::ReportSize);
    ASSERT_EQ(reports_.size(), 1U);
    EXPECT_EQ(reports_[0].first, wire::SettingsUsagePage);
    EXPECT_EQ(reports_[0].second, report);
    // By the way of a control request.
    EXPECT_EQ(control({0x21, 9, 5, 2, 1, 0, wire::ReportSize, 0}, wire::ReportSize, report).status, 0);
    EXPECT_EQ(reports_.size(), 2U);
}

TEST_F(UsbTest, CollectionsAreToldApartByTheirReportId)
{
    plug(receiver(true));
    in_ = false;
    give(message(Submit, 1, false, 2, 64, Bytes(8), reportOf(0x0A, 1)));
    give(message(Submit, 2, false, 2, 64, Bytes(8), reportOf(wire::ReportId, 1)));
    give(message(Submit, 3, false, 2, 64, Bytes(8), reportOf(0x77, 1)));
    give(message(Submit, 4, false, 2, 0));
    ASSERT_EQ(reports_.size(), 4U);
    EXPECT_EQ(reports_[0].first, wire::ScreenUsagePage);
    EXPECT_EQ(reports_[1].first, wire::SettingsUsagePage);
    EXPECT_EQ(reports_[2].first, wire::SettingsUsagePage);
    EXPECT_TRUE(reports_[3].second.empty());
}

TEST_F(UsbTest, AReportCompletesTheTransferThatWaits)
{
    give(message(Submit, 5, true, 2, wire::ReportSize));
    EXPECT_EQ(answer().command, 0U);
    EXPECT_EQ(bus_.clientCount(), 1U);
    bus_.send("rx", wire::SettingsUsagePage, reportOf(5, 1));
    bus_.send("rx", wire::SettingsUsagePage, reportOf(5, 2));
    const Answer first = answer();
    EXPECT_EQ(first.sequence, 5U);
    EXPECT_EQ(first.data, reportOf(5, 1));
    EXPECT_EQ(answer().command, 0U);
    give(message(Submit, 6, true, 2, 16));
    const Answer second = answer();
    EXPECT_EQ(second.sequence, 6U);
    EXPECT_EQ(second.length, 16U); // cut to what the host has room for
}

TEST_F(UsbTest, NobodyReadsAnInterfaceThatIsClosed)
{
    bus_.send("rx", wire::SettingsUsagePage, reportOf(5, 1)); // never opened
    give(message(Submit, 1, true, 2, 64));
    EXPECT_EQ(answer().command, 0U);
    Bytes unlink = message(Unlink, 2, false, 0, 0);
    unlink[23] = 1; // the transfer that ends
    give(unlink);
    const Answer ended = answer();
    EXPECT_EQ(ended.command, 4U);
    EXPECT_EQ(ended.status, -ECONNRESET);
    EXPECT_EQ(bus_.clientCount(), 0U);
    bus_.send("rx", wire::SettingsUsagePage, reportOf(5, 2));
    give(message(Submit, 3, true, 2, 64));
    EXPECT_EQ(answer().command, 0U);
    unlink[23] = 99; // one that is over already
    give(unlink);
    EXPECT_EQ(answer().status, 0);
}

TEST_F(UsbTest, ReportsThatNobodyFetchesAreLostBeyondALimit)
{
    give(message(Submit, 1, true, 2, 64));
    for (int i = 0; i < 1000; ++i)
        bus_.send("rx", wire::SettingsUsagePage, reportOf(5, static_cast<uint8_t>(i)));
    int fetched = 0;
    for (uint32_t i = 2; answer().command != 0; ++i, ++fetched)
        give(message(Submit, i, true, 2, 64));
    EXPECT_GE(fetched, 64);
    EXPECT_LE(fetched, 65);
}

TEST_F(UsbTest, RequestsMayComeInPieces)
{
    const Bytes whole = message(Submit, 1, false, 2, 64, Bytes(8), reportOf(5, 3));
    for (const uint8_t byte : whole)
        give({byte});
    ASSERT_EQ(reports_.size(), 1U);
    Bytes twice = whole;
    twice.insert(twice.end(), whole.begin(), whole.end());
    give(twice);
    EXPECT_EQ(reports_.size(), 3U);
}

TEST_F(UsbTest, ADeviceThatCannotTakeMoreLeavesItsHostWaiting)
{
    reads_ = false;
    give(message(Submit, 1, false, 2, 64, Bytes(8), reportOf(5, 3)));
    EXPECT_TRUE(reports_.empty());
    reads_ = true;
    serve();
    EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(UsbTest, NonsenseEndsTheConnectionAndTheDeviceIsPluggedInAgain)
{
    for (const Bytes &nonsense : {message(9, 1, true, 2, 64), message(Submit, 1, false, 2, 0x7FFFFFFF)}) {
        give(nonsense);
        EXPECT_TRUE(reports_.empty());
        bus_.sync(wanted_, [](const Interface &) {});
        EXPECT_EQ(descriptor(1, 0).size(), 18U);
    }
}

TEST_F(UsbTest, PullingThePlugClosesEveryInterface)
{
    bus_.sync({}, [this](const Interface &face) { closed_.push_back(face.name.usagePage); });
    EXPECT_EQ(closed_, (std::vector<uint16_t>{wire::MouseUsagePage, wire::SettingsUsagePage}));
    char byte = 0;
    EXPECT_EQ(::recv(host_.get(), &byte, 1, MSG_DONTWAIT), 0);
}

TEST_F(UsbTest, ABootLoaderIsAnotherDevice)
{
    plug({{"rx", {0x1209, 0x0007, 0x0102, 0, wire::BootUsagePage, "rx"}}});
    EXPECT_EQ(closed_.size(), 2U);
    EXPECT_EQ(descriptor(1, 0)[10], 0x07);
    give(message(Submit, 1, false, 1, 64, Bytes(8), reportOf(wire::ReportId, 3)));
    EXPECT_EQ(reports_.back().first, wire::BootUsagePage);
}

TEST_F(UsbTest, WithoutAFreePortItTriesAgain)
{
    full_ = true;
    plug({{"tx", {0x1209, 0x0001, 0x0102, 1, wire::SettingsUsagePage, "tx"}}});
    EXPECT_TRUE(bus_.nextDue().has_value());
    full_ = false;
    bus_.sync(wanted_, [](const Interface &) {});
    EXPECT_FALSE(bus_.nextDue().has_value());
    EXPECT_EQ(descriptor(1, 0)[10], 0x01);
}

TEST(UsbPortsTest, ADeviceComesBackAtItsPort)
{
    UsbPorts ports;
    EXPECT_EQ(ports.choose("first", {0, 1, 2}), 0);
    EXPECT_EQ(ports.choose("second", {1, 2}), 1);
    EXPECT_EQ(ports.choose("second", {0, 1, 2}), 1) << "back, while the first is away";
    EXPECT_EQ(ports.choose("third", {0, 2}), 2) << "another keeps the lowest";
    EXPECT_EQ(ports.choose("fourth", {0}), 0) << "no other is free";
    EXPECT_EQ(ports.choose("first", {3}), 3) << "its own has been taken";
    EXPECT_EQ(ports.choose("fifth", {}), std::nullopt);
}

TEST(UsbPortsTest, ADeviceWaitsForItsPortButNotWithoutEnd)
{
    UsbPorts ports;
    ASSERT_EQ(ports.choose("device", {0, 1}), 0);
    EXPECT_EQ(ports.choose("device", {1}), std::nullopt) << "the kernel has not freed it yet";
    EXPECT_EQ(ports.choose("device", {0, 1}), 0);
    for (int i = 1; i < UsbPorts::Patience; ++i)
        ASSERT_EQ(ports.choose("device", {1}), std::nullopt);
    EXPECT_EQ(ports.choose("device", {1}), 1);
}
