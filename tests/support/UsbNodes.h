// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The hidraw nodes that this machine's kernel has made for emulated USB devices. A device is known by its
// serial, which is its id in the scenario.
#pragma once

#include "emulator/Emulator.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace usbnodes
{

// The value of a line KEY=value in a file of the kernel's; empty when there is none.
inline std::string valueIn(const std::filesystem::path &file, const std::string &key)
{
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind(key + "=", 0) == 0)
            return line.substr(key.size() + 1);
    return {};
}

// The node of a device's interface; empty when there is none.
inline std::string nodeOf(const std::string &serial, int interfaceNumber = 1)
{
    const std::string input = "input" + std::to_string(interfaceNumber);
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/sys/class/hidraw", error)) {
        const auto uevent = entry.path() / "device/uevent";
        const std::string place = valueIn(uevent, "HID_PHYS");
        const bool its = place.size() > input.size() &&
                         place.compare(place.size() - input.size(), input.size(), input) == 0;
        if (its && valueIn(uevent, "HID_UNIQ") == serial)
            return "/dev/" + entry.path().filename().string();
    }
    return {};
}

// How many nodes each device has, by serial and the ids as the kernel writes them, "rx 1209:0005". A node
// that comes or goes has an entry of its own, since the kernel removes the node before the link that the
// layer lists it by.
inline std::map<std::string, int> present()
{
    std::map<std::string, int> nodes;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/sys/class/hidraw", error)) {
        const auto uevent = entry.path() / "device/uevent";
        const std::string id = valueIn(uevent, "HID_ID"); // 0003:00001209:00000005
        const std::string node = "/dev/" + entry.path().filename().string();
        if (id.size() == 22 && ::access(node.c_str(), F_OK) == 0)
            ++nodes[valueIn(uevent, "HID_UNIQ") + " " + id.substr(9, 4) + ":" + id.substr(18, 4)];
        else
            ++nodes[node + " in transition"];
    }
    return nodes;
}

// The same of what the emulator has plugged in: a node for each interface number.
inline std::map<std::string, int> wanted(const std::vector<emulator::Interface> &interfaces)
{
    std::map<std::string, std::set<int>> numbers;
    for (const emulator::Interface &face : interfaces) {
        char ids[16];
        std::snprintf(ids, sizeof ids, " %04X:%04X", face.name.vendorId, face.name.productId);
        numbers[face.name.serial + ids].insert(face.name.interfaceNumber);
    }
    std::map<std::string, int> nodes;
    for (const auto &[device, its] : numbers)
        nodes[device] = static_cast<int>(its.size());
    return nodes;
}

// Whether udev keeps a record of this node. One that is older than the node is of a device that went.
inline bool isRecorded(const std::filesystem::path &path)
{
    struct stat node;
    if (::stat(path.c_str(), &node) != 0)
        return false;
    const std::string number =
        std::to_string(major(node.st_rdev)) + ":" + std::to_string(minor(node.st_rdev));
    std::error_code error;
    const auto recorded = std::filesystem::last_write_time("/run/udev/data/c" + number, error);
    return !error && recorded >= std::filesystem::last_write_time(path, error);
}

// Whether udev, where its daemon runs, has dealt with all nodes. Its queue holds only events
// that have reached it, so each node must have a record first.
inline bool udevIsDone()
{
    if (::access("/run/udev/control", F_OK) != 0)
        return true;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/sys/class/hidraw", error))
        if (!isRecorded("/dev" / entry.path().filename()))
            return false;
    return ::access("/run/udev/queue", F_OK) != 0;
}

// Until the kernel knows exactly these devices, and udev has dealt with them. `pause` passes the time between
// two looks.
template <typename Pause> bool settle(const std::vector<emulator::Interface> &interfaces, Pause pause)
{
    constexpr std::chrono::seconds patience(60); // the machine may be an emulated one
    const auto deadline = emulator::Clock::now() + patience;
    while (present() != wanted(interfaces) || !udevIsDone()) {
        if (emulator::Clock::now() > deadline)
            return false;
        pause();
    }
    return true;
}

inline bool settle(const std::vector<emulator::Interface> &interfaces)
{
    return settle(interfaces, [] { ::usleep(5000); });
}

} // namespace usbnodes
