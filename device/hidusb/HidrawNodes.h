// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HidrawNodes: the HID interfaces that have a hidraw node with its permissions set. A search lists them once
// for each product of the catalogue, and udev would read all parents of each node every time; the result is
// therefore kept for as long as the node exists.
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
    // By sysfs path, which ends in a number that the kernel does not give to a second device.
    using Nodes = std::map<std::string, std::vector<InterfaceInfo>>;

    std::mutex mutex_; // guards the pointer; never held during a system call
    std::shared_ptr<const Nodes> known_ = std::make_shared<Nodes>();
};

} // namespace hidusb
