// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Scene.h"

#include <algorithm>

namespace emulator
{

template <typename Kind>
static Kind *findIn(const std::vector<std::unique_ptr<Kind>> &devices, const std::string &id)
{
    for (const auto &device : devices) {
        if (device->id == id)
            return device.get();
    }
    return nullptr;
}

Mouse &Scene::addMouse(const std::string &id) { return *mice_.emplace_back(std::make_unique<Mouse>(id)); }

Receiver &Scene::addReceiver(const std::string &id)
{
    return *receivers_.emplace_back(std::make_unique<Receiver>(id));
}

Mouse *Scene::findMouse(const std::string &id) const { return findIn(mice_, id); }

Receiver *Scene::findReceiver(const std::string &id) const { return findIn(receivers_, id); }

Device *Scene::find(const std::string &id) const
{
    if (Mouse *mouse = findMouse(id))
        return mouse;
    return findReceiver(id);
}

wire::Report Scene::answer(Device &device, const wire::Report &request)
{
    const CommandRow *row = findCommand(request.CommandCode);
    if (row == nullptr || request.Length < row->least || request.Length > row->most)
        return makeReply(request, wire::Status::Refused);
    if (device.mode != Mode::Normal) {
        const wire::Report reply = device.boot.answer(request, device.bootIdentity(), now_);
        const bool ends = row->command == wire::Command::BootEnd || row->command == wire::Command::BootLeave;
        follow(device, ends && reply.status() == wire::Status::Ok ? After::LeaveBoot : After::Nothing);
        return reply;
    }
    Device *asked = &device;
    if (auto *receiver = dynamic_cast<Receiver *>(&device); receiver != nullptr && row->route == Route::Mouse)
        asked = mouseInReach(*receiver);
    if (asked == nullptr)
        return makeReply(request, wire::Status::OffLine);
    const wire::Report reply = asked->answer(request);
    if (row->command == wire::Command::PairedAddress && reply.status() == wire::Status::Ok)
        evictOthers(static_cast<Mouse &>(*asked));
    follow(*asked, asked->takeAfter());
    return reply;
}

void Scene::follow(Device &device, After what)
{
    switch (what) {
    case After::Nothing:
        return;
    case After::EnterBoot:
        return afterUnlessRestarted(device, bootTimes.leave,
                                    [this, &device] { changeMode(device, Mode::Normal, Mode::Boot); });
    case After::LeaveBoot:
        return afterUnlessRestarted(device, bootTimes.leave,
                                    [this, &device] { changeMode(device, Mode::Boot, Mode::Normal); });
    case After::ClearDone:
        return after(ClearTime, [&device] {
            static_cast<Mouse &>(device).restoreFactory();
            device.notices.push_back(makeNotice(wire::Command::ClearSettings, nullptr, 0));
        });
    }
}

// A repeated request may find the device gone already.
void Scene::changeMode(Device &device, Mode from, Mode to)
{
    if (device.mode != from)
        return;
    device.mode = Mode::Absent;
    afterUnlessRestarted(device, bootTimes.away, [this, &device, to] {
        if (device.mode == Mode::Absent)
            setBoot(device, to == Mode::Boot);
    });
}

void Scene::afterUnlessRestarted(Device &device, Clock::duration delay, std::function<void()> what)
{
    after(delay, [&device, starts = device.starts, what = std::move(what)] {
        if (device.starts == starts)
            what();
    });
}

void Scene::setBoot(Device &device, bool inBoot)
{
    if (const auto version = device.boot.takeAcceptedVersion())
        device.version = *version;
    device.boot.reset();
    device.mode = inBoot ? Mode::Boot : Mode::Normal;
}

void Scene::setPlugged(Device &device, bool plugged)
{
    if (device.plugged == plugged)
        return;
    device.plugged = plugged;
    if (!plugged)
        losePower(device);
    if (Mouse *mouse = findMouse(device.id))
        mouse->use(now_);
}

void Scene::losePower(Device &device)
{
    ++device.starts;
    if (const auto version = device.boot.takeAcceptedVersion())
        device.version = *version;
    device.boot.reset();
    device.mode = device.boot.holdsImage() ? Mode::Normal : Mode::Boot;
}

void Scene::cutPower(Device &device)
{
    losePower(device);
    const Mode next = device.mode;
    device.mode = Mode::Absent;
    afterUnlessRestarted(device, bootTimes.away, [&device, next] { device.mode = next; });
}

Mouse *Scene::mouseInReach(const Receiver &receiver) const
{
    if (receiver.mode != Mode::Normal)
        return nullptr;
    for (const auto &mouse : mice_) {
        if (mouse->onAir() && mouse->state.address == receiver.state.address)
            return mouse.get();
    }
    return nullptr;
}

Device *Scene::livePlug(Mouse &mouse) const
{
    if (mouse.plugged)
        return &mouse;
    for (const auto &receiver : receivers_) {
        if (receiver->plugged && mouseInReach(*receiver) == &mouse)
            return receiver.get();
    }
    return nullptr;
}

int Scene::topRate(const Mouse &mouse) const
{
    constexpr int slowest = ReceiverClasses[0].topRate;
    if (mouse.plugged)
        return mouse.state.cableKind == CableKind ? ReceiverClasses[ReceiverClassCount - 1].topRate : slowest;
    for (const auto &receiver : receivers_) {
        if (mouseInReach(*receiver) == &mouse)
            return receiver->topRate();
    }
    return slowest;
}

void Scene::pairWaiting()
{
    for (const auto &receiver : receivers_) {
        for (const auto &mouse : mice_) {
            const bool meet = receiver->mode == Mode::Normal && receiver->plugged && receiver->pairs() &&
                              mouse->state.pairing && mouse->onAir() &&
                              mouse->state.cid == receiver->state.wantedCid;
            if (!meet)
                continue;
            mouse->state.pairing = false;
            mouse->state.address = receiver->state.address;
            evictOthers(*mouse);
            receiver->state.paired = PairedMouse{mouse->state.cid, mouse->state.mid};
            receiver->endPairing(wire::PairState::Succeeded);
        }
    }
}

// A receiver has one mouse: the one before answers to an address that no receiver has.
void Scene::evictOthers(const Mouse &paired)
{
    for (const auto &mouse : mice_) {
        if (mouse.get() != &paired && mouse->state.address == paired.state.address)
            mouse->state.address = {};
    }
}

std::vector<RoutedNotice> Scene::settle()
{
    for (const auto &receiver : receivers_) {
        if (!receiver->plugged || receiver->mode != Mode::Normal)
            receiver->losePairing();
        receiver->pairingDeadline(now_);
    }
    pairWaiting();
    for (const auto &receiver : receivers_) {
        const Mouse *mouse = mouseInReach(*receiver);
        // A mouse that got this address over its cable announces itself over the air.
        if (mouse != nullptr)
            receiver->state.paired = PairedMouse{mouse->state.cid, mouse->state.mid};
        receiver->setReach(mouse != nullptr);
    }
    std::vector<RoutedNotice> routed;
    const auto route = [&routed](Device &from, const Device *plug) {
        for (const wire::Report &notice : from.notices) {
            if (plug != nullptr && plug->plugged && plug->mode == Mode::Normal)
                routed.push_back({plug->id, notice});
        }
        from.notices.clear();
    };
    for (const auto &receiver : receivers_)
        route(*receiver, receiver.get());
    for (const auto &mouse : mice_)
        route(*mouse, livePlug(*mouse));
    return routed;
}

std::vector<Interface> Scene::interfaces() const
{
    std::vector<Interface> all;
    const auto add = [this, &all](const Device &device, uint16_t product, uint16_t boot, bool screen) {
        const auto put = [&](uint16_t pid, int number, uint16_t page) {
            all.push_back({device.id, {ids.vendor, pid, device.version, number, page, device.id}});
        };
        if (!device.plugged || device.mode == Mode::Absent)
            return;
        if (device.mode == Mode::Boot)
            return put(boot, 0, wire::BootUsagePage);
        put(product, 0, wire::MouseUsagePage);
        put(product, wire::SettingsInterface, wire::SettingsUsagePage);
        // A second collection of the settings interface: hosts look for the screen under its number.
        if (screen)
            put(product, wire::SettingsInterface, wire::ScreenUsagePage);
    };
    for (const auto &mouse : mice_)
        add(*mouse, ids.cable, ids.mouseBoot, mouse->state.screen);
    for (const auto &receiver : receivers_)
        add(*receiver, ids.receiver[receiver->state.classIndex], ids.receiverBoot, false);
    return all;
}

void Scene::run(Clock::time_point now)
{
    now_ = now;
    while (!agenda_.empty() && agenda_.begin()->first <= now) {
        const auto what = std::move(agenda_.begin()->second);
        agenda_.erase(agenda_.begin());
        what();
    }
    for (const auto &mouse : mice_) {
        const auto time = mouse->sleepTime();
        if (time && *time <= now)
            mouse->state.asleep = true;
    }
    for (const auto &receiver : receivers_) {
        const auto time = receiver->pairingDeadline(now);
        if (time && *time <= now)
            receiver->endPairing(wire::PairState::Failed);
    }
}

void Scene::after(Clock::duration delay, std::function<void()> what)
{
    agenda_.emplace(now_ + delay, std::move(what));
}

std::optional<Clock::time_point> Scene::nextDue() const
{
    std::optional<Clock::time_point> next;
    if (!agenda_.empty())
        next = agenda_.begin()->first;
    const auto consider = [&next](const std::optional<Clock::time_point> &time) {
        if (time && (!next || *time < *next))
            next = time;
    };
    for (const auto &mouse : mice_)
        consider(mouse->sleepTime());
    for (const auto &receiver : receivers_)
        consider(receiver->pairingDeadline(now_));
    return next;
}

} // namespace emulator
