// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/ControlOrder.h"
#include "emulator/Listing.h"

namespace emulator
{

namespace
{

struct NamedButton {
    const char *name;
    Button button;
};
constexpr NamedButton Buttons[] = {{"dpi", Button::Dpi},
                                   {"rate", Button::Rate},
                                   {"profile", Button::Profile},
                                   {"light", Button::Light},
                                   {"bar", Button::Bar}};

constexpr uint32_t SleepUnitMs = 10000; // of StopCloseTime

} // namespace

namespace mouseorders
{

void radio(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (const auto on = order.on(2))
        mouse->state.radio = *on;
}

void sleep(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (mouse->plugged)
        return order.fail(mouse->id + " is on its cable");
    mouse->state.asleep = true;
}

void wake(ControlOrder &order)
{
    if (Mouse *mouse = order.mouse())
        mouse->use(order.scene().now());
}

void autoSleep(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    const auto on = order.on(2);
    const auto unit = order.count() > 3 ? order.number(3, 1, SleepUnitMs) : SleepUnitMs;
    if (!on || !unit)
        return;
    const auto time = *on ? std::optional<Clock::duration>(std::chrono::milliseconds(*unit)) : std::nullopt;
    mouse->setAutoSleep(time, order.scene().now());
}

void press(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    for (const NamedButton &row : Buttons) {
        if (order.arg(2) != row.name)
            continue;
        mouse->use(order.scene().now());
        return mouse->press(row.button, order.scene().topRate(*mouse));
    }
    order.fail("no such button");
}

void battery(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    const auto level = order.number(2, 0, 100);
    const bool charging = order.count() > 3;
    if (charging && order.arg(3) != "charging")
        return order.fail("only \"charging\" can follow");
    if (level)
        mouse->setBattery(static_cast<uint8_t>(*level), charging);
}

void notify(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (const auto item = order.number(2, 0, sizeof(DeviceStatusChange) - 1))
        mouse->announce(*item);
}

void setFlash(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (order.arg(2) != "flash")
        return order.fail("only flash can be set");
    const auto address = order.number(3, 0, FlashSize - 1);
    if (!address)
        return;
    Bytes bytes;
    for (std::size_t i = 4; i < order.count(); ++i) {
        const auto byte = order.value(parseHex(order.arg(i), 2), "bytes of two hexadecimal digits");
        if (!byte)
            return;
        bytes.push_back(static_cast<uint8_t>(*byte));
    }
    if (!mouse->setFlash(*address, bytes.data(), bytes.size()))
        order.fail("the flash ends before that");
}

void showFlash(ControlOrder &order)
{
    const Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (order.arg(2) != "flash")
        return order.fail("only flash can be shown");
    const auto address = order.number(3, 0, FlashSize - 1);
    const auto count = order.number(4, 1, FlashSize);
    if (!address || !count)
        return;
    if (*count > FlashSize - *address)
        return order.fail("the flash ends before that");
    order.answer = dumpFlash(mouse->state.flash[mouse->state.profile], *address, *count);
}

void profile(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (const auto index = order.number(2, 0, ProfileCount - 1))
        mouse->selectProfile(static_cast<uint8_t>(*index));
}

void pair(ControlOrder &order)
{
    if (Mouse *mouse = order.mouse())
        mouse->state.pairing = true;
}

// A reset on the mouse itself: it sends a notice that everything changed, not the answer to a host's reset.
void reset(ControlOrder &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    mouse->restoreFactory();
    mouse->announce(offsetof(DeviceStatusChange, Everything));
}

} // namespace mouseorders

} // namespace emulator
