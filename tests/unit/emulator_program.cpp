// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// mouse-emulator as a process: start, orders by console and by "send", kill and restart.
#include "tests/support/RawClient.h"
#include "tests/support/TempFolder.h"

#include "emulator/FileDescriptor.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

using wire::Command;

namespace
{

// A child process with pipes to its standard input and output.
class Child
{
public:
    explicit Child(std::vector<std::string> words, bool quiet = false)
    {
        int in[2];
        int out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0)
            return;
        words.insert(words.begin(), EMULATOR_PROGRAM);
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            if (quiet)
                ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
            ::execv(arguments[0], arguments.data());
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        input_ = emulator::FileDescriptor(in[1]);
        output_ = emulator::FileDescriptor(out[0]);
    }
    ~Child()
    {
        if (pid_ > 0)
            end(SIGKILL);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    void write(const std::string &text) const
    {
        EXPECT_EQ(::write(input_.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void closeInput() { input_.reset(); }
    // The next line of its output; empty at the end.
    std::string line() const
    {
        std::string text;
        char byte = 0;
        while (::read(output_.get(), &byte, 1) == 1 && byte != '\n')
            text += byte;
        return text;
    }
    std::string rest() const
    {
        std::string text;
        char byte = 0;
        while (::read(output_.get(), &byte, 1) == 1)
            text += byte;
        return text;
    }
    // Its exit status, or the number of the signal that ended it, negative.
    int wait()
    {
        int status = 0;
        ::waitpid(std::exchange(pid_, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    int end(int signal)
    {
        ::kill(pid_, signal);
        return wait();
    }

private:
    pid_t pid_ = 0;
    emulator::FileDescriptor input_;
    emulator::FileDescriptor output_;
};

int send(const std::string &bus, const std::vector<std::string> &orders, std::string &output)
{
    std::vector<std::string> words = {"send", "--bus", bus};
    words.insert(words.end(), orders.begin(), orders.end());
    Child child(words);
    child.closeInput();
    output = child.rest();
    return child.wait();
}

} // namespace

TEST(EmulatorProgram, ServesTheDefaultScenario)
{
    TempFolder folder;
    Child child({"--bus", folder / "bus"});
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
        Child child({"--bus", folder.path()});
        ASSERT_EQ(child.line(), "ready");
        EXPECT_EQ(child.end(signal), 0);
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    }
}

TEST(EmulatorProgram, StartsAgainAfterAKill)
{
    TempFolder folder;
    {
        Child child({"--bus", folder.path()});
        ASSERT_EQ(child.line(), "ready");
        EXPECT_EQ(child.end(SIGKILL), -SIGKILL);
    }
    EXPECT_FALSE(std::filesystem::is_empty(folder.path()));
    Child child({"--bus", folder.path(), "--scenario", TEST_DATA "/ten.scenario", "--pace"});
    ASSERT_EQ(child.line(), "ready");
    EXPECT_FALSE(RawClient::find(folder.path(), "rx8k", wire::SettingsUsagePage));
    RawClient client(folder.path(), "r5");
    EXPECT_TRUE(client.ask(Command::Identity));
}

TEST(EmulatorProgram, OrdersFromAFile)
{
    TempFolder folder;
    Child child({"--bus", folder.path()});
    ASSERT_EQ(child.line(), "ready");
    Child sender({"send", "--bus", folder.path()});
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
    Child child({"--bus", folder.path(), "--ready-fd", std::to_string(ends[1])});
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
        Child child(words, true);
        EXPECT_EQ(child.wait(), 2);
    }
    TempFolder folder;
    Child noScenario({"--bus", folder.path(), "--scenario", folder / "none"}, true);
    EXPECT_EQ(noScenario.wait(), 1);
    Child noFolder({"--bus", folder / "no/where"}, true);
    EXPECT_EQ(noFolder.wait(), 1);
}
