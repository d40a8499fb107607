// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// docs/protocol.md against the code: the commands, the addresses and sizes of the flash, the descriptor.
#include "emulator/Protocol.h"
#include "emulator/usb/Descriptors.h"

#include "device/hidusb/wire/FirmwareFile.h"
#include "device/hidusb/wire/FlashLayout.h"
#include "device/hidusb/wire/Report.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

using namespace emulator;

namespace
{

using Cells = std::vector<std::string>;

// The lines below a heading of the document, up to the next one.
std::vector<std::string> linesBelow(const std::string &heading)
{
    std::ifstream document(PROTOCOL_DOCUMENT);
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
        if (line.compare(0, 1, "#") == 0)
            inside = line == heading;
        else if (inside)
            lines.push_back(line);
    }
    return lines;
}

// The rows of its tables, without headings; code stands without its backticks.
std::vector<Cells> rowsBelow(const std::string &heading)
{
    std::vector<Cells> rows;
    for (std::string line : linesBelow(heading)) {
        if (line.compare(0, 2, "| ") != 0)
            continue;
        line.erase(std::remove(line.begin(), line.end(), '`'), line.end());
        Cells cells;
        std::istringstream stream(line.substr(2));
        for (std::string cell; std::getline(stream, cell, '|');) {
            const std::size_t end = cell.find_last_not_of(' ');
            const std::size_t start = std::min(cell.find_first_not_of(' '), cell.size());
            cells.push_back(cell.substr(start, end == std::string::npos ? 0 : end - start + 1));
        }
        rows.push_back(cells);
    }
    return rows;
}

std::size_t number(const std::string &text) { return std::stoul(text, nullptr, 0); }

struct Field {
    std::size_t flash;
    std::size_t size;
    std::size_t record; // NoRecord: the mouse's own
};
constexpr std::size_t NoRecord = SIZE_MAX;

#define SHARED(first, last)                                                                                  \
    Field { offsetof(FlashImage, first), SPAN_SIZE(FlashImage, first, last), offsetof(FlashDataMap, first) }
#define OWN(field)                                                                                           \
    Field { offsetof(FlashImage, field), sizeof(FlashImage::field), NoRecord }

const std::map<std::string, Field> Fields = {
    {"ReportRate", SHARED(ReportRate, ReportRate)},
    {"DpiStageCount", SHARED(DpiStageCount, DpiStageCount)},
    {"SpareByte3", SHARED(SpareByte3, SpareByte3)},
    {"KFps", SHARED(KFps, KFps)},
    {"CurrentDpiStage", SHARED(CurrentDpiStage, CurrentDpiStage)},
    {"LiftOffDistance to AngleSetValid", SHARED(LiftOffDistance, AngleSetValid)},
    {"Unused11", OWN(Unused11)},
    {"DpiStages", SHARED(DpiStages, DpiStages)},
    {"DpiLedMode to DpiLedEnable", SHARED(DpiLedMode, DpiLedEnable)},
    {"Unused50", OWN(Unused50)},
    {"KeyBindings", SHARED(KeyBindings, KeyBindings)},
    {"Unused84", OWN(Unused84)},
    {"LedBarMode to LedBarEnable", SHARED(LedBarMode, LedBarEnable)},
    {"UnusedA7", OWN(UnusedA7)},
    {"UnusedA9", OWN(UnusedA9)},
    {"MouseOwn",
     {offsetof(FlashImage, MouseOwn), sizeof(FlashImage::MouseOwn), offsetof(FlashDataMap, Untouched17)}},
    {"Gap143", SHARED(Gap143, Gap143)},
    {"UnusedC4", OWN(UnusedC4)},
    {"KeySequences", SHARED(KeySequences, KeySequences)},
    {"MacroBlocks", SHARED(MacroBlocks, MacroBlocks)},
};

#define AT(field)                                                                                            \
    {                                                                                                        \
#field, offsetof(FlashImage, field)                                                                  \
    }
const std::map<std::string, std::size_t> Values = {
    AT(ReportRate),       AT(DpiStageCount),
    AT(SpareByte3),       AT(KFps),
    AT(CurrentDpiStage),  AT(LiftOffDistance),
    AT(DebounceTime),     AT(MotionSync),
    AT(StopCloseTime),    AT(StraightLine),
    AT(RippeControl),     AT(LightRippeControl),
    AT(Performance),      AT(PerformanceOpen),
    AT(ModelChoose),      AT(AngleSet),
    AT(AngleSetValid),    AT(DpiLedMode),
    AT(DpiLedBrightness), AT(DpiLedSpeed),
    AT(DpiLedEnable),     AT(LedBarMode),
    AT(LedBarSpeed),      AT(LedBarBrightness),
    AT(LedBarEnable),     {"LedBarRed, LedBarGreen, LedBarBlue", offsetof(FlashImage, LedBarRed)},
};

} // namespace

TEST(ProtocolDocument, HasTheCommands)
{
    std::size_t told = 0;
    for (const Cells &row : rowsBelow("## Commands")) {
        if (row[0].compare(0, 2, "0x") != 0)
            continue;
        SCOPED_TRACE(row[1]);
        std::string name = row[1];
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        const CommandRow *const known = findCommand(static_cast<uint8_t>(number(row[0])));
        ASSERT_TRUE(known);
        EXPECT_EQ(name, known->name);
        ++told;
    }
    std::size_t all = 0;
    for (int code = 0; code < 256; ++code)
        all += findCommand(static_cast<uint8_t>(code)) != nullptr ? 1 : 0;
    EXPECT_EQ(told, all);
}

TEST(ProtocolDocument, HasTheFlash)
{
    std::size_t end = 0;
    for (const Cells &row : rowsBelow("## The flash")) {
        if (row[0].compare(0, 2, "0x") != 0)
            continue;
        SCOPED_TRACE(row[2]);
        const auto field = Fields.find(row[2]);
        ASSERT_NE(field, Fields.end());
        EXPECT_EQ(number(row[0]), field->second.flash);
        EXPECT_EQ(number(row[0]), end) << "no gap and no overlap";
        EXPECT_EQ(number(row[1]), field->second.size);
        EXPECT_EQ(row[3].empty() ? NoRecord : number(row[3]), field->second.record);
        end = number(row[0]) + number(row[1]);
    }
    EXPECT_EQ(end, FlashSize);
}

TEST(ProtocolDocument, HasTheValues)
{
    std::size_t told = 0;
    for (const Cells &row : rowsBelow("### Values")) {
        if (row[0].compare(0, 2, "0x") != 0)
            continue;
        SCOPED_TRACE(row[1]);
        const auto value = Values.find(row[1]);
        ASSERT_NE(value, Values.end());
        EXPECT_EQ(number(row[0]), value->second);
        EXPECT_FALSE(row[2].empty());
        ++told;
    }
    EXPECT_EQ(told, Values.size());
}

TEST(ProtocolDocument, HasTheHeadOfAFirmwareFile)
{
    const std::map<std::string, std::size_t> places = {
        {"Magic", offsetof(wire::FirmwareHead, Magic)},
        {"FileLength", offsetof(wire::FirmwareHead, FileLength)},
        {"Crc32", offsetof(wire::FirmwareHead, Crc32)},
        {"Version", offsetof(wire::FirmwareHead, Version)},
        {"ReceiverKHz", offsetof(wire::FirmwareHead, ReceiverKHz)},
        {"Target", offsetof(wire::FirmwareHead, Target)},
        {"Cid", offsetof(wire::FirmwareHead, Cid)},
        {"Mid", offsetof(wire::FirmwareHead, Mid)},
        {"BaseName", offsetof(wire::FirmwareHead, BaseName)},
    };
    std::size_t told = 0;
    std::size_t end = 0;
    for (const Cells &row : rowsBelow("## Firmware files")) {
        if (row[0].find_first_not_of("0123456789") != std::string::npos)
            continue;
        SCOPED_TRACE(row[2]);
        EXPECT_EQ(number(row[0]), end);
        end += row[1].empty() ? 0 : number(row[1]);
        const auto place = places.find(row[2]);
        if (place == places.end())
            continue;
        EXPECT_EQ(number(row[0]), place->second);
        ++told;
    }
    EXPECT_EQ(told, places.size());
    EXPECT_EQ(end, sizeof(wire::FirmwareHead));
}

// The bytes at the head of the indented lines.
TEST(ProtocolDocument, HasTheReportDescriptor)
{
    std::vector<uint8_t> described;
    for (const std::string &line : linesBelow("### Descriptors")) {
        if (line.compare(0, 4, "    ") != 0)
            continue;
        std::istringstream words(line);
        for (std::string word; words >> word && word.size() == 2;)
            described.push_back(static_cast<uint8_t>(std::stoul(word, nullptr, 16)));
    }
    const auto usb = describeUsb({{"tx", {0x1209, 0x0001, 0x0102, 1, wire::SettingsUsagePage, "tx"}}});
    EXPECT_EQ(described, usb.faces.at(0).report);
}
