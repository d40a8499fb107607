// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Scenario.h"

#include "emulator/Orders.h"

#include <algorithm>
#include <iterator>

namespace emulator
{

namespace
{

constexpr uint8_t OwnAddressPrefix = 0xE0; // of addresses that the scenario does not set
constexpr std::size_t DeviceLimit = 200;

// Stores a parsed number; false when there is none.
template <typename Parsed, typename Target> bool put(const std::optional<Parsed> &parsed, Target &target)
{
    if (parsed)
        target = static_cast<Target>(*parsed);
    return parsed.has_value();
}

template <typename Target>
bool putNumber(const std::string &text, Target &target, uint32_t least, uint32_t most)
{
    return put(parseNumber(text, least, most), target);
}

bool putUsb(Scene &scene, const std::string &key, const std::string &value)
{
    const auto id = parseHex(value, 4);
    UsbIds &ids = scene.ids;
    if (key == "vendor")
        return put(id, ids.vendor);
    if (key == "cable")
        return put(id, ids.cable);
    if (key == "mouseboot")
        return put(id, ids.mouseBoot);
    if (key == "receiverboot")
        return put(id, ids.receiverBoot);
    for (std::size_t i = 0; i < ReceiverClassCount; ++i) {
        if (key == ReceiverClasses[i].name)
            return put(id, ids.receiver[i]);
    }
    return false;
}

bool putMouse(Mouse &mouse, const std::string &key, const std::string &value)
{
    MouseState &state = mouse.state;
    if (key == "name")
        state.name = value;
    else if (key == "cid")
        return putNumber(value, state.cid, 0, 0xFF);
    else if (key == "mid")
        return putNumber(value, state.mid, 0, 0xFF);
    else if (key == "version")
        return put(parseVersion(value), mouse.version);
    else if (key == "battery")
        return putNumber(value, state.battery, 0, 100);
    else if (key == "address")
        return put(parseAddress(value), state.address);
    else if (key == "kind")
        return putNumber(value, state.cableKind, 2, 3);
    else if (key == "screen")
        return put(parseSwitch(value), state.screen);
    else
        return false;
    return true;
}

bool putClass(ReceiverState &state, const std::string &name)
{
    const auto found = std::find_if(std::begin(ReceiverClasses), std::end(ReceiverClasses),
                                    [&name](const ReceiverClass &each) { return name == each.name; });
    state.classIndex = static_cast<std::size_t>(found - std::begin(ReceiverClasses));
    return found != std::end(ReceiverClasses);
}

bool putPaired(const Scene &scene, ReceiverState &state, const std::string &id)
{
    const Mouse *mouse = scene.findMouse(id);
    if (mouse == nullptr)
        return false;
    state.paired = PairedMouse{mouse->state.cid, mouse->state.mid};
    state.cid = mouse->state.cid;
    state.mid = mouse->state.mid;
    return true;
}

bool putReceiver(const Scene &scene, Receiver &receiver, const std::string &key, const std::string &value)
{
    ReceiverState &state = receiver.state;
    if (key == "class")
        return putClass(state, value);
    if (key == "mouse")
        return putPaired(scene, state, value);
    if (key == "cid")
        return putNumber(value, state.cid, 0, 0xFF);
    if (key == "mid")
        return putNumber(value, state.mid, 0, 0xFF);
    if (key == "version")
        return put(parseVersion(value), receiver.version);
    if (key == "address")
        return put(parseAddress(value), state.address);
    if (key == "color")
        return putNumber(value, state.color.Scheme, 0, 3);
    return false;
}

// Reads the lines of one scenario.
class ScenarioReader
{
public:
    explicit ScenarioReader(World &world) : world_(world) {}

    // The reason why a line is bad; empty when it is good.
    std::string read(const std::string &line)
    {
        const auto words = splitWords(line);
        if (!words)
            return "the quote does not end";
        if (words->empty())
            return {};
        words_ = *words;
        if (words_[0] == "usb")
            return readPairs(
                1, [this](const auto &key, const auto &value) { return putUsb(world_.scene, key, value); });
        if (words_[0] == "mouse")
            return readMouse();
        if (words_[0] == "receiver")
            return readReceiver();
        if (!isOrder(words_[0]))
            return "no such line: " + words_[0];
        return readOrder(line);
    }

private:
    template <typename Put> std::string readPairs(std::size_t first, const Put &putPair)
    {
        for (std::size_t i = first; i < words_.size(); i += 2) {
            if (i + 1 == words_.size())
                return words_[i] + " needs a value";
            if (!putPair(words_[i], words_[i + 1]))
                return "bad property: " + words_[i] + " " + words_[i + 1];
        }
        return {};
    }

    std::string checkNew() const
    {
        const Scene &scene = world_.scene;
        if (scene.ids.vendor == 0)
            return "the usb line must come first";
        if (words_.size() < 2 || !isDeviceId(words_[1]))
            return "a device needs an id of 1..32 letters a..z, digits and _";
        if (scene.find(words_[1]) != nullptr)
            return "there is a " + words_[1] + " already";
        if (scene.mice().size() + scene.receivers().size() >= DeviceLimit)
            return "too many devices";
        return {};
    }

    Address nextAddress()
    {
        const std::size_t count = world_.scene.mice().size() + world_.scene.receivers().size();
        return {OwnAddressPrefix, 0, static_cast<uint8_t>(count)};
    }

    std::string readMouse()
    {
        if (std::string reason = checkNew(); !reason.empty())
            return reason;
        Mouse &mouse = world_.scene.addMouse(words_[1]);
        world_.traffic[mouse.id];
        mouse.state.address = nextAddress();
        return readPairs(
            2, [&mouse](const auto &key, const auto &value) { return putMouse(mouse, key, value); });
    }

    std::string readReceiver()
    {
        if (std::string reason = checkNew(); !reason.empty())
            return reason;
        Receiver &receiver = world_.scene.addReceiver(words_[1]);
        world_.traffic[receiver.id];
        receiver.state.address = nextAddress();
        Mouse *paired = nullptr;
        std::string reason = readPairs(2, [&](const auto &key, const auto &value) {
            paired = key == "mouse" ? world_.scene.findMouse(value) : paired;
            return putReceiver(world_.scene, receiver, key, value);
        });
        if (paired != nullptr)
            paired->state.address = receiver.state.address;
        return reason;
    }

    std::string readOrder(const std::string &line)
    {
        const std::string answer = runOrder(world_, line);
        const std::string error = "error ";
        if (answer.compare(0, error.size(), error) != 0)
            return {};
        return answer.substr(error.size(), answer.size() - error.size() - 1);
    }

    World &world_;
    Words words_;
};

} // namespace

bool loadScenario(World &world, std::istream &text, const std::string &name, std::string &error)
{
    ScenarioReader reader(world);
    std::string line;
    for (int number = 1; std::getline(text, line); ++number) {
        const std::string reason = reader.read(line);
        if (reason.empty())
            continue;
        error = name;
        error += ":" + std::to_string(number) + ": " + reason;
        return false;
    }
    return true;
}

} // namespace emulator
