// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SocketBus: the emulator's bus, a folder of SEQPACKET sockets (see wire/BusName.h). A path is the full
// file path of a socket.
#pragma once

#include "device/hidusb/Bus.h"

namespace hidusb
{

class SocketBus : public Bus
{
public:
    explicit SocketBus(std::string folder);
    std::vector<InterfaceInfo> enumerate() override;
    std::unique_ptr<ReportPort> open(const std::string &path) override;
    std::unique_ptr<ChangeSource> watch() override;

private:
    const std::string folder_; // ends with a slash
};

} // namespace hidusb
