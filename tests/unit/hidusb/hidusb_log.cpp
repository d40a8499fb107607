// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The layer's log: its lines, its file, and that no caller waits for it.
#include "device/hidusb/ChannelRegistry.h"
#include "device/hidusb/Connection.h"
#include "device/hidusb/HidrawBus.h"
#include "device/hidusb/LoggedBus.h"
#include "device/hidusb/ReportWriter.h"
#include "device/hidusb/SocketBus.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace hidusb;
using namespace support;
using wire::Command;

static std::vector<std::string> linesOf(const std::string &path)
{
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

static std::string contentOf(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A flush gives up after a time that a busy machine may take for the lines so far.
static void flushAll(WireLog &log)
{
    EXPECT_TRUE(eventually([&log] {
        const auto begin = std::chrono::steady_clock::now();
        log.flush();
        return std::chrono::steady_clock::now() - begin < WireLog::FlushLimit;
    }));
}

// A log is never destroyed; the list keeps it reachable.
static WireLog &makeLog(const std::string &path, std::size_t limit = WireLog::FileLimit)
{
    static auto *const all = new std::vector<WireLog *>;
    all->push_back(new WireLog(path, "a test's", limit));
    return *all->back();
}

class LayerLog : public testing::Test
{
protected:
    LayerLog() { processLog = &log; }
    ~LayerLog() override { processLog = nullptr; }

    // The lines about `name`, or all, without their times and without heads.
    std::vector<std::string> texts(const std::string &name = {})
    {
        flushAll(log);
        std::vector<std::string> found;
        for (const std::string &line : linesOf(file)) {
            const std::string text = line.size() > 13 ? line.substr(13) : line;
            if (line.find(LogFile::Signature) != 0 && text.compare(0, name.size(), name) == 0)
                found.push_back(name.empty() ? text : text.substr(name.size() + 1));
        }
        return found;
    }
    bool contains(const std::string &text)
    {
        const std::vector<std::string> all = texts();
        return std::any_of(all.begin(), all.end(),
                           [&text](const std::string &line) { return line.find(text) != std::string::npos; });
    }

    const TempFolder folder;
    const std::string file = folder / "log";
    WireLog &log = makeLog(file);
};

// ---- The lines

static std::string hexOf(const Datagram &bytes)
{
    std::string text;
    for (const uint8_t byte : bytes) {
        char digits[8];
        std::snprintf(digits, sizeof digits, " %02x", byte);
        text += digits;
    }
    return text;
}

class LoggedExchange : public LayerLog
{
protected:
    // Returns when the reader thread does not use the registry any more.
    void unplug()
    {
        device.reset();
        EXPECT_TRUE(eventually([this] { return !texts(name).empty() && texts(name).back() == "closed"; }));
    }

    const std::string name = wire::formatBusName(mouseName()) + " 1209:0005";
    std::unique_ptr<FakeDevice> device = std::make_unique<FakeDevice>();
    SocketBus sockets{busFolder()};
    LoggedBus bus{sockets, log};
    ChannelRegistry registry{bus};
};

// On a busy machine the order may be given up before the device is gone.
TEST_F(LayerLog, WhatAConnectionLeavesUndoneIsCounted)
{
    for (uint64_t round = 1; round < 20 && !contains("left undone: 2 orders"); ++round) {
        auto device = std::make_unique<FakeDevice>();
        device->setScript([](const wire::Report &request) {
            return request.command() == Command::ConfigSelect ? std::make_optional(Answers{}) : std::nullopt;
        });
        const auto connection = std::make_shared<Connection>(device->path(), nullptr, round);
        connection->start(nullptr);
        connection->order({Command::ConfigSelect, 2});
        ASSERT_TRUE(eventually([&device] { return device->count(Command::ConfigSelect) > 0; }));
        connection->order({Command::ConfigSelect, 3});
        connection->order({Command::DriverStatus, 0});
        connection->leave();
        device.reset();
        connection->awaitLeft();
    }
    EXPECT_TRUE(contains("left undone: 2 orders"));
}

TEST_F(LoggedExchange, IsLoggedByteForByteWithItsOpeningAndItsEnd)
{
    bus.enumerate();
    bus.enumerate(); // nothing has changed
    wire::Report reply;
    {
        const auto channel = registry.acquire(device->path());
        Limits patient; // for a busy machine
        patient.tries = 20;
        const auto answered = channel->ask(makeRequest(Command::Battery), patient);
        ASSERT_TRUE(answered);
        reply = *answered;
    }
    const Datagram request = datagram(device->requests().at(0));
    unplug();
    bus.enumerate();
    const std::vector<std::string> expected{
        "attached: interface 1, usage page ff05, release 1.03",
        "opened",
        "->" + hexOf(request),
        "<-" + hexOf(datagram(reply)),
        "gone",
        "closed",
        "detached: interface 1, usage page ff05, release 1.03",
    };
    std::vector<std::string> lines = texts(name);
    // On a busy machine the request may have been repeated.
    const auto extra = std::remove_if(lines.begin(), lines.end(), [&](const std::string &line) {
        return line.find("no answer") == 0 || line.find("dropped") == 0;
    });
    lines.erase(std::unique(lines.begin(), extra), lines.end());
    EXPECT_EQ(lines, expected);
}

TEST_F(LoggedExchange, UnansweredRequestsAreLogged)
{
    device->setScript([](const wire::Report &) { return Answers{}; });
    bus.enumerate();
    Limits two;
    two.tries = 2;
    EXPECT_FALSE(registry.acquire(device->path())->ask(makeRequest(Command::Battery), two));
    char sequence[40];
    std::snprintf(sequence, sizeof sequence, "command 04, sequence %02x", device->requests().at(0).Sequence);
    EXPECT_TRUE(contains(std::string("no answer in time: ") + sequence + ", given up"));
    // The time for both tries is fixed, so that a busy machine may skip the second.
    if (device->requests().size() > 1) {
        EXPECT_TRUE(contains(std::string("no answer in time: ") + sequence + ", sent again"));
    }
    unplug();
}

TEST_F(LoggedExchange, DroppedReportsAreLoggedWithTheReason)
{
    bus.enumerate();
    auto channel = registry.acquire(device->path());
    ASSERT_TRUE(channel->ask(makeRequest(Command::Battery)));
    device->send(Datagram(200, 0xEE)); // more than a read takes
    wire::Report foreign = device->requests().at(0);
    foreign.Sequence ^= 0x80;
    device->send(datagram(replyTo(foreign)));
    EXPECT_TRUE(eventually([this] { return contains("dropped: the answer to no waiting request"); }));
    EXPECT_TRUE(contains("<-" + hexOf(Datagram(128, 0xEE)) + " ... 200 bytes"));
    EXPECT_TRUE(contains("dropped: not a sound report"));
    channel.reset();
    unplug();
}

TEST_F(LayerLog, FailuresHaveTheirErrno)
{
    SocketBus sockets(busFolder());
    LoggedBus emulated(sockets, log);
    EXPECT_FALSE(emulated.open(busFolder() + "/1209-0005-0103-1-ff05-absent"));
    EXPECT_EQ(texts(busFolder() + "/1209-0005-0103-1-ff05-absent"),
              (std::vector<std::string>{"connect: ENOENT (No such file or directory)", "cannot be opened"}));
    HidrawBus nodes;
    EXPECT_FALSE(nodes.open("/dev/hidraw-absent"));
    EXPECT_TRUE(contains("/dev/hidraw-absent open: ENOENT (No such file or directory)"));
    SocketBus absent(folder / "absent");
    EXPECT_TRUE(absent.enumerate().empty());
    EXPECT_TRUE(contains("absent/ opendir: ENOENT (No such file or directory)"));
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ::close(ends[0]);
    ReportWriter writer(ends[1], "a node");
    const uint8_t report[] = {1};
    EXPECT_TRUE(writer.post(report, sizeof report));
    EXPECT_TRUE(eventually([this] { return contains("a node write: EPIPE (Broken pipe)"); }));
}

TEST_F(LayerLog, EachRunHasItsHeadAndItsTimes)
{
    log.add("node", [] { return "first"; });
    flushAll(log);
    ASSERT_EQ(linesOf(file).size(), 2U);
    const std::string head = linesOf(file)[0];
    for (const std::string &part : {std::string("HIDUsb log, 20"), "process " + std::to_string(::getpid()),
                                    std::string("bus a test's"), std::string("seconds since then")})
        EXPECT_NE(head.find(part), std::string::npos) << head;
    double time = -1;
    EXPECT_EQ(std::sscanf(linesOf(file)[1].c_str(), "%lf node first", &time), 1);
    EXPECT_GE(time, 0);
    EXPECT_LT(time, 60);
}

TEST_F(LayerLog, APathCannotAddALine)
{
    log.add("a\nHIDUsb log\x1B[2J" + std::string(5000, 'x'), [] { return "said"; });
    flushAll(log);
    ASSERT_EQ(linesOf(file).size(), 2U);
    EXPECT_EQ(linesOf(file)[1].substr(13, 20), "a?HIDUsb log?[2Jxxxx");
    EXPECT_EQ(linesOf(file)[1].size(), 1000U);
}

// ---- Callers

// Holds the log's thread until `letGo`.
class HeldLog : public LayerLog
{
protected:
    HeldLog()
    {
        log.add("held", [held = letGo.get_future().share()] {
            held.wait();
            return "let go";
        });
    }
    std::promise<void> letGo;
};

TEST_F(HeldLog, NoCallerWaitsAndDroppedLinesAreCounted)
{
    // The first line may still wait or be under way.
    for (std::size_t i = 0; i < WireLog::QueueLimit + 11; ++i)
        log.add("many", [] { return "one"; });
    letGo.set_value();
    flushAll(log);
    log.add("many", [] { return "last"; });
    const std::vector<std::string> lines = texts();
    const auto many = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), "many one"));
    const std::size_t missing = WireLog::QueueLimit + 11 - many;
    EXPECT_GE(missing, 11U);
    EXPECT_LE(missing, 12U);
    EXPECT_EQ(lines[lines.size() - 2],
              std::to_string(missing) + " lines are missing here: the queue was full");
    EXPECT_EQ(lines.back(), "many last");
}

TEST_F(HeldLog, AFlushEndsWhileTheThreadIsBlocked)
{
    const auto before = std::chrono::steady_clock::now();
    log.flush();
    EXPECT_GE(std::chrono::steady_clock::now() - before, WireLog::FlushLimit);
    letGo.set_value();
    EXPECT_TRUE(contains("held let go"));
}

TEST_F(LayerLog, ManyThreadsMayLogAtOnce)
{
    constexpr int each = 500;
    std::vector<std::thread> threads;
    for (int user = 0; user < 4; ++user) {
        threads.emplace_back([this, user] {
            const std::string path = "user" + std::to_string(user);
            for (int i = 0; i < each; ++i) {
                log.add(path, [i] { return std::to_string(i); });
                if (i % 100 == 0)
                    log.flush();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (int user = 0; user < 4; ++user) {
        const std::vector<std::string> lines = texts("user" + std::to_string(user));
        ASSERT_EQ(lines.size(), std::size_t{each});
        for (int i = 0; i < each; ++i)
            ASSERT_EQ(lines[static_cast<std::size_t>(i)], std::to_string(i));
    }
}

// ---- The file

static LogFile logFile(const std::string &path, std::size_t limit = 4096)
{
    return {path, std::string(LogFile::Signature) + " of a test", limit};
}

TEST(LogFileTest, CanBeReadByItsUserOnly)
{
    const TempFolder folder;
    LogFile file = logFile(folder / "log");
    ASSERT_EQ(file.open(), "");
    EXPECT_TRUE(file.append("one"));
    struct stat made;
    ASSERT_EQ(::stat((folder / "log").c_str(), &made), 0);
    EXPECT_EQ(made.st_mode & 0777U, 0600U);
    EXPECT_EQ(contentOf(folder / "log"), "HIDUsb log of a test\none\n");
}

TEST(LogFileTest, ALaterRunIsAppended)
{
    const TempFolder folder;
    for (const char *line : {"one", "two"}) {
        LogFile file = logFile(folder / "log");
        ASSERT_EQ(file.open(), "");
        EXPECT_TRUE(file.append(line));
    }
    EXPECT_EQ(contentOf(folder / "log"), "HIDUsb log of a test\none\nHIDUsb log of a test\ntwo\n");
}

TEST(LogFileTest, StaysWithinItsLimitAndKeepsTheNewest)
{
    constexpr std::size_t limit = 4096;
    const TempFolder folder;
    LogFile file = logFile(folder / "log", limit);
    ASSERT_EQ(file.open(), "");
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(file.append("line " + std::to_string(i)));
        ASSERT_LE(contentOf(folder / "log").size(), limit);
    }
    const std::vector<std::string> lines = linesOf(folder / "log");
    EXPECT_EQ(lines.front(), "HIDUsb log: older lines were dropped");
    EXPECT_EQ(lines.back(), "line 999");
    // Each line is whole and the one after the one before.
    int next = std::stoi(lines[1].substr(5));
    EXPECT_LT(next, 999 - 100) << "more than half was dropped";
    int heads = 0;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const bool head = lines[i] == "HIDUsb log of a test";
        heads += head ? 1 : 0;
        if (!head) {
            EXPECT_EQ(lines[i], "line " + std::to_string(next++));
        }
    }
    EXPECT_GE(heads, 1);
}

// Files may grow to this many bytes while it lives.
class SmallDisk
{
public:
    explicit SmallDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    void (*const handler_)(int);
    rlimit before_{};
};

TEST_F(LayerLog, OnAFullDiskWholeLinesAreLostAndCounted)
{
    log.add("disk", [] { return "before"; });
    flushAll(log);
    const std::string before = contentOf(file);
    {
        const SmallDisk full(before.size() + 10);
        log.add("disk", [] { return "too much"; });
        log.add("disk", [] { return "too much"; });
        flushAll(log);
        EXPECT_EQ(contentOf(file), before);
    }
    log.add("disk", [] { return "after"; });
    const std::vector<std::string> lines = texts();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1].find("2 lines are missing here: E"), 0U) << lines[1];
    EXPECT_EQ(lines[2], "disk after");
}

// ---- Files that are refused

struct RefusedTarget {
    const char *name;
    void (*make)(const std::string &path);
};

static void write(const std::string &path, const char *text) { std::ofstream(path) << text; }

static const RefusedTarget Targets[] = {
    {"AFolder", [](const std::string &path) { ASSERT_EQ(::mkdir(path.c_str(), 0700), 0); }},
    {"AFifo", [](const std::string &path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }},
    {"ALinkToALog",
     [](const std::string &path) {
         write(path + ".target", "HIDUsb log\n");
         ASSERT_EQ(::symlink((path + ".target").c_str(), path.c_str()), 0);
     }},
    {"ALinkToNothing",
     [](const std::string &path) { ASSERT_EQ(::symlink((path + ".target").c_str(), path.c_str()), 0); }},
    {"ALinkToADevice", [](const std::string &path) { ASSERT_EQ(::symlink("/dev/null", path.c_str()), 0); }},
    {"AnothersContent", [](const std::string &path) { write(path, "HIDUsb lo, but no log\n"); }},
    {"AShortFile", [](const std::string &path) { write(path, "H"); }},
};

class Refused : public testing::TestWithParam<RefusedTarget>
{
};

TEST_P(Refused, IsLeftAsItIs)
{
    const TempFolder folder;
    const std::string path = folder / "log";
    GetParam().make(path);
    struct stat before, after;
    ASSERT_EQ(::lstat(path.c_str(), &before), 0);
    const std::string content = S_ISREG(before.st_mode) ? contentOf(path) : std::string();
    const bool hadTarget = std::filesystem::exists(path + ".target");
    EXPECT_NE(logFile(path).open(), "");
    WireLog &log = makeLog(path); // the same through a log: lines are discarded and no caller waits
    testing::internal::CaptureStderr();
    for (int i = 0; i < 10; ++i)
        log.add("node", [] { return "line"; });
    flushAll(log);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("HIDUSB_LOG: " + path), std::string::npos);
    ASSERT_EQ(::lstat(path.c_str(), &after), 0);
    EXPECT_EQ(before.st_mode, after.st_mode);
    EXPECT_EQ(before.st_size, after.st_size);
    EXPECT_EQ(S_ISREG(before.st_mode) ? contentOf(path) : std::string(), content);
    EXPECT_EQ(std::filesystem::exists(path + ".target"), hadTarget);
    if (hadTarget) {
        EXPECT_EQ(contentOf(path + ".target"), "HIDUsb log\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Refused, testing::ValuesIn(Targets),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(RefusedPath, HasItsReason)
{
    const TempFolder folder;
    write(folder / "file", "");
    EXPECT_EQ(logFile(folder / "absent/log").open(), "ENOENT (No such file or directory)");
    EXPECT_EQ(logFile(folder / "file/log").open(), "ENOTDIR (Not a directory)");
    EXPECT_EQ(logFile("/dev/null").open(), "it is no regular file");
    LogFile first = logFile(folder / "log");
    EXPECT_EQ(first.open(), "");
    EXPECT_EQ(logFile(folder / "log").open(), "another process writes it");
}

// ---- The log of the process: chosen once, so that each of these tests starts a process of its own

constexpr int ChildEnded = 42; // exit code; a program that finds no test of the name ends with 0

[[noreturn]] static void endChild() { std::exit(testing::Test::HasFailure() ? 1 : ChildEnded); }

class LogProcess : public testing::Test
{
protected:
    // Runs a test of this program in the empty folder. True when it comes to its end without a failure.
    bool run(const char *test, const std::string &setting) const
    {
        const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
        const std::string command = "cd '" + folder.path() + "' && unset HIDUSB_LOG && " + setting + " '" +
                                    program + "' --gtest_also_run_disabled_tests --gtest_filter=" + test +
                                    " >/dev/null";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) && WEXITSTATUS(status) == ChildEnded;
    }
    const TempFolder folder;
};

TEST_F(LogProcess, WithoutTheVariableThereIsNoLogAndNoFile)
{
    for (const char *setting : {"", "HIDUSB_LOG="})
        EXPECT_TRUE(run("LogChild.DISABLED_HasNoLog", setting));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(LogProcess, WithTheVariableEveryLineIsWrittenAtTheEnd)
{
    // A busy machine may take longer than the time that an end has for the lines.
    std::string content;
    for (int round = 0; round < 10 && content.find(" the last line\n") == std::string::npos; ++round) {
        std::filesystem::remove(folder / "log");
        EXPECT_TRUE(run("LogChild.DISABLED_AsksADevice", "HIDUSB_LOG=log"));
        content = contentOf(folder / "log");
    }
    for (const char *part :
         {"bus /tmp/hidusb-bus-", " opened\n", " -> 05 04 ", " <- 05 04 ", " the last line\n"})
        EXPECT_NE(content.find(part), std::string::npos) << part;
}

TEST_F(LogProcess, MayEndWhileItsThreadsLog)
{
    for (int round = 0; round < 5; ++round)
        EXPECT_TRUE(run("LogChild.DISABLED_EndsInTheMiddle", "HIDUSB_LOG=log"));
    const std::string content = contentOf(folder / "log");
    ASSERT_FALSE(content.empty());
    EXPECT_EQ(content.back(), '\n');
}

TEST(LogChild, DISABLED_HasNoLog)
{
    const FakeDevice device;
    EXPECT_TRUE(acquireChannel(device.path())->ask(makeRequest(Command::Battery)));
    EXPECT_EQ(wireLog(), nullptr);
    endChild();
}

TEST(LogChild, DISABLED_AsksADevice)
{
    const FakeDevice device;
    EXPECT_TRUE(acquireChannel(device.path())->ask(makeRequest(Command::Battery)));
    for (int i = 0; i < 1000; ++i) // more than is written before the process ends
        logLine("test", [] { return "one of many"; });
    logLine("test", [] { return "the last line"; });
    endChild();
}

TEST(LogChild, DISABLED_EndsInTheMiddle)
{
    busFolder();
    bus();
    for (int user = 0; user < 4; ++user)
        std::thread([] {
            for (;;)
                logLine("test", [] { return "one of very many"; });
        }).detach();
    EXPECT_TRUE(eventually([] { return std::filesystem::exists("log"); }));
    endChild();
}
