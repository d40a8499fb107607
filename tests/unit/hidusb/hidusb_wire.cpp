// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Names on the emulated bus and the soundness of a report.
#include "device/hidusb/wire/BusName.h"
#include "device/hidusb/wire/Report.h"

#include <cstring>
#include <gtest/gtest.h>

TEST(BusName, ComesBackFromItsText)
{
    const wire::BusName name{0x1209, 0x0005, 0x0103, 1, 0xFF05, "rx8k"};
    EXPECT_EQ(wire::formatBusName(name), "1209-0005-0103-1-ff05-rx8k");
    const auto parsed = wire::parseBusName("1209-0005-0103-1-ff05-rx8k");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->vendorId, 0x1209);
    EXPECT_EQ(parsed->productId, 0x0005);
    EXPECT_EQ(parsed->release, 0x0103);
    EXPECT_EQ(parsed->interfaceNumber, 1);
    EXPECT_EQ(parsed->usagePage, 0xFF05);
    EXPECT_EQ(parsed->serial, "rx8k");
}

TEST(BusName, OtherFilesAreNotInterfaces)
{
    for (const char *text :
         {"", ".", "..", "control", "1209-0005-0103-1-ff05-", "1209-0005-0103-1-ff05",
          "1209-0005-0103-x-ff05-a", "1209-0005-0103-1-FF05-a", "1209-0005-0103-1-ff05-a/b",
          "1209-0005-0103-1-ff05-A", "1209_0005-0103-1-ff05-a",
          "1209-0005-0103-1-ff05-012345678901234567890123456789012"})
        EXPECT_FALSE(wire::parseBusName(text)) << text;
}

TEST(Report, IsSealedByItsLastByte)
{
    wire::Report report{};
    report.Id = wire::ReportId;
    report.CommandCode = 0x08;
    report.Sequence = 0x2A;
    report.setAddress(0x0123);
    report.Length = 1;
    report.Payload[0] = 56;
    wire::seal(report);
    const uint8_t head[] = {0x05, 0x08, 0x2A, 0x01, 0x23, 0x01, 0x00, 0x38};
    EXPECT_EQ(std::memcmp(&report, head, sizeof head), 0);
    EXPECT_TRUE(wire::isSound(&report.Id, sizeof report));
    EXPECT_EQ(wire::checksum(reinterpret_cast<const uint8_t *>("123456789"), 9), 0xF4);
}

TEST(Report, EveryFlippedBitIsDetected)
{
    wire::Report report{};
    report.Id = wire::ReportId;
    wire::seal(report);
    for (std::size_t bit = 0; bit < wire::ReportSize * 8; ++bit) {
        wire::Report flipped = report;
        auto *bytes = reinterpret_cast<uint8_t *>(&flipped);
        bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ (1 << (bit % 8)));
        EXPECT_FALSE(wire::isSound(bytes, sizeof flipped)) << "bit " << bit;
    }
}

TEST(Report, WrongSizesAndLengthsAreUnsound)
{
    wire::Report report{};
    report.Id = wire::ReportId;
    report.Length = wire::PayloadSize + 1;
    wire::seal(report);
    EXPECT_FALSE(wire::isSound(&report.Id, sizeof report));
    report.Length = wire::PayloadSize;
    wire::seal(report);
    EXPECT_TRUE(wire::isSound(&report.Id, sizeof report));
    EXPECT_FALSE(wire::isSound(&report.Id, sizeof report - 1));
    EXPECT_FALSE(wire::isSound(&report.Id, sizeof report + 1));
}
