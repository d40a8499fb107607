// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Listing.h"

#include <algorithm>
#include <cstdio>

namespace emulator
{

static const char *placeOf(const Device &device)
{
    if (device.mode == Mode::Boot)
        return device.plugged ? " plugged boot" : " unplugged boot";
    return device.plugged ? " plugged" : " unplugged";
}

static std::string lineOf(const Mouse &mouse)
{
    const MouseState &state = mouse.state;
    std::string line = mouse.id + " mouse" + placeOf(mouse) + (state.radio ? " radio" : " noradio") +
                       (state.asleep ? " asleep" : "");
    line += " cid " + std::to_string(state.cid) + " mid " + std::to_string(state.mid);
    line += " version " + formatVersion(mouse.version) + " address " + formatAddress(state.address);
    line += " profile " + std::to_string(state.profile) + " battery " + std::to_string(state.battery);
    return line + (state.charging ? " charging" : "") + " \"" + state.name + "\"\n";
}

static std::string lineOf(const Receiver &receiver)
{
    const ReceiverState &state = receiver.state;
    std::string line =
        receiver.id + " receiver " + ReceiverClasses[state.classIndex].name + placeOf(receiver) + " ";
    line += state.mouseInReach ? "online" : state.paired ? "offline" : "unpaired";
    line += " version " + formatVersion(receiver.version) + " address " + formatAddress(state.address);
    return line + " color " + std::to_string(state.color.Scheme) + " longrange " +
           std::to_string(state.longRange) + "\n";
}

std::string listScene(const Scene &scene)
{
    std::string text;
    for (const auto &receiver : scene.receivers())
        text += lineOf(*receiver);
    for (const auto &mouse : scene.mice())
        text += lineOf(*mouse);
    return text;
}

static bool isInReach(const Scene &scene, const Mouse &mouse)
{
    const auto &receivers = scene.receivers();
    return std::any_of(receivers.begin(), receivers.end(), [&scene, &mouse](const auto &receiver) {
        return receiver->state.mouseInReach && scene.mouseInReach(*receiver) == &mouse;
    });
}

// The words that all devices share, up to `online`.
static std::string describePlug(const World &world, const Device &device, const std::string &kind)
{
    const auto traffic = world.traffic.find(device.id);
    const std::size_t faults = traffic == world.traffic.end() ? 0 : traffic->second.faults.size();
    const auto erase = device.boot.eraseTime.count();
    return "device=" + device.id + " kind=" + kind + " plugged=" + std::to_string(device.plugged) +
           " boot=" + std::to_string(device.mode == Mode::Boot) +
           " version=" + formatVersion(device.version) + " faults=" + std::to_string(faults) +
           (erase > 0 ? " erase=" + std::to_string(erase) : "") + " online=";
}

static std::string describe(const World &world, const Receiver &receiver)
{
    const ReceiverState &state = receiver.state;
    return describePlug(world, receiver, "receiver") + std::to_string(state.mouseInReach) +
           " class=" + ReceiverClasses[state.classIndex].name + " address=" + formatAddress(state.address) +
           " pairing=" + std::to_string(receiver.pairs()) +
           " pairrefuse=" + std::to_string(state.refusesPairing) +
           " pairtime=" + std::to_string(state.pairingTime.count()) + "\n";
}

static std::string describe(const World &world, const Mouse &mouse)
{
    const MouseState &state = mouse.state;
    const FlashImage &image = state.flash[state.profile];
    const bool onCable = mouse.plugged && mouse.mode == Mode::Normal;
    std::string line =
        describePlug(world, mouse, "mouse") + std::to_string(onCable || isInReach(world.scene, mouse));
    const std::pair<const char *, int> numbers[] = {
        {"radio", state.radio},          {"asleep", state.asleep},
        {"battery", state.battery},      {"charging", state.charging},
        {"profile", state.profile},      {"stage", image.CurrentDpiStage},
        {"stages", image.DpiStageCount}, {"rate", hertzOf(image.ReportRate)},
        {"pairing", state.pairing}};
    for (const auto &[name, value] : numbers)
        line += " " + std::string(name) + "=" + std::to_string(value);
    return line + " address=" + formatAddress(state.address) + " name=\"" + state.name + "\"\n";
}

std::string describeWorld(const World &world)
{
    std::string text =
        std::string("pace=") + (world.pace ? "1" : "0") + " log=" + (world.log ? "1" : "0") + "\n";
    for (const auto &receiver : world.scene.receivers())
        text += describe(world, *receiver);
    for (const auto &mouse : world.scene.mice())
        text += describe(world, *mouse);
    return text;
}

std::string dumpFlash(const FlashImage &image, std::size_t address, std::size_t count)
{
    constexpr std::size_t perLine = 16;
    const auto *bytes = reinterpret_cast<const uint8_t *>(&image) + address;
    std::string text;
    char part[16];
    for (std::size_t line = 0; line < count; line += perLine) {
        std::snprintf(part, sizeof part, "%04zx:", address + line);
        text += part;
        for (std::size_t i = line; i < std::min(line + perLine, count); ++i) {
            std::snprintf(part, sizeof part, " %02x", bytes[i]);
            text += part;
        }
        text += '\n';
    }
    return text;
}

} // namespace emulator
