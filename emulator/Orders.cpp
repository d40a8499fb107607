// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Orders.h"

#include "emulator/Listing.h"

#include <algorithm>
#include <iterator>

namespace emulator
{

namespace
{

// One order while it is carried out. args[0] is its name.
struct Order {
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

struct ButtonRow {
    const char *name;
    Button button;
};
constexpr ButtonRow Buttons[] = {{"dpi", Button::Dpi},
                                 {"rate", Button::Rate},
                                 {"profile", Button::Profile},
                                 {"light", Button::Light},
                                 {"bar", Button::Bar}};

constexpr uint32_t SleepUnitMs = 10000; // of StopCloseTime
constexpr uint32_t ColorLimit = 3;

void listDevices(Order &order) { order.answer = listScene(order.scene()); }
void showState(Order &order) { order.answer = describeWorld(order.world); }

// The sender streams the reports; an order that comes by another way has nobody to stream to.
void follow(Order &order)
{
    if (order.arg(1) == Everything || order.device() != nullptr)
        order.world.followed = order.arg(1);
}

void plug(Order &order)
{
    if (Device *device = order.device())
        order.scene().setPlugged(*device, true);
}

void unplug(Order &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    order.scene().setPlugged(*device, false);
    order.world.traffic[device->id].clear();
}

void radio(Order &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (const auto on = order.on(2))
        mouse->state.radio = *on;
}

void sleep(Order &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (mouse->plugged)
        return order.fail(mouse->id + " is on its cable");
    mouse->state.asleep = true;
}

void wake(Order &order)
{
    if (Mouse *mouse = order.mouse())
        mouse->use(order.scene().now());
}

void autoSleep(Order &order)
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

void press(Order &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    for (const ButtonRow &row : Buttons) {
        if (order.arg(2) != row.name)
            continue;
        mouse->use(order.scene().now());
        return mouse->press(row.button, order.scene().topRate(*mouse));
    }
    order.fail("no such button");
}

void battery(Order &order)
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

void notify(Order &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (const auto item = order.number(2, 0, sizeof(DeviceStatusChange) - 1))
        mouse->announce(*item);
}

void setFlash(Order &order)
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

void showFlash(Order &order)
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

void profile(Order &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    if (const auto index = order.number(2, 0, ProfileCount - 1))
        mouse->selectProfile(static_cast<uint8_t>(*index));
}

void pair(Order &order)
{
    if (Mouse *mouse = order.mouse())
        mouse->state.pairing = true;
}

void pairFail(Order &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (!receiver->pairs())
        return order.fail(receiver->id + " does not pair");
    receiver->endPairing(wire::PairState::Failed);
}

void unpair(Order &order)
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

void color(Order &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (const auto scheme = order.number(2, 0, ColorLimit))
        receiver->changeColor(static_cast<uint8_t>(*scheme));
}

void longRange(Order &order)
{
    Receiver *receiver = order.receiver();
    if (receiver == nullptr)
        return;
    if (const auto on = order.on(2))
        receiver->changeLongRange(*on);
}

void fault(Order &order)
{
    const Device *device = order.device();
    if (device == nullptr)
        return;
    FaultTable &table = order.world.traffic[device->id].faults;
    if (order.count() == 3 && order.arg(2) == "clear")
        return table.clear();
    if (const auto rule = parseFault(order.args, 2, order.error))
        table.add(*rule);
}

void countReports(Order &order)
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

void version(Order &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    if (const auto number = order.value(parseVersion(order.arg(2)), "a version such as 1.0A"))
        device->version = *number;
}

void boot(Order &order)
{
    Device *device = order.device();
    if (device == nullptr)
        return;
    if (order.arg(2) != "enter" && order.arg(2) != "leave")
        return order.fail("wanted: enter or leave");
    order.world.traffic[device->id].clear();
    order.scene().setBoot(*device, order.arg(2) == "enter");
}

// The mouse's own reset: what follows is a change of everything, not the end of a host's order.
void reset(Order &order)
{
    Mouse *mouse = order.mouse();
    if (mouse == nullptr)
        return;
    mouse->restoreFactory();
    mouse->announce(offsetof(DeviceStatusChange, Everything));
}

void setSwitch(Order &order, bool &what)
{
    if (const auto on = order.on(1))
        what = *on;
}

void pace(Order &order) { setSwitch(order, order.world.pace); }
void log(Order &order) { setSwitch(order, order.world.log); }
void quit(Order &order) { order.world.quit = true; }
void help(Order &order);

struct OrderRow {
    const char *name;
    const char *usage;
    std::size_t least; // arguments
    std::size_t most;
    void (*run)(Order &);
};

constexpr std::size_t Any = 4096;
constexpr OrderRow Table[] = {
    {"list", "", 0, 0, listDevices},
    {"state", "", 0, 0, showState},
    {"follow", "DEVICE|all", 1, 1, follow},
    {"plug", "DEVICE", 1, 1, plug},
    {"unplug", "DEVICE", 1, 1, unplug},
    {"radio", "MOUSE on|off", 2, 2, radio},
    {"sleep", "MOUSE", 1, 1, sleep},
    {"wake", "MOUSE", 1, 1, wake},
    {"autosleep", "MOUSE on|off [UNIT_MS]", 2, 3, autoSleep},
    {"press", "MOUSE dpi|rate|profile|light|bar", 2, 2, press},
    {"battery", "MOUSE 0..100 [charging]", 2, 3, battery},
    {"notify", "MOUSE ITEM", 2, 2, notify},
    {"set", "MOUSE flash ADDRESS BYTE...", 4, Any, setFlash},
    {"show", "MOUSE flash ADDRESS COUNT", 4, 4, showFlash},
    {"profile", "MOUSE 0..3", 2, 2, profile},
    {"reset", "MOUSE", 1, 1, reset},
    {"pair", "MOUSE", 1, 1, pair},
    {"pairfail", "RECEIVER", 1, 1, pairFail},
    {"unpair", "RECEIVER", 1, 1, unpair},
    {"color", "RECEIVER 0..3", 2, 2, color},
    {"longrange", "RECEIVER on|off", 2, 2, longRange},
    {"fault", "DEVICE clear | KIND [MS] at N|random SEED PERCENT|always [command NAME]", 2, 8, fault},
    {"count", "DEVICE [COMMAND]", 1, 2, countReports},
    {"version", "DEVICE MAJOR.MINOR", 2, 2, version},
    {"boot", "DEVICE enter|leave", 2, 2, boot},
    {"pace", "on|off", 1, 1, pace},
    {"log", "on|off", 1, 1, log},
    {"quit", "", 0, 0, quit},
    {"help", "", 0, 0, help},
};

void help(Order &order)
{
    for (const OrderRow &row : Table)
        order.answer += std::string(row.name) + (*row.usage != '\0' ? " " : "") + row.usage + "\n";
}

const OrderRow *findOrder(const std::string &name)
{
    const auto row = std::find_if(std::begin(Table), std::end(Table),
                                  [&name](const OrderRow &each) { return name == each.name; });
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
    const OrderRow *row = findOrder(words->front());
    if (row == nullptr)
        return "error no order " + words->front() + "; help lists them\n";
    const std::size_t count = words->size() - 1;
    if (count < row->least || count > row->most)
        return "error usage: " + std::string(row->name) + " " + row->usage + "\n";
    Order order{world, *words, {}, {}};
    row->run(order);
    return order.error.empty() ? order.answer + "ok\n" : "error " + order.error + "\n";
}

} // namespace emulator
