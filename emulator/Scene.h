// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The scene: all mice and receivers, their radio links, and scheduled events. It routes requests from a USB
// plug to the device that answers, and notices to the live plug. It has no sockets, and its caller sets the
// time. One thread at a time.
#pragma once

#include "emulator/Mouse.h"
#include "emulator/Receiver.h"

#include "device/hidusb/wire/BusName.h"

#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace emulator
{

constexpr std::chrono::milliseconds ClearTime{20};      // a factory reset
constexpr std::chrono::milliseconds BootLeaveTime{30};  // from the acknowledgement to leaving the bus
constexpr std::chrono::milliseconds BootReturnTime{60}; // from leaving to coming back

struct BootTimes {
    std::chrono::milliseconds leave = BootLeaveTime;
    std::chrono::milliseconds away = BootReturnTime;
};

struct UsbIds {
    uint16_t vendor = 0;
    uint16_t cable = 0;
    uint16_t receiver[ReceiverClassCount] = {};
    uint16_t mouseBoot = 0;
    uint16_t receiverBoot = 0;
};

// One HID interface on the bus.
struct Interface {
    std::string device; // its id
    wire::BusName name;
};

struct RoutedNotice {
    std::string device; // whose plug sends it
    wire::Report report;
};

class Scene
{
public:
    Mouse &addMouse(const std::string &id);
    Receiver &addReceiver(const std::string &id);
    Device *find(const std::string &id) const;
    Mouse *findMouse(const std::string &id) const;
    Receiver *findReceiver(const std::string &id) const;
    const std::vector<std::unique_ptr<Mouse>> &mice() const { return mice_; }
    const std::vector<std::unique_ptr<Receiver>> &receivers() const { return receivers_; }

    // The answer to a valid request at the plug of `device`.
    wire::Report answer(Device &device, const wire::Report &request);
    // Updates pairing and reach after a change and returns the due notices.
    std::vector<RoutedNotice> settle();
    std::vector<Interface> interfaces() const;

    Mouse *mouseInReach(const Receiver &receiver) const;
    int topRate(const Mouse &mouse) const; // of its live link, in Hz; 1000 without one
    void setBoot(Device &device, bool inBoot);
    // Plugging in the cable wakes the mouse and turns its radio off. An unplugged device loses its power: a
    // boot loader loses what it had received, and a device whose image is untouched starts it.
    void setPlugged(Device &device, bool plugged);
    void cutPower(Device &device); // for a moment; the device leaves the bus and starts again

    // Time. run() handles due events.
    void run(Clock::time_point now);
    void after(Clock::duration delay, std::function<void()> what);
    std::optional<Clock::time_point> nextDue() const;
    Clock::time_point now() const { return now_; }

    UsbIds ids;
    BootTimes bootTimes;

private:
    void follow(Device &device, After what);
    void changeMode(Device &device, Mode from, Mode to);
    static void losePower(Device &device);
    // An event of a device that a loss of power cancels.
    void afterUnlessRestarted(Device &device, Clock::duration delay, std::function<void()> what);
    Device *livePlug(Mouse &mouse) const;
    void pairWaiting();
    void evictOthers(const Mouse &paired);

    std::vector<std::unique_ptr<Mouse>> mice_;
    std::vector<std::unique_ptr<Receiver>> receivers_;
    std::multimap<Clock::time_point, std::function<void()>> agenda_;
    Clock::time_point now_ = Clock::now();
};

} // namespace emulator
