// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A connection to a device that is plugged in, unplugged or back on line while the connection is opening it
// or reading it. The bus is the test's own: each opening waits until the test decides on it.
#include "device/hidusb/Connection.h"
#include "device/hidusb/Question.h"
#include "device/hidusb/Thread.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Messages.h"

#include <atomic>
#include <cstring>
#include <deque>
#include <future>
#include <gtest/gtest.h>

using namespace hidusb;
using namespace support;
using wire::Command;

namespace
{

// Answers each request with the answers of the script.
class ScriptedPort : public ReportPort
{
public:
    explicit ScriptedPort(Script script) : script_(std::move(script)) {}

    bool write(const uint8_t *bytes, std::size_t) override
    {
        wire::Report request;
        std::memcpy(&request, bytes, sizeof request);
        const std::lock_guard lock(mutex_);
        const Answers answers = script_(request).value_or(Answers{});
        waiting_.insert(waiting_.end(), answers.begin(), answers.end());
        changed_.notify_all();
        return true;
    }
    Received read(uint8_t *bytes, std::size_t capacity, int timeoutMs) override
    {
        std::unique_lock lock(mutex_);
        const auto wake = [this] { return interrupted_ || !waiting_.empty(); };
        if (timeoutMs < 0)
            changed_.wait(lock, wake);
        else
            changed_.wait_for(lock, std::chrono::milliseconds(timeoutMs), wake);
        interrupted_ = false;
        if (waiting_.empty())
            return {Outcome::Nothing, 0};
        const Datagram report = std::move(waiting_.front());
        waiting_.pop_front();
        const std::size_t size = std::min(report.size(), capacity);
        std::memcpy(bytes, report.data(), size);
        return {Outcome::Report, size};
    }
    void interrupt() override
    {
        const std::lock_guard lock(mutex_);
        interrupted_ = true;
        changed_.notify_all();
    }
    bool isGone() const override { return false; }

private:
    const Script script_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Datagram> waiting_;
    bool interrupted_ = false;
};

// At each opening the test decides whether the device is attached.
class GatedBus : public Bus
{
public:
    std::vector<InterfaceInfo> enumerate() override { return {}; }
    std::unique_ptr<ChangeSource> watch() override { return nullptr; }
    std::unique_ptr<ReportPort> open(const std::string &) override
    {
        std::unique_lock lock(mutex_);
        ++asked_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !decisions_.empty(); });
        const bool there = decisions_.front();
        decisions_.pop_front();
        return there ? std::make_unique<ScriptedPort>(script) : nullptr;
    }
    void decide(bool there)
    {
        const std::lock_guard lock(mutex_);
        decisions_.push_back(there);
        changed_.notify_all();
    }
    int asked()
    {
        const std::lock_guard lock(mutex_);
        return asked_;
    }

    Script script; // of the devices to come

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<bool> decisions_;
    int asked_ = 0;
};

GatedBus &theBus()
{
    static auto *made = new GatedBus;
    return *made;
}

Datagram healthy(const wire::Report &request)
{
    const uint8_t bytes[wire::PayloadSize] = {80, 1};
    const bool read = request.command() == Command::FlashRead;
    return datagram(replyTo(request, bytes, read ? request.Payload[0] : sizeof(BatteryStatus)));
}

} // namespace

Bus &hidusb::bus() { return theBus(); }

class GatedOpening : public testing::Test
{
protected:
    GatedOpening()
    {
        messageLog<0>().clear();
        theBus().script = [](const wire::Report &request) { return Answers{healthy(request)}; };
    }
    ~GatedOpening() override
    {
        if (connection_)
            connection_->leave();
    }
    // Each test has a path of its own, so that it does not share the channel of another test.
    void start(const char *path, std::chrono::milliseconds pairingLimit = PairingLimit)
    {
        connection_ = std::make_shared<hidusb::Connection>(path, logMessage<0>, 1, pairingLimit);
        asked_ = theBus().asked();
        connection_->start(nullptr);
    }
    bool opens(int times)
    {
        return eventually([&] { return theBus().asked() == asked_ + times; });
    }

    std::shared_ptr<hidusb::Connection> connection_;
    MessageLog &messages_ = messageLog<0>();
    int asked_ = 0;
};

TEST_F(GatedOpening, AnOrderForADeviceThatHasJustComeIsCarriedOut)
{
    start("comes");
    ASSERT_TRUE(opens(1));
    theBus().decide(false);
    connection_->order({Command::Battery}); // for the device that is not attached
    ASSERT_TRUE(opens(2));
    connection_->order({Command::Battery}); // for the one that is plugged in meanwhile
    theBus().decide(false);
    theBus().decide(true);
    ASSERT_TRUE(messages_.waitFor(1));
    EXPECT_EQ(messages_.all().at(0).code(), 4);
}

// The start before it, which was for the absent receiver, gets no result: it would be taken for that of this
// one.
TEST_F(GatedOpening, AStartForAReceiverThatHasJustComeHasNotFailed)
{
    theBus().script = [](const wire::Report &request) {
        const auto state = wire::PairState::Succeeded;
        const bool asked = request.command() == Command::PairStatus;
        return Answers{datagram(replyTo(request, &state, asked ? sizeof state : 0))};
    };
    const std::pair<const char *, Command> rows[] = {{"question", Command::Battery},
                                                     {"start", Command::PairEnter}};
    for (const auto &[path, first] : rows) {
        messages_.clear();
        start(path);
        ASSERT_TRUE(opens(1));
        theBus().decide(false);
        connection_->order({first}); // for the receiver that is not attached
        ASSERT_TRUE(opens(2));
        connection_->order({Command::PairEnter}); // for the one that is plugged in meanwhile
        theBus().decide(false);
        ASSERT_TRUE(opens(3));
        theBus().decide(true);
        connection_->order({Command::PairStatus});
        ASSERT_TRUE(messages_.waitFor(1));
        EXPECT_EQ(messages_.all().at(0).code(), 6);
        EXPECT_EQ(messages_.all().at(0).payload.at(0), static_cast<int>(wire::PairState::Succeeded)) << path;
        connection_->leave();
    }
}

TEST_F(GatedOpening, APairingWithoutAResultFailsAtItsLimit)
{
    theBus().script = [](const wire::Report &request) { return Answers{datagram(replyTo(request))}; };
    theBus().decide(true);
    start("pairs in silence", std::chrono::milliseconds(20));
    connection_->order({Command::PairEnter});
    ASSERT_TRUE(messages_.waitFor(1));
    EXPECT_EQ(messages_.all().at(0).code(), 6);
    EXPECT_EQ(messages_.all().at(0).payload.at(0), static_cast<int>(wire::PairState::Failed));
}

TEST_F(GatedOpening, AMouseThatReturnsWhileItIsReportedOffLineIsReadAgain)
{
    const auto away = std::make_shared<std::atomic<bool>>(true); // the connection may outlive the test
    theBus().script = [away](const wire::Report &request) {
        if (request.command() != Command::FlashRead || !away->exchange(false))
            return Answers{healthy(request)};
        const uint8_t online[sizeof(wire::OnLineReply)] = {1};
        return Answers{datagram(noticeOf(Command::OnLineChanged, online, sizeof online)),
                       datagram(replyTo(request, nullptr, 0, wire::Status::OffLine))};
    };
    theBus().decide(true);
    start("returns");
    connection_->order({Command::FlashRead});
    ASSERT_TRUE(messages_.waitFor(1));
    EXPECT_EQ(messages_.all().at(0).payload.size(), FlashSize);
}

TEST_F(GatedOpening, AMouseThatReturnsWhileItsWriteFailsIsWrittenAgain)
{
    const auto writes = std::make_shared<std::atomic<int>>(0); // the connection may outlive the test
    theBus().script = [writes](const wire::Report &request) {
        if (request.command() != Command::FlashWrite)
            return Answers{healthy(request)};
        if ((*writes)++ > 0)
            return Answers{datagram(replyTo(request))};
        const uint8_t online[sizeof(wire::OnLineReply)] = {1};
        return Answers{datagram(noticeOf(Command::OnLineChanged, online, sizeof online)),
                       datagram(replyTo(request, nullptr, 0, wire::Status::OffLine))};
    };
    theBus().decide(true);
    start("returns during a write");
    connection_->order({Command::FlashRead});
    ASSERT_TRUE(messages_.waitFor(1));
    FlashImage wanted;
    std::memcpy(&wanted, messages_.all().at(0).payload.data(), sizeof wanted);
    wanted.DebounceTime ^= 1;
    connection_->update(wanted);
    EXPECT_TRUE(eventually([&writes] { return *writes >= 2; }));
}

// The notice of the return lets the writer go on by itself, but says nothing of the write that has failed.
TEST_F(GatedOpening, ATryThatFailsWhileTheMouseReturnsIsNotTakenForAGoodOne)
{
    const auto writes = std::make_shared<std::atomic<int>>(0); // the connection may outlive the test
    theBus().script = [writes](const wire::Report &request) {
        if (request.command() != Command::FlashWrite)
            return Answers{healthy(request)};
        const Datagram offLine = datagram(replyTo(request, nullptr, 0, wire::Status::OffLine));
        const uint8_t online[sizeof(wire::OnLineReply)] = {1};
        const int before = (*writes)++;
        if (before == 1)
            return Answers{datagram(noticeOf(Command::OnLineChanged, online, sizeof online)), offLine};
        return before == 0 ? Answers{offLine} : Answers{};
    };
    theBus().decide(true);
    start("returns during a try");
    connection_->order({Command::FlashRead});
    ASSERT_TRUE(messages_.waitFor(1));
    FlashImage wanted;
    std::memcpy(&wanted, messages_.all().at(0).payload.data(), sizeof wanted);
    wanted.DebounceTime ^= 1;
    connection_->update(wanted);
    bool good = true; // until the first write has failed, which has the next question try it again
    EXPECT_TRUE(eventually([&] {
        good = connection_->finishWrites(Clock::now() + std::chrono::seconds(10));
        return *writes >= 2;
    }));
    EXPECT_FALSE(good);
}

// As when one thread closes a connection while another starts the next one. The device of this one hangs, so
// it never says that it has left.
TEST_F(GatedOpening, AWaitThatBeganBeforeTheLeavingEndsWithIt)
{
    constexpr int Waiting = 4;
    const auto previous = std::make_shared<hidusb::Connection>("is left later", nullptr, 1);
    previous->order({Command::DriverStatus, 1});
    const auto begun = std::make_shared<std::atomic<int>>(0);
    const auto ended = std::make_shared<std::atomic<int>>(0);
    for (int i = 0; i < Waiting; ++i)
        ASSERT_TRUE(hidusb::startThread([previous, begun, ended] {
            ++*begun;
            previous->awaitLeft();
            ++*ended;
        }));
    ASSERT_TRUE(eventually([&] { return *begun == Waiting; }));
    EXPECT_EQ(*ended, 0);
    previous->leave();
    EXPECT_TRUE(eventually([&] { return *ended == Waiting; }));
}

TEST_F(GatedOpening, TheOnLineQuestionDoesNotWaitForADeviceThatDoesNotOpen)
{
    asked_ = theBus().asked();
    auto first = std::async(std::launch::async, [] { return askOnLine("hangs"); });
    auto second = std::async(std::launch::async, [] { return askOnLine("hangs"); });
    const auto isOver = [](const std::future<std::optional<wire::OnLineReply>> &question) {
        return question.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    EXPECT_TRUE(eventually([&] { return isOver(first) && isOver(second); }));
    EXPECT_TRUE(opens(1)) << "one thread opens it for all";
    theBus().script = [](const wire::Report &request) {
        const wire::OnLineReply reply{1, {}};
        return Answers{datagram(replyTo(request, &reply, sizeof reply))};
    };
    theBus().decide(true);
    EXPECT_FALSE(first.get());
    EXPECT_FALSE(second.get());
    EXPECT_TRUE(eventually([] { return askOnLine("hangs").has_value(); }));
}

// A place that stays taken would be written to when a late answer comes; there are 255.
TEST_F(GatedOpening, ARequestThatCannotBeWrittenForLackOfMemoryLeavesNoPlaceTaken)
{
    theBus().script = [](const wire::Report &request) {
        if (request.command() == Command::Version)
            throw std::bad_alloc();
        return Answers{healthy(request)};
    };
    theBus().decide(true);
    const auto channel = acquireChannel("no memory");
    ASSERT_TRUE(channel);
    for (int i = 0; i < 300; ++i)
        EXPECT_THROW(channel->ask(makeRequest(Command::Version)), std::bad_alloc);
    EXPECT_TRUE(channel->ask(makeRequest(Command::Battery)));
}
