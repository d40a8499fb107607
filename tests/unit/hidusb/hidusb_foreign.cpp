// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The layer and a mouse that shares no code with it: a program in another language, written from
// docs/protocol.md alone.
#include "tests/support/ChildProgram.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Messages.h"
#include "tests/support/Records.h"

#include <algorithm>
#include <cstring>
#include <memory>

using namespace support;

namespace
{

class Foreign : public testing::Test
{
protected:
    Foreign() : mouse_({"/usr/bin/env", "python3", FOREIGN_MOUSE, busFolder()})
    {
        messages.clear();
        EXPECT_EQ(mouse_.line(), "ready");
    }
    // The mouse has met nothing that the document forbids.
    ~Foreign() override
    {
        UsbServer_Exit();
        mouse_.closeInput();
        EXPECT_EQ(mouse_.wait(), 0);
    }

    std::string order(const std::string &line) const
    {
        mouse_.write(line + "\n");
        return mouse_.line();
    }
    std::vector<uint8_t> flash() const
    {
        const std::string digits = order("flash");
        std::vector<uint8_t> bytes;
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
            bytes.push_back(static_cast<uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
        return bytes;
    }
    bool holds(const FlashDataMap &wanted) const
    {
        const std::vector<uint8_t> bytes = flash();
        FlashDataMap parsed{};
        if (bytes.size() == FlashSize)
            ProtocolDataParser(bytes.data(), &parsed);
        return std::memcmp(&parsed, &wanted, sizeof parsed) == 0;
    }

    // The payload of the newest message with this code; none: it has not come.
    std::optional<std::vector<uint8_t>> newest(int code, std::size_t size) const
    {
        const auto all = messages.all();
        const auto found = std::find_if(all.rbegin(), all.rend(), [=](const Message &each) {
            return each.code() == code && each.payload.size() == size;
        });
        return found != all.rend() ? std::optional(found->payload) : std::nullopt;
    }
    bool comes(int code, std::size_t size) const
    {
        return eventually([=] { return newest(code, size).has_value(); });
    }
    void load()
    {
        messages.clear();
        UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
        UsbServer_ReadAllFlashData();
        ASSERT_TRUE(comes(8, FlashSize));
        ProtocolDataParser(newest(8, FlashSize)->data(), record.get());
    }

    MessageLog &messages = messageLog<0>();
    const std::string path = busFolder() + "/1209-0001-0105-1-ff05-py";
    std::unique_ptr<FlashDataMap> record = std::make_unique<FlashDataMap>();

private:
    ChildProgram mouse_;
};

} // namespace

TEST_F(Foreign, IsFoundAndAsked)
{
    int32_t count = 5;
    const char *const *found = UsbFinderC_FindHidDevicesByDeviceId("0x1209", "0x0001", 1, 5, &count);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(found[0], path);
    DeviceIdentity identity{};
    // GetDeviceInfo asks once only, and a busy machine may answer too late.
    ASSERT_TRUE(eventually([&] { return (identity = UsbFinderC_GetDeviceInfo(path.c_str(), 0)).Cid != 0; }));
    EXPECT_EQ(identity.Cid, 18);
    EXPECT_EQ(identity.Mid, 6);
    EXPECT_EQ(identity.DeviceKind, 3);
    UsbAttribute attribute{};
    UsbFinderC_GetUsbDeviceAttribute(path.c_str(), &attribute);
    EXPECT_EQ(attribute.Version.get(), 0x0105);
    OnlineAddress address{};
    EXPECT_TRUE(UsbFinderC_GetDeviceOnLineWithUsbAddress(path.c_str(), &address));
    EXPECT_EQ(address.Address[2], 0x33);
    EXPECT_EQ(UsbFinderC_GetVersion(path.c_str()), 0x0105U);
    uint32_t version = 0;
    EXPECT_FALSE(UsbFinderC_GetSlaveVersion(path.c_str(), &version)); // refused: it is no receiver
}

TEST_F(Foreign, IsLoaded)
{
    load();
    EXPECT_EQ(*newest(8, FlashSize), flash());
    EXPECT_EQ(record->ReportRate, 1);
    EXPECT_EQ(record->CurrentDpiStage, 1);
    EXPECT_EQ(record->LiftOffDistance, 3);
    EXPECT_EQ(static_cast<int8_t>(record->AngleSet), -10);
    EXPECT_EQ(record->DpiStages[2].LevelFlags, 0x88);
    EXPECT_EQ(record->LedBarGreen, 20);
    EXPECT_EQ(record->KeySequences[3].Count.get(), 2U);
    EXPECT_EQ(record->KeySequences[3].Events[1].Direction, 1);
    EXPECT_EQ(record->KeySequences[3].Events[1].Kind, 2);
    EXPECT_EQ(record->KeySequences[3].Events[1].Code.get(), 0xCD);
    EXPECT_EQ(record->KeySequences[3].Events[1].DelayMs.get(), 10U);
    const MacroBlock &macro = record->MacroBlocks[4];
    EXPECT_EQ(std::string(macro.Name, macro.NameLength), "hello");
    EXPECT_EQ(macro.Events[0].DelayMs.get(), 20U);
    UsbServer_ReadBatteryLevel();
    ASSERT_TRUE(comes(4, sizeof(BatteryStatus)));
    EXPECT_EQ(newest(4, sizeof(BatteryStatus))->at(0), 77);
    UsbServer_ReadConfig();
    ASSERT_TRUE(comes(14, 1));
    EXPECT_EQ(newest(14, 1)->at(0), 0);
}

TEST_F(Foreign, TakesEdits)
{
    load();
    record->ReportRate = 64;
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] { return flash().at(0) == 64; }));
    EXPECT_TRUE(holds(*record));
    *record = anyRecord(7); // every field and block at once
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] { return holds(*record); }));
    load();
    EXPECT_EQ(*newest(8, FlashSize), flash());
}

TEST_F(Foreign, TellsItsOwnChanges)
{
    load();
    EXPECT_EQ(order("set 00 08"), "ok");
    ASSERT_TRUE(comes(10, sizeof(DeviceStatusChange)));
    EXPECT_EQ(newest(10, sizeof(DeviceStatusChange))->at(offsetof(DeviceStatusChange, ReportRate)), 1);
    UsbServer_ReadReportRate();
    ASSERT_TRUE(comes(8, 1));
    EXPECT_EQ(newest(8, 1)->at(0), 8);
    messages.clear();
    UsbServer_SetCurrentConfig(2);
    ASSERT_TRUE(comes(10, sizeof(DeviceStatusChange)));
    EXPECT_EQ(newest(10, sizeof(DeviceStatusChange))->at(offsetof(DeviceStatusChange, Everything)), 1);
    load();
    EXPECT_EQ(record->ReportRate, 1); // each profile has its own
    UsbServer_SetClearSetting();
    EXPECT_TRUE(comes(9, 0));
    load();
    UsbServer_ReadConfig();
    ASSERT_TRUE(comes(14, 1));
    EXPECT_EQ(newest(14, 1)->at(0), 0);
}
