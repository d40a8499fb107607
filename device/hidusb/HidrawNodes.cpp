// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/HidrawNodes.h"

#include "device/hidusb/ReportDescriptor.h"
#include "device/hidusb/Udev.h"
#include "device/hidusb/WireLog.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace hidusb
{

static std::vector<uint8_t> descriptorOf(udev_device *hid)
{
    std::ifstream file(std::string(udev_device_get_syspath(hid)) + "/report_descriptor", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The attribute of a parent as a hexadecimal number; `missing` when there is none, or no longer.
static int hexadecimal(udev_device *parent, const char *attribute, int missing)
{
    const char *text = parent != nullptr ? udev_device_get_sysattr_value(parent, attribute) : nullptr;
    return text != nullptr ? static_cast<int>(std::strtol(text, nullptr, 16)) : missing;
}

// Empty for a node whose device is being removed: its attributes are gone already.
static std::vector<InterfaceInfo> interfacesOf(udev_device *node)
{
    const char *path = udev_device_get_devnode(node);
    udev_device *hid = udev_device_get_parent_with_subsystem_devtype(node, "hid", nullptr);
    const char *id = hid != nullptr ? udev_device_get_property_value(hid, "HID_ID") : nullptr;
    unsigned kind = 0, vendor = 0, product = 0;
    if (path == nullptr || id == nullptr || std::sscanf(id, "%x:%x:%x", &kind, &vendor, &product) != 3)
        return {};
    udev_device *usbInterface = udev_device_get_parent_with_subsystem_devtype(node, "usb", "usb_interface");
    udev_device *usbDevice = udev_device_get_parent_with_subsystem_devtype(node, "usb", "usb_device");
    InterfaceInfo info;
    info.path = path;
    info.port = usbDevice != nullptr ? udev_device_get_syspath(usbDevice) : "";
    info.vendorId = static_cast<uint16_t>(vendor);
    info.productId = static_cast<uint16_t>(product);
    info.release = static_cast<uint16_t>(hexadecimal(usbDevice, "bcdDevice", 0));
    info.interfaceNumber = hexadecimal(usbInterface, "bInterfaceNumber", info.interfaceNumber);
    std::vector<InterfaceInfo> interfaces;
    for (const uint16_t page : usagePages(descriptorOf(hid))) {
        info.usagePage = page;
        interfaces.push_back(info);
    }
    return interfaces;
}

static std::vector<InterfaceInfo> readInterfaces(const std::string &name)
{
    const auto lock = lockUdev();
    const UdevHandle<udev> context(udev_new());
    if (!context)
        return {};
    const UdevHandle<udev_device> node(
        udev_device_new_from_subsystem_sysname(context.get(), "hidraw", name.c_str()));
    // Until the daemon has set the permissions of a node, only root can open it; the daemon then sends an
    // event.
    if (!node || (udevRuns() && udev_device_get_is_initialized(node.get()) == 0))
        return {};
    return interfacesOf(node.get());
}

std::vector<InterfaceInfo> HidrawNodes::list()
{
    std::unique_lock lock(mutex_);
    const std::shared_ptr<const Nodes> known = known_;
    lock.unlock();
    auto present = std::make_shared<Nodes>();
    std::vector<InterfaceInfo> found;
    std::error_code error;
    std::filesystem::directory_iterator at("/sys/class/hidraw", error);
    for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
        std::error_code gone;
        const std::string sysfsPath = std::filesystem::read_symlink(at->path(), gone).string();
        const auto before = known->find(sysfsPath);
        std::vector<InterfaceInfo> interfaces =
            before != known->end() ? before->second : readInterfaces(at->path().filename().string());
        found.insert(found.end(), interfaces.begin(), interfaces.end());
        if (!gone && !interfaces.empty())
            present->emplace(sysfsPath, std::move(interfaces));
    }
    if (error)
        logFailure({}, "list /sys/class/hidraw", error.value());
    std::stable_sort(found.begin(), found.end(), [](const InterfaceInfo &a, const InterfaceInfo &b) {
        return a.path.size() != b.path.size() ? a.path.size() < b.path.size() : a.path < b.path;
    });
    lock.lock();
    known_ = present;
    return found;
}

} // namespace hidusb
