// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/usb/UsbBus.h"

#include <algorithm>

namespace emulator
{

namespace
{

constexpr std::chrono::milliseconds RetryTime{50};

using DeviceMap = std::map<std::string, std::vector<Interface>>;

// A device with other descriptors, such as a boot loader, is another device.
DeviceMap devicesOf(const std::vector<Interface> &interfaces)
{
    std::map<std::string, std::vector<Interface>> byId;
    for (const Interface &face : interfaces)
        byId[face.device].push_back(face);
    DeviceMap devices;
    for (auto &[id, faces] : byId) {
        std::string key;
        for (const Interface &face : faces)
            key += wire::formatBusName(face.name) + " ";
        devices.emplace(std::move(key), std::move(faces));
    }
    return devices;
}

} // namespace

UsbBus::UsbBus(Controller controller) : controller_(std::move(controller)) {}

void UsbBus::sync(const std::vector<Interface> &wanted, const Closed &closed)
{
    DeviceMap missing = devicesOf(wanted);
    for (auto plug = plugs_.begin(); plug != plugs_.end();) {
        if (missing.erase(plug->first) > 0) {
            ++plug;
            continue;
        }
        for (const Interface &face : plug->second.interfaces())
            closed(face);
        plug = plugs_.erase(plug);
    }
    retry_.reset();
    for (auto &[key, faces] : missing) {
        FileDescriptor socket = controller_(faces.front().device);
        if (socket.valid())
            plugs_.emplace(key, UsbPlug(std::move(faces), std::move(socket)));
        else
            retry_ = Clock::now() + RetryTime;
    }
}

void UsbBus::addTo(std::vector<pollfd> &polled, const Filter &reads) const
{
    for (const auto &[key, plug] : plugs_) {
        const auto &faces = plug.interfaces();
        if (std::all_of(faces.begin(), faces.end(), reads))
            polled.push_back({plug.file(), POLLIN, 0});
    }
}

// When the controller closes a socket, sync() plugs the device in again, because it is still wanted.
void UsbBus::service(const ReadyMap &ready, const Handler &handler)
{
    for (auto plug = plugs_.begin(); plug != plugs_.end();) {
        const bool gone = ready.count(plug->second.file()) > 0 && !plug->second.service(handler);
        plug = gone ? plugs_.erase(plug) : std::next(plug);
    }
}

void UsbBus::send(const std::string &device, uint16_t usagePage, const std::vector<uint8_t> &bytes)
{
    for (auto &[key, plug] : plugs_) {
        if (plug.interfaces().front().device == device)
            plug.send(usagePage, bytes);
    }
}

std::size_t UsbBus::clientCount() const
{
    std::size_t count = 0;
    for (const auto &[key, plug] : plugs_)
        count += plug.readerCount();
    return count;
}

} // namespace emulator
