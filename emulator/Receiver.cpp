// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Receiver.h"

#include <algorithm>
#include <iterator>

namespace emulator
{

using wire::Command;
using wire::PairState;

// Largest values of the three lights; a value above is refused.
static constexpr uint8_t ColorSchemeLimit = 3;
static constexpr uint8_t BarModeLimit = 6;
static constexpr uint8_t BarStepLimit = 10;
static constexpr uint8_t IndicatorLimit = 3;

static bool isBar(const DongleRgbBar &bar)
{
    return bar.Mode <= BarModeLimit && bar.Speed <= BarStepLimit && bar.Brightness <= BarStepLimit;
}

static bool isIndicator(const DongleIndicator &indicator)
{
    return std::all_of(std::begin(indicator.Choice), std::end(indicator.Choice),
                       [](uint8_t choice) { return choice <= IndicatorLimit; });
}

wire::Report Receiver::answer(const wire::Report &request)
{
    switch (request.command()) {
    case Command::Identity:
        return replyWith(request, identity());
    case Command::DriverStatus:
        return keep(request, state.driverStatus, 1);
    case Command::OnLine:
        return replyWith(request, onLineReply());
    case Command::PairEnter:
        return enterPairing(request);
    case Command::PairStatus:
        return replyWith(request, state.pairState.value_or(PairState{}));
    case Command::SlaveVersion:
        return replyWith(request, versionReply());
    case Command::DongleColor:
        return replyWith(request, state.color);
    case Command::DongleColorWrite:
        return keepIf(request, state.color, request.Payload[0] <= ColorSchemeLimit);
    case Command::LongRange:
        return replyWith(request, state.longRange);
    case Command::LongRangeWrite:
        return keep(request, state.longRange, 1);
    case Command::DongleBar:
        return replyWith(request, state.bar);
    case Command::DongleBarWrite:
        return keepIf(request, state.bar, isBar(argumentOf<DongleRgbBar>(request)));
    case Command::Indicator:
        return replyWith(request, state.indicator);
    case Command::IndicatorWrite:
        return keepIf(request, state.indicator, isIndicator(argumentOf<DongleIndicator>(request)));
    case Command::BootEnter:
        return enterBoot(request);
    default:
        return accept(request, false);
    }
}

DeviceIdentity Receiver::identity() const
{
    const uint8_t kind = ReceiverClasses[state.classIndex].kind;
    if (state.paired)
        return {state.paired->cid, state.paired->mid, kind};
    return {state.cid, 0, kind};
}

wire::BootIdentityReply Receiver::bootIdentity() const
{
    const uint8_t kHz = wire::receiverKHz(ReceiverClasses[state.classIndex].kind);
    if (state.paired)
        return {bootTarget(), state.paired->cid, state.paired->mid, kHz};
    return {bootTarget(), state.cid, state.mid, kHz};
}

wire::OnLineReply Receiver::onLineReply() const
{
    return {static_cast<uint8_t>(state.mouseInReach ? 1 : 0),
            {state.address[0], state.address[1], state.address[2]}};
}

// A refusal changes nothing: the receiver still tells the result of the pairing before.
wire::Report Receiver::enterPairing(const wire::Report &request)
{
    if (state.refusesPairing)
        return accept(request, false);
    state.wantedCid = request.Payload[0];
    state.pairState = PairState::Working;
    pairingEnd_.reset();
    return accept(request, true);
}

void Receiver::endPairing(PairState result)
{
    state.pairState = result;
    notices.push_back(makeNotice(Command::PairStatus, &result, sizeof result));
}

void Receiver::losePairing() { state.pairState.reset(); }

std::optional<std::chrono::steady_clock::time_point>
Receiver::pairingDeadline(std::chrono::steady_clock::time_point now)
{
    if (!pairs())
        return std::nullopt;
    if (!pairingEnd_)
        pairingEnd_ = now + state.pairingTime;
    return pairingEnd_;
}

void Receiver::changeColor(uint8_t scheme)
{
    state.color.Scheme = scheme;
    notices.push_back(makeNotice(Command::DongleColorChanged, &state.color, sizeof state.color));
}

void Receiver::changeLongRange(bool on)
{
    state.longRange = on ? 1 : 0;
    const uint8_t payload[wire::LongRangeNoticeSize] = {state.longRange};
    notices.push_back(makeNotice(Command::LongRangeChanged, payload, sizeof payload));
}

void Receiver::setReach(bool inReach)
{
    if (inReach == state.mouseInReach)
        return;
    state.mouseInReach = inReach;
    const wire::OnLineReply reply = onLineReply();
    notices.push_back(makeNotice(Command::OnLineChanged, &reply, sizeof reply));
}

} // namespace emulator
