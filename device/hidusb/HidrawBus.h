// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HidrawBus: the machine's own HID devices, listed and watched through udev. A path is that of a hidraw node;
// a node with several usage pages is listed once for each. It does not use hidapi, whose release 0.13
// accesses freed memory when a device is unplugged while it is listed or opened.
#pragma once

#include "device/hidusb/Bus.h"
#include "device/hidusb/HidrawNodes.h"

namespace hidusb
{

class HidrawBus : public Bus
{
public:
    std::vector<InterfaceInfo> enumerate() override;
    std::unique_ptr<ReportPort> open(const std::string &path) override;
    std::unique_ptr<ChangeSource> watch() override;

private:
    HidrawNodes nodes_;
};

} // namespace hidusb
