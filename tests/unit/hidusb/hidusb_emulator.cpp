// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The layer against the emulator: every fault at many places of a load and of an edit, both upgrades,
// pacing, and a long run of random events after which record and flash are equal.
#include "device/hidusb/Codec.h"
#include "device/hidusb/HIDUsb.h"
#include "emulator/Emulator.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Firmware.h"
#include "tests/support/Messages.h"
#include "tests/support/Records.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

using namespace support;
using wire::Command;

static const char Scenario[] = R"(
usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007
mouse air cid 18 mid 7 version 1.05 battery 80
receiver rx class 8k mouse air version 2.01 address a10001
mouse wired cid 18 mid 8 version 1.0A battery 100
plug rx
plug wired
)";

static std::atomic<int> upgradeResult;

class WithEmulator : public testing::Test
{
protected:
    void SetUp() override
    {
        messages.clear();
        std::string error;
        ASSERT_TRUE(emulator.loadText(Scenario, "scenario", error)) << error;
        ASSERT_TRUE(emulator.start(busFolder(), error)) << error;
        receiver(); // names the vendor, of whose devices alone an upgrade is made
    }
    void TearDown() override
    {
        UsbServer_Exit();
        emulator.stop();
    }

    void order(const std::string &line) { ASSERT_EQ(emulator.order(line), "ok\n") << line; }
    // For orders that may be refused, such as to plug in a device that a fault has not unplugged.
    void maybeOrder(const std::string &line) { emulator.order(line); }

    static std::string pathOf(const char *product)
    {
        int32_t count = 1;
        const char *const *paths = UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", product, &count);
        return count > 0 ? paths[0] : "";
    }
    static std::string receiver() { return pathOf("0005"); }
    static std::string wired() { return pathOf("0001"); }

    static void connect(const std::string &path)
    {
        UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
        UsbServer_SetPCDriverStatus(1);
    }
    // Connects and reads the flash: true when the image came, which is then in `record`. The answer to the
    // version order behind the read marks its end; waiting for it keeps it out of the next load. `patience`
    // is longer than the layer's own limit for a read; where a load may fail it need not be.
    bool load(const std::string &path, std::chrono::seconds patience = std::chrono::seconds(20))
    {
        connect(path);
        messages.clear();
        UsbServer_ReadAllFlashData();
        UsbServer_ReadVersion(); // answered after the read, whether that succeeds or not
        const auto end = std::chrono::steady_clock::now() + patience;
        bool over = false;
        while (!over && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            for (const Message &message : messages.all())
                over = over || message.code() == 18;
        }
        for (const Message &message : messages.all()) {
            if (message.payload.size() != FlashSize)
                continue;
            ProtocolDataParser(message.payload.data(), record.get());
            return true;
        }
        return false;
    }
    // Whether a line of the emulator's list begins so.
    bool listed(const std::string &words)
    {
        return ("\n" + emulator.order("list")).find("\n" + words) != std::string::npos;
    }
    bool flashHolds(const char *mouse) const
    {
        const auto image = const_cast<emulator::Emulator &>(emulator).flash(mouse);
        if (!image)
            return false;
        FlashDataMap held{};
        hidusb::decode(*image, held);
        return std::memcmp(&held, record.get(), sizeof held) == 0;
    }

    emulator::Emulator emulator;
    MessageLog &messages = messageLog<0>();
    std::unique_ptr<FlashDataMap> record = std::make_unique<FlashDataMap>();
};

TEST_F(WithEmulator, LoadsAndEditsByAirAndByCable)
{
    const std::pair<std::string, const char *> devices[] = {{receiver(), "air"}, {wired(), "wired"}};
    uint8_t rate = 2;
    for (const auto &[path, mouse] : devices) {
        // GetDeviceInfo asks once only, and a busy machine may answer too late.
        EXPECT_TRUE(
            eventually([&, &path = path] { return UsbFinderC_GetDeviceInfo(path.c_str(), 0).Cid == 18; }));
        EXPECT_EQ(UsbFinderC_GetDeviceOnLine(path.c_str()), 1);
        ASSERT_TRUE(load(path)) << mouse;
        EXPECT_TRUE(flashHolds(mouse));
        record->ReportRate = rate++;
        ProtocolDataUpdate(record.get());
        EXPECT_TRUE(eventually([&] { return flashHolds(mouse); })) << mouse;
    }
    EXPECT_EQ(emulator.requestCount("wired", Command::FlashWrite), 1U);
    EXPECT_EQ(emulator.requestCount("wired", Command::FlashRead), 124U);
}

TEST_F(WithEmulator, AnyRecordArrivesAndIsReadBack)
{
    ASSERT_TRUE(load(receiver()));
    for (uint32_t seed = 1; seed <= 5; ++seed) {
        const FlashDataMap wanted = anyRecord(seed);
        *record = wanted;
        ProtocolDataUpdate(record.get());
        ASSERT_TRUE(eventually([this] { return flashHolds("air"); })) << "seed " << seed;
        ASSERT_TRUE(load(receiver()));
        EXPECT_EQ(std::memcmp(record.get(), &wanted, sizeof wanted), 0) << "seed " << seed;
    }
}

TEST_F(WithEmulator, LoadsUnderPacing)
{
    order("pace on");
    ASSERT_TRUE(load(receiver()));
    EXPECT_TRUE(flashHolds("air"));
}

TEST_F(WithEmulator, AWriteIsHeldWhileTheRadioIsOff)
{
    ASSERT_TRUE(load(receiver()));
    order("radio air off");
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(receiver().c_str()), 0);
    record->ReportRate = 2;
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] { return emulator.reportCount("rx", Command::FlashWrite) > 0; }));
    EXPECT_FALSE(flashHolds("air"));
    order("radio air on");
    EXPECT_TRUE(eventually([this] { return flashHolds("air"); }));
    EXPECT_EQ(UsbFinderC_GetDeviceOnLine(receiver().c_str()), 1);
}

TEST_F(WithEmulator, ChangesOnTheMouseAreAnnouncedAndRead)
{
    ASSERT_TRUE(load(receiver()));
    messages.clear();
    messages.setHook([](const Message &message) {
        if (message.code() == 10)
            UsbServer_ReadCurrentDPI();
    });
    order("press air dpi");
    // The answer to the last order of the load may come before it.
    Message read;
    ASSERT_TRUE(eventually([this, &read] {
        const auto all = messages.all();
        const auto found =
            std::find_if(all.begin(), all.end(), [](const Message &m) { return m.code() == 8; });
        if (found != all.end())
            read = *found;
        return found != all.end();
    }));
    EXPECT_EQ(read.address(), FlashCurrentStageAddress);
    ASSERT_EQ(read.payload.size(), 1U);
    EXPECT_EQ(read.payload[0], emulator.flash("air")->CurrentDpiStage);
    messages.setHook(nullptr);
}

TEST_F(WithEmulator, AResetEndsWithItsMessageAndFactoryFlash)
{
    ASSERT_TRUE(load(receiver()));
    const FlashDataMap factory = *record;
    *record = anyRecord(3);
    ProtocolDataUpdate(record.get());
    UsbServer_SetClearSetting();
    ASSERT_TRUE(eventually([this] { return messages.size() > 0 && messages.all().back().code() == 9; }));
    ASSERT_TRUE(load(receiver()));
    EXPECT_EQ(std::memcmp(record.get(), &factory, sizeof factory), 0);
}

TEST_F(WithEmulator, AnotherProfileKeepsItsContent)
{
    ASSERT_TRUE(load(receiver()));
    const auto before = emulator.flash("air", 1);
    record->ReportRate = 4;
    ProtocolDataUpdate(record.get());
    UsbServer_SetCurrentConfig(1);
    ProtocolDataUpdate(record.get());
    messages.clear();
    UsbServer_ReadConfig();
    ASSERT_TRUE(eventually([this] { return messages.size() > 0 && messages.all().back().code() == 14; }));
    EXPECT_EQ(messages.all().back().payload[0], 1);
    EXPECT_EQ(emulator.flash("air", 0)->ReportRate, 4);
    const auto after = emulator.flash("air", 1);
    EXPECT_EQ(std::memcmp(&*before, &*after, FlashSize), 0);
}

// ---- Faults

static const char *const FaultKinds[] = {"noreply",  "late 60", "late 400", "doubled", "short", "oversized",
                                         "wrongseq", "flipbit", "refuse",   "unplug",  "radio"};

TEST_F(WithEmulator, AfterEachFaultAtAnyReportOfALoadTheNextLoadIsRight)
{
    for (const char *kind : FaultKinds) {
        for (const int at : {1, 2, 3, 9, 60, 125}) {
            order(std::string("fault rx ") + kind + " at " + std::to_string(at));
            if (load(receiver(), std::chrono::seconds(2))) {
                EXPECT_TRUE(flashHolds("air")) << kind << " at " << at;
            }
            order("fault rx clear");
            maybeOrder("radio air on");
            maybeOrder("plug rx");
            ASSERT_TRUE(load(receiver())) << kind << " at " << at;
            EXPECT_TRUE(flashHolds("air")) << kind << " at " << at;
        }
    }
}

TEST_F(WithEmulator, EachFaultOfAnEditEndsInTheWantedFlashOrOffLine)
{
    for (const char *kind : FaultKinds) {
        ASSERT_TRUE(load(receiver())) << kind;
        order(std::string("fault rx ") + kind + " at 1 command flashwrite");
        record->ReportRate = static_cast<uint8_t>(record->ReportRate + 1);
        record->DebounceTime = static_cast<uint8_t>(record->DebounceTime + 1);
        record->KeyBindings[3].First = static_cast<uint8_t>(record->KeyBindings[3].First + 1);
        ProtocolDataUpdate(record.get());
        const bool settled = eventually(
            [this] { return flashHolds("air") || UsbFinderC_GetDeviceOnLine(receiver().c_str()) == 0; });
        EXPECT_TRUE(settled) << kind;
        order("fault rx clear");
        maybeOrder("radio air on");
        maybeOrder("plug rx");
        ASSERT_TRUE(load(receiver())) << kind;
        EXPECT_TRUE(flashHolds("air")) << kind;
    }
}

TEST_F(WithEmulator, RandomFaultsDelayAnEditButDoNotPreventIt)
{
    ASSERT_TRUE(load(receiver()));
    for (const char *kind : {"noreply", "doubled", "short", "wrongseq", "flipbit"})
        order(std::string("fault rx ") + kind + " random 7 5");
    for (uint8_t value = 1; value <= 15; ++value) {
        record->DebounceTime = value;
        ProtocolDataUpdate(record.get());
        EXPECT_TRUE(eventually([this] {
            UsbFinderC_GetDeviceOnLine(receiver().c_str()); // resumes a suspended writer
            return flashHolds("air");
        })) << int{value};
    }
}

// ---- Leaving

// Whatever is lost on the way: a binding on the mouse plays a macro that it holds.
TEST_F(WithEmulator, LeavingAtALossLeavesNoBindingWithoutItsMacro)
{
    int stored = 0;
    for (uint32_t round = 1; round <= 40; ++round) {
        order("reset air");
        ASSERT_TRUE(load(receiver())) << round;
        order("fault rx noreply random " + std::to_string(round) + " 5 command flashwrite");
        order("fault rx radio random " + std::to_string(round) + " 5 command flashwrite");
        const auto slot = round % KeySlotCount;
        record->MacroBlocks[slot] = anyRecord(round).MacroBlocks[slot];
        record->KeyBindings[slot] = {MacroBlockClass, static_cast<uint8_t>(slot), 1};
        ProtocolDataUpdate(record.get());
        UsbServer_SetPCDriverStatus(0);
        UsbServer_Exit();
        order("fault rx clear");
        order("radio air on");
        FlashDataMap held{};
        hidusb::decode(*emulator.flash("air"), held);
        const bool bound = held.KeyBindings[slot].Class == MacroBlockClass;
        EXPECT_TRUE(!bound ||
                    std::memcmp(&held.MacroBlocks[slot], &record->MacroBlocks[slot], sizeof(MacroBlock)) == 0)
            << round;
        stored += bound ? 1 : 0;
        EXPECT_TRUE(eventually([this] { return emulator.receiver("rx")->driverStatus == 0; })) << round;
    }
    EXPECT_GT(stored, 0);
}

// The binding before and after plays the block of its button: no cut leaves it with a mixture of both.
TEST_F(WithEmulator, ABlockInUseIsNeverTornByACut)
{
    constexpr int Slot = 5;
    const FlashDataMap any[] = {anyRecord(1), anyRecord(2)};
    const auto put = [&](uint8_t playedClass, int version) {
        record->KeyBindings[Slot] = {playedClass, Slot, static_cast<uint8_t>(version)};
        if (playedClass == KeySequenceClass) {
            record->KeySequences[Slot] = any[version].KeySequences[Slot];
        } else {
            record->MacroBlocks[Slot] = any[version].MacroBlocks[Slot];
            record->MacroBlocks[Slot].EventCount = MacroEventCount;
        }
        ProtocolDataUpdate(record.get());
    };
    const auto playedBy = [&](const FlashDataMap &map) {
        const auto bytes = [](const auto &block) {
            return std::string(reinterpret_cast<const char *>(&block), sizeof block);
        };
        switch (map.KeyBindings[Slot].Class) {
        case KeySequenceClass:
            return bytes(map.KeySequences[Slot]);
        case MacroBlockClass:
            return bytes(map.MacroBlocks[Slot]);
        default:
            return std::string();
        }
    };
    const std::pair<uint8_t, unsigned> rebinds[] = {{MacroBlockClass, 9}, {KeySequenceClass, 2}};
    for (const auto &[playedClass, reports] : rebinds) {
        for (const char *kind : {"unplug", "radio", "noreply", "late 400"}) {
            for (unsigned at = 1; at <= reports + 1; ++at) {
                SCOPED_TRACE(std::string(kind) + " at " + std::to_string(at));
                ASSERT_TRUE(load(receiver()));
                put(playedClass, 0);
                ASSERT_TRUE(eventually([this] { return flashHolds("air"); }));
                const std::string before = playedBy(*record);
                const auto written = emulator.requestCount("air", Command::FlashWrite);
                order(std::string("fault rx ") + kind + " at " + std::to_string(at) + " command flashwrite");
                put(playedClass, 1);
                const std::string after = playedBy(*record);
                EXPECT_TRUE(eventually([&, path = receiver()] {
                    return flashHolds("air") || path.empty() || !UsbFinderC_GetDeviceOnLine(path.c_str());
                }));
                FlashDataMap held{};
                hidusb::decode(*emulator.flash("air"), held);
                const std::string played = playedBy(held);
                EXPECT_TRUE(played.empty() || played == before || played == after);
                if (at > reports) {
                    EXPECT_TRUE(flashHolds("air"));
                    EXPECT_LE(emulator.requestCount("air", Command::FlashWrite) - written, reports);
                }
                order("fault rx clear");
                maybeOrder("radio air on");
                maybeOrder("plug rx");
            }
        }
    }
    ASSERT_TRUE(load(receiver()));
    EXPECT_TRUE(flashHolds("air"));
}

// ---- Pairing

struct PairingEnd {
    const char *name;
    const char *before; // the start
    const char *after;
    int result;
};
static const PairingEnd PairingEnds[] = {
    {"a mouse comes", "pairtime rx 60000", "pair air", 3},
    {"none comes in time", "pairtime rx 50", "", 2},
    {"given up", "pairtime rx 60000", "pairfail rx", 2},
    {"unplugged", "", "unplug rx", 2},
    {"refused", "pairrefuse rx on", "", 2},
};

TEST_F(WithEmulator, EachPairingEndsWithItsResult)
{
    for (const PairingEnd &row : PairingEnds) {
        order("plug rx");
        const std::string path = receiver();
        UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
        order(row.before);
        messages.clear();
        const uint64_t before = emulator.reportCount("rx", Command::PairEnter);
        UsbServer_EnterDonglePairOnlyCid(18);
        ASSERT_TRUE(eventually([&] { return emulator.reportCount("rx", Command::PairEnter) > before; }));
        order(row.after);
        const auto result = [this] {
            for (const Message &message : messages.all())
                if (message.code() == 6 && message.payload.at(0) != 1)
                    return int{message.payload.at(0)};
            return 0;
        };
        EXPECT_TRUE(eventually([&result] { return result() != 0; })) << row.name;
        EXPECT_EQ(result(), row.result) << row.name;
    }
}

// ---- A long run

TEST_F(WithEmulator, AfterRandomEventsAndEditsRecordAndFlashAreEqual)
{
    std::mt19937 random(20);
    ASSERT_TRUE(load(receiver()));
    for (int i = 0; i < 1000; ++i) {
        switch (random() % 12) {
        case 0:
            maybeOrder("unplug rx");
            break;
        case 1:
            maybeOrder("radio air off");
            break;
        case 2:
            maybeOrder("plug rx");
            maybeOrder("radio air on");
            connect(receiver());
            UsbServer_ReadAllFlashData();
            break;
        case 3:
            maybeOrder("press air dpi");
            break;
        default:
            record->DpiStages[random() % 8].Red = static_cast<uint8_t>(random());
            record->MacroBlocks[random() % 16].Events[random() % 70].Kind =
                static_cast<uint8_t>(random() % 4);
            ProtocolDataUpdate(record.get());
        }
    }
    maybeOrder("plug rx");
    maybeOrder("radio air on");
    ASSERT_TRUE(load(receiver()));
    EXPECT_TRUE(flashHolds("air"));
    record->ReportRate = 1;
    record->DpiStages[5].Blue = 77;
    ProtocolDataUpdate(record.get());
    EXPECT_TRUE(eventually([this] { return flashHolds("air"); }));
}

// ---- Firmware

static void onUpgrade(const uint8_t *data)
{
    if (data[1] == 2)
        upgradeResult = data[2];
}

// What the caller is told at the end of an upgrade.
static int endOf(const std::vector<uint8_t> &file, int timeoutMs = 5000)
{
    upgradeResult = -1;
    // On a busy machine the search may find the device silent.
    EXPECT_TRUE(eventually([&] { return UsbUpgrade_Start(file.data(), onUpgrade, timeoutMs) != 0; }));
    EXPECT_TRUE(eventually([] { return upgradeResult != -1; }));
    return upgradeResult;
}

// On a busy machine the search may find one silent.
static int32_t bootLoadersFor(const std::vector<uint8_t> &file)
{
    int32_t count = 5;
    UsbUpgradeC_FindBootDevices(file.data(), &count);
    return count;
}

TEST_F(WithEmulator, UpgradesMouseAndReceiver)
{
    struct Row {
        uint8_t target;
        uint8_t mid;
    };
    for (const Row &row : {Row{wire::TargetReceiver, 7}, Row{wire::TargetMouse, 8}}) {
        EXPECT_EQ(endOf(makeFirmware(row.target, 30000, 18, row.mid)), 1) << int{row.target};
    }
    uint32_t version = 0;
    EXPECT_EQ(UsbFinderC_GetSlaveVersion(receiver().c_str(), &version), 1);
    EXPECT_EQ(version, 0x0203U);
    EXPECT_EQ(UsbFinderC_GetVersion(wired().c_str()), 0x0203U);
}

TEST_F(WithEmulator, AFileForAnotherModelIsRefusedAndABootLoaderCanBeFlashedAgain)
{
    order("boot wired enter");
    auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    EXPECT_TRUE(eventually([&] { return bootLoadersFor(file) == 1; }));
    const auto other = makeFirmware(wire::TargetMouse, 3000, 18, 9);
    EXPECT_EQ(UsbUpgrade_Start(other.data(), onUpgrade, 1000), 0);
    order("fault wired refuse at 1 command bootend");
    ASSERT_EQ(endOf(file), 0);
    ASSERT_EQ(endOf(file), 1);
    EXPECT_EQ(UsbFinderC_GetVersion(wired().c_str()), 0x0203U);
}

// The four files differ in the class alone.
TEST_F(WithEmulator, OnlyTheFileForItsClassFitsAReceiver)
{
    const uint8_t classes[] = {1, 2, 4, 8};
    for (const bool inBootLoader : {true, false}) {
        order(std::string("boot rx ") + (inBootLoader ? "enter" : "leave"));
        for (const uint8_t kHz : classes) {
            const auto file = makeFirmware(wire::TargetReceiver, 3000, 18, 7, 0x0203, kHz);
            const int fitting = inBootLoader && kHz == 8 ? 1 : 0;
            EXPECT_TRUE(eventually([&] { return bootLoadersFor(file) == fitting; })) << int{kHz};
            if (kHz != 8) {
                EXPECT_EQ(UsbUpgrade_Start(file.data(), onUpgrade, 1000), 0) << int{kHz};
            }
        }
    }
    EXPECT_EQ(endOf(makeFirmware(wire::TargetReceiver, 3000, 18, 7)), 1);
}

TEST_F(WithEmulator, AReceiverWithoutAMouseIsUpgraded)
{
    order("unpair rx");
    EXPECT_EQ(endOf(makeFirmware(wire::TargetReceiver, 3000, 18, 7)), 1);
    EXPECT_TRUE(listed("rx receiver 8k plugged unpaired version 2.03"));
    order("boot rx broken");
    EXPECT_EQ(endOf(makeFirmware(wire::TargetReceiver, 3000, 18, 7, 0x0204)), 1);
    EXPECT_TRUE(listed("rx receiver 8k plugged unpaired version 2.04"));
}

TEST_F(WithEmulator, AReceiverThatTurnsOutToBeOfAnotherModelIsLeftAsItWas)
{
    order("unpair rx"); // it tells its model in its boot loader alone
    EXPECT_EQ(endOf(makeFirmware(wire::TargetReceiver, 3000, 18, 6)), 0);
    EXPECT_EQ(emulator.reportCount("rx", Command::BootEnter), 1U);
    uint32_t version = 0;
    EXPECT_TRUE(eventually([&] { return UsbFinderC_GetSlaveVersion(receiver().c_str(), &version) == 1; }));
    EXPECT_EQ(version, 0x0201U);
}

TEST_F(WithEmulator, AnEraseMayTakeItsTime)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    for (const char *time : {"0", "300", "1000", "2900"}) {
        order("version wired 1.05");
        order(std::string("erase wired ") + time);
        EXPECT_EQ(endOf(file), 1) << time;
        order("version wired 1.05");
        order("erase wired 0");
        if (std::string(time) != "0")
            order(std::string("fault wired stall ") + time + " at 1 command bootbegin");
        EXPECT_EQ(endOf(file), 1) << time << " without saying that it is busy";
    }
    EXPECT_TRUE(listed("wired mouse plugged radio cid 18 mid 8 version 2.03"));
}

TEST_F(WithEmulator, AMouseWithALowBatteryRefusesAtOnce)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    order("battery wired 5");
    EXPECT_EQ(endOf(file, 60000), 2);
    order("battery wired 50");
    EXPECT_EQ(endOf(file), 1);
}

TEST_F(WithEmulator, WhatFailsBeforeTheEraseLeavesTheDeviceAsItWas)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    order("fault wired refuse at 1 command bootbegin");
    EXPECT_EQ(endOf(file), 0);
    EXPECT_TRUE(listed("wired mouse plugged radio cid 18 mid 8 version 1.0A"))
        << "it is back when this is told";
    EXPECT_EQ(UsbFinderC_GetVersion(wired().c_str()), 0x010AU);
    order("fault wired unplug at 1 command bootbegin");
    EXPECT_EQ(endOf(file), 0);
    order("plug wired");
    EXPECT_EQ(UsbFinderC_GetVersion(wired().c_str()), 0x010AU);
}

TEST_F(WithEmulator, WhatWasAcknowledgedButNotStoredIsNoSuccess)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    for (const char *command : {"bootenter", "bootbegin", "bootdata", "bootend"}) {
        order("boot wired leave");
        order("version wired 1.05");
        order(std::string("fault wired unstored always command ") + command); // the repeats as well
        EXPECT_EQ(endOf(file, 500), 0) << command;
        order("fault wired clear");
        EXPECT_EQ(endOf(file), 1) << command;
    }
}
