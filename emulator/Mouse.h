// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A mouse: four profiles of flash, a battery, a radio, buttons. The same object answers on its cable and
// through a receiver.
#pragma once

#include "emulator/Device.h"
#include "emulator/Words.h"

#include "device/hidusb/wire/FlashLayout.h"

#include <array>
#include <chrono>
#include <optional>

namespace emulator
{

using Clock = std::chrono::steady_clock;

constexpr int ProfileCount = 4;
constexpr uint8_t LowBattery = 20; // below this percentage, when not charging, BootEnter is refused
constexpr uint8_t CableKind = 3;   // DeviceKind on the cable, unless the scenario sets 2

enum class Button : uint8_t { Dpi, Rate, Profile, Light, Bar };

// The state that tests and orders read.
struct MouseState {
    std::string name;
    uint8_t cid = 0;
    uint8_t mid = 0;
    uint8_t cableKind = CableKind;
    bool screen = false;
    Address address{}; // the receiver with the same address is paired with it
    uint8_t battery = 100;
    bool charging = false;
    bool radio = true;
    bool asleep = false;
    bool pairing = false; // searches for a pairing receiver
    uint8_t profile = 0;
    uint8_t driverStatus = 0;
    uint8_t batteryOptimize = 1;
    std::array<FlashImage, ProfileCount> flash;
};

// Hz of a report rate code in the flash; 0 for an unknown code.
int hertzOf(uint8_t rateCode);

class Mouse final : public Device
{
public:
    explicit Mouse(std::string deviceId);

    wire::Report answer(const wire::Report &request) override;
    wire::BootIdentityReply bootIdentity() const override;
    uint8_t bootTarget() const override { return wire::TargetMouse; }

    // A press of a button by the user; topRate: highest rate of the live link in Hz.
    void press(Button button, int topRate);
    void selectProfile(uint8_t index);
    void setBattery(uint8_t level, bool charging);
    void restoreFactory();
    // Queues the notice that item `index` of DeviceStatusChange changed.
    void announce(std::size_t index);
    // Writes without a notice, like a host's write; false when the range exceeds the flash.
    bool setFlash(std::size_t address, const uint8_t *bytes, std::size_t count);

    bool onAir() const { return mode == Mode::Normal && !plugged && state.radio && !state.asleep; }
    wire::OnLineReply onLineReply(bool online) const;

    // When the mouse falls asleep after StopCloseTime units without a press; none: never.
    void setAutoSleep(std::optional<Clock::duration> unit, Clock::time_point now);
    void use(Clock::time_point now); // wakes the mouse and restarts the time to sleep
    std::optional<Clock::time_point> sleepTime() const;

    MouseState state;

private:
    FlashImage &image() { return state.flash[state.profile]; }
    const FlashImage &image() const { return state.flash[state.profile]; }
    wire::Report readFlash(const wire::Report &request) const;
    bool takeAddress(const DonglePairing &pairing);
    void nextRate(int topRate);

    std::optional<Clock::duration> sleepUnit_;
    Clock::time_point lastUse_{};
};

} // namespace emulator
