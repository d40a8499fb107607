// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HidrawNodes: the HID interfaces for which the kernel has a hidraw node now, with its access rights. A
// search asks once for each product that may be there, and udev reads all of a node's parents each time, so
// what a node is gets asked only once.
#pragma once

#include "device/hidusb/Bus.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace hidusb
{

class HidrawNodes
{
public:
    // In the order of the nodes' numbers; a node with several usage pages is listed once for each. Any
    // thread.
    std::vector<InterfaceInfo> list();

private:
    // By the place of the device in sysfs, which ends in a number that the kernel gives to no other device.
    using Nodes = std::map<std::string, std::vector<InterfaceInfo>>;

    std::mutex mutex_; // held for the pointer only, never while the kernel is asked
    std::shared_ptr<const Nodes> known_ = std::make_shared<Nodes>();
};

} // namespace hidusb
