// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The sockets: hostile datagrams, many clients, plugging, stale and long folders.
#include "tests/support/EmulatorFixture.h"

#include <atomic>
#include <random>
#include <sys/stat.h>

using namespace emulator;
using wire::Command;
using Bytes = RawClient::Bytes;

namespace
{

class EmulatorBus : public EmulatorFixture
{
};

std::size_t openDescriptors()
{
    std::size_t count = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

} // namespace

TEST_F(EmulatorBus, MalformedDatagramsAreIgnored)
{
    RawClient client(folder_.path(), "rx1k");
    RawClient plain(folder_.path(), "rx1k", wire::MouseUsagePage);
    std::mt19937 random(1);
    for (std::size_t size = 0; size <= 200; ++size) {
        Bytes bytes(size);
        for (uint8_t &byte : bytes)
            byte = static_cast<uint8_t>(random());
        if (size == wire::ReportSize)
            bytes[0] = 0x7F; // whatever its checksum, no report of ours
        ASSERT_TRUE(client.send(bytes.data(), bytes.size())) << size;
        ASSERT_TRUE(plain.send(bytes.data(), bytes.size())) << size;
    }
    // A datagram of nothing has not ended the connection, and none of all has been counted or answered.
    EXPECT_EQ(status(client.ask(Command::Identity)), Ok);
    EXPECT_TRUE(client.notices.empty());
    EXPECT_EQ(emulator_.reportCount("rx1k"), 1U);
}

TEST_F(EmulatorBus, EachFlippedBitMakesAReportUnsound)
{
    RawClient client(folder_.path(), "cable");
    const wire::Report good = RawClient::request(Command::FlashWrite, 9, {8});
    for (std::size_t bit = 0; bit < wire::ReportSize * 8; ++bit) {
        Bytes bytes(reinterpret_cast<const uint8_t *>(&good),
                    reinterpret_cast<const uint8_t *>(&good) + sizeof good);
        bytes[bit / 8] ^= static_cast<uint8_t>(1U << bit % 8);
        ASSERT_TRUE(client.send(bytes.data(), bytes.size()));
    }
    EXPECT_EQ(status(client.ask(Command::Identity)), Ok);
    EXPECT_EQ(emulator_.reportCount("cable"), 1U);
    EXPECT_EQ(emulator_.flash("cable")->ReportRate, 1);
}

TEST_F(EmulatorBus, SoundReportsOfEveryCommandAndLength)
{
    RawClient client(folder_.path(), "rx1k");
    std::mt19937 random(2);
    for (int code = 0; code < 256; ++code) {
        const auto command = static_cast<Command>(code);
        if (command == Command::BootEnter)
            continue; // would end the connection
        for (std::size_t size = 0; size <= wire::PayloadSize; size += 7) {
            Bytes argument(size);
            for (uint8_t &byte : argument)
                byte = static_cast<uint8_t>(random());
            const auto reply = client.ask(command, argument, static_cast<uint16_t>(random()));
            ASSERT_TRUE(reply) << code << " " << size;
            EXPECT_LE(reply->StatusCode, Refused);
        }
        client.notices.clear();
    }
}

TEST_F(EmulatorBus, RepliesGoToEveryClient)
{
    RawClient first(folder_.path(), "rx1k");
    RawClient second(folder_.path(), "rx1k");
    ASSERT_TRUE(second.ask(Command::OnLine)); // both are known to the emulator now
    ASSERT_TRUE(first.receive());
    const auto reply = first.ask(Command::Identity);
    ASSERT_TRUE(reply);
    const auto overheard = second.receive();
    ASSERT_TRUE(overheard);
    EXPECT_EQ(std::memcmp(overheard->data(), &*reply, sizeof *reply), 0);
}

TEST_F(EmulatorBus, DeafClientHoldsUpNobody)
{
    RawClient deaf(folder_.path(), "rx1k");
    RawClient client(folder_.path(), "rx1k");
    for (int i = 0; i < 3000; ++i)
        ASSERT_TRUE(client.ask(Command::Identity)) << i;
    RawClient other(folder_.path(), "rx2k");
    EXPECT_EQ(status(other.ask(Command::Identity)), Ok);
    // It has lost reports, not its connection.
    std::size_t got = 0;
    while (deaf.receive(std::chrono::milliseconds(0)))
        ++got;
    EXPECT_GT(got, 0U);
    EXPECT_LT(got, 3000U);
    EXPECT_EQ(status(deaf.ask(Command::Identity)), Ok);
}

TEST_F(EmulatorBus, PluggingAHundredTimesLeaksNothing)
{
    order("unplug rx1k");
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 100; ++i) {
        order("plug rx1k");
        RawClient first(folder_.path(), "rx1k");
        RawClient second(folder_.path(), "rx1k", wire::MouseUsagePage);
        ASSERT_EQ(status(first.ask(Command::Identity)), Ok);
        order("unplug rx1k");
        ASSERT_TRUE(first.waitForEnd());
        ASSERT_TRUE(second.waitForEnd());
        ASSERT_FALSE(RawClient::find(folder_.path(), "rx1k", wire::SettingsUsagePage));
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(EmulatorBus, ClientsThatLeaveLeakNothing)
{
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 100; ++i) {
        RawClient client(folder_.path(), "rx1k");
        client.post(Command::Identity);
    }
    EXPECT_TRUE(eventually([this] { return emulator_.clientCount() == 0; }));
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(EmulatorBus, OneEmulatorToAFolder)
{
    Emulator second;
    std::string error;
    EXPECT_FALSE(second.start(folder_.path(), error));
    EXPECT_NE(error.find("another emulator"), std::string::npos);
    EXPECT_FALSE(emulator_.start(folder_.path(), error));
    RawClient client(folder_.path(), "rx1k");
    EXPECT_EQ(status(client.ask(Command::Identity)), Ok);
}

TEST_F(EmulatorBus, StopLeavesAnEmptyFolder)
{
    RawClient client(folder_.path(), "rx1k");
    ASSERT_TRUE(client.ask(Command::Identity));
    emulator_.stop();
    EXPECT_TRUE(client.waitForEnd());
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(EmulatorBus, ManyThreadsAtOnce)
{
    std::atomic<int> answers{0};
    std::vector<std::thread> threads;
    for (const char *id : {"rx1k", "rx2k", "cable"}) {
        threads.emplace_back([this, id, &answers] {
            RawClient client(folder_.path(), id);
            for (int i = 0; i < 200; ++i)
                answers += client.ask(Command::FlashRead, {56}, static_cast<uint16_t>(i)) ? 1 : 0;
        });
    }
    for (int i = 0; i < 100; ++i) {
        order(i % 2 == 0 ? "unplug rx8k" : "plug rx8k");
        EXPECT_TRUE(emulator_.flash("air1"));
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(answers, 600);
}

TEST(EmulatorFolder, StaleSocketsAreRemovedAndNothingElse)
{
    TempFolder folder;
    const char *stale[] = {"1209-0001-0105-1-ff05-gone", ".1209-0001-0105-1-ff05-gone", "control"};
    {
        // Sockets whose owner has gone, as after a kill.
        BusFolder bus;
        std::string error;
        ASSERT_TRUE(bus.open(folder.path(), error)) << error;
        for (const char *name : stale)
            ASSERT_TRUE(bus.listen(name, SOCK_SEQPACKET).valid());
    }
    ASSERT_TRUE(std::filesystem::exists(folder / stale[0]));
    std::FILE *file = std::fopen((folder / "1209-0001-0105-1-ff05-file").c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    std::filesystem::create_directory(folder / "keep");
    Emulator emulator;
    std::string error;
    ASSERT_TRUE(emulator.start(folder.path(), error)) << error;
    EXPECT_FALSE(std::filesystem::exists(folder / stale[0]));
    EXPECT_FALSE(std::filesystem::exists(folder / stale[1]));
    EXPECT_TRUE(std::filesystem::exists(folder / "1209-0001-0105-1-ff05-file"));
    EXPECT_TRUE(std::filesystem::exists(folder / "keep"));
}

TEST(EmulatorFolder, LongPath)
{
    TempFolder folder;
    std::string path = folder.path();
    for (int i = 0; i < 5; ++i) {
        path += "/" + std::string(60, 'd');
        std::filesystem::create_directory(path);
    }
    Emulator emulator;
    std::string error;
    ASSERT_TRUE(emulator.loadText(FamilyScenario, "family", error)) << error;
    ASSERT_TRUE(emulator.start(path, error)) << error;
    EXPECT_TRUE(RawClient::find(path, "rx1k", wire::SettingsUsagePage));
    EXPECT_EQ(sendOrder(path, "wake air1"), "ok\n");
    // A listening socket stands behind the name.
    const auto name = RawClient::find(path, "rx1k", wire::SettingsUsagePage);
    EXPECT_TRUE(BusFolder::connect(path, wire::formatBusName(*name), SOCK_SEQPACKET).valid());
}

TEST(EmulatorFolder, FolderThatCannotBe)
{
    Emulator emulator;
    std::string error;
    EXPECT_FALSE(emulator.start("/nonexistent/bus", error));
    EXPECT_EQ(error.compare(0, 17, "/nonexistent/bus:"), 0) << error;
    TempFolder folder;
    std::FILE *file = std::fopen((folder / "file").c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_FALSE(emulator.start(folder / "file", error));
    // A folder that is missing is made, for its owner alone.
    ASSERT_TRUE(emulator.start(folder / "bus", error)) << error;
    struct stat status {
    };
    ASSERT_EQ(::stat((folder / "bus").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}
