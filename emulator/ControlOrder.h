// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ControlOrder: one order while it runs. MouseOrders.cpp has the orders of a mouse.
#pragma once

#include "emulator/World.h"

namespace emulator
{

// args[0] is its name.
struct ControlOrder {
    World &world;
    Words args;
    std::string answer;
    std::string error;

    Scene &scene() const { return world.scene; }
    std::size_t count() const { return args.size(); }
    const std::string &arg(std::size_t index) const { return args[index]; }
    void fail(const std::string &text) { error = text; }

    template <typename Found> Found *need(Found *found, const char *what)
    {
        if (found == nullptr)
            fail("no " + std::string(what) + " " + args[1]);
        return found;
    }
    Device *device() { return need(scene().find(args[1]), "device"); }
    Mouse *mouse() { return need(scene().findMouse(args[1]), "mouse"); }
    Receiver *receiver() { return need(scene().findReceiver(args[1]), "receiver"); }

    // The value of an argument, or the failure of the order.
    template <typename Value> std::optional<Value> value(std::optional<Value> parsed, const char *wanted)
    {
        if (!parsed)
            fail("wanted: " + std::string(wanted));
        return parsed;
    }
    std::optional<uint32_t> number(std::size_t index, uint32_t least, uint32_t most)
    {
        const auto parsed = parseNumber(args[index], least, most);
        if (!parsed)
            fail(args[index] + " is not a number " + std::to_string(least) + ".." + std::to_string(most));
        return parsed;
    }
    std::optional<bool> on(std::size_t index) { return value(parseSwitch(args[index]), "on or off"); }
};

namespace mouseorders
{

void radio(ControlOrder &order);
void sleep(ControlOrder &order);
void wake(ControlOrder &order);
void autoSleep(ControlOrder &order);
void press(ControlOrder &order);
void battery(ControlOrder &order);
void notify(ControlOrder &order);
void setFlash(ControlOrder &order);
void showFlash(ControlOrder &order);
void profile(ControlOrder &order);
void pair(ControlOrder &order);
void reset(ControlOrder &order);

} // namespace mouseorders

} // namespace emulator
