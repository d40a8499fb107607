// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// An upgrade is cut at each of its packets, in each way that an upgrade can be cut: no device is bricked,
// each is repaired in at most two tries, and what the caller is told is true. One seed runs by default; with
// UPGRADE_CUTS=10000 in the environment, seeds run until that many cuts have been made.
#include "device/hidusb/Finder.h"
#include "device/hidusb/Upgrade.h"
#include "emulator/Emulator.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Firmware.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace support;
using hidusb::UpgradeResult;
using std::chrono::milliseconds;

static const char Scenario[] = R"(
usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007
mouse air cid 18 mid 7
receiver rx class 8k mouse air address a10001
mouse wired cid 18 mid 8
boottimes 1 2
plug rx
plug wired
)";

namespace
{

struct TargetRow {
    const char *id;
    uint8_t target;
    uint8_t mid;
};
constexpr TargetRow Targets[] = {{"rx", wire::TargetReceiver, 7}, {"wired", wire::TargetMouse, 8}};

enum class Effect : uint8_t {
    None, // the upgrade goes on
    Any,  // it ends or goes on
    Ends, // unless the device has the whole image
    Killed,
};

struct CutRow {
    const char *name; // of the fault
    unsigned mostMs;  // 0: it has no time
    Effect effect;
};
constexpr CutRow Cuts[] = {
    {"unplug", 0, Effect::Ends},  {"powercut", 0, Effect::Any}, {"noreply", 0, Effect::None},
    {"late", 150, Effect::None},  {"doubled", 0, Effect::None}, {"flipbit", 0, Effect::None},
    {"stall", 0, Effect::Killed},
};

constexpr uint16_t NewVersion = 0x0203;
constexpr uint64_t PacketsBeforeBlocks = 4; // Identity, BootEnter, BootIdentity, BootBegin
constexpr int NotStarted = -2;
constexpr int Running = -1;
constexpr int Tries = 10; // of what a busy machine may spoil

std::atomic<int> result;

void onUpgrade(const uint8_t *data)
{
    if (data[1] == 2)
        result = data[2];
}

uint64_t blocksOf(const std::vector<uint8_t> &file)
{
    return (file.size() + wire::PayloadSize - 1) / wire::PayloadSize;
}

class UpgradeCuts : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(emulator.loadText(Scenario, "scenario", error)) << error;
        ASSERT_TRUE(emulator.start(busFolder(), error)) << error;
        int32_t most = 1;
        hidusb::findPaths("1209", "0001", 1, wire::SettingsUsagePage, &most); // names the vendor
        times.answer = milliseconds(100);
        times.slow = milliseconds(2000);
        times.askAgain = milliseconds(10);
        times.whole = milliseconds(30000);
    }

    void order(const std::string &line) { ASSERT_EQ(emulator.order(line), "ok\n") << line; }
    std::string wordsOf(const TargetRow &row)
    {
        const std::string state = emulator.order("state");
        const std::size_t begin = state.find(std::string("device=") + row.id + " ");
        return state.substr(begin, state.find('\n', begin) - begin);
    }
    // On the bus as itself, with the new firmware.
    bool isUpgraded(const TargetRow &row)
    {
        const std::string words = wordsOf(row);
        return words.find(" plugged=1 boot=0 version=2.03 ") != std::string::npos && isOnBus(row);
    }
    bool isOnBus(const TargetRow &row)
    {
        for (const emulator::Interface &face : emulator.interfaces()) {
            if (face.device == row.id)
                return true;
        }
        return false;
    }

    // A fault or a busy machine may hide the device from one search, not from the next.
    int upgrade(const TargetRow &row, const std::vector<uint8_t> &file)
    {
        result = Running;
        const auto firmware = hidusb::readFirmware(file.data());
        const auto isUnplugged = [&] { return wordsOf(row).find(" plugged=0 ") != std::string::npos; };
        bool started = false;
        for (int tries = 0; tries < Tries && !started && !isUnplugged(); ++tries) {
            EXPECT_TRUE(eventually([&] { return isOnBus(row) || isUnplugged(); }));
            started = firmware && hidusb::startUpgrade(*firmware, onUpgrade, 500, times);
        }
        EXPECT_TRUE(started || isUnplugged()) << "not found: " << wordsOf(row);
        if (!started)
            return NotStarted;
        EXPECT_TRUE(eventually([] { return result != Running; })) << "no end is reported";
        return result;
    }

    // Makes the device one of the old version, on the bus.
    void restore(const TargetRow &row)
    {
        order(std::string("fault ") + row.id + " clear");
        order(std::string("boot ") + row.id + " leave");
        order(std::string("version ") + row.id + " 1.05");
        order(std::string("plug ") + row.id);
    }

    uint64_t packetsOf(const TargetRow &row, const std::vector<uint8_t> &file)
    {
        restore(row);
        const uint64_t before = emulator.reportCount(row.id);
        EXPECT_EQ(upgrade(row, file), 1);
        EXPECT_TRUE(isUpgraded(row));
        return emulator.reportCount(row.id) - before;
    }

    // The times of these upgrades are short, so a busy machine may use them up: such a cut is made again.
    void cut(const TargetRow &row, const CutRow &kind, uint64_t at, std::mt19937 &random,
             const std::vector<uint8_t> &file, int more = Tries)
    {
        restore(row);
        std::string fault = std::string("fault ") + row.id + " " + kind.name;
        if (kind.effect == Effect::Killed)
            return kill(row, at, file);
        if (kind.mostMs != 0)
            fault += " " + std::to_string(1 + random() % kind.mostMs);
        order(fault + " at " + std::to_string(at) + " " + std::to_string(random()));
        const uint64_t before = emulator.reportCount(row.id);
        const int told = upgrade(row, file);
        const bool hit = wordsOf(row).find(" faults=0 ") != std::string::npos;
        EXPECT_TRUE(hit || emulator.reportCount(row.id) - before < at) << "the fault has not struck";
        const bool isInTime = (told == 1) == isUpgraded(row) && (told == 1 || kind.effect != Effect::None);
        if (!isInTime && told != 1 && more > 0) {
            repair(row, file);
            return cut(row, kind, at, random, file, more - 1);
        }
        struck += hit ? 1 : 0;
        EXPECT_EQ(told == 1, isUpgraded(row)) << "told " << told << ", but: " << wordsOf(row);
        if (kind.effect == Effect::None) {
            EXPECT_EQ(told, 1);
        }
        if (kind.effect == Effect::Ends && at <= PacketsBeforeBlocks + blocksOf(file)) {
            EXPECT_NE(told, 1);
        }
        if (told != 1)
            repair(row, file);
    }

    // The process that upgrades is killed while the device keeps back its answer to packet `at`.
    void kill(const TargetRow &row, uint64_t at, const std::vector<uint8_t> &file)
    {
        const std::string name = busFolder() + "/image";
        std::ofstream(name, std::ios::binary)
            .write(reinterpret_cast<const char *>(file.data()), static_cast<std::streamsize>(file.size()));
        order(std::string("fault ") + row.id + " stall 60000 at " + std::to_string(at));
        const uint64_t before = emulator.reportCount(row.id);
        const char *arguments[] = {UPGRADE_ONCE, name.c_str(), nullptr};
        pid_t child = 0;
        ASSERT_EQ(
            ::posix_spawn(&child, UPGRADE_ONCE, nullptr, nullptr, const_cast<char **>(arguments), environ),
            0);
        bool ended = false;
        EXPECT_TRUE(eventually([&] {
            ended = ::waitpid(child, nullptr, WNOHANG) == child;
            return ended || emulator.reportCount(row.id) - before >= at;
        }));
        if (!ended) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
            ++struck;
        }
        repair(row, file);
    }

    void repair(const TargetRow &row, const std::vector<uint8_t> &file)
    {
        order(std::string("fault ") + row.id + " clear");
        order(std::string("plug ") + row.id);
        int told = 0;
        // On a busy machine answers come too late, and the device's return may be seen too late as well.
        for (int i = 0; i < Tries && told != 1; ++i) {
            ASSERT_TRUE(eventually([&] { return isOnBus(row); }));
            told = upgrade(row, file);
            EXPECT_TRUE(told != 1 || isUpgraded(row)) << "repair, told 1, but: " << wordsOf(row);
        }
        EXPECT_EQ(told, 1) << "not repaired: " << wordsOf(row);
    }

    emulator::Emulator emulator;
    hidusb::UpgradeTimes times;
    uint64_t struck = 0; // faults that happened and processes that were killed before their end
};

unsigned long wantedCuts()
{
    const char *text = std::getenv("UPGRADE_CUTS");
    return text != nullptr ? std::strtoul(text, nullptr, 10) : 1;
}

} // namespace

TEST_F(UpgradeCuts, NoneBricksTheDevice)
{
    const unsigned long wanted = wantedCuts();
    unsigned long made = 0;
    for (uint32_t seed = 1; made < wanted; ++seed) {
        std::mt19937 random(seed);
        for (const TargetRow &row : Targets) {
            const std::size_t size = sizeof(wire::FirmwareHead) + random() % 1000;
            const auto file = makeFirmware(row.target, size, 18, row.mid, NewVersion);
            const uint64_t packets = packetsOf(row, file);
            ASSERT_GT(packets, PacketsBeforeBlocks + blocksOf(file));
            for (const CutRow &kind : Cuts) {
                struck = 0;
                for (uint64_t at = 1; at <= packets && !HasFatalFailure(); ++at) {
                    SCOPED_TRACE(std::string(kind.name) + " of " + row.id + " at packet " +
                                 std::to_string(at) + ", seed " + std::to_string(seed));
                    cut(row, kind, at, random, file);
                }
                // Packets that a busy machine repeats are not there each time.
                EXPECT_GE(struck, PacketsBeforeBlocks + blocksOf(file)) << kind.name << " of " << row.id;
                made += struck;
            }
        }
        ASSERT_FALSE(HasFailure()) << "after " << made << " cuts";
    }
    std::printf("%lu cuts\n", made);
}
