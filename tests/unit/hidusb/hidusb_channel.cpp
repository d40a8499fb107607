// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A reply goes to its own request only; late, doubled, unsound and foreign reports are dropped.
#include "device/hidusb/Channel.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Records.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace hidusb;
using namespace support;
using wire::Command;

// Faults of a reply.
struct Fault {
    const char *name;
    Answers (*answers)(const wire::Report &good);
};

static wire::Report changed(wire::Report report, void (*change)(wire::Report &))
{
    change(report);
    wire::seal(report);
    return report;
}

static const Fault Faults[] = {
    {"no reply", [](const wire::Report &) { return Answers{}; }},
    {"short",
     [](const wire::Report &good) {
         Datagram bytes = datagram(good);
         bytes.pop_back();
         return Answers{bytes};
     }},
    {"one byte", [](const wire::Report &) { return Answers{{wire::ReportId}}; }},
    {"oversized",
     [](const wire::Report &good) {
         Datagram bytes = datagram(good);
         bytes.push_back(0);
         return Answers{bytes};
     }},
    {"far oversized", [](const wire::Report &) { return Answers{Datagram(4096, 5)}; }},
    {"flipped bit",
     [](const wire::Report &good) {
         Datagram bytes = datagram(good);
         bytes[20] ^= 0x10;
         return Answers{bytes};
     }},
    {"wrong sequence",
     [](const wire::Report &good) {
         return Answers{datagram(changed(
             good, [](wire::Report &r) { r.Sequence = static_cast<uint8_t>(r.Sequence % 255 + 1); }))};
     }},
    {"other command",
     [](const wire::Report &good) {
         return Answers{datagram(changed(good, [](wire::Report &r) { r.CommandCode ^= 1; }))};
     }},
    {"other address",
     [](const wire::Report &good) {
         return Answers{datagram(changed(good, [](wire::Report &r) { r.AddressLow ^= 1; }))};
     }},
    {"other length",
     [](const wire::Report &good) {
         return Answers{datagram(changed(good, [](wire::Report &r) { --r.Length; }))};
     }},
    {"length beyond the report",
     [](const wire::Report &good) {
         return Answers{datagram(changed(good, [](wire::Report &r) { r.Length = 255; }))};
     }},
    {"other report id",
     [](const wire::Report &good) {
         return Answers{datagram(changed(good, [](wire::Report &r) { r.Id = 6; }))};
     }},
    {"a notice",
     [](const wire::Report &good) {
         return Answers{datagram(changed(good, [](wire::Report &r) { r.Sequence = 0; }))};
     }},
};

class ChannelTest : public testing::Test
{
protected:
    static wire::Report readRequest()
    {
        const uint8_t size = 8;
        return makeRequest(Command::FlashRead, 0x40, &size, 1);
    }
    static wire::Report goodReply(const wire::Report &request)
    {
        const uint8_t bytes[] = {1, 2, 3, 4, 5, 6, 7, 8};
        return replyTo(request, bytes, sizeof bytes);
    }
    // For a busy machine, on which an answer may take longer than one try.
    static Limits patient()
    {
        Limits limits;
        limits.tries = 20;
        return limits;
    }
    static bool isGood(const std::optional<wire::Report> &reply)
    {
        return reply && reply->status() == wire::Status::Ok && reply->Length == 8 && reply->Payload[7] == 8;
    }

    std::atomic<int> tries{0};
    FakeDevice device;
};

TEST_F(ChannelTest, ABadReplyIsNoReplyAndTheNextTryCounts)
{
    for (const Fault &fault : Faults) {
        // Only the second try gets a good answer; a third one, sent while that answer is on its way, gets
        // none. Tries are told apart by their request, since those of the fault before may come late.
        device.setScript([&fault, this](const wire::Report &request) {
            const wire::Report good = goodReply(request);
            const std::size_t number = device.tries(request);
            return number == 1 ? fault.answers(good) : number == 2 ? Answers{datagram(good)} : Answers{};
        });
        EXPECT_TRUE(isGood(acquireChannel(device.path())->ask(readRequest(), patient()))) << fault.name;
        EXPECT_GE(device.tries(device.requests().back()), 2U) << fault.name;
    }
}

// The device may see the last try of a question when the next one has begun already, so tries are counted for
// each.
TEST_F(ChannelTest, ThreeBadRepliesEndInNone)
{
    for (const Fault &fault : Faults) {
        device.clearRequests();
        device.setScript([&fault](const wire::Report &request) { return fault.answers(goodReply(request)); });
        EXPECT_FALSE(acquireChannel(device.path())->ask(readRequest())) << fault.name;
        const std::vector<wire::Report> asked = device.asked();
        ASSERT_FALSE(asked.empty()) << fault.name;
        for (const wire::Report &request : asked)
            EXPECT_LE(device.tries(request), 3U) << fault.name;
    }
}

TEST_F(ChannelTest, DoubledRepliesAreDropped)
{
    device.setScript([](const wire::Report &request) {
        const uint8_t value[] = {request.AddressLow, 0, 0, 0, 0, 0, 0, 8};
        const Datagram reply = datagram(replyTo(request, value, sizeof value));
        return Answers{reply, reply};
    });
    const auto channel = acquireChannel(device.path());
    for (uint16_t address = 0; address < 200; ++address) {
        const uint8_t size = 8;
        const auto reply = channel->ask(makeRequest(Command::FlashRead, address, &size, 1));
        ASSERT_TRUE(reply);
        ASSERT_EQ(reply->Payload[0], address);
    }
}

TEST_F(ChannelTest, ALateReplyIsNotTakenForTheNextOne)
{
    std::vector<Datagram> held;
    device.setScript([&held](const wire::Report &request) {
        Answers answers;
        if (request.AddressLow == 1) // asked first, answered after the next request
            held.push_back(datagram(replyTo(request, "oldoldol", 8)));
        else {
            answers = held;
            answers.push_back(datagram(goodReply(request)));
        }
        return answers;
    });
    const auto channel = acquireChannel(device.path());
    const uint8_t size = 8;
    EXPECT_FALSE(channel->ask(makeRequest(Command::FlashRead, 1, &size, 1)));
    EXPECT_TRUE(isGood(channel->ask(makeRequest(Command::FlashRead, 2, &size, 1))));
    device.setScript(nullptr);
}

TEST_F(ChannelTest, BusyIsAskedAgainAndDoesNotUseUpTheTries)
{
    const int busy = patient().tries + 5;
    device.setScript([busy, this](const wire::Report &request) {
        return Answers{datagram(++tries <= busy ? replyTo(request, nullptr, 0, wire::Status::Busy)
                                                : goodReply(request))};
    });
    EXPECT_TRUE(isGood(acquireChannel(device.path())->ask(readRequest(), patient())));
    EXPECT_GT(tries, busy);
}

TEST_F(ChannelTest, ARefusalIsAnAnswer)
{
    device.setScript([](const wire::Report &request) {
        return Answers{datagram(replyTo(request, nullptr, 0, wire::Status::Refused))};
    });
    const auto reply = acquireChannel(device.path())->ask(readRequest());
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status(), wire::Status::Refused);
    EXPECT_EQ(device.asked(Command::FlashRead), 1U);
}

static std::vector<Exchange> fullRead()
{
    std::vector<Exchange> batch(FlashSize / 54);
    for (std::size_t i = 0; i < batch.size(); ++i) {
        const uint8_t size = 54;
        batch[i].request = makeRequest(Command::FlashRead, static_cast<uint16_t>(i * 54), &size, 1);
    }
    return batch;
}

TEST_F(ChannelTest, RepliesOfManyRequestsMayComeInAnyOrder)
{
    const FlashImage image = anyImage(4);
    device.setFlash(image);
    std::vector<Datagram> held;
    int seen = 0;
    // Answers in pairs, the second request first, and ignores each ninth request once.
    device.setScript([&](const wire::Report &request) -> std::optional<Answers> {
        if (++seen % 9 == 0)
            return Answers{};
        const auto *bytes = reinterpret_cast<const uint8_t *>(&image) + request.address();
        held.insert(held.begin(), datagram(replyTo(request, bytes, request.Payload[0])));
        if (held.size() < 2 && request.address() + 54U < FlashSize)
            return Answers{};
        Answers answers;
        answers.swap(held);
        return answers;
    });
    std::vector<Exchange> batch = fullRead();
    Limits limits = patient();
    limits.window = 8;
    const bool whole = acquireChannel(device.path())->exchange(batch, limits);
    device.setScript(nullptr);
    ASSERT_TRUE(whole);
    for (std::size_t i = 0; i < batch.size(); ++i)
        ASSERT_EQ(
            std::memcmp(batch[i].reply->Payload, reinterpret_cast<const uint8_t *>(&image) + i * 54, 54), 0);
}

TEST_F(ChannelTest, ABadStatusInTheMiddleEndsTheBatch)
{
    device.setScript([](const wire::Report &request) -> std::optional<Answers> {
        if (request.address() < 540)
            return std::nullopt;
        return Answers{datagram(replyTo(request, nullptr, 0, wire::Status::OffLine))};
    });
    std::vector<Exchange> batch = fullRead();
    Limits limits;
    limits.window = 8;
    EXPECT_FALSE(acquireChannel(device.path())->exchange(batch, limits));
    EXPECT_LE(device.asked(Command::FlashRead), 10U + 8U);
}

TEST_F(ChannelTest, CallersOfOnePathShareAChannelAndGetTheirOwnReplies)
{
    const auto channel = acquireChannel(device.path());
    EXPECT_EQ(acquireChannel(device.path()).get(), channel.get());
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int user = 0; user < 4; ++user) {
        threads.emplace_back([this, &wrong, user] {
            for (int i = 0; i < 200; ++i) {
                const uint8_t size = static_cast<uint8_t>(user + 1);
                const auto reply =
                    acquireChannel(device.path())->ask(makeRequest(Command::FlashRead, 0, &size, 1));
                wrong += !reply || reply->Length != size ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

struct CountingSink : NoticeSink {
    void notice(const wire::Report &) override { ++count; }
    void lost() override { gone = true; }
    std::atomic<bool> gone{false};
    std::atomic<int> count{0};
};

TEST_F(ChannelTest, NoticesGoToTheNewestSubscriberInWhateverOrderTheyCome)
{
    const auto channel = acquireChannel(device.path());
    const auto newer = std::make_shared<CountingSink>();
    const auto older = std::make_shared<CountingSink>();
    channel->subscribe(newer, 2);
    channel->subscribe(older, 1); // a replaced connection may subscribe late
    ASSERT_TRUE(channel->ask(makeRequest(Command::Identity)));
    device.send(datagram(noticeOf(Command::ClearSettings)));
    EXPECT_TRUE(eventually([&newer] { return newer->count == 1; }));
    EXPECT_EQ(older->count, 0);
}

TEST(ChannelLife, ASubscriberIsNotifiedOfTheEnd)
{
    auto device = std::make_unique<FakeDevice>();
    const auto channel = acquireChannel(device->path());
    const auto sink = std::make_shared<CountingSink>();
    channel->subscribe(sink, 1);
    device.reset();
    EXPECT_TRUE(eventually([&sink] { return sink->gone.load(); }));
}

TEST(ChannelLife, ADeviceThatComesBackGetsANewChannel)
{
    auto first = std::make_unique<FakeDevice>();
    const auto channel = acquireChannel(first->path());
    ASSERT_TRUE(channel && channel->ask(makeRequest(Command::Identity)));
    first.reset();
    EXPECT_TRUE(eventually([&channel] { return channel->isDead(); }));
    EXPECT_FALSE(channel->ask(makeRequest(Command::Identity)));

    const FakeDevice second;
    const auto other = acquireChannel(second.path());
    ASSERT_TRUE(other);
    EXPECT_NE(other.get(), channel.get());
    EXPECT_TRUE(other->ask(makeRequest(Command::Identity)));
}

TEST(ChannelLife, UnpluggingEndsAWaitingRequest)
{
    auto device = std::make_unique<FakeDevice>();
    device->setScript([](const wire::Report &) { return Answers{}; });
    const auto channel = acquireChannel(device->path());
    Limits patient;
    patient.tries = 1000;
    std::thread asker(
        [&channel, &patient] { EXPECT_FALSE(channel->ask(makeRequest(Command::Battery), patient)); });
    EXPECT_TRUE(eventually([&device] { return device->count(Command::Battery) > 0; }));
    device.reset();
    asker.join();
    EXPECT_TRUE(channel->isDead());
}

TEST(ChannelLife, OtherPathsThanInterfacesCannotBeOpened)
{
    for (const std::string &path : {std::string(), busFolder(), busFolder() + "/", busFolder() + "/control",
                                    busFolder() + "/../1209-0005-0103-1-ff05-a", std::string("/dev/null"),
                                    busFolder() + "/1209-0005-0103-1-ff05-absent"})
        EXPECT_FALSE(acquireChannel(path)) << path;
}
