// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A connection to a device that comes, goes or returns in the one moment in which nobody looks. The bus is
// the test's own: each opening waits for the test's word.
#include "device/hidusb/Connection.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Messages.h"

#include <cstring>
#include <deque>
#include <gtest/gtest.h>

using namespace hidusb;
using namespace support;
using wire::Command;

namespace
{

// Answers each request with what the script makes of it.
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

// A device that is there or not at each opening, as the test says it.
class ToldBus : public Bus
{
public:
    std::vector<InterfaceInfo> enumerate() override { return {}; }
    std::unique_ptr<ChangeSource> watch() override { return nullptr; }
    std::unique_ptr<ReportPort> open(const std::string &) override
    {
        std::unique_lock lock(mutex_);
        ++asked_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !told_.empty(); });
        const bool there = told_.front();
        told_.pop_front();
        return there ? std::make_unique<ScriptedPort>(script) : nullptr;
    }
    void tell(bool there)
    {
        const std::lock_guard lock(mutex_);
        told_.push_back(there);
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
    std::deque<bool> told_;
    int asked_ = 0;
};

ToldBus &theBus()
{
    static auto *made = new ToldBus;
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

class SlowBus : public testing::Test
{
protected:
    SlowBus()
    {
        messageLog<0>().clear();
        theBus().script = [](const wire::Report &request) { return Answers{healthy(request)}; };
    }
    ~SlowBus() override { connection_->end(); }
    // Each test has a path of its own, and so no channel of another's.
    void start(const char *path)
    {
        connection_ = std::make_shared<hidusb::Connection>(path, logMessage<0>, 1);
        asked_ = theBus().asked();
        connection_->start();
    }
    bool opens(int times)
    {
        return eventually([&] { return theBus().asked() == asked_ + times; });
    }

    std::shared_ptr<hidusb::Connection> connection_;
    MessageLog &messages_ = messageLog<0>();
    int asked_ = 0;
};

TEST_F(SlowBus, AnOrderForADeviceThatHasJustComeIsCarriedOut)
{
    start("comes");
    ASSERT_TRUE(opens(1));
    theBus().tell(false);
    connection_->order({Command::Battery}); // of the one that is not there
    ASSERT_TRUE(opens(2));
    connection_->order({Command::Battery}); // it has come since
    theBus().tell(false);
    theBus().tell(true);
    ASSERT_TRUE(messages_.waitFor(1));
    EXPECT_EQ(messages_.all().at(0).code(), 4);
}

TEST_F(SlowBus, AMouseThatReturnsWhileItIsSaidToBeAwayIsReadAgain)
{
    bool away = true;
    theBus().script = [&away](const wire::Report &request) {
        if (!away || request.command() != Command::FlashRead)
            return Answers{healthy(request)};
        away = false;
        const uint8_t online[sizeof(wire::OnLineReply)] = {1};
        return Answers{datagram(noticeOf(Command::OnLineChanged, online, sizeof online)),
                       datagram(replyTo(request, nullptr, 0, wire::Status::OffLine))};
    };
    theBus().tell(true);
    start("returns");
    connection_->order({Command::FlashRead});
    ASSERT_TRUE(messages_.waitFor(1));
    EXPECT_EQ(messages_.all().at(0).payload.size(), FlashSize);
}
