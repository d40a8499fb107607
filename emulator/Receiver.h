// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A receiver: its lights and radio settings, and the pairing with one mouse. The Scene routes commands for
// the mouse to the mouse itself.
#pragma once

#include "emulator/Device.h"
#include "emulator/Words.h"

#include <chrono>
#include <optional>

namespace emulator
{

struct ReceiverClass {
    const char *name;
    uint8_t kind; // DeviceKind
    int topRate;  // Hz
};

constexpr ReceiverClass ReceiverClasses[] = {
    {"1k", 0, 1000}, {"2k", 4, 2000}, {"4k", 1, 4000}, {"8k", 5, 8000}};
constexpr std::size_t ReceiverClassCount = sizeof ReceiverClasses / sizeof ReceiverClasses[0];

constexpr std::chrono::milliseconds PairingTime{60000}; // a pairing without a mouse fails then

struct PairedMouse {
    uint8_t cid;
    uint8_t mid;
};

// The state that tests and orders read.
struct ReceiverState {
    std::size_t classIndex = 0; // in ReceiverClasses
    uint8_t cid = 0;            // its own
    uint8_t mid = 0;            // of the mouse that it is sold with
    Address address{};          // a mouse with this address is paired with it
    std::optional<PairedMouse> paired;
    bool mouseInReach = false;
    uint8_t driverStatus = 0;
    uint8_t longRange = 0;
    DongleRGB color{1, {}};
    DongleRgbBar bar{1, 255, 0, 0, 4, 7, 1};
    DongleIndicator indicator{};
    uint8_t wantedCid = 0; // while it pairs
    std::optional<wire::PairState>
        pairState; // of the newest pairing; none before the first, or without power
    bool refusesPairing = false;
    std::chrono::milliseconds pairingTime = PairingTime;
};

class Receiver final : public Device
{
public:
    explicit Receiver(std::string deviceId) : Device(std::move(deviceId)) {}

    wire::Report answer(const wire::Report &request) override;
    wire::BootIdentityReply bootIdentity() const override;
    uint8_t bootTarget() const override { return wire::TargetReceiver; }

    void endPairing(wire::PairState result); // with its notice
    void losePairing();                      // without power
    // When the pairing fails; none while none runs. `now` is when one begins that has just been asked for.
    std::optional<std::chrono::steady_clock::time_point>
    pairingDeadline(std::chrono::steady_clock::time_point now);
    void changeColor(uint8_t scheme); // on the receiver itself, with its notice
    void changeLongRange(bool on);    // on the receiver itself, with its notice
    void setReach(bool inReach);      // a notice when it changed
    int topRate() const { return ReceiverClasses[state.classIndex].topRate; }
    bool pairs() const { return state.pairState == wire::PairState::Working; }

    ReceiverState state;

private:
    DeviceIdentity identity() const;
    wire::OnLineReply onLineReply() const;
    wire::Report enterPairing(const wire::Report &request);

    template <typename Record> wire::Report keepIf(const wire::Report &request, Record &record, bool fits)
    {
        if (fits)
            record = argumentOf<Record>(request);
        return accept(request, fits);
    }

    std::optional<std::chrono::steady_clock::time_point> pairingEnd_;
};

} // namespace emulator
