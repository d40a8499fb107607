// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/PairingState.h"

#include "device/DeviceState.h"
#include "hub/PostMsg.h"

#include <QDebug>
#include <mutex>

namespace
{

constexpr int PairMessage = 6;
constexpr uint8_t Failure = 2;
constexpr uint8_t Paired = 3;

struct State {
    std::mutex lock;
    PairingPhase phase = PairingPhase::Idle;
    bool PairingActive = false;
    bool WorkerPaused = false;
};

State &state()
{
    static auto *const instance = new State; // outlives every thread of the layer
    return *instance;
}

using Guard = std::lock_guard<std::mutex>;

void settle(State &now, PairingPhase outcome)
{
    now.PairingActive = false;
    now.phase = outcome;
    if (now.WorkerPaused)
        OnDevicePage = 1;
    now.WorkerPaused = false;
}

} // namespace

PairingPhase pairing::phase()
{
    const Guard guard(state().lock);
    return state().phase;
}

bool pairing::isActive()
{
    const Guard guard(state().lock);
    return state().PairingActive;
}

void pairing::prepare()
{
    const Guard guard(state().lock);
    state().phase = PairingPhase::Idle;
    state().PairingActive = state().WorkerPaused = false;
}

void pairing::begin()
{
    const Guard guard(state().lock);
    state().phase = PairingPhase::Pairing;
    state().PairingActive = true;
    if (OnDevicePage == 1) {
        OnDevicePage = 0;
        state().WorkerPaused = true;
    }
}

void pairing::end(PairingPhase outcome)
{
    const Guard guard(state().lock);
    settle(state(), outcome);
}

bool pairing::failActive()
{
    const Guard guard(state().lock);
    const bool active = state().PairingActive;
    if (active)
        settle(state(), PairingPhase::Failed);
    return active;
}

void pairing::leaveDevicePage()
{
    const Guard guard(state().lock);
    state().WorkerPaused = false;
    OnDevicePage = 0; // the outcome may just have restored it
}

void pairing::callback(const uint8_t *header, int32_t headerLength, const uint8_t *payload,
                       uint32_t payloadLength)
{
    qDebug("in2");
    const int type = header && headerLength >= 2 ? header[1] : 0;
    qDebug() << type;
    if (type != PairMessage || !payload || payloadLength == 0)
        return;
    if (payload[0] != Failure && payload[0] != Paired)
        return;
    const bool succeeded = payload[0] == Paired;
    end(succeeded ? PairingPhase::Succeeded : PairingPhase::Failed);
    qDebug(succeeded ? "success" : "fail");
    emit PostMsg::instance()->SigTimerStop();
    emit PostMsg::instance()->SigButtonEnable(succeeded ? 1 : 0);
}
