// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// mouse-emulator as a process: start, orders by console and by "send", kill and restart.
#include "tests/support/EmulatorProgram.h"
#include "tests/support/RawClient.h"
#include "tests/support/TempFolder.h"

#include <csignal>
#include <gtest/gtest.h>

using wire::Command;

namespace
{

int send(const std::string &bus, const std::vector<std::string> &orders, std::string &output)
{
    std::vector<std::string> words = {"send", "--bus", bus};
    words.insert(words.end(), orders.begin(), orders.end());
    EmulatorProgram child(words);
    child.closeInput();
    output = child.rest();
    return child.wait();
}

} // namespace

TEST(EmulatorProgram, ServesTheDefaultScenario)
{
    TempFolder folder;
    EmulatorProgram child({"--bus", folder / "bus"});
    ASSERT_EQ(child.line(), "ready");
    RawClient client(folder / "bus", "rx8k");
    const auto identity = client.ask(Command::Identity);
    ASSERT_TRUE(identity);
    EXPECT_EQ(RawClient::payloadOf(*identity), (RawClient::Bytes{18, 7, 5}));
    child.write("unplug rx8k\n\nfoo\n");
    EXPECT_EQ(child.line(), "ok");
    EXPECT_EQ(child.line(), "ok");
    EXPECT_EQ(child.line(), "error no order foo; help lists them");
    EXPECT_TRUE(client.waitForEnd());
    // The end of its console does not end it.
    child.closeInput();
    std::string output;
    EXPECT_EQ(send(folder / "bus", {"plug rx8k", "show mouse2 flash 0 2"}, output), 0);
    EXPECT_EQ(output, "ok\n0000: 01 06\nok\n");
    EXPECT_EQ(send(folder / "bus", {"plug rx8k", "plug nobody"}, output), 1);
    EXPECT_EQ(output, "ok\nerror no device nobody\n");
    EXPECT_EQ(send(folder / "bus", {"quit"}, output), 0);
    EXPECT_EQ(child.wait(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder / "bus"));
    EXPECT_EQ(send(folder / "bus", {"list"}, output), 2);
}

TEST(EmulatorProgram, EndsInOrderOnASignal)
{
    TempFolder folder;
    for (const int signal : {SIGTERM, SIGINT}) {
        EmulatorProgram child({"--bus", folder.path()});
        ASSERT_EQ(child.line(), "ready");
        EXPECT_EQ(child.end(signal), 0);
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    }
}

TEST(EmulatorProgram, StartsAgainAfterAKill)
{
    TempFolder folder;
    {
        EmulatorProgram child({"--bus", folder.path()});
        ASSERT_EQ(child.line(), "ready");
        EXPECT_EQ(child.end(SIGKILL), -SIGKILL);
    }
    EXPECT_FALSE(std::filesystem::is_empty(folder.path()));
    EmulatorProgram child({"--bus", folder.path(), "--scenario", TEST_DATA "/ten.scenario", "--pace"});
    ASSERT_EQ(child.line(), "ready");
    EXPECT_FALSE(RawClient::find(folder.path(), "rx8k", wire::SettingsUsagePage));
    RawClient client(folder.path(), "r5");
    EXPECT_TRUE(client.ask(Command::Identity));
}

TEST(EmulatorProgram, OrdersFromAFile)
{
    TempFolder folder;
    EmulatorProgram child({"--bus", folder.path()});
    ASSERT_EQ(child.line(), "ready");
    EmulatorProgram sender({"send", "--bus", folder.path()});
    sender.write("battery mouse1 5\n# a comment\nprofile mouse1 2\n");
    sender.closeInput();
    EXPECT_EQ(sender.rest(), "ok\nok\nok\n");
    EXPECT_EQ(sender.wait(), 0);
    std::string output;
    EXPECT_EQ(send(folder.path(), {"list"}, output), 0);
    EXPECT_NE(output.find("profile 2 battery 5"), std::string::npos) << output;
}

TEST(EmulatorProgram, ReadyOnADescriptor)
{
    TempFolder folder;
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    EmulatorProgram child({"--bus", folder.path(), "--ready-fd", std::to_string(ends[1])});
    ::close(ends[1]);
    char text[16] = {};
    EXPECT_EQ(::read(ends[0], text, sizeof text), 6);
    EXPECT_STREQ(text, "ready\n");
    ::close(ends[0]);
}

TEST(EmulatorProgram, RefusesBadOptions)
{
    const std::vector<std::vector<std::string>> bad = {
        {},
        {"--bus"},
        {"--bus", "x", "--scenario"},
        {"--bus", "x", "--what"},
        {"--bus", "x", "list"},
        {"--bus", "x", "--ready-fd", "-1"},
        {"--bus", "x", "--ready-fd", "one"},
        {"send"},
        {"send", "list"},
    };
    for (const auto &words : bad) {
        EmulatorProgram child(words, true);
        EXPECT_EQ(child.wait(), 2);
    }
    TempFolder folder;
    EmulatorProgram noScenario({"--bus", folder.path(), "--scenario", folder / "none"}, true);
    EXPECT_EQ(noScenario.wait(), 1);
    EmulatorProgram noFolder({"--bus", folder / "no/where"}, true);
    EXPECT_EQ(noFolder.wait(), 1);
}
