// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
// Every command on the wire: a mouse on its cable, each receiver class, off line, bad arguments.
#include "tests/support/EmulatorFixture.h"

#include "emulator/FactoryFlash.h"

using wire::Command;
using Bytes = RawClient::Bytes;

namespace
{

class EmulatorCommands : public EmulatorFixture
{
};

struct Exchange {
    const char *what;
    Command command;
    uint16_t address;
    Bytes argument;
    int status;
    Bytes reply;
};

void walk(RawClient &client, const std::vector<Exchange> &rows)
{
    ASSERT_TRUE(client.isOpen());
    for (const Exchange &row : rows) {
        SCOPED_TRACE(row.what);
        const auto reply = client.ask(row.command, row.argument, row.address);
        ASSERT_TRUE(reply);
        EXPECT_EQ(reply->StatusCode, row.status);
        EXPECT_EQ(RawClient::payloadOf(*reply), row.reply);
    }
}

const Bytes FactoryLed = {1, 128, 3, 1, 0, 0, 0, 0};

// What a mouse answers, on its cable or through a receiver.
std::vector<Exchange> mouseRows(uint8_t battery, uint8_t minor)
{
    return {
        {"battery", Command::Battery, 0, {}, Ok, {battery, 0, 0, 0}},
        {"version", Command::Version, 0, {}, Ok, {minor, 1}},
        {"profile", Command::Config, 0, {}, Ok, {0}},
        {"read one byte", Command::FlashRead, 0, {1}, Ok, {1}},
        {"read the light", Command::FlashRead, 0x4C, {8}, Ok, FactoryLed},
        {"write one byte", Command::FlashWrite, 0, {8}, Ok, {}},
        {"it stands there", Command::FlashRead, 0, {1}, Ok, {8}},
        {"write the last byte", Command::FlashWrite, 6911, {0x5A}, Ok, {}},
        {"read the last byte", Command::FlashRead, 6911, {1}, Ok, {0x5A}},
        {"read beyond the end", Command::FlashRead, 6911, {2}, Refused, {}},
        {"read at the end", Command::FlashRead, 6912, {1}, Refused, {}},
        {"write beyond the end", Command::FlashWrite, 6911, {1, 2}, Refused, {}},
        {"write far away", Command::FlashWrite, 0xFFFF, {1}, Refused, {}},
        {"write nothing", Command::FlashWrite, 0, {}, Refused, {}},
        {"read nothing", Command::FlashRead, 0, {0}, Refused, {}},
        {"read too much", Command::FlashRead, 0, {57}, Refused, {}},
        {"read without a count", Command::FlashRead, 0, {}, Refused, {}},
        {"battery optimisation off", Command::BatteryOptimize, 0, {0}, Ok, {}},
        {"battery optimisation of 2", Command::BatteryOptimize, 0, {2}, Refused, {}},
        {"profile 2", Command::ConfigSelect, 0, {2}, Ok, {}},
        {"it is 2", Command::Config, 0, {}, Ok, {2}},
        {"profile 4", Command::ConfigSelect, 0, {4}, Refused, {}},
        {"still 2", Command::Config, 0, {}, Ok, {2}},
        {"the other profile's flash", Command::FlashRead, 0, {1}, Ok, {1}},
        {"back to 0", Command::ConfigSelect, 0, {0}, Ok, {}},
        {"its flash", Command::FlashRead, 0, {1}, Ok, {8}},
        {"in charge", Command::DriverStatus, 0, {1}, Ok, {}},
        {"in charge twice", Command::DriverStatus, 0, {2}, Refused, {}},
        {"too long an argument", Command::Battery, 0, {1}, Refused, {}},
        {"unknown command", static_cast<Command>(0x77), 0, {}, Refused, {}},
        {"a notice as a request", Command::StatusChanged, 0, {}, Refused, {}},
        {"boot command to a mouse", Command::BootBegin, 0, Bytes(8, 0), Refused, {}},
    };
}

struct ReceiverRow {
    const char *id;
    const char *mouse;
    uint8_t kind, mid, minor, version, battery, address;
};
constexpr ReceiverRow Receivers[] = {
    {"rx1k", "air1", 0, 6, 0x05, 1, 80, 0x01},
    {"rx2k", "air2", 4, 7, 0x06, 2, 60, 0x02},
    {"rx4k", "air4", 1, 8, 0x07, 3, 40, 0x04},
    {"rx8k", "air8", 5, 9, 0x08, 4, 20, 0x08},
};

std::vector<Exchange> receiverRows(const ReceiverRow &row)
{
    const Bytes color = {3, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    return {
        {"identity", Command::Identity, 0, {}, Ok, {18, row.mid, row.kind}},
        {"on line", Command::OnLine, 0, {}, Ok, {1, 0xA1, 0, row.address}},
        {"its version", Command::SlaveVersion, 0, {}, Ok, {row.version, 2}},
        {"no pairing yet", Command::PairStatus, 0, {}, Ok, {0}},
        {"colour", Command::DongleColor, 0, {}, Ok, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"set colour", Command::DongleColorWrite, 0, color, Ok, {}},
        {"it is set", Command::DongleColor, 0, {}, Ok, color},
        {"colour 4", Command::DongleColorWrite, 0, {4, 0, 0, 0, 0, 0, 0, 0, 0, 0}, Refused, {}},
        {"short colour", Command::DongleColorWrite, 0, {1, 0, 0}, Refused, {}},
        {"long range", Command::LongRange, 0, {}, Ok, {0}},
        {"set long range", Command::LongRangeWrite, 0, {1}, Ok, {}},
        {"it is on", Command::LongRange, 0, {}, Ok, {1}},
        {"long range 2", Command::LongRangeWrite, 0, {2}, Refused, {}},
        {"set the bar", Command::DongleBarWrite, 0, {6, 1, 2, 3, 10, 10, 1}, Ok, {}},
        {"the bar", Command::DongleBar, 0, {}, Ok, {6, 1, 2, 3, 10, 10, 1}},
        {"bar mode 7", Command::DongleBarWrite, 0, {7, 1, 2, 3, 4, 5, 1}, Refused, {}},
        {"bar speed 11", Command::DongleBarWrite, 0, {1, 1, 2, 3, 11, 5, 1}, Refused, {}},
        {"set the indicators", Command::IndicatorWrite, 0, {3, 2, 1}, Ok, {}},
        {"the indicators", Command::Indicator, 0, {}, Ok, {3, 2, 1}},
        {"indicator 4", Command::IndicatorWrite, 0, {0, 4, 0}, Refused, {}},
        {"an address for a receiver", Command::PairedAddress, 0, {1, 0, 0xA1, 0, 0}, Refused, {}},
        {"the mouse's boot loader", Command::BootEnter, 0, {wire::TargetMouse}, Refused, {}},
    };
}

} // namespace

TEST_F(EmulatorCommands, MouseOnItsCable)
{
    RawClient client(folder_.path(), "cable");
    walk(client, mouseRows(100, 0x0A));
    walk(client,
         {
             {"identity", Command::Identity, 0, {}, Ok, {18, 6, 3}},
             {"on line", Command::OnLine, 0, {}, Ok, {1, 0xC0, 0xFF, 0xEE}},
             {"no receiver's version", Command::SlaveVersion, 0, {}, Refused, {}},
             {"no long range", Command::LongRange, 0, {}, Refused, {}},
             {"no colour", Command::DongleColor, 0, {}, Refused, {}},
             {"no pairing", Command::PairEnter, 0, {18}, Refused, {}},
             {"the receiver's boot loader", Command::BootEnter, 0, {wire::TargetReceiver}, Refused, {}},
         });
    EXPECT_EQ(emulator_.mouse("cable")->driverStatus, 1);
    EXPECT_EQ(emulator_.mouse("cable")->batteryOptimize, 0);
}

TEST_F(EmulatorCommands, MouseBehindEachReceiver)
{
    for (const ReceiverRow &row : Receivers) {
        SCOPED_TRACE(row.id);
        RawClient client(folder_.path(), row.id);
        walk(client, receiverRows(row));
        walk(client, mouseRows(row.battery, row.minor));
        EXPECT_EQ(emulator_.flash(row.mouse, 0)->ReportRate, 8);
        EXPECT_EQ(emulator_.receiver(row.id)->driverStatus, 1);
        EXPECT_EQ(emulator_.receiver(row.id)->bar.Mode, 6);
    }
}

TEST_F(EmulatorCommands, ReplyCarriesAddressAndSequence)
{
    RawClient client(folder_.path(), "rx1k");
    const auto reply = client.ask(Command::FlashRead, {4}, 0x1234);
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->address(), 0x1234);
    EXPECT_EQ(reply->Length, 4);
    const auto refusal = client.ask(Command::FlashRead, {57}, 0x1234);
    EXPECT_EQ(refusal->Sequence, reply->Sequence + 1);
}

TEST_F(EmulatorCommands, FactoryFlashAsAWhole)
{
    RawClient client(folder_.path(), "cable");
    Bytes image;
    for (std::size_t at = 0; at < FlashSize; at += wire::PayloadSize) {
        const auto count = static_cast<uint8_t>(std::min(wire::PayloadSize, FlashSize - at));
        const Bytes part = payload(client.ask(Command::FlashRead, {count}, static_cast<uint16_t>(at)));
        image.insert(image.end(), part.begin(), part.end());
    }
    const FlashImage factory = emulator::factoryFlash();
    ASSERT_EQ(image.size(), FlashSize);
    EXPECT_EQ(std::memcmp(image.data(), &factory, FlashSize), 0);
    EXPECT_EQ(emulator_.reportCount("cable"), 124U);
    EXPECT_EQ(emulator_.reportCount("cable", Command::FlashRead), 124U);
    EXPECT_EQ(emulator_.reportCount("cable", Command::FlashWrite), 0U);
}

TEST_F(EmulatorCommands, WhatComesAgainIsCountedApart)
{
    RawClient client(folder_.path(), "cable");
    // A host has up to eight on the way at once. Behind eight others a number is a new request's.
    for (const uint8_t number : {7, 7, 7, 8, 7, 9, 10, 11, 12, 13, 14, 8, 7, 15, 7}) {
        const wire::Report read = RawClient::request(Command::FlashRead, number, {1});
        ASSERT_TRUE(client.send(&read, sizeof read) && client.receive());
        const wire::Report other = RawClient::request(Command::OnLine, number);
        ASSERT_TRUE(client.send(&other, sizeof other) && client.receive());
    }
    EXPECT_EQ(emulator_.reportCount("cable", Command::FlashRead), 15U);
    EXPECT_EQ(emulator_.requestCount("cable", Command::FlashRead), 10U);
    EXPECT_EQ(emulator_.requestCount("cable", Command::FlashWrite), 0U);
    EXPECT_EQ(emulator_.requestCount("none", Command::FlashRead), 0U);
}

TEST_F(EmulatorCommands, OffLine)
{
    order("radio air1 off");
    RawClient client(folder_.path(), "rx1k");
    const std::vector<Exchange> rows = {
        {"still known", Command::Identity, 0, {}, Ok, {18, 6, 0}},
        {"off line", Command::OnLine, 0, {}, Ok, {0, 0xA1, 0, 1}},
        {"flash", Command::FlashRead, 0, {1}, OffLine, {}},
        {"write", Command::FlashWrite, 0, {8}, OffLine, {}},
        {"battery", Command::Battery, 0, {}, OffLine, {}},
        {"version", Command::Version, 0, {}, OffLine, {}},
        {"profile", Command::Config, 0, {}, OffLine, {}},
        {"choose", Command::ConfigSelect, 0, {1}, OffLine, {}},
        {"reset", Command::ClearSettings, 0, {}, OffLine, {}},
        {"optimise", Command::BatteryOptimize, 0, {0}, OffLine, {}},
        {"its own version", Command::SlaveVersion, 0, {}, Ok, {1, 2}},
        {"long range", Command::LongRange, 0, {}, Ok, {0}},
        {"in charge", Command::DriverStatus, 0, {1}, Ok, {}},
    };
    walk(client, rows);
    EXPECT_EQ(emulator_.flash("air1")->ReportRate, 1);
}

TEST_F(EmulatorCommands, ReceiverWithoutAMouse)
{
    RawClient client(folder_.path(), "lone");
    walk(client, {
                     {"identity", Command::Identity, 0, {}, Ok, {18, 0, 0}},
                     {"off line", Command::OnLine, 0, {}, Ok, {0, 0xA1, 0, 0x0F}},
                     {"flash", Command::FlashRead, 0, {1}, OffLine, {}},
                     {"version", Command::SlaveVersion, 0, {}, Ok, {5, 2}},
                 });
}

TEST_F(EmulatorCommands, CableTakesTheMouseOffTheAir)
{
    RawClient receiver(folder_.path(), "rx8k");
    order("plug air8");
    RawClient mouse(folder_.path(), "air8");
    EXPECT_EQ(payload(receiver.notice(Command::OnLineChanged)), (Bytes{0, 0xA1, 0, 8}));
    EXPECT_EQ(payload(mouse.ask(Command::OnLine)), (Bytes{1, 0xA1, 0, 8}));
    EXPECT_EQ(payload(mouse.ask(Command::Identity)), (Bytes{18, 9, 3}));
    EXPECT_EQ(status(receiver.ask(Command::FlashRead, {1})), OffLine);
    order("unplug air8");
    EXPECT_EQ(payload(receiver.notice(Command::OnLineChanged)), (Bytes{1, 0xA1, 0, 8}));
    EXPECT_EQ(status(receiver.ask(Command::FlashRead, {1})), Ok);
}

TEST_F(EmulatorCommands, ResetRestoresEveryProfile)
{
    RawClient client(folder_.path(), "rx1k");
    for (uint8_t profile = 0; profile < emulator::ProfileCount; ++profile) {
        ASSERT_EQ(status(client.ask(Command::ConfigSelect, {profile})), Ok);
        ASSERT_EQ(status(client.ask(Command::FlashWrite, {0x55}, 0x300)), Ok);
    }
    ASSERT_EQ(status(client.ask(Command::ClearSettings)), Ok);
    EXPECT_EQ(payload(client.notice(Command::ClearSettings)), Bytes{});
    const FlashImage factory = emulator::factoryFlash();
    for (int profile = 0; profile < emulator::ProfileCount; ++profile) {
        const auto flash = emulator_.flash("air1", profile);
        ASSERT_TRUE(flash);
        EXPECT_EQ(std::memcmp(&*flash, &factory, FlashSize), 0) << profile;
    }
    EXPECT_EQ(payload(client.ask(Command::Config)), Bytes{0});
}

TEST_F(EmulatorCommands, ScreenEchoesReports)
{
    RawClient client(folder_.path(), "cable", wire::ScreenUsagePage);
    Bytes packet = {0x0A, 0x00, 0x10, 0x07, 0xEA, 11, 21, 9, 30, 0, 6};
    ASSERT_TRUE(client.send(packet.data(), packet.size()));
    packet.resize(wire::ReportSize);
    EXPECT_EQ(client.receive(), packet);
    EXPECT_FALSE(RawClient::find(folder_.path(), "rx1k", wire::ScreenUsagePage));
}

TEST_F(EmulatorCommands, InterfacesOfADevice)
{
    const auto plain = RawClient::find(folder_.path(), "cable", wire::MouseUsagePage);
    const auto settings = RawClient::find(folder_.path(), "cable", wire::SettingsUsagePage);
    ASSERT_TRUE(plain && settings);
    EXPECT_EQ(wire::formatBusName(*plain), "1209-0001-010a-0-0001-cable");
    EXPECT_EQ(wire::formatBusName(*settings), "1209-0001-010a-1-ff05-cable");
    const uint16_t products[] = {2, 3, 4, 5};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto name = RawClient::find(folder_.path(), Receivers[i].id, wire::SettingsUsagePage);
        ASSERT_TRUE(name);
        EXPECT_EQ(name->productId, products[i]);
        EXPECT_EQ(name->release, 0x0200 + Receivers[i].version);
    }
}
