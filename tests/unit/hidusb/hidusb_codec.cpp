// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The record and the flash image: golden bytes both ways, random records there and back, invalid images.
#include "device/hidusb/Codec.h"
#include "tests/support/Records.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>

using namespace support;

static std::unique_ptr<FlashDataMap> decoded(const FlashImage &image)
{
    auto record = std::make_unique<FlashDataMap>();
    std::memset(record.get(), 0x5A, sizeof *record); // shows bytes that decode() does not set
    hidusb::decode(image, *record);
    return record;
}

static bool same(const FlashDataMap &a, const FlashDataMap &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// One byte of the record and its place in the flash.
struct Place {
    std::size_t record;
    std::size_t flash;
};

static const Place Places[] = {
    {0, 0x00},    {1, 0x01},    {2, 0x04},     {3, 0x02},     {4, 0x03},   {5, 0x05},   {6, 0x06},
    {7, 0x07},    {8, 0x08},    {9, 0x09},     {10, 0x0A},    {11, 0x0B},  {12, 0x0C},  {13, 0x0D},
    {14, 0x0E},   {15, 0x0F},   {16, 0x10},    {17, 0xB0},    {35, 0xC2},  {36, 0x1C},  {83, 0x4B},
    {84, 0x4C},   {85, 0x4D},   {86, 0x4E},    {87, 0x4F},    {88, 0xA0},  {89, 0xA1},  {91, 0xA3},
    {92, 0xA4},   {93, 0xA5},   {94, 0xA6},    {95, 0x54},    {142, 0x83}, {143, 0xC3}, {144, 0x100},
    {976, 0x300}, {977, 0x301}, {1006, 0x31E}, {1007, 0x31F},
};

TEST(Codec, EachByteHasItsAddress)
{
    for (const Place &place : Places) {
        FlashDataMap record{};
        reinterpret_cast<uint8_t *>(&record)[place.record] = 5;
        FlashImage image{};
        hidusb::encode(record, image);
        FlashImage expected{};
        reinterpret_cast<uint8_t *>(&expected)[place.flash] = 5;
        EXPECT_EQ(std::memcmp(&image, &expected, sizeof image), 0) << "record byte " << place.record;
        EXPECT_TRUE(same(*decoded(expected), record)) << "flash byte " << place.flash;
    }
}

TEST(Codec, EventIsFiveBytes)
{
    FlashDataMap record{};
    record.KeySequences[1].Count.set(2);
    record.KeySequences[1].Events[0] = {0, 2, {{0xB5, 0x00}}, {{10, 0, 0, 0}}};
    record.KeySequences[1].Events[1] = {1, 2, {{0xB5, 0x00}}, {{0x34, 0x12, 0, 0}}};
    FlashImage image{};
    hidusb::encode(record, image);
    const uint8_t expected[] = {2, 0x02, 0xB5, 0x00, 10, 0, 0x82, 0xB5, 0x00, 0x34, 0x12};
    EXPECT_EQ(std::memcmp(reinterpret_cast<const uint8_t *>(&image) + 0x120, expected, sizeof expected), 0);
    EXPECT_TRUE(same(*decoded(image), record));
}

TEST(Codec, MacroHasTheDocumentedLayout)
{
    FlashDataMap record{};
    MacroBlock &macro = record.MacroBlocks[15];
    macro.NameLength = 2;
    std::memcpy(macro.Name, "ab", 2);
    macro.EventCount = 70;
    macro.Events[69] = {1, 4, {{0x01, 0x00}}, {{0xFF, 0xFF, 0, 0}}};
    FlashImage image{};
    hidusb::encode(record, image);
    const auto *block = reinterpret_cast<const uint8_t *>(&image) + 0x300 + 15 * 384;
    EXPECT_EQ(block[0], 2);
    EXPECT_EQ(block[2], 'b');
    EXPECT_EQ(block[31], 70);
    const uint8_t last[] = {0x84, 0x01, 0x00, 0xFF, 0xFF, 0, 0};
    EXPECT_EQ(std::memcmp(block + 377, last, sizeof last), 0);
    EXPECT_TRUE(same(*decoded(image), record));
}

TEST(Codec, AnyRecordComesBack)
{
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        const FlashDataMap record = anyRecord(seed);
        FlashImage image = anyImage(seed);
        hidusb::encode(record, image);
        ASSERT_TRUE(same(*decoded(image), record)) << "seed " << seed;
    }
}

TEST(Codec, EncodingPreservesTheMousesOwnBytes)
{
    const FlashImage before = anyImage(7);
    FlashImage after = before;
    hidusb::encode(anyRecord(8), after);
    const auto *was = reinterpret_cast<const uint8_t *>(&before);
    const auto *is = reinterpret_cast<const uint8_t *>(&after);
    std::size_t kept = 0;
    for (std::size_t at = 0; at < FlashSize; ++at) {
        if (hidusb::flashOwners()[at] == hidusb::Owner::Mouse) {
            EXPECT_EQ(is[at], was[at]) << "address " << at;
            ++kept;
        }
    }
    // 11 + 4 + 28 + 9 + 60 in the first 0x100, 1 in each sequence, 2 in each macro
    EXPECT_EQ(kept, 112U + 16U + 32U);
}

TEST(Codec, ValuesThatTheFlashCannotHoldAreCut)
{
    FlashDataMap record{};
    record.DpiStageCount = 200;
    record.CurrentDpiStage = 9;
    record.KeySequences[0].Count.set(0x12345678);
    record.KeySequences[0].Events[0].DelayMs.set(65536);
    record.KeySequences[0].Events[1].DelayMs.set(0xFFFFFFFF);
    record.KeySequences[0].Events[2].Direction = 7;
    record.MacroBlocks[0].NameLength = 31;
    record.MacroBlocks[0].EventCount = 71;
    FlashImage image{};
    hidusb::encode(record, image);
    EXPECT_EQ(image.DpiStageCount, 8);
    EXPECT_EQ(image.CurrentDpiStage, 7);
    EXPECT_EQ(image.KeySequences[0].Count, 6);
    EXPECT_EQ(image.KeySequences[0].Events[0].DelayMs.get(), 65535);
    EXPECT_EQ(image.KeySequences[0].Events[1].DelayMs.get(), 65535);
    EXPECT_EQ(image.KeySequences[0].Events[2].DirectionAndKind, 0x80);
    EXPECT_EQ(image.MacroBlocks[0].NameLength, 30);
    EXPECT_EQ(image.MacroBlocks[0].EventCount, 70);
}

static void expectValid(const FlashDataMap &record)
{
    EXPECT_LE(record.DpiStageCount, DpiStageLimit);
    EXPECT_LT(record.CurrentDpiStage, DpiStageLimit);
    for (int slot = 0; slot < KeySlotCount; ++slot) {
        EXPECT_LE(record.KeySequences[slot].Count.get(), 6U);
        EXPECT_LE(record.MacroBlocks[slot].NameLength, MacroNameSize);
        EXPECT_LE(record.MacroBlocks[slot].EventCount, MacroEventCount);
        for (const KeyEvent &event : record.MacroBlocks[slot].Events)
            EXPECT_LE(event.Direction, 1);
    }
}

TEST(Codec, InvalidValuesOfTheImageAreCut)
{
    FlashImage erased;
    std::memset(&erased, 0xFF, sizeof erased);
    expectValid(*decoded(erased));
    for (uint32_t seed = 1; seed <= 50; ++seed)
        expectValid(*decoded(anyImage(seed)));
}
