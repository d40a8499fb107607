// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/DeviceSearch.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DeviceKinds.h"
#include "device/hidusb/HIDUsb.h"
#include "device/hidusb/wire/Report.h"

#include <algorithm>

namespace
{

// The layer knows the codes that are on the wire, the catalogue what follows from them.
constexpr bool isOneKindOnTheWire(const DeviceKindRow &row)
{
    const auto code = static_cast<uint8_t>(row.code);
    return wire::isCable(code) == row.wired && wire::receiverKHz(code) == (row.wired ? 0 : row.kHz);
}
constexpr bool areKindsOfTheWire()
{
    for (const DeviceKindRow &row : DeviceKinds)
        if (!isOneKindOnTheWire(row))
            return false;
    return true;
}
static_assert(areKindsOfTheWire(), "the layer and the catalogue differ about a kind of device");

constexpr int IdentityTries = 10;
constexpr int32_t PathsPerPair = 5;
constexpr int32_t SettingsInterface = 1;
constexpr int32_t SettingsUsage = 5;
constexpr int32_t BootInterfaces = 2; // numbers at which boot loaders are looked for, from 0
constexpr int32_t BootUsage = 0xB0;

QStringList optionList(const char *key)
{
    QStringList list = DeviceCatalogue().optionList(key);
    list.removeAll(QString());
    return list;
}

// A device that has just been plugged in reports zeros for a while.
bool askIdentity(const QByteArray &path, DeviceIdentity &identity)
{
    for (int tries = 0; tries < IdentityTries; ++tries) {
        identity = UsbFinderC_GetDeviceInfo(path.constData(), 0);
        if (identity.Cid != 0 || identity.Mid != 0)
            return true;
    }
    return false;
}

QString descriptorVersion(const QByteArray &path)
{
    UsbAttribute attribute{};
    UsbFinderC_GetUsbDeviceAttribute(path.constData(), &attribute);
    return versionText(attribute.Version.get());
}

bool holds(const std::vector<DeviceAllInfo> &found, const QString &path)
{
    return std::any_of(found.cbegin(), found.cend(),
                       [&path](const DeviceAllInfo &device) { return device.DevicePath == path; });
}

// A product id may stand under several keys; its device is listed once.
void appendPair(std::vector<DeviceAllInfo> &found, DeviceFinder finder, const QString &vid,
                const QString &pid)
{
    const QByteArray vidText = vid.toLatin1();
    const QByteArray pidText = pid.toLatin1();
    int32_t count = PathsPerPair;
    const char *const *paths =
        finder == DeviceFinder::Default
            ? UsbFinderC_FindHidDevicesByDefaultDeviceId(vidText.constData(), pidText.constData(), &count)
            : UsbFinderC_FindHidDevicesByDeviceId(vidText.constData(), pidText.constData(), SettingsInterface,
                                                  SettingsUsage, &count);
    QList<QByteArray> copies; // the layer owns the array and may replace it at the next call
    for (int32_t i = 0; paths && i < qMin(count, PathsPerPair); ++i)
        copies.append(paths[i]);
    for (const QByteArray &path : copies) {
        DeviceAllInfo device;
        device.DevicePath = QString::fromLocal8Bit(path);
        if (holds(found, device.DevicePath))
            continue;
        device.Vid = vid;
        device.Pid = pid;
        device.DongleVersion = descriptorVersion(path);
        found.push_back(device);
    }
}

} // namespace

int unknownIndex() { return DeviceCatalogue().total(); }

DeviceMatch identifyDevice(DeviceAllInfo &device)
{
    const QByteArray path = device.DevicePath.toLocal8Bit();
    DeviceIdentity identity{};
    const bool ready = askIdentity(path, identity);
    const int total = unknownIndex();
    device.DeviceKind = identity.DeviceKind;
    device.Usb = isWiredKind(identity.DeviceKind);
    device.DriveIndex = total;
    if (!ready)
        return DeviceMatch::Unknown;
    const int model = DeviceCatalogue().find(identity.Cid, identity.Mid);
    if (model == total)
        return total >= 1 ? DeviceMatch::Unknown : DeviceMatch::LeftOut;
    device.Cid = identity.Cid;
    device.Mid = identity.Mid;
    device.DriveIndex = model;
    device.Online = UsbFinderC_GetDeviceOnLine(path.constData()) != 0;
    return DeviceMatch::Known;
}

// Identifies first: that waits until the device is opened, while the 200 ms of an on-line question may end
// before.
DeviceMatch refreshDevice(DeviceAllInfo &device)
{
    const DeviceMatch match = identifyDevice(device);
    OnlineAddress address{};
    UsbFinderC_GetDeviceOnLineWithUsbAddress(device.DevicePath.toLocal8Bit().constData(), &address);
    device.Online = address.Online == 1;
    const QByteArray bytes(reinterpret_cast<const char *>(address.Address), sizeof address.Address);
    device.UsbAddress = bytes.count('\0') == bytes.size() ? QByteArray() : bytes;
    return match;
}

QStringList searchedProductIds()
{
    QStringList ids = optionList(OtherCable.productIdKey);
    for (std::size_t i = 0; i < ReceiverKinds; ++i)
        ids += optionList(DeviceKinds[i].productIdKey);
    return ids;
}

std::vector<DeviceAllInfo> findDevices(DeviceFinder finder)
{
    std::vector<DeviceAllInfo> found;
    const QStringList productIds = searchedProductIds();
    for (const QString &vid : optionList("VID"))
        for (const QString &pid : productIds)
            appendPair(found, finder, vid, pid);
    return found;
}

QStringList findBootLoaders()
{
    QStringList found;
    for (const QString &vid : optionList("VID"))
        for (const QString &pid : optionList("Boot_PID"))
            for (int32_t number = 0; number < BootInterfaces; ++number) {
                int32_t count = PathsPerPair;
                const char *const *paths = UsbFinderC_FindHidDevicesByDeviceId(
                    vid.toLatin1().constData(), pid.toLatin1().constData(), number, BootUsage, &count);
                for (int32_t i = 0; paths && i < qMin(count, PathsPerPair); ++i)
                    found << QString::fromLocal8Bit(paths[i]);
            }
    found.removeDuplicates();
    return found;
}
