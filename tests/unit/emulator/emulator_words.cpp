// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The words of orders and scenarios, one by one.
#include "emulator/Words.h"

#include <gtest/gtest.h>

using namespace emulator;

TEST(EmulatorWords, Split)
{
    struct Row {
        const char *line;
        std::optional<Words> words;
    };
    const Row rows[] = {
        {"", Words{}},
        {"  \t \r", Words{}},
        {"# all of it", Words{}},
        {"one two", Words{"one", "two"}},
        {"  one\ttwo  # three", Words{"one", "two"}},
        {"one\r", Words{"one"}},
        {"name \"a b\" c", Words{"name", "a b", "c"}},
        {"name \"\"", Words{"name", ""}},
        {"a\"b c\"d", Words{"ab cd"}},
        {"\"# no comment\"", Words{"# no comment"}},
        {"name \"open", std::nullopt},
        {"\"", std::nullopt},
    };
    for (const Row &row : rows)
        EXPECT_EQ(splitWords(row.line), row.words) << row.line;
}

TEST(EmulatorWords, Number)
{
    struct Row {
        const char *text;
        std::optional<uint32_t> value;
    };
    const Row rows[] = {
        {"0", 0},
        {"7", 7},
        {"100", 100},
        {"101", std::nullopt},
        {"0x64", 100},
        {"0xFf", std::nullopt},
        {"0x", std::nullopt},
        {"", std::nullopt},
        {"-1", std::nullopt},
        {"+1", std::nullopt},
        {" 1", std::nullopt},
        {"1 ", std::nullopt},
        {"1a", std::nullopt},
        {"4294967297", std::nullopt},
        {"99999999999999999999", std::nullopt},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parseNumber(row.text, 0, 100), row.value) << row.text;
    EXPECT_EQ(parseNumber("0xffffffff", 0, UINT32_MAX), UINT32_MAX);
    EXPECT_EQ(parseNumber("4", 5, 6), std::nullopt);
}

TEST(EmulatorWords, Hexadecimal)
{
    EXPECT_EQ(parseHex("fF", 2), 255U);
    EXPECT_EQ(parseHex("f", 2), std::nullopt);
    EXPECT_EQ(parseHex("fff", 2), std::nullopt);
    EXPECT_EQ(parseHex("0x", 2), std::nullopt);
    EXPECT_EQ(parseHex("fg", 2), std::nullopt);
    EXPECT_EQ(parseHex("1209", 4), 0x1209U);
}

TEST(EmulatorWords, Version)
{
    EXPECT_EQ(parseVersion("1.0A"), 0x010A);
    EXPECT_EQ(parseVersion("255.ff"), 0xFFFF);
    for (const char *text : {"", ".", "1", "1.", ".05", "1.5", "1.005", "256.00", "1.0g", "a.00", "1.05 "})
        EXPECT_EQ(parseVersion(text), std::nullopt) << text;
    EXPECT_EQ(formatVersion(0x010A), "1.0A");
    EXPECT_EQ(formatVersion(0x0C05), "12.05");
}

TEST(EmulatorWords, AddressSwitchAndId)
{
    EXPECT_EQ(parseAddress("a1B2c3"), (Address{0xA1, 0xB2, 0xC3}));
    EXPECT_EQ(parseAddress("a1b2c"), std::nullopt);
    EXPECT_EQ(parseAddress("a1b2cx"), std::nullopt);
    EXPECT_EQ(formatAddress({0xA1, 0x02, 0xC3}), "a102c3");
    EXPECT_EQ(parseSwitch("on"), true);
    EXPECT_EQ(parseSwitch("off"), false);
    EXPECT_EQ(parseSwitch("On"), std::nullopt);
    EXPECT_TRUE(isDeviceId("rx_1k"));
    EXPECT_TRUE(isDeviceId(std::string(32, 'a')));
    EXPECT_FALSE(isDeviceId(std::string(33, 'a')));
    EXPECT_FALSE(isDeviceId(""));
    for (const char *text : {"Rx", "r-x", "../x", "r x", "r/x", "."})
        EXPECT_FALSE(isDeviceId(text)) << text;
}
