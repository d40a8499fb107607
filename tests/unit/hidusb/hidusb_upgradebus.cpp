// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What an upgrade asks of the bus: a watch before the device leaves, or polling where there is none, and an
// end in any case. The bus is the test's own, in front of the sockets of an emulator.
#include "device/hidusb/Finder.h"
#include "device/hidusb/FirmwareTargets.h"
#include "device/hidusb/SocketBus.h"
#include "device/hidusb/Upgrade.h"
#include "emulator/Emulator.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Firmware.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <shared_mutex>

using namespace support;
using std::chrono::milliseconds;

namespace
{

class OwnBus : public hidusb::Bus
{
public:
    std::vector<hidusb::InterfaceInfo> enumerate() override
    {
        std::vector<hidusb::InterfaceInfo> infos = sockets_.enumerate();
        for (hidusb::InterfaceInfo &info : infos)
            info.port = hasPorts ? info.port : std::string();
        return infos;
    }
    std::unique_ptr<hidusb::ReportPort> open(const std::string &path) override
    {
        {
            const std::shared_lock lock(openMutex_);
            openHook_(path);
        }
        return sockets_.open(path);
    }
    std::unique_ptr<hidusb::ChangeSource> watch() override
    {
        onWatch();
        return watched ? sockets_.watch() : nullptr;
    }

    std::atomic<bool> watched{true};
    std::atomic<bool> hasPorts{true};
    std::function<void()> onWatch = [] {};

    using OpenHook = std::function<void(const std::string &path)>;
    // Returns when no thread is in the former hook. A search does not wait for the threads it has started.
    void setOpenHook(OpenHook hook)
    {
        const std::unique_lock lock(openMutex_);
        openHook_ = std::move(hook);
    }

private:
    hidusb::SocketBus sockets_{busFolder()};
    std::shared_mutex openMutex_;
    OpenHook openHook_ = [](const std::string &) {};
};

OwnBus &ownBus()
{
    static auto *bus = new OwnBus;
    return *bus;
}

// What happens at each opening, until the end of its scope.
class WhileOpening
{
public:
    explicit WhileOpening(OwnBus::OpenHook hook) { ownBus().setOpenHook(std::move(hook)); }
    ~WhileOpening()
    {
        ownBus().setOpenHook([](const std::string &) {});
    }
    WhileOpening(const WhileOpening &) = delete;
    WhileOpening &operator=(const WhileOpening &) = delete;
};

// Devices whose path holds a text open when they may, and within a minute.
class SlowOpening
{
public:
    explicit SlowOpening(std::string part = {}) : part_(std::move(part)) {}
    void letOpen() { allowed_.set_value(); }
    bool opened() const { return opened_; }

private:
    void wait(const std::string &path)
    {
        if (path.find(part_) == std::string::npos)
            return;
        allowedOnce_.wait_for(std::chrono::minutes(1)); // a test that fails may never allow it
        opened_ = true;
    }

    std::string part_;
    std::promise<void> allowed_;
    std::shared_future<void> allowedOnce_ = allowed_.get_future().share();
    std::atomic<bool> opened_{false};
    // The last member, since it waits for those who use the others.
    WhileOpening opening_{[this](const std::string &path) { wait(path); }};
};

std::atomic<int> result;

void onUpgrade(const uint8_t *data)
{
    if (data[1] == 2)
        result = data[2];
}

void nameVendor(const char *id)
{
    int32_t count = 1;
    hidusb::findPaths(id, "0001", 1, wire::SettingsUsagePage, &count);
}

class UpgradeBus : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(emulator.loadText("usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot "
                                      "0006 receiverboot 0007\nmouse wired cid 18 mid 8\n"
                                      "mouse twin cid 18 mid 8\nplug wired\n",
                                      "scenario", error))
            << error;
        ASSERT_TRUE(emulator.start(busFolder(), error)) << error;
    }
    void TearDown() override
    {
        ownBus().watched = true;
        ownBus().onWatch = [] {};
    }

    int upgrade(int timeoutMs, const hidusb::UpgradeTimes &times = {})
    {
        const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
        const auto firmware = hidusb::readFirmware(file.data());
        nameVendor("1209");
        result = -1;
        // On a busy machine the search may find the device silent.
        EXPECT_TRUE(firmware &&
                    eventually([&] { return hidusb::startUpgrade(*firmware, onUpgrade, timeoutMs, times); }));
        EXPECT_TRUE(eventually([] { return result != -1; }));
        return result;
    }

    emulator::Emulator emulator;
};

} // namespace

hidusb::Bus &hidusb::bus() { return ownBus(); }

// The first test of the file: no vendor has been named before it.
TEST_F(UpgradeBus, ADeviceIsAskedOnceItsVendorIsNamed)
{
    wire::BusName name = mouseName("other");
    name.vendorId = 0x4321;
    FakeDevice other(name);
    other.setIdentity({18, 8, 2});
    ASSERT_EQ(emulator.order("unplug wired"), "ok\n");
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    const auto firmware = hidusb::readFirmware(file.data());
    ASSERT_TRUE(firmware);
    EXPECT_FALSE(hidusb::findTarget(*firmware));
    EXPECT_TRUE(other.requests().empty());
    nameVendor("4321");
    EXPECT_TRUE(eventually([&] { return hidusb::findTarget(*firmware).has_value(); }));
}

TEST_F(UpgradeBus, IsWatchedBeforeTheDeviceLeaves)
{
    std::atomic<int> entered{-1};
    ownBus().onWatch = [&] {
        entered = static_cast<int>(emulator.reportCount("wired", wire::Command::BootEnter));
    };
    EXPECT_EQ(upgrade(5000), 1);
    EXPECT_EQ(entered, 0);
}

TEST_F(UpgradeBus, IsPolledWhereItCannotBeWatched)
{
    ownBus().watched = false;
    EXPECT_EQ(upgrade(5000), 1);
}

TEST_F(UpgradeBus, PollingSeesWhatComesAndGoes)
{
    ownBus().watched = false;
    const std::unique_ptr<hidusb::ChangeSource> changes = hidusb::watchOrPoll(ownBus());
    ASSERT_TRUE(changes);
    EXPECT_FALSE(changes->wait(0));
    for (const char *order : {"unplug wired", "plug wired", "boot wired enter"}) {
        emulator.order(order);
        EXPECT_TRUE(changes->wait(10000)) << order;
    }
    EXPECT_FALSE(changes->wait(0)) << "each change counts once";
    changes->interrupt();
    EXPECT_FALSE(changes->wait(-1));
}

TEST_F(UpgradeBus, TheWholeUpgradeHasAnEnd)
{
    hidusb::UpgradeTimes times;
    times.whole = milliseconds(500);
    emulator.order("fault wired busy always command bootdata");
    times.answer = milliseconds(60000); // without an end of the whole this try alone would take longer
    EXPECT_EQ(upgrade(60000, times), 0) << "while blocks are sent";
    emulator.order("fault wired clear");
    emulator.order("boot wired leave");
    emulator.order("fault wired unstored always command bootenter");
    times.answer = hidusb::ReplyTimeout;
    EXPECT_EQ(upgrade(60000, times), 0) << "while the boot loader does not come";
}

TEST_F(UpgradeBus, ADeviceWithoutAPortIsNotFlashed)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    const auto firmware = hidusb::readFirmware(file.data());
    ASSERT_TRUE(firmware);
    nameVendor("1209");
    ownBus().hasPorts = false;
    EXPECT_FALSE(hidusb::findTarget(*firmware));
    ownBus().hasPorts = true;
    EXPECT_TRUE(eventually([&] { return hidusb::findTarget(*firmware).has_value(); }));
}

// Nodes are opened one after the other, so the last of many may open when the search is over.
TEST_F(UpgradeBus, ADeviceThatOpensLateMayBeTheSecondThatFits)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    const auto firmware = hidusb::readFirmware(file.data());
    ASSERT_TRUE(firmware);
    nameVendor("1209");
    SlowOpening twin("-twin");
    ASSERT_EQ(emulator.order("plug twin"), "ok\n");
    EXPECT_FALSE(hidusb::findTarget(*firmware)) << "while the twin opens";
    twin.letOpen();
    ASSERT_TRUE(eventually([&] { return twin.opened(); }));
    ASSERT_EQ(emulator.order("unplug twin"), "ok\n");
    EXPECT_TRUE(eventually([&] { return hidusb::findTarget(*firmware).has_value(); }));
}

// The kernel opens one node at a time, and the search waits for each of them, for longer than for a silent
// device. A busy machine may take that time over a single one, so there are some rounds.
TEST_F(UpgradeBus, ManyDevicesThatNobodyHasOpenDoNotKeepAnUpgradeFromItsStart)
{
    constexpr int Others = 10;
    constexpr milliseconds Opening{60};
    static_assert(Others * Opening > hidusb::SearchTimes().silent);
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    const auto firmware = hidusb::readFirmware(file.data());
    ASSERT_TRUE(firmware);
    nameVendor("1209");
    std::mutex kernel;
    std::atomic<int> opened{0};
    const WhileOpening slowly([&](const std::string &path) {
        const std::lock_guard lock(kernel);
        std::this_thread::sleep_for(Opening);
        opened += path.find("other") != std::string::npos;
    });
    int openedInTime = 0;
    for (int round = 0; round < 5 && openedInTime < Others; ++round) {
        std::vector<std::unique_ptr<FakeDevice>> others;
        for (int i = 0; i < Others; ++i)
            others.push_back(std::make_unique<FakeDevice>(mouseName("other" + std::to_string(i))));
        opened = 0;
        hidusb::findTarget(*firmware);
        openedInTime = opened;
        EXPECT_TRUE(eventually([&] { return opened == Others; }));
    }
    EXPECT_EQ(openedInTime, Others) << "when the search was over";
    // On a busy machine the search may find a device silent.
    EXPECT_TRUE(eventually([&] { return hidusb::findTarget(*firmware).has_value(); }));
}

// However late its devices open, a search ends.
TEST_F(UpgradeBus, ASearchEndsWhateverOpens)
{
    const auto file = makeFirmware(wire::TargetMouse, 3000, 18, 8);
    const auto firmware = hidusb::readFirmware(file.data());
    ASSERT_TRUE(firmware);
    nameVendor("1209");
    SlowOpening each;
    const hidusb::SearchTimes times{std::chrono::hours(1), milliseconds(100)};
    auto search = std::async(std::launch::async, [&] { return hidusb::findTarget(*firmware, times); });
    EXPECT_TRUE(eventually([&] { return search.wait_for(milliseconds(0)) == std::future_status::ready; }));
    EXPECT_FALSE(each.opened());
    each.letOpen();
    EXPECT_TRUE(eventually([&] { return each.opened(); }));
    EXPECT_FALSE(search.get()) << "of a device that was not asked";
}
