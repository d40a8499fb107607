// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LoggedBus: a bus in front of another one that logs what passes: each report in either direction, what is
// opened and closed, what comes and goes. It stands in front of the bus of the process only while there is a
// log.
#pragma once

#include "device/hidusb/Bus.h"
#include "device/hidusb/WireLog.h"

#include <mutex>

namespace hidusb
{

class LoggedBus : public Bus
{
public:
    LoggedBus(Bus &bus, WireLog &log) : bus_(bus), log_(log) {}
    std::vector<InterfaceInfo> enumerate() override;
    std::unique_ptr<ReportPort> open(const std::string &path) override;
    std::unique_ptr<ChangeSource> watch() override;

private:
    void logChanges(const std::vector<InterfaceInfo> &before, const std::vector<InterfaceInfo> &now);

    Bus &bus_;
    WireLog &log_;
    std::mutex mutex_;
    std::vector<InterfaceInfo> present_; // as the last search found it
};

} // namespace hidusb
