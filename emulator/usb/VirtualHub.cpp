// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/usb/VirtualHub.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <vector>

namespace emulator
{

namespace
{

constexpr const char *Controller = "/sys/devices/platform/vhci_hcd.0";

// Numbers of the free ports for devices of up to high speed. The lines of a status file are
// "hs 0000 004 …": hub, port, state.
std::vector<int> freePorts()
{
    constexpr int freeState = 4;
    std::vector<int> ports;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(Controller, error)) {
        if (entry.path().filename().string().rfind("status", 0) != 0)
            continue;
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            std::string hub;
            int port = 0;
            int state = 0;
            if (words >> hub >> port >> state && hub == "hs" && state == freeState)
                ports.push_back(port);
        }
    }
    return ports;
}

bool attach(int port, int socket)
{
    constexpr int fullSpeed = 2;
    const FileDescriptor file(::open((std::string(Controller) + "/attach").c_str(), O_WRONLY | O_CLOEXEC));
    const std::string line = std::to_string(port) + " " + std::to_string(socket) + " " +
                             std::to_string(port + 1) + " " + std::to_string(fullSpeed);
    return file.valid() && ::write(file.get(), line.data(), line.size()) == ssize_t(line.size());
}

} // namespace

FileDescriptor plugIntoKernel(const std::string &device, UsbPorts &ports)
{
    const std::optional<int> port = ports.choose(device, freePorts());
    int ends[2];
    if (!port || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return FileDescriptor();
    FileDescriptor plug(ends[0]);
    const FileDescriptor host(ends[1]); // the kernel keeps its own reference
    return attach(*port, host.get()) ? std::move(plug) : FileDescriptor();
}

} // namespace emulator
