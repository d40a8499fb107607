// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Mouse.h"

#include "emulator/FactoryFlash.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace emulator
{

using wire::Command;

namespace
{

struct RateCode {
    uint8_t code;
    int hertz;
};

constexpr RateCode Rates[] = {{8, 125}, {4, 250}, {2, 500}, {1, 1000}, {16, 2000}, {32, 4000}, {64, 8000}};

constexpr std::size_t DpiItem = offsetof(DeviceStatusChange, CurrentDpi);
constexpr std::size_t RateItem = offsetof(DeviceStatusChange, ReportRate);
constexpr std::size_t EverythingItem = offsetof(DeviceStatusChange, Everything);
constexpr std::size_t DpiLedItem = offsetof(DeviceStatusChange, DpiLed);
constexpr std::size_t LedBarItem = offsetof(DeviceStatusChange, LedBar);
constexpr std::size_t BatteryItem = offsetof(DeviceStatusChange, Battery);

} // namespace

int hertzOf(uint8_t rateCode)
{
    for (const RateCode &row : Rates) {
        if (row.code == rateCode)
            return row.hertz;
    }
    return 0;
}

Mouse::Mouse(std::string deviceId) : Device(std::move(deviceId)) { state.flash.fill(factoryFlash()); }

wire::Report Mouse::answer(const wire::Report &request)
{
    switch (request.command()) {
    case Command::Identity:
        return replyWith(request, DeviceIdentity{state.cid, state.mid, state.cableKind});
    case Command::DriverStatus:
        return keep(request, state.driverStatus, 1);
    case Command::OnLine:
        return replyWith(request, onLineReply(true));
    case Command::Battery:
        return replyWith(request,
                         BatteryStatus{state.battery, static_cast<uint8_t>(state.charging ? 1 : 0), {}});
    case Command::FlashWrite:
        return accept(request, setFlash(request.address(), request.Payload, request.Length));
    case Command::FlashRead:
        return readFlash(request);
    case Command::ClearSettings:
        after_ = After::ClearDone;
        return accept(request, true);
    case Command::PairedAddress:
        return accept(request, takeAddress(argumentOf<DonglePairing>(request)));
    case Command::BatteryOptimize:
        return keep(request, state.batteryOptimize, 1);
    case Command::ConfigSelect:
        if (request.Payload[0] >= ProfileCount)
            return accept(request, false);
        selectProfile(request.Payload[0]);
        return accept(request, true);
    case Command::Config:
        return replyWith(request, state.profile);
    case Command::Version:
        return replyWith(request, versionReply());
    case Command::BootEnter:
        if (state.battery < LowBattery && !state.charging)
            return accept(request, false);
        return enterBoot(request);
    default:
        return accept(request, false);
    }
}

wire::BootIdentityReply Mouse::bootIdentity() const { return {bootTarget(), state.cid, state.mid, 0}; }

void Mouse::press(Button button, int topRate)
{
    FlashImage &flash = image();
    switch (button) {
    case Button::Dpi:
        flash.CurrentDpiStage = static_cast<uint8_t>((flash.CurrentDpiStage + 1) %
                                                     std::clamp<int>(flash.DpiStageCount, 1, DpiStageLimit));
        return announce(DpiItem);
    case Button::Rate:
        nextRate(topRate);
        return announce(RateItem);
    case Button::Profile:
        return selectProfile(static_cast<uint8_t>((state.profile + 1) % ProfileCount));
    case Button::Light:
        flash.DpiLedEnable = flash.DpiLedEnable == 0 ? 1 : 0;
        return announce(DpiLedItem);
    case Button::Bar:
        flash.LedBarEnable = flash.LedBarEnable == 0 ? 1 : 0;
        return announce(LedBarItem);
    }
}

void Mouse::nextRate(int topRate)
{
    const auto row = std::find_if(std::begin(Rates), std::end(Rates),
                                  [this](const RateCode &rate) { return rate.code == image().ReportRate; });
    const bool last = row == std::end(Rates) || row + 1 == std::end(Rates) || (row + 1)->hertz > topRate;
    image().ReportRate = last ? Rates[0].code : (row + 1)->code;
}

void Mouse::selectProfile(uint8_t index)
{
    state.profile = index;
    announce(EverythingItem);
}

void Mouse::setBattery(uint8_t level, bool charging)
{
    state.battery = level;
    state.charging = charging;
    announce(BatteryItem);
}

void Mouse::restoreFactory()
{
    state.flash.fill(factoryFlash());
    state.profile = 0;
}

void Mouse::announce(std::size_t index)
{
    uint8_t change[sizeof(DeviceStatusChange)] = {};
    change[index] = 1;
    notices.push_back(makeNotice(Command::StatusChanged, change, sizeof change));
}

bool Mouse::setFlash(std::size_t address, const uint8_t *bytes, std::size_t count)
{
    if (count == 0 || address >= FlashSize || count > FlashSize - address)
        return false;
    std::memcpy(reinterpret_cast<uint8_t *>(&image()) + address, bytes, count);
    return true;
}

wire::Report Mouse::readFlash(const wire::Report &request) const
{
    const std::size_t count = request.Payload[0];
    const std::size_t address = request.address();
    if (count == 0 || count > wire::PayloadSize || address >= FlashSize || count > FlashSize - address)
        return accept(request, false);
    return makeReply(request, reinterpret_cast<const uint8_t *>(&image()) + address, count);
}

bool Mouse::takeAddress(const DonglePairing &pairing)
{
    const bool known = pairing.ReceiverClass == 0 || pairing.ReceiverClass == 1 || pairing.ReceiverClass == 4;
    if (!plugged || pairing.Zero != 0 || !known)
        return false;
    std::reverse_copy(std::begin(pairing.Address), std::end(pairing.Address), state.address.begin());
    return true;
}

wire::OnLineReply Mouse::onLineReply(bool online) const
{
    return {static_cast<uint8_t>(online ? 1 : 0), {state.address[0], state.address[1], state.address[2]}};
}

void Mouse::setAutoSleep(std::optional<Clock::duration> unit, Clock::time_point now)
{
    sleepUnit_ = unit;
    lastUse_ = now;
}

void Mouse::use(Clock::time_point now)
{
    state.asleep = false;
    lastUse_ = now;
}

std::optional<Clock::time_point> Mouse::sleepTime() const
{
    if (!sleepUnit_ || state.asleep || plugged || image().StopCloseTime == 0)
        return std::nullopt;
    return lastUse_ + *sleepUnit_ * image().StopCloseTime;
}

} // namespace emulator
