// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HidrawBus: the machine's own HID devices, listed and written through hidapi, watched through udev. A path
// is that of a hidraw node; a node with several vendor pages is listed once for each.
#pragma once

#include "device/hidusb/Bus.h"

namespace hidusb
{

class HidrawBus : public Bus
{
public:
    std::vector<InterfaceInfo> enumerate() override;
    std::unique_ptr<ReportPort> open(const std::string &path) override;
    std::unique_ptr<ChangeSource> watch() override;
};

} // namespace hidusb
