// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The usage pages of report descriptors: valid ones, truncated ones and random bytes.
#include "device/hidusb/ReportDescriptor.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>

using Bytes = std::vector<uint8_t>;
using Pages = std::vector<uint16_t>;

struct DescriptorRow {
    const char *name;
    Bytes descriptor;
    Pages pages;
};

// A page item is 05 or 06, a collection A1 … C0; 09 is a usage.
static const DescriptorRow Descriptors[] = {
    {"Empty", {}, {}},
    {"OneByteOfPage", {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0xC0}, {0x0001}},
    {"TwoBytesOfPage", {0x06, 0x05, 0xFF, 0x09, 0x01, 0xA1, 0x01, 0xC0}, {0xFF05}},
    {"FourBytesOfPage", {0x07, 0x05, 0xFF, 0x00, 0x00, 0xA1, 0x01, 0xC0}, {0xFF05}},
    {"AnItemOfFourBytes", {0x05, 0x01, 0x27, 0xFF, 0xFF, 0x00, 0xA1, 0x05, 0x0C, 0xA1, 0x01, 0xC0}, {0x000C}},
    {"AnEmptyPageItemChangesNothing", {0x05, 0x0C, 0x04, 0xA1, 0x01, 0xC0}, {0x000C}},
    {"NoPageAtAll", {0xA1, 0x01, 0xC0}, {0x0000}},
    {"APageWithoutACollection", {0x06, 0x05, 0xFF}, {}},
    {"InTheirOrder",
     {0x06, 0x08, 0xFF, 0xA1, 0x01, 0xC0, 0x06, 0x05, 0xFF, 0xA1, 0x01, 0xC0},
     {0xFF08, 0xFF05}},
    {"OnePageForTwo", {0x05, 0x01, 0xA1, 0x01, 0xC0, 0xA1, 0x01, 0xC0}, {0x0001}},
    {"EachPageOnce",
     {0x05, 0x01, 0xA1, 0x01, 0xC0, 0x05, 0x0C, 0xA1, 0x01, 0xC0, 0x05, 0x01, 0xA1, 0x01, 0xC0},
     {0x0001, 0x000C}},
    {"NestedCollectionsDoNotCount",
     {0x05, 0x01, 0xA1, 0x01, 0x05, 0x09, 0xA1, 0x00, 0x81, 0x02, 0xC0, 0xC0},
     {0x0001}},
    {"APageOfANestedItemStaysInForce",
     {0x05, 0x01, 0xA1, 0x01, 0x05, 0x09, 0xC0, 0xA1, 0x01, 0xC0},
     {0x0001, 0x0009}},
    // A parser that took it for a short item would read a page and a collection from its three bytes.
    {"ALongItem", {0xFE, 0x03, 0x00, 0x05, 0x0C, 0xA1, 0x05, 0x01, 0xA1, 0x01, 0xC0}, {0x0001}},
    {"ALongItemThatIsCut",
     {0x05, 0x01, 0xA1, 0x01, 0xC0, 0xFE, 0x30, 0x00, 0x05, 0x0C, 0xA1, 0x01},
     {0x0001}},
    {"ALongItemWithoutItsSize", {0x05, 0x01, 0xA1, 0x01, 0xC0, 0xFE}, {0x0001}},
    {"APageThatIsCut", {0x05, 0x01, 0xA1, 0x01, 0xC0, 0x06, 0x05}, {0x0001}},
    {"ACollectionThatIsCut", {0x05, 0x01, 0xA1}, {}},
    {"MoreEndsThanCollections", {0xC0, 0xC0, 0x05, 0x01, 0xA1, 0x01, 0xC0}, {0x0001}},
};

class Descriptor : public testing::TestWithParam<DescriptorRow>
{
};

TEST_P(Descriptor, GivesItsPages) { EXPECT_EQ(hidusb::usagePages(GetParam().descriptor), GetParam().pages); }

TEST_P(Descriptor, TruncatedItGivesNoOtherPages)
{
    Bytes cut = GetParam().descriptor;
    for (; !cut.empty(); cut.pop_back()) {
        const Pages pages = hidusb::usagePages(cut);
        ASSERT_LE(pages.size(), GetParam().pages.size());
        EXPECT_TRUE(std::equal(pages.begin(), pages.end(), GetParam().pages.begin())) << cut.size();
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Descriptor, testing::ValuesIn(Descriptors),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(DescriptorOfAnyBytes, EndsAndGivesEachPageOnce)
{
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        Bytes bytes(random() % 4097);
        std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<uint8_t>(random()); });
        Pages pages = hidusb::usagePages(bytes);
        std::sort(pages.begin(), pages.end());
        EXPECT_EQ(std::adjacent_find(pages.begin(), pages.end()), pages.end());
    }
}
