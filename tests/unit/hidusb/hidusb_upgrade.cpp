// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Firmware upgrade: a complete one, one from the boot loader, and each failure.
#include "device/hidusb/HIDUsb.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Firmware.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <memory>

using namespace support;
using wire::Command;

struct UpgradeLog {
    std::mutex mutex;
    std::vector<int> percentages;
    std::vector<int> ends;
    std::function<void()> atEnd;
};

static UpgradeLog &upgradeLog()
{
    static UpgradeLog log;
    return log;
}

static void onUpgrade(const uint8_t *data)
{
    std::function<void()> atEnd;
    {
        const std::lock_guard lock(upgradeLog().mutex);
        EXPECT_EQ(data[0], 7);
        EXPECT_TRUE(data[1] == 1 || data[1] == 2);
        (data[1] == 1 ? upgradeLog().percentages : upgradeLog().ends).push_back(data[2]);
        if (data[1] == 2)
            std::swap(atEnd, upgradeLog().atEnd);
    }
    if (atEnd)
        atEnd();
}

static std::vector<uint8_t> fileFor(uint8_t target, std::size_t size)
{
    return makeFirmware(target, size, 0x1A, 0x03, 0x010A); // the version that a FakeDevice reports
}

class Upgrade : public testing::Test
{
protected:
    Upgrade()
    {
        busFolder();
        int32_t count = 1;
        UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0001", &count); // names the vendor
        const std::lock_guard lock(upgradeLog().mutex);
        upgradeLog().percentages.clear();
        upgradeLog().ends.clear();
        upgradeLog().atEnd = nullptr;
    }

    void plugMouse(uint8_t kind = 2)
    {
        device.reset();
        device = std::make_unique<FakeDevice>(mouseName(Port));
        device->setIdentity({0x1A, 0x03, kind});
    }

    // A boot loader of a mouse that accepts everything; `fault` may answer in its place.
    void plugBootLoader(const Script &fault = nullptr)
    {
        bootLoader.reset();
        blocks.clear();
        bootLoader = std::make_unique<FakeDevice>(bootName(Port));
        bootLoader->setScript([this, fault](const wire::Report &request) -> std::optional<Answers> {
            if (fault) {
                if (auto answers = fault(request))
                    return answers;
            }
            if (request.command() == Command::BootIdentity)
                return Answers{datagram(replyTo(request, &identity, sizeof identity))};
            if (request.command() == Command::BootBegin)
                std::memcpy(&begin, request.Payload, sizeof begin);
            if (request.command() == Command::BootData) {
                const std::lock_guard lock(blocksMutex);
                blocks[request.address()] = {request.Payload, request.Payload + request.Length};
            }
            return Answers{datagram(replyTo(request))};
        });
    }

    std::vector<uint8_t> flashed()
    {
        const std::lock_guard lock(blocksMutex);
        std::vector<uint8_t> bytes;
        for (const auto &[index, block] : blocks)
            bytes.insert(bytes.end(), block.begin(), block.end());
        return bytes;
    }

    bool start(int timeoutMs = 5000) { return UsbUpgrade_Start(firmware.data(), onUpgrade, timeoutMs) != 0; }
    // For the one device that fits: on a busy machine a search may find it silent.
    bool starts(int timeoutMs = 5000)
    {
        return eventually([&] { return start(timeoutMs); });
    }
    bool isFoundAlone(int32_t most = 5)
    {
        return eventually([&] {
            int32_t count = most;
            UsbUpgradeC_FindBootDevices(firmware.data(), &count);
            return count == 1;
        });
    }
    static std::vector<int> ends()
    {
        const std::lock_guard lock(upgradeLog().mutex);
        return upgradeLog().ends;
    }
    static bool endsWith(int result)
    {
        return eventually([] { return !ends().empty(); }) && ends() == std::vector<int>{result};
    }
    bool bootLoaderWas(Command command)
    {
        return eventually([&] { return bootLoader->count(command) > 0; });
    }

    static constexpr const char *Port = "port";
    wire::BootIdentityReply identity{wire::TargetMouse, 0x1A, 0x03, 0};
    std::vector<uint8_t> firmware = fileFor(wire::TargetMouse, 20000);
    std::mutex blocksMutex;
    std::map<int, Datagram> blocks;
    wire::BootBeginRequest begin{};
    std::unique_ptr<FakeDevice> device;
    std::unique_ptr<FakeDevice> bootLoader; // the last members, since their scripts use the others
};

TEST_F(Upgrade, GoesThroughTheBootLoaderAndBack)
{
    plugMouse();
    ASSERT_TRUE(starts());
    ASSERT_TRUE(eventually([this] { return device->count(Command::BootEnter) > 0; }));
    EXPECT_FALSE(start()) << "two at a time";
    device.reset();
    plugBootLoader();
    ASSERT_TRUE(bootLoaderWas(Command::BootEnd));
    EXPECT_EQ(flashed(), firmware);
    EXPECT_EQ(begin.Length.get(), firmware.size());
    EXPECT_EQ(begin.Crc32.get(), crc32(0, firmware.data(), static_cast<uInt>(firmware.size())));
    EXPECT_TRUE(ends().empty());
    bootLoader.reset();
    plugMouse();
    ASSERT_TRUE(endsWith(1));
    const std::lock_guard lock(upgradeLog().mutex);
    const auto &percentages = upgradeLog().percentages;
    EXPECT_TRUE(std::is_sorted(percentages.begin(), percentages.end()));
    EXPECT_EQ(std::adjacent_find(percentages.begin(), percentages.end()), percentages.end()) << "unchanged";
    EXPECT_EQ(percentages.back(), 100);
}

TEST_F(Upgrade, FlashesADeviceInItsBootLoader)
{
    plugBootLoader();
    EXPECT_TRUE(isFoundAlone());
    ASSERT_TRUE(starts());
    ASSERT_TRUE(bootLoaderWas(Command::BootEnd));
    bootLoader.reset();
    plugMouse();
    EXPECT_TRUE(endsWith(1));
    EXPECT_EQ(flashed(), firmware);
}

TEST_F(Upgrade, SurvivesLostAndBusyAnswers)
{
    std::atomic<int> seen{0};
    plugBootLoader([&seen](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() == Command::BootIdentity)
            return std::nullopt;
        const int number = ++seen;
        if (number % 50 == 7)
            return Answers{};
        if (number % 11 == 3)
            return Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Busy))};
        return std::nullopt;
    });
    ASSERT_TRUE(starts());
    ASSERT_TRUE(bootLoaderWas(Command::BootEnd));
    ASSERT_TRUE(eventually([this] { return flashed() == firmware; }));
    // The answer to the last request may be lost as well.
    ASSERT_TRUE(eventually([this] { return bootLoader->requests().back().command() == Command::BootEnd; }));
    bootLoader.reset();
    plugMouse();
    EXPECT_TRUE(endsWith(1));
}

struct FailureRow {
    const char *name;
    Command command;
};
static const FailureRow Failures[] = {
    {"begin", Command::BootBegin},
    {"data", Command::BootData},
    {"end", Command::BootEnd},
};

TEST_F(Upgrade, ARefusalEndsItAndTheBootLoaderIsAskedToLeave)
{
    const FakeDevice healthy(mouseName("healthy")); // must not be taken for the flashed device
    for (const FailureRow &row : Failures) {
        upgradeLog().ends.clear();
        plugBootLoader([&row](const wire::Report &request) -> std::optional<Answers> {
            if (request.command() != row.command)
                return std::nullopt;
            return Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Refused))};
        });
        ASSERT_TRUE(starts()) << row.name;
        EXPECT_TRUE(endsWith(0)) << row.name;
        EXPECT_TRUE(bootLoaderWas(Command::BootLeave)) << row.name;
        EXPECT_EQ(bootLoader->asked(Command::BootLeave), 1U) << row.name;
        bootLoader.reset();
    }
}

TEST_F(Upgrade, AnUnpluggedBootLoaderEndsIt)
{
    std::atomic<bool> enough{false};
    plugBootLoader([&enough](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() != Command::BootData || request.address() < 100)
            return std::nullopt;
        enough = true;
        return Answers{};
    });
    ASSERT_TRUE(starts());
    ASSERT_TRUE(eventually([&enough] { return enough.load(); }));
    bootLoader.reset();
    EXPECT_TRUE(endsWith(0));
}

TEST_F(Upgrade, ARefusedBootEnterIsToldAtOnce)
{
    plugMouse();
    device->setScript([](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() != Command::BootEnter)
            return std::nullopt;
        return Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Refused))};
    });
    ASSERT_TRUE(starts(60000)); // longer than the patience of endsWith()
    EXPECT_TRUE(endsWith(2));
}

TEST_F(Upgrade, AnUnansweredBootEnterIsNoRefusal)
{
    plugMouse();
    device->setScript([](const wire::Report &request) -> std::optional<Answers> {
        return request.command() == Command::BootEnter ? std::make_optional(Answers{}) : std::nullopt;
    });
    ASSERT_TRUE(starts(300));
    EXPECT_TRUE(endsWith(0));
}

TEST_F(Upgrade, OnlyTheChosenDeviceIsFlashed)
{
    plugMouse();
    ASSERT_TRUE(starts());
    ASSERT_TRUE(eventually([this] { return device->count(Command::BootEnter) > 0; }));
    device.reset();
    FakeDevice other(bootName("other"));
    other.setScript([this](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() != Command::BootIdentity)
            return std::nullopt;
        return Answers{datagram(replyTo(request, &identity, sizeof identity))};
    });
    plugBootLoader();
    ASSERT_TRUE(bootLoaderWas(Command::BootEnd));
    bootLoader.reset();
    plugMouse();
    EXPECT_TRUE(endsWith(1));
    EXPECT_EQ(other.count(Command::BootBegin), 0U);
}

TEST_F(Upgrade, AHealthyTwinIsNoProof)
{
    plugBootLoader([](const wire::Report &request) -> std::optional<Answers> {
        return request.command() == Command::BootEnd ? std::make_optional(Answers{}) : std::nullopt;
    });
    FakeDevice twin(mouseName("twin"));
    twin.setIdentity({0x1A, 0x03, 2});
    ASSERT_TRUE(starts(300));
    ASSERT_TRUE(bootLoaderWas(Command::BootEnd));
    bootLoader.reset();
    EXPECT_TRUE(endsWith(0));
}

TEST_F(Upgrade, ADeviceThatComesBackWithAnotherVersionIsAFailure)
{
    firmware = makeFirmware(wire::TargetMouse, 2000, 0x1A, 0x03, 0x010B);
    plugBootLoader();
    ASSERT_TRUE(starts(60000));
    ASSERT_TRUE(bootLoaderWas(Command::BootEnd));
    bootLoader.reset();
    plugMouse(); // its version is 1.0A
    EXPECT_TRUE(endsWith(0));
}

// It has told what it is when it was searched for, then no more.
TEST_F(Upgrade, ABootLoaderThatDoesNotSayWhatItIsIsAskedToLeave)
{
    for (const bool silent : {true, false}) {
        SCOPED_TRACE(silent ? "silent" : "refused");
        upgradeLog().ends.clear();
        std::atomic<int> told{-1}; // the request of the search, which a busy machine may repeat
        plugBootLoader([&](const wire::Report &request) -> std::optional<Answers> {
            int search = -1;
            if (request.command() != Command::BootIdentity ||
                told.compare_exchange_strong(search, request.Sequence) || search == request.Sequence)
                return std::nullopt;
            return silent ? Answers{}
                          : Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Refused))};
        });
        ASSERT_TRUE(eventually([&] {
            told = -1;
            return start(300);
        }));
        EXPECT_TRUE(endsWith(0));
        EXPECT_TRUE(bootLoaderWas(Command::BootLeave));
        EXPECT_EQ(bootLoader->asked(Command::BootLeave), 1U);
        EXPECT_EQ(bootLoader->asked(Command::BootBegin), 0U);
        bootLoader.reset(); // before `told` goes, which its script uses
    }
}

TEST_F(Upgrade, ABootLoaderThatDoesNotComeEndsIt)
{
    plugMouse();
    ASSERT_TRUE(starts(300));
    EXPECT_TRUE(endsWith(0));
}

TEST_F(Upgrade, ADeviceThatDoesNotComeBackEndsIt)
{
    plugBootLoader();
    ASSERT_TRUE(starts(300));
    EXPECT_TRUE(endsWith(0));
}

TEST_F(Upgrade, TheNextUpgradeMayStartFromTheEndCallback)
{
    plugBootLoader([](const wire::Report &request) -> std::optional<Answers> {
        if (request.command() != Command::BootBegin)
            return std::nullopt;
        return Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Refused))};
    });
    std::atomic<int> started{-1};
    {
        const std::lock_guard lock(upgradeLog().mutex);
        upgradeLog().atEnd = [&] { started = starts() ? 1 : 0; };
    }
    ASSERT_TRUE(starts());
    // The second upgrade may end before the call that started it has returned.
    EXPECT_TRUE(eventually([&started] { return started != -1 && ends().size() == 2; }));
    EXPECT_EQ(started, 1);
}

// ---- Upgrades that do not start

TEST_F(Upgrade, NeedsExactlyOneFittingDevice)
{
    EXPECT_FALSE(start()) << "nothing attached";
    plugMouse(4);
    EXPECT_FALSE(start()) << "a receiver does not take a mouse's file";
    plugMouse(2);
    device->setIdentity({0x1A, 0x04, 2});
    EXPECT_FALSE(start()) << "another model";
    device->setIdentity({0x1A, 0x03, 2});
    FakeDevice twin(mouseName("twin"));
    twin.setIdentity({0x1A, 0x03, 2});
    EXPECT_FALSE(start()) << "two of them";
    EXPECT_TRUE(ends().empty());
}

TEST_F(Upgrade, AMousesFileNeedsAWiredKind)
{
    for (const uint8_t kind : {6, 200, 2, 3}) {
        upgradeLog().ends.clear();
        plugMouse(kind);
        const bool wired = kind == 2 || kind == 3;
        EXPECT_EQ(wired ? starts(0) : start(0), wired) << int{kind};
        if (wired) {
            EXPECT_TRUE(endsWith(0));
        }
    }
}

TEST_F(Upgrade, EachReceiverKindTakesItsOwnReceiversFile)
{
    const std::pair<uint8_t, uint8_t> classes[] = {{0, 1}, {4, 2}, {1, 4}, {5, 8}};
    for (const auto &[kind, kHz] : classes) {
        for (const auto &[otherKind, otherKHz] : classes) {
            upgradeLog().ends.clear();
            plugMouse(kind);
            firmware = makeFirmware(wire::TargetReceiver, 1000, 0x1A, 0x03, 0x010A, otherKHz);
            const bool fits = kHz == otherKHz;
            EXPECT_EQ(fits ? starts(0) : start(0), fits) << int{kind} << " " << int{otherKHz};
            if (!fits)
                continue;
            EXPECT_TRUE(endsWith(0));
            EXPECT_TRUE(eventually([this] { return device->count(Command::BootEnter) > 0; }));
            EXPECT_EQ(device->asked(Command::BootEnter), 1U);
        }
    }
}

TEST_F(Upgrade, DamagedFilesFitNothing)
{
    plugBootLoader();
    const auto refused = [this](const char *name) {
        int32_t count = 5;
        UsbUpgradeC_FindBootDevices(firmware.data(), &count);
        EXPECT_EQ(count, 0) << name;
        EXPECT_FALSE(start()) << name;
    };
    const std::vector<uint8_t> good = firmware;
    firmware.back() ^= 1;
    refused("changed");
    firmware = good;
    firmware[0] ^= 1;
    refused("no magic");
    firmware = good;
    firmware[4] = firmware[5] = firmware[6] = firmware[7] = 0xFF;
    refused("length beyond the limit");
    firmware[4] = 100;
    firmware[5] = firmware[6] = firmware[7] = 0;
    refused("shorter than its head");
    firmware = fileFor(209, 1000);
    refused("unknown target");
    firmware = makeFirmware(wire::TargetReceiver, 1000, 0x1A, 0x03, 0x010A, 3);
    refused("unknown class");
    firmware = fileFor(wire::TargetReceiver, 1000);
    refused("the other target");
}

// A device that waits for the others' questions before it answers would be silent in a search one by one.
TEST_F(Upgrade, AllBootLoadersAreAskedAtOnce)
{
    std::mutex mutex;
    bool over = false;
    std::vector<std::pair<FakeDevice *, Datagram>> kept;
    std::vector<std::unique_ptr<FakeDevice>> devices;
    constexpr std::size_t count = 5;
    for (std::size_t i = 0; i < count; ++i) {
        devices.push_back(std::make_unique<FakeDevice>(bootName("boot" + std::to_string(i))));
        devices.back()->setScript(
            [&, here = devices.back().get()](const wire::Report &request) -> std::optional<Answers> {
                const std::lock_guard lock(mutex);
                if (over)
                    return Answers{}; // the others may be gone
                const Datagram answer = datagram(replyTo(request, &identity, sizeof identity));
                const auto again = [here](const auto &each) { return each.first == here; };
                if (std::none_of(kept.begin(), kept.end(), again))
                    kept.emplace_back(here, answer);
                if (kept.size() < count)
                    return Answers{};
                for (const auto &[device, late] : kept) {
                    if (device != here)
                        device->send(late);
                }
                return Answers{answer};
            });
    }
    int32_t found = 0;
    for (int round = 0; round < 20 && found != static_cast<int32_t>(count);
         ++round) { // a busy machine may hide one
        {
            const std::lock_guard lock(mutex);
            kept.clear();
        }
        found = 20;
        UsbUpgradeC_FindBootDevices(firmware.data(), &found);
    }
    EXPECT_EQ(found, static_cast<int32_t>(count));
    const std::lock_guard lock(mutex);
    over = true;
}

TEST_F(Upgrade, OtherMakersDevicesAreNotAsked)
{
    plugBootLoader();
    wire::BusName name = bootName("foreign");
    name.vendorId = 0x1234;
    const FakeDevice foreign(name);
    EXPECT_TRUE(isFoundAlone());
    EXPECT_TRUE(foreign.requests().empty());
}

TEST_F(Upgrade, NullAndOddArgumentsAreAccepted)
{
    int32_t count = 5;
    UsbUpgradeC_FindBootDevices(nullptr, &count);
    EXPECT_EQ(count, 0);
    UsbUpgradeC_FindBootDevices(firmware.data(), nullptr);
    EXPECT_EQ(UsbUpgrade_Start(nullptr, onUpgrade, 1000), 0);
    plugBootLoader();
    const FakeDevice silent(bootName("silent"));
    count = 0;
    UsbUpgradeC_FindBootDevices(firmware.data(), &count);
    EXPECT_EQ(count, 0);
    count = -1;
    UsbUpgradeC_FindBootDevices(firmware.data(), &count);
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(isFoundAlone(1));
}
