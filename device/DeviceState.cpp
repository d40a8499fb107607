// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/DeviceState.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"

#include <set>
#include <string>

namespace
{

const char NoDevice[] = "a"; // no device has this path, so every question about it is answered with false

struct Selection {
    std::mutex lock;
    DeviceAllInfo info;
    QString cacheName;
    QString imageName;
    std::vector<DeviceAllInfo> deviceList;
    std::set<std::string> paths; // never shrinks: handed-out characters stay valid
    std::atomic<const char *> path{NoDevice};
};

Selection &selection()
{
    static auto *const instance = new Selection; // outlives every thread of the layer
    return *instance;
}

template <typename Value> Value guarded(const Value &value)
{
    const std::lock_guard<std::mutex> guard(selection().lock);
    return value;
}

template <typename Value> void assign(Value &target, const Value &value)
{
    const std::lock_guard<std::mutex> guard(selection().lock);
    target = value;
}

QString hexByte(uint8_t value) { return QString::asprintf("%02X", value); }

} // namespace

DeviceAllInfo SelectedDevice::info() { return guarded(selection().info); }
void SelectedDevice::set(const DeviceAllInfo &info) { assign(selection().info, info); }
void SelectedDevice::setOnline(bool online) { assign(selection().info.Online, online); }
void SelectedDevice::setMouseVersion(const QString &version)
{
    assign(selection().info.MouseVersion, version);
}
void SelectedDevice::setDongleVersion(const QString &version)
{
    assign(selection().info.DongleVersion, version);
}
QString SelectedDevice::cacheName() { return guarded(selection().cacheName); }
void SelectedDevice::setCacheName(const QString &name) { assign(selection().cacheName, name); }
QString SelectedDevice::imageName() { return guarded(selection().imageName); }
void SelectedDevice::setImageName(const QString &name) { assign(selection().imageName, name); }

std::vector<DeviceAllInfo> deviceList() { return guarded(selection().deviceList); }
void setDeviceList(const std::vector<DeviceAllInfo> &list) { assign(selection().deviceList, list); }

DeviceAllInfo selectedReceiver()
{
    DeviceAllInfo selected = SelectedDevice::info();
    const std::vector<DeviceAllInfo> list = deviceList();
    if (!selected.Usb)
        return selected;
    if (list.size() == 2)
        for (const DeviceAllInfo &entry : list)
            if (!entry.Usb)
                return entry;
    return {}; // a cable's own DongleVersion is the mouse's
}

const char *CurrentDevicePath() { return selection().path; }

void pointCurrentDeviceAt(const QString &path)
{
    const std::lock_guard<std::mutex> guard(selection().lock);
    selection().path = selection().paths.insert(path.toLocal8Bit().toStdString()).first->c_str();
}

void pointCurrentDeviceAtNothing() { selection().path = NoDevice; }

QString driveSection(const DeviceAllInfo &info) { return DeviceCatalogue::section(info.DriveIndex); }

QString imageFileName(uint8_t cid, uint8_t mid)
{
    return QStringLiteral("Device_CID") + hexByte(cid) + QStringLiteral("_MID") + hexByte(mid) +
           QStringLiteral(".bin");
}

void resetDeviceState()
{
    for (ResettableFlag *flag = ResettableFlag::first(); flag; flag = flag->next())
        flag->reset();
    SelectedDevice::set(DeviceAllInfo());
    SelectedDevice::setCacheName(QString());
    SelectedDevice::setImageName(QString());
    setDeviceList({});
    pointCurrentDeviceAtNothing();
    DeviceRecord::edit([](FlashDataMap &record) { record = FlashDataMap(); });
}
