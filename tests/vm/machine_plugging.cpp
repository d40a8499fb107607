// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Devices that come, go, return as others and misbehave, on a real kernel. Each test ends with a healthy
// load and an edit, and with no descriptor and no thread left over.
#include "tests/vm/MachineFixture.h"

#include <atomic>
#include <csignal>
#include <future>
#include <sys/wait.h>

using support::eventually;

class Plugging : public MachineTest
{
protected:
    bool loadUntilReport(const std::string &path, uint64_t more)
    {
        log().clear();
        const uint64_t before = emulator_.reportCount("rx8k");
        UsbServerC_Start(path.c_str(), path.c_str(), support::logMessage<0>);
        UsbServer_ReadAllFlashData();
        return eventually([&] { return emulator_.reportCount("rx8k") >= before + more; });
    }
};

TEST_F(Plugging, AWatchHearsOfEachChange)
{
    watch("0005");
    EXPECT_TRUE(watchSees({}));
    for (int i = 0; i < 2; ++i) {
        plug("rx8k");
        EXPECT_TRUE(watchSees({nodeOf("rx8k")}));
        unplug("rx8k");
        EXPECT_TRUE(watchSees({}));
    }
    plug("rx8k");
    expectHealthy("rx8k", "air8");
}

TEST_F(Plugging, TenInARow)
{
    std::string scenario =
        "usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007\n";
    for (int i = 0; i < 10; ++i)
        scenario += "mouse m" + std::to_string(i) + " cid 18 mid 6\n";
    serve(scenario);
    watch("0001");
    for (int i = 0; i < 10; ++i)
        order("plug m" + std::to_string(i));
    settle();
    const std::vector<std::string> all = find("0001");
    EXPECT_EQ(all.size(), 10U);
    EXPECT_TRUE(watchSees(all));
    for (const std::string &path : all)
        EXPECT_EQ(UsbFinderC_GetDeviceInfo(path.c_str(), 0).Mid, 6) << path;
    int32_t count = 5; // no more are wanted
    const char *const *few = UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0001", &count);
    ASSERT_EQ(count, 5);
    EXPECT_TRUE(std::equal(few, few + count, all.begin()));
    for (const char *id : {"m0", "m9"})
        expectHealthy(id, id);
    for (int i = 0; i < 10; ++i)
        order("unplug m" + std::to_string(i));
    settle();
    EXPECT_TRUE(find("0001").empty());
    EXPECT_TRUE(watchSees({}));
}

TEST_F(Plugging, InAndOutWithinAMoment)
{
    watch("0005");
    for (int i = 0; i < 10; ++i) {
        order("plug rx8k");
        ::usleep(static_cast<useconds_t>(1000 * i));
        order("unplug rx8k");
    }
    settle();
    EXPECT_TRUE(find("0005").empty());
    EXPECT_TRUE(watchSees({}));
    order("plug rx8k");
    expectHealthy("rx8k", "air8");
    EXPECT_TRUE(watchSees({nodeOf("rx8k")}));
}

// Nodes that are opened in the very moment in which they come or go.
TEST_F(Plugging, AskedAllTheTimeWhileItComesAndGoes)
{
    watch("0005");
    std::atomic<bool> enough{false};
    std::vector<std::thread> askers;
    for (const char *path : {"/dev/hidraw0", "/dev/hidraw1", "/dev/hidraw2"})
        askers.emplace_back([path, &enough] {
            while (!enough)
                UsbFinderC_GetDeviceInfo(path, 0);
        });
    for (int i = 0; i < 20; ++i) {
        order("plug rx8k");
        if (i % 4 == 0)
            settle();
        ::usleep(static_cast<useconds_t>(7000 * i));
        order("unplug rx8k");
    }
    enough = true;
    for (std::thread &asker : askers)
        asker.join();
    settle();
    EXPECT_TRUE(watchSees({}));
    order("plug rx8k");
    expectHealthy("rx8k", "air8");
    EXPECT_TRUE(watchSees({nodeOf("rx8k")}));
}

TEST_F(Plugging, PulledInTheMiddleOfALoad)
{
    for (const uint64_t reports : {1, 20, 60, 120}) {
        plug("rx8k");
        const std::string path = nodeOf("rx8k");
        ASSERT_TRUE(loadUntilReport(path, reports));
        order("unplug rx8k");
        EXPECT_TRUE(eventually([&] { return UsbFinderC_GetDeviceOnLine(path.c_str()) == 0; })) << reports;
        settle();
        order("plug rx8k");
        expectHealthy("rx8k", "air8");
        unplug("rx8k");
    }
}

TEST_F(Plugging, PulledInABurstOfWrites)
{
    plug("rx8k");
    ASSERT_TRUE(load(nodeOf("rx8k")));
    for (int i = 0; i < 200; ++i) {
        record_->DpiStages[i % 8].Red = static_cast<uint8_t>(i);
        ProtocolDataUpdate(record_.get());
        if (i == 100)
            order("unplug rx8k");
    }
    settle();
    order("plug rx8k");
    expectHealthy("rx8k", "air8");
}

// A removal is known from the read that fails, well before udev has told everybody.
TEST_F(Plugging, AnOpenNodeThatGoesIsAChange)
{
    plug("rx8k");
    ASSERT_TRUE(load(nodeOf("rx8k")));
    watch("0005");
    ASSERT_TRUE(watchSees({nodeOf("rx8k")}));
    // With udev's daemon stopped nothing but the read tells.
    ASSERT_EQ(std::system("pkill -STOP -x systemd-udevd || pkill -STOP udevd"), 0);
    order("unplug rx8k");
    const bool seen = watchSees({});
    ASSERT_EQ(std::system("pkill -CONT -x systemd-udevd || pkill -CONT udevd"), 0);
    EXPECT_TRUE(seen);
    order("plug rx8k");
    expectHealthy("rx8k", "air8");
    EXPECT_TRUE(watchSees({nodeOf("rx8k")}));
}

TEST_F(Plugging, ANodeThatComesBackAsAnotherDevice)
{
    plug("rx8k");
    const std::string path = nodeOf("rx8k");
    ASSERT_TRUE(load(path));
    EXPECT_EQ(find("0005"), std::vector<std::string>{path});
    const FlashDataMap other = flashOf("air4");
    unplug("rx8k");
    plug("rx4k");
    ASSERT_EQ(nodeOf("rx4k"), path);
    EXPECT_TRUE(find("0005").empty());
    EXPECT_EQ(find("0004"), std::vector<std::string>{path});
    edit(4); // of the device that went
    EXPECT_EQ(UsbFinderC_GetDeviceInfo(path.c_str(), 0).Mid, 8);
    const FlashDataMap now = flashOf("air4");
    EXPECT_EQ(std::memcmp(&other, &now, sizeof other), 0);
    expectHealthy("rx4k", "air4");
}

TEST_F(Plugging, AwayAndBackWithoutBeingPulled)
{
    plug("rx8k");
    ASSERT_TRUE(load(nodeOf("rx8k")));
    const auto authorized = usbnodes::folderOf("rx8k") / "authorized";
    watch("0005");
    for (int i = 0; i < 3; ++i) {
        std::ofstream(authorized) << "0" << std::flush;
        ASSERT_TRUE(eventually([] { return usbnodes::present().empty(); }));
        EXPECT_TRUE(find("0005").empty());
        EXPECT_TRUE(watchSees({}));
        std::ofstream(authorized) << "1" << std::flush;
        expectHealthy("rx8k", "air8");
        EXPECT_TRUE(watchSees({nodeOf("rx8k")}));
    }
}

TEST_F(Plugging, AnotherProgramOnTheSameNode)
{
    plug("rx8k");
    const std::string path = nodeOf("rx8k");
    const std::string command = std::string(MACHINE_ASK " ") + path + " 300";
    auto other = std::async(std::launch::async, [&command] { return std::system(command.c_str()); });
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(load(path));
        EXPECT_TRUE(agrees("air8"));
        for (uint8_t value = 0; value < 20; ++value) {
            record_->DpiStages[0].Red = value;
            ProtocolDataUpdate(record_.get());
        }
        EXPECT_TRUE(agrees("air8"));
    }
    EXPECT_EQ(other.get(), 0) << "not all of its answers came";
    expectHealthy("rx8k", "air8");
}

// A test that crashes ends, so that its output is seen and the others run. The one that dies is this test
// too, in a process of its own.
TEST_F(Plugging, AProcessThatDiesWithItsDeviceAndANodeOpenGoes)
{
    plug("rx8k");
    if (std::getenv("DIE_IN_A_LOAD") != nullptr) {
        ASSERT_TRUE(loadUntilReport(nodeOf("rx8k"), 20));
        ::raise(SIGKILL);
    }
    unplug("rx8k");
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = "DIE_IN_A_LOAD=1 exec " + self +
                                " --gtest_filter=Plugging.AProcessThatDiesWithItsDeviceAndANodeOpenGoes";
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
    settle();
    plug("rx8k");
    expectHealthy("rx8k", "air8");
}

class Faults : public MachineTest, public testing::WithParamInterface<const char *>
{
};

TEST_P(Faults, AnswersThatAreNotAsTheyShouldBe)
{
    plug("rx8k");
    for (const int packet : {1, 2, 50, 124}) {
        order(std::string("fault rx8k ") + GetParam() + " at " + std::to_string(packet));
        ASSERT_TRUE(load(nodeOf("rx8k"))) << packet;
        EXPECT_TRUE(agrees("air8"));
        order("fault rx8k clear");
    }
    expectHealthy("rx8k", "air8");
}

INSTANTIATE_TEST_SUITE_P(Kinds, Faults,
                         testing::Values("noreply", "late 220", "doubled", "short", "oversized", "wrongseq",
                                         "flipbit"),
                         [](const auto &row) {
                             const std::string name = row.param;
                             return name.substr(0, name.find(' '));
                         });
