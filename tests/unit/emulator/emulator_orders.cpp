// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every order, with good and bad arguments, and the control socket.
#include "tests/support/EmulatorFixture.h"

#include <fstream>
#include <sstream>

using namespace emulator;
using wire::Command;

namespace
{

class EmulatorOrders : public EmulatorFixture
{
protected:
    bool isError(const std::string &line) { return emulator::isErrorAnswer(emulator_.order(line)); }
};

} // namespace

TEST_F(EmulatorOrders, GoodOnes)
{
    const char *good[] = {
        "",
        "   # nothing",
        "list",
        "state",
        "follow air1",
        "follow all",
        "help",
        "unplug rx1k",
        "unplug rx1k",
        "plug rx1k",
        "plug rx1k",
        "radio air1 off",
        "radio air1 on",
        "sleep air1",
        "wake air1",
        "autosleep air1 on",
        "autosleep air1 on 10000",
        "autosleep air1 off",
        "press air1 dpi",
        "press air1 rate",
        "press air1 profile",
        "press air1 light",
        "press air1 bar",
        "battery air1 0",
        "battery air1 100 charging",
        "notify air1 6",
        "set air1 flash 6911 ff",
        "set air1 flash 0x10 00 01 02 fe",
        "show air1 flash 0 6912",
        "profile air1 3",
        "reset air1",
        "pair air1",
        "pairrefuse lone on",
        "pairrefuse lone off",
        "pairtime lone 600000",
        "unpair lone",
        "color rx1k 3",
        "longrange rx1k on",
        "fault rx1k clear",
        "fault cable late 60000 random 4294967295 1 command bootend",
        "count rx1k",
        "count rx1k flashread",
        "version rx1k 9.9F",
        "version air1 0.00",
        "boot rx1k enter",
        "boot rx1k broken",
        "boot rx1k leave",
        "erase rx1k 60000",
        "erase cable 0",
        "boottimes 0 60000",
        "fault rx1k stall 1 at 1",
        "fault rx1k flipbit at 1 4294967295 command bootend",
        "pace on",
        "pace off",
        "log off",
    };
    for (const char *line : good)
        EXPECT_FALSE(isError(line)) << line;
}

TEST_F(EmulatorOrders, BadOnes)
{
    const char *bad[] = {
        "nonsense",
        "List",
        "list all",
        "state air1",
        "follow",
        "follow nobody",
        "help me",
        "plug",
        "plug nobody",
        "plug rx1k rx2k",
        "unplug",
        "unplug nobody",
        "radio air1",
        "radio air1 maybe",
        "radio rx1k on",
        "sleep rx1k",
        "sleep cable",
        "wake nobody",
        "autosleep air1",
        "autosleep air1 yes",
        "autosleep air1 on 0",
        "autosleep air1 on 10001",
        "press air1",
        "press air1 left",
        "press rx1k dpi",
        "battery air1",
        "battery air1 101",
        "battery air1 -1",
        "battery air1 5 full",
        "notify air1 7",
        "notify air1",
        "set air1 flash 0",
        "set air1 flash 6912 00",
        "set air1 flash 6911 00 00",
        "set air1 flash 0 100",
        "set air1 flash 0 0x1",
        "set air1 flash x 00",
        "set air1 name 0 00",
        "set rx1k flash 0 00",
        "show air1 flash 0",
        "show air1 flash 0 0",
        "show air1 flash 1 6912",
        "show air1 flash 6912 1",
        "show air1 name 0 1",
        "profile air1 4",
        "profile air1 x",
        "reset rx1k",
        "pair rx1k",
        "pairfail air1",
        "pairfail rx1k",
        "pairrefuse air1 on",
        "pairrefuse lone",
        "pairtime air1 10",
        "pairtime lone 0",
        "pairtime lone 600001",
        "unpair air1",
        "color air1 1",
        "color rx1k 4",
        "longrange rx1k",
        "longrange rx1k 1",
        "count nobody",
        "count rx1k nothing",
        "version rx1k 1",
        "version nobody 1.00",
        "boot rx1k",
        "boot rx1k stay",
        "erase rx1k",
        "erase rx1k 60001",
        "erase nobody 1",
        "boottimes 1",
        "boottimes 1 60001",
        "fault rx1k stall at 1",
        "fault rx1k flipbit at 1 seed",
        "pace",
        "pace fast",
        "log maybe",
        "quit now",
        "show \"air1",
    };
    const std::string before = emulator_.order("list");
    for (const char *line : bad) {
        const std::string answer = emulator_.order(line);
        EXPECT_EQ(answer.compare(0, 6, "error "), 0) << line;
        EXPECT_EQ(std::count(answer.begin(), answer.end(), '\n'), 1) << line;
    }
    EXPECT_EQ(emulator_.order("list"), before);
}

TEST_F(EmulatorOrders, ShowFlash)
{
    order("set air1 flash 0x4C 0A ff 01");
    EXPECT_EQ(emulator_.order("show air1 flash 0x4c 4"), "004c: 0a ff 01 01\nok\n");
    EXPECT_EQ(emulator_.order("show air1 flash 0x40 17"),
              "0040: 9f 9f 00 ff 80 00 ef ef 00 ff ff ff 0a ff 01 01\n0050: 00\nok\n");
}

TEST_F(EmulatorOrders, ListShowsStates)
{
    order("radio air1 off");
    order("sleep air2");
    order("battery air4 33 charging");
    order("boot cable enter");
    const std::string list = emulator_.order("list");
    const char *parts[] = {
        "rx1k receiver 1k plugged offline version 2.01 address a10001 color 1 longrange 0\n",
        "rx4k receiver 4k plugged online",
        "lone receiver 1k plugged unpaired",
        "air1 mouse unplugged noradio cid 18 mid 6 version 1.05 address a10001 profile 0 battery 80",
        "air2 mouse unplugged radio asleep",
        "battery 33 charging",
        "cable mouse plugged boot",
    };
    for (const char *part : parts)
        EXPECT_NE(list.find(part), std::string::npos) << part << "\n" << list;
}

TEST_F(EmulatorOrders, StateIsForPrograms)
{
    order("radio air1 off");
    order("sleep air2");
    order("battery air4 33 charging");
    order("boot cable enter");
    order("fault rx4k late 5 always");
    order("fault rx4k refuse at 2");
    order("press air4 dpi");
    order("press air4 rate");
    order("profile air8 2");
    RawClient client(folder_.path(), "rx4k");
    order("pairtime rx4k 600000");
    ASSERT_EQ(status(client.ask(Command::PairEnter, {18})), Ok);
    order("pairtime rx4k 500");
    order("pairrefuse rx4k on");
    order("pace on");
    const std::string state = emulator_.order("state");
    const char *lines[] = {
        "pace=1 log=0\n",
        "device=rx1k kind=receiver plugged=1 boot=0 version=2.01 faults=0 online=0 class=1k address=a10001 "
        "pairing=0 pairrefuse=0 pairtime=60000\n",
        "device=rx4k kind=receiver plugged=1 boot=0 version=2.03 faults=2 online=1 class=4k address=a10004 "
        "pairing=1 pairrefuse=1 pairtime=500\n",
        "device=air1 kind=mouse plugged=0 boot=0 version=1.05 faults=0 online=0 radio=0 asleep=0 battery=80 ",
        "device=air2 kind=mouse plugged=0 boot=0 version=1.06 faults=0 online=0 radio=1 asleep=1 ",
        "faults=0 online=1 radio=1 asleep=0 battery=33 charging=1 profile=0 stage=2 stages=6 rate=2000 "
        "pairing=0 address=a10004 name=\"\"\n",
        "battery=20 charging=0 profile=2 ",
        "device=cable kind=mouse plugged=1 boot=1 version=1.0A faults=0 online=0 ",
    };
    for (const char *line : lines)
        EXPECT_NE(state.find(line), std::string::npos) << line << "\n" << state;
}

// What a follower gets up to a text; what came when the text does not.
static std::string readUntil(const FileDescriptor &socket, const std::string &end)
{
    std::string text;
    char bytes[4096];
    while (text.find(end) == std::string::npos) {
        pollfd readable{socket.get(), POLLIN, 0};
        if (::poll(&readable, 1, 10000) != 1)
            break;
        const ssize_t size = ::recv(socket.get(), bytes, sizeof bytes, 0);
        if (size <= 0)
            break;
        text.append(bytes, static_cast<std::size_t>(size));
    }
    return text;
}

static FileDescriptor follower(const std::string &folder, const std::string &what)
{
    FileDescriptor socket = BusFolder::connect(folder, "control", SOCK_STREAM);
    const std::string order = "follow " + what + "\n";
    EXPECT_EQ(::send(socket.get(), order.data(), order.size(), 0), static_cast<ssize_t>(order.size()));
    EXPECT_EQ(readUntil(socket, "\n"), "ok\n");
    return socket;
}

TEST_F(EmulatorOrders, FollowStreamsReports)
{
    const FileDescriptor one = follower(folder_.path(), "rx2k");
    const FileDescriptor all = follower(folder_.path(), "all");
    RawClient first(folder_.path(), "rx1k");
    RawClient second(folder_.path(), "rx2k");
    ASSERT_TRUE(first.ask(Command::Identity));
    ASSERT_TRUE(second.ask(Command::Battery));
    const std::string logged = readUntil(one, "<- rx2k battery");
    EXPECT_NE(logged.find("-> rx2k battery 05 04 01"), std::string::npos) << logged;
    EXPECT_EQ(logged.find("rx1k"), std::string::npos) << logged;
    const std::string everything = readUntil(all, "<- rx2k battery");
    EXPECT_NE(everything.find("-> rx1k identity"), std::string::npos) << everything;
    // A follower may order meanwhile.
    ASSERT_EQ(::send(one.get(), "radio air1 off\n", 15, 0), 15);
    EXPECT_NE(readUntil(one, "ok\n").find("ok\n"), std::string::npos);
    EXPECT_FALSE(emulator_.mouse("air1")->radio);
}

TEST_F(EmulatorOrders, FollowEndsWithItsConnection)
{
    follower(folder_.path(), "all").reset();
    RawClient client(folder_.path(), "rx1k");
    ASSERT_TRUE(client.ask(Command::Identity));
    // An order that did not come by a connection has nobody to stream to, nor has the next one that does.
    order("follow all");
    const FileDescriptor socket = BusFolder::connect(folder_.path(), "control", SOCK_STREAM);
    ASSERT_EQ(::send(socket.get(), "wake air1\n", 10, 0), 10);
    ASSERT_EQ(readUntil(socket, "\n"), "ok\n");
    ASSERT_TRUE(client.ask(Command::Identity));
    ASSERT_EQ(::send(socket.get(), "wake air1\n", 10, 0), 10);
    EXPECT_EQ(readUntil(socket, "\n"), "ok\n");
}

TEST_F(EmulatorOrders, SlowFollowerLosesLinesAndHoldsUpNobody)
{
    const FileDescriptor slow = follower(folder_.path(), "rx1k");
    RawClient client(folder_.path(), "rx1k");
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(client.ask(Command::Identity)) << i;
    // It fetches now, and the next line that has room tells what it has missed.
    std::string text;
    for (int i = 0; i < 500 && text.find(" lost\n") == std::string::npos; ++i) {
        ASSERT_TRUE(client.ask(Command::Identity));
        text += readUntil(slow, "<- rx1k");
    }
    EXPECT_NE(text.find("\n-- "), std::string::npos);
}

TEST_F(EmulatorOrders, CountOrder)
{
    RawClient client(folder_.path(), "rx1k");
    ASSERT_TRUE(client.ask(Command::Identity));
    ASSERT_TRUE(client.ask(Command::FlashRead, {1}));
    EXPECT_EQ(emulator_.order("count rx1k"), "2\nok\n");
    EXPECT_EQ(emulator_.order("count rx1k flashread"), "1\nok\n");
    EXPECT_EQ(emulator_.order("count rx2k"), "0\nok\n");
}

TEST_F(EmulatorOrders, ControlSocket)
{
    EXPECT_EQ(sendOrder(folder_.path(), "radio air1 off"), "ok\n");
    EXPECT_FALSE(emulator_.mouse("air1")->radio);
    EXPECT_EQ(sendOrder(folder_.path(), "radio air1 maybe"), "error wanted: on or off\n");
    const auto flash = sendOrder(folder_.path(), "show air1 flash 0 6912");
    ASSERT_TRUE(flash);
    EXPECT_EQ(std::count(flash->begin(), flash->end(), '\n'), 433);
    EXPECT_EQ(sendOrder(folder_.path() + "/nowhere", "list"), std::nullopt);
}

TEST_F(EmulatorOrders, ControlTakesSeveralLinesAndPieces)
{
    const FileDescriptor socket = BusFolder::connect(folder_.path(), "control", SOCK_STREAM);
    ASSERT_TRUE(socket.valid());
    const std::string pieces[] = {"press ai", "r1 dpi\npress air1 dpi\nbat", "tery air1 9\n"};
    for (const std::string &piece : pieces)
        ASSERT_EQ(::send(socket.get(), piece.data(), piece.size(), 0), static_cast<ssize_t>(piece.size()));
    std::string answer;
    char byte = 0;
    while (answer != "ok\nok\nok\n" && ::recv(socket.get(), &byte, 1, 0) == 1)
        answer += byte;
    EXPECT_EQ(answer, "ok\nok\nok\n");
    EXPECT_EQ(emulator_.flash("air1")->CurrentDpiStage, 3);
    EXPECT_EQ(emulator_.mouse("air1")->battery, 9);
}

TEST_F(EmulatorOrders, ControlEndsAnEndlessLine)
{
    const FileDescriptor socket = BusFolder::connect(folder_.path(), "control", SOCK_STREAM);
    const std::string piece(4096, 'x');
    while (::send(socket.get(), piece.data(), piece.size(), MSG_NOSIGNAL) > 0) {
    }
    EXPECT_EQ(sendOrder(folder_.path(), "wake air1"), "ok\n");
}

TEST_F(EmulatorOrders, WhoDoesNotFetchAnswersHoldsUpNobody)
{
    const FileDescriptor socket = BusFolder::connect(folder_.path(), "control", SOCK_STREAM);
    const std::string order = "show air1 flash 0 6912\n";
    for (int i = 0; i < 100; ++i)
        (void)::send(socket.get(), order.data(), order.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    EXPECT_EQ(sendOrder(folder_.path(), "wake air1"), "ok\n");
    RawClient client(folder_.path(), "rx1k");
    EXPECT_EQ(status(client.ask(Command::Identity)), Ok);
}

TEST_F(EmulatorOrders, QuitEndsServing)
{
    EXPECT_EQ(sendOrder(folder_.path(), "quit"), "ok\n");
    pollfd ended{emulator_.endDescriptor(), POLLIN, 0};
    ASSERT_EQ(::poll(&ended, 1, 20000), 1);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
    // What the devices hold can still be looked at, and a new start serves it again.
    EXPECT_EQ(emulator_.flash("air1")->ReportRate, 1);
    EXPECT_EQ(emulator_.order("press air1 rate"), "ok\n");
    emulator_.stop();
    std::string error;
    ASSERT_TRUE(emulator_.start(folder_.path(), error)) << error;
    RawClient client(folder_.path(), "rx1k");
    EXPECT_EQ(payload(client.ask(Command::FlashRead, {1})), RawClient::Bytes{8});
}

TEST(EmulatorLog, ShowsReportsWithTheirDirection)
{
    TempFolder folder;
    std::FILE *file = std::fopen((folder / "log").c_str(), "w+");
    ASSERT_NE(file, nullptr);
    {
        Emulator emulator(file);
        std::string error;
        ASSERT_TRUE(emulator.loadText(FamilyScenario, "family", error)) << error;
        ASSERT_TRUE(emulator.start(folder / "bus", error)) << error;
        RawClient client(folder / "bus", "rx1k");
        ASSERT_TRUE(client.ask(wire::Command::OnLine));
        ASSERT_EQ(emulator.order("log on"), "ok\n");
        ASSERT_TRUE(client.ask(wire::Command::Identity));
        client.send("xyz", 3);
        ASSERT_TRUE(client.ask(wire::Command::Battery));
        ASSERT_EQ(emulator.order("log off"), "ok\n");
        ASSERT_TRUE(client.ask(wire::Command::Config));
    }
    std::fclose(file);
    std::ifstream stream(folder / "log");
    std::ostringstream text;
    text << stream.rdbuf();
    const std::string log = text.str();
    const char *parts[] = {"-> rx1k identity 05 01 02 00", "<- rx1k identity 05 01 02 00 00 03 00 12 06 00",
                           "-> ignored rx1k unknown 78 79 7a\n", "<- rx1k battery 05 04 03"};
    for (const char *part : parts)
        EXPECT_NE(log.find(part), std::string::npos) << part << "\n" << log;
    EXPECT_EQ(log.find("online"), std::string::npos);
    EXPECT_EQ(log.find("config"), std::string::npos);
}
