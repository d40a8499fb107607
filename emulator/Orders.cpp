// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Orders.h"

#include "emulator/ControlOrder.h"
#include "emulator/Listing.h"

#include <algorithm>
#include <iterator>

namespace emulator
{

namespace
{

constexpr uint32_t ColorLimit = 3;
constexpr uint32_t BootTimeLimitMs = 60000;
constexpr uint32_t PairingTimeLimitMs = 600000;

void listDevices(ControlOrder &order) { order.answer = listScene(order.scene()); }
void showState(ControlOrder &order) { order.answer = describeWorld(order.world); }

// The control socket streams the reports to the sender; other sources of orders have no receiver for them.
void follow(ControlOrder &order)
{
    if (order.arg(1) == Everything || order.device() != nullptr)
        order.world.followed = order.arg(1);
}

void plug(ControlOrder &order)
{
    if (Device *device = order.device())
        order.scene().setPlugged(*device, true);
}

void unplug(ControlOrder &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    order.scene().setPlugged(*device, false);
    order.world.traffic[device->id].clear();
}

void pairFail(ControlOrder &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (!receiver->pairs())
        return order.fail(receiver->id + " does not pair");
    receiver->endPairing(wire::PairState::Failed);
}

void pairRefuse(ControlOrder &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (const auto on = order.on(2))
        receiver->state.refusesPairing = *on;
}

void pairTime(ControlOrder &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (const auto time = order.number(2, 1, PairingTimeLimitMs))
        receiver->state.pairingTime = std::chrono::milliseconds(*time);
}

void unpair(ControlOrder &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    receiver->state.paired.reset();
    // A mouse without a receiver answers to an address that no receiver has.
    for (const auto &mouse : order.scene().mice()) {
        if (mouse->state.address == receiver->state.address)
            mouse->state.address = {};
    }
}

void color(ControlOrder &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (const auto scheme = order.number(2, 0, ColorLimit))
        receiver->changeColor(static_cast<uint8_t>(*scheme));
}

void longRange(ControlOrder &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (const auto on = order.on(2))
        receiver->changeLongRange(*on);
}

void fault(ControlOrder &order)
{
    const Device *device = order.device();
    if (device == nullptr)
        return;
    FaultTable &table = order.world.traffic[device->id].faults;
    if (order.count() == 3 && order.arg(2) == "clear") {
        order.world.traffic[device->id].stalledUntil = {};
        return table.clear();
    }
    if (const auto rule = parseFault(order.args, 2, order.error))
        table.add(*rule);
}

void countReports(ControlOrder &order)
{
    const Device *device = order.device();
    if (device == nullptr)
        return;
    const CommandRow *row = order.count() > 2 ? findCommand(order.arg(2)) : nullptr;
    if (order.count() > 2 && row == nullptr)
        return order.fail("no such command");
    const Traffic &traffic = order.world.traffic[device->id];
    const auto code = row == nullptr ? uint8_t{} : static_cast<uint8_t>(row->command);
    order.answer = std::to_string(row == nullptr ? traffic.total() : traffic.countOf(code)) + "\n";
}

void version(ControlOrder &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    if (const auto number = order.value(parseVersion(order.arg(2)), "a version such as 1.0A"))
        device->version = *number;
}

void boot(ControlOrder &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    const bool broken = order.arg(2) == "broken";
    const bool leave = order.arg(2) == "leave";
    if (!broken && !leave && order.arg(2) != "enter")
        return order.fail("wanted: enter, leave or broken");
    order.world.traffic[device->id].clear();
    order.scene().setBoot(*device, !leave);
    if (broken || leave)
        device->boot.setHoldsImage(leave);
}

void erase(ControlOrder &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    if (const auto time = order.number(2, 0, BootTimeLimitMs))
        device->boot.eraseTime = std::chrono::milliseconds(*time);
}

void bootTimes(ControlOrder &order)
{
    const auto leave = order.number(1, 0, BootTimeLimitMs);
    const auto away = order.number(2, 0, BootTimeLimitMs);
    if (leave && away)
        order.scene().bootTimes = {std::chrono::milliseconds(*leave), std::chrono::milliseconds(*away)};
}

void setSwitch(ControlOrder &order, bool &what)
{
    if (const auto on = order.on(1))
        what = *on;
}

void pace(ControlOrder &order) { setSwitch(order, order.world.pace); }
void log(ControlOrder &order) { setSwitch(order, order.world.log); }
void quit(ControlOrder &order) { order.world.quit = true; }
void help(ControlOrder &order);

struct ControlOrderRow {
    const char *name;
    const char *usage;
    std::size_t least; // arguments
    std::size_t most;
    void (*run)(ControlOrder &);
};

constexpr std::size_t Any = 4096;
constexpr ControlOrderRow Table[] = {
    {"list", "", 0, 0, listDevices},
    {"state", "", 0, 0, showState},
    {"follow", "DEVICE|all", 1, 1, follow},
    {"plug", "DEVICE", 1, 1, plug},
    {"unplug", "DEVICE", 1, 1, unplug},
    {"radio", "MOUSE on|off", 2, 2, mouseorders::radio},
    {"sleep", "MOUSE", 1, 1, mouseorders::sleep},
    {"wake", "MOUSE", 1, 1, mouseorders::wake},
    {"autosleep", "MOUSE on|off [UNIT_MS]", 2, 3, mouseorders::autoSleep},
    {"press", "MOUSE dpi|rate|profile|light|bar", 2, 2, mouseorders::press},
    {"battery", "MOUSE 0..100 [charging]", 2, 3, mouseorders::battery},
    {"notify", "MOUSE ITEM", 2, 2, mouseorders::notify},
    {"set", "MOUSE flash ADDRESS BYTE...", 4, Any, mouseorders::setFlash},
    {"show", "MOUSE flash ADDRESS COUNT", 4, 4, mouseorders::showFlash},
    {"profile", "MOUSE 0..3", 2, 2, mouseorders::profile},
    {"reset", "MOUSE", 1, 1, mouseorders::reset},
    {"pair", "MOUSE", 1, 1, mouseorders::pair},
    {"pairfail", "RECEIVER", 1, 1, pairFail},
    {"pairrefuse", "RECEIVER on|off", 2, 2, pairRefuse},
    {"pairtime", "RECEIVER MS", 2, 2, pairTime},
    {"unpair", "RECEIVER", 1, 1, unpair},
    {"color", "RECEIVER 0..3", 2, 2, color},
    {"longrange", "RECEIVER on|off", 2, 2, longRange},
    {"fault", "DEVICE clear | KIND [MS] at N [SEED]|random SEED PERCENT|always [command NAME]", 2, 8, fault},
    {"count", "DEVICE [COMMAND]", 1, 2, countReports},
    {"version", "DEVICE MAJOR.MINOR", 2, 2, version},
    {"boot", "DEVICE enter|leave|broken", 2, 2, boot},
    {"erase", "DEVICE MS", 2, 2, erase},
    {"boottimes", "LEAVE_MS AWAY_MS", 2, 2, bootTimes},
    {"pace", "on|off", 1, 1, pace},
    {"log", "on|off", 1, 1, log},
    {"quit", "", 0, 0, quit},
    {"help", "", 0, 0, help},
};

void help(ControlOrder &order)
{
    for (const ControlOrderRow &row : Table)
        order.answer += std::string(row.name) + (*row.usage != '\0' ? " " : "") + row.usage + "\n";
}

const ControlOrderRow *findOrder(const std::string &name)
{
    const auto row = std::find_if(std::begin(Table), std::end(Table),
                                  [&name](const ControlOrderRow &each) { return name == each.name; });
    return row == std::end(Table) ? nullptr : &*row;
}

} // namespace

bool isOrder(const std::string &word) { return findOrder(word) != nullptr; }

std::string runOrder(World &world, const std::string &line)
{
    world.followed.clear();
    const auto words = splitWords(line);
    if (!words)
        return "error the quote does not end\n";
    if (words->empty())
        return "ok\n";
    const ControlOrderRow *row = findOrder(words->front());
    if (row == nullptr)
        return "error no order " + words->front() + "; help lists them\n";
    const std::size_t count = words->size() - 1;
    if (count < row->least || count > row->most)
        return "error usage: " + std::string(row->name) + " " + row->usage + "\n";
    ControlOrder order{world, *words, {}, {}};
    row->run(order);
    return order.error.empty() ? order.answer + "ok\n" : "error " + order.error + "\n";
}

} // namespace emulator
