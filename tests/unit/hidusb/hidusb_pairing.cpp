// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Pairing: each start that the program makes gets a result, and none gets that of the start before.
#include "tests/support/ConnectionFixture.h"

#include <atomic>

using namespace support;
using wire::Command;
using wire::PairState;

namespace
{

constexpr uint8_t Cid = 0x1A;

class Pairing : public ConnectionFixture
{
protected:
    // The results that the program was told, once all orders are carried out.
    std::vector<int> results()
    {
        const auto told = [this] {
            std::vector<int> all;
            for (const Message &message : messages.all())
                if (message.code() == 6 && message.payload.at(0) != static_cast<int>(PairState::Working))
                    all.push_back(message.payload.at(0));
            return all;
        };
        const auto versions = [this] {
            const auto all = messages.all();
            return std::count_if(all.begin(), all.end(), [](const Message &m) { return m.code() == 18; });
        };
        const auto before = versions();
        UsbServer_ReadVersion();
        EXPECT_TRUE(eventually([&] { return versions() > before; }));
        return told();
    }
    bool isTold(PairState state) const
    {
        return eventually([this, state] {
            const auto all = messages.all();
            return std::any_of(all.begin(), all.end(), [state](const Message &message) {
                return message.code() == 6 && message.payload.at(0) == static_cast<int>(state);
            });
        });
    }
    // A receiver that answers a start so, or not at all, and still tells an earlier success.
    void answerStarts(std::optional<wire::Status> status)
    {
        device.setScript([status](const wire::Report &request) -> std::optional<Answers> {
            const auto last = PairState::Succeeded;
            if (request.command() == Command::PairStatus)
                return Answers{datagram(replyTo(request, &last, sizeof last))};
            if (request.command() != Command::PairEnter)
                return std::nullopt;
            return status ? Answers{datagram(replyTo(request, nullptr, 0, *status))} : Answers{};
        });
    }
    void endPairing(PairState state)
    {
        device.send(datagram(noticeOf(Command::PairStatus, &state, sizeof state)));
    }
    const std::vector<int> failed_{static_cast<int>(PairState::Failed)};
    const std::vector<int> succeeded_{static_cast<int>(PairState::Succeeded)};
};

} // namespace

TEST_F(Pairing, AStartThatIsNotAcceptedHasFailed)
{
    for (const auto status : {std::optional(wire::Status::Refused), std::optional(wire::Status::OffLine),
                              std::optional<wire::Status>()}) {
        answerStarts(status);
        start();
        messages.clear();
        UsbServer_EnterDonglePairOnlyCid(Cid);
        UsbServer_ReadDonglePairStatus();
        EXPECT_EQ(results(), failed_);
        UsbServer_ReadDonglePairStatus();
        EXPECT_EQ(results(), failed_) << "the receiver still tells the success before";
    }
    heal();
}

// A question that waits in front of the start would bring the result of the pairing before.
TEST_F(Pairing, AQuestionInFrontOfAStartTellsNoResult)
{
    std::atomic<bool> gate{false};
    device.setScript([&gate](const wire::Report &request) -> std::optional<Answers> {
        const auto last = PairState::Succeeded;
        if (request.command() == Command::Battery && !gate)
            eventually([&gate] { return gate.load(); });
        if (request.command() == Command::PairStatus)
            return Answers{datagram(replyTo(request, &last, sizeof last))};
        return std::nullopt;
    });
    start();
    UsbServer_ReadBatteryLevel();
    UsbServer_ReadDonglePairStatus();
    UsbServer_EnterDonglePairOnlyCid(Cid);
    gate = true;
    EXPECT_TRUE(results().empty());
    UsbServer_ReadDonglePairStatus(); // of the start
    EXPECT_EQ(results(), succeeded_);
    heal();
}

TEST_F(Pairing, ALostReceiverHasFailed)
{
    auto receiver = std::make_unique<FakeDevice>(mouseName("receiver"));
    const std::string path = receiver->path();
    UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
    UsbServer_EnterDonglePairOnlyCid(Cid);
    UsbServer_ReadDonglePairStatus();
    ASSERT_TRUE(isTold(PairState::Working));
    receiver.reset();
    EXPECT_TRUE(isTold(PairState::Failed));
    messages.clear();
    UsbServer_EnterDonglePairOnlyCid(Cid); // there is none
    EXPECT_TRUE(isTold(PairState::Failed));
}

TEST_F(Pairing, AnUnpluggedReceiverThatHasPairedFailsNothing)
{
    auto receiver = std::make_unique<FakeDevice>(mouseName("receiver"));
    const std::string path = receiver->path();
    UsbServerC_Start(path.c_str(), path.c_str(), logMessage<0>);
    UsbServer_EnterDonglePairOnlyCid(Cid);
    EXPECT_TRUE(results().empty());
    const auto state = PairState::Succeeded;
    receiver->send(datagram(noticeOf(Command::PairStatus, &state, sizeof state)));
    ASSERT_TRUE(isTold(PairState::Succeeded));
    receiver.reset();
    const FakeDevice next(mouseName("receiver"));
    EXPECT_TRUE(eventually([&path] { return UsbFinderC_GetVersion(path.c_str()) != 0; }));
    EXPECT_EQ(results(), succeeded_);
}

TEST_F(Pairing, AResultThatWaitsForTheProgramIsNotThatOfANewStart)
{
    start();
    UsbServer_EnterDonglePairOnlyCid(Cid);
    EXPECT_TRUE(results().empty());
    const auto goOn = std::make_shared<std::atomic<bool>>(false);
    messages.setHook([goOn](const Message &) { eventually([goOn] { return goOn->load(); }); });
    const std::size_t before = messages.size();
    UsbServer_ReadVersion();
    ASSERT_TRUE(messages.waitFor(before + 1)); // its callback runs
    endPairing(PairState::Failed);
    UsbServer_ReadBatteryLevel(); // behind the notice: the layer has read that when it asks
    ASSERT_TRUE(eventually([this] { return device.count(Command::Battery) > 0; }));
    ASSERT_TRUE(hasReadAll());
    UsbServer_EnterDonglePairOnlyCid(Cid);
    messages.setHook(nullptr);
    *goOn = true;
    EXPECT_TRUE(results().empty());
    endPairing(PairState::Succeeded);
    EXPECT_TRUE(isTold(PairState::Succeeded));
    EXPECT_EQ(results(), succeeded_);
}

// The receiver tells how the pairing before has ended while the next start has not been sent yet.
TEST_F(Pairing, ANoticeInFrontOfAStartTellsNoResult)
{
    device.setScript([](const wire::Report &request) {
        return request.command() == Command::Battery ? std::make_optional(Answers{}) : std::nullopt;
    });
    // A busy machine may send the start before the notice has come, which proves nothing.
    bool proved = false;
    for (int i = 0; i < 10 && !proved; ++i) {
        start();
        messages.clear();
        UsbServer_EnterDonglePairOnlyCid(Cid);
        EXPECT_TRUE(results().empty());
        const auto asked = device.count(Command::Battery);
        const auto begun = device.count(Command::PairEnter);
        UsbServer_ReadBatteryLevel(); // stays unanswered
        ASSERT_TRUE(eventually([&] { return device.count(Command::Battery) > asked; }));
        UsbServer_EnterDonglePairOnlyCid(Cid);
        endPairing(PairState::Failed);
        ASSERT_TRUE(hasReadAll());
        proved = device.count(Command::PairEnter) == begun;
        EXPECT_TRUE(!proved || results().empty());
        endPairing(PairState::Succeeded);
        EXPECT_TRUE(isTold(PairState::Succeeded));
    }
    EXPECT_TRUE(proved);
    heal();
}

// Neither 0 nor an unknown state is a result; a receiver that tells one does not pair any more.
TEST_F(Pairing, AReceiverThatForgetsItsPairingHasFailed)
{
    for (const uint8_t state : {0, 4, 255}) {
        device.setScript([state](const wire::Report &request) {
            return request.command() == Command::PairStatus
                       ? std::make_optional(Answers{datagram(replyTo(request, &state, sizeof state))})
                       : std::nullopt;
        });
        start();
        messages.clear();
        UsbServer_EnterDonglePairOnlyCid(Cid);
        UsbServer_ReadDonglePairStatus();
        EXPECT_EQ(results(), failed_) << "answered " << int{state};
        messages.clear();
        UsbServer_EnterDonglePairOnlyCid(Cid);
        EXPECT_TRUE(results().empty());
        device.send(datagram(noticeOf(Command::PairStatus, &state, sizeof state)));
        EXPECT_TRUE(isTold(PairState::Failed)) << "told " << int{state};
    }
    heal();
}
