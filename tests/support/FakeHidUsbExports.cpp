// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/support/FakeHidUsbState.h"

#include <cstring>

namespace
{

FakeHidUsb::State &world() { return FakeHidUsb::instance().state(); }

std::string text(const char *characters) { return characters ? characters : "(null)"; }

void note(const char *name, const std::string &arguments = {}) { world().note(name, arguments); }

// The texts live until the same thread asks again.
const char *const *found(const char *vid, const char *pid, int32_t *count)
{
    thread_local std::vector<std::string> texts;
    thread_local std::vector<const char *> pointers;
    texts.clear();
    pointers.clear();
    const std::size_t most = count && *count > 0 ? static_cast<std::size_t>(*count) : 0;
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        for (const FakeDevice &device : world().devices) {
            if (device.vid == text(vid) && device.pid == text(pid) && texts.size() < most)
                texts.push_back(device.path);
        }
    }
    for (const std::string &path : texts)
        pointers.push_back(path.c_str());
    if (count)
        *count = static_cast<int32_t>(pointers.size());
    pointers.push_back(nullptr);
    return pointers.data();
}

} // namespace

const char *const *UsbFinderC_FindHidDevicesByDefaultDeviceId(const char *vid, const char *pid,
                                                              int32_t *count)
{
    note(__func__, text(vid) + ' ' + text(pid));
    return found(vid, pid, count);
}

const char *const *UsbFinderC_FindHidDevicesByDeviceId(const char *vid, const char *pid,
                                                       int32_t interface_number, int32_t usage,
                                                       int32_t *count)
{
    note(__func__,
         text(vid) + ' ' + text(pid) + ' ' + std::to_string(interface_number) + ' ' + std::to_string(usage));
    return found(vid, pid, count);
}

DeviceIdentity UsbFinderC_GetDeviceInfo(const char *path, int32_t)
{
    note(__func__, text(path));
    DeviceIdentity identity{};
    world().with(path, [&](const FakeDevice &device) { identity = device.identity; });
    return identity;
}

void UsbFinderC_GetUsbDeviceAttribute(const char *path, UsbAttribute *attribute)
{
    note(__func__, text(path));
    world().with(path, [&](const FakeDevice &device) { attribute->Version.set(device.receiverVersion); });
}

uint8_t UsbFinderC_GetDeviceOnLine(const char *path)
{
    note(__func__, text(path));
    uint8_t online = 0;
    world().with(path, [&](const FakeDevice &device) { online = device.online; });
    return online;
}

uint8_t UsbFinderC_GetDeviceOnLineWithUsbAddress(const char *path, OnlineAddress *record)
{
    note(__func__, text(path));
    return world().with(path, [&](const FakeDevice &device) {
        record->Online = device.online;
        std::memcpy(record->Address, device.address, sizeof device.address);
    });
}

uint32_t UsbFinderC_GetVersion(const char *path)
{
    note(__func__, text(path));
    uint32_t version = 0;
    world().with(path, [&](const FakeDevice &device) { version = device.mouseVersion; });
    return version;
}

uint8_t UsbFinderC_GetSlaveVersion(const char *path, uint32_t *version)
{
    note(__func__, text(path));
    return world().with(path, [&](const FakeDevice &device) { *version = device.receiverVersion; });
}

void UsbServerC_Start(const char *path, const char *, ProtocolCallback_t callback)
{
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        world().protocol = callback;
        world().connectedPath = text(path);
    }
    note(__func__, text(path));
}

void UsbServer_Exit(void)
{
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        world().protocol = nullptr;
        world().connectedPath.clear();
    }
    note(__func__);
}

void UsbServer_SetPCDriverStatus(uint8_t in_charge) { note(__func__, std::to_string(in_charge)); }

void UsbServer_ReadAllFlashData(void) { note(__func__); }

void UsbServer_ReadCurrentDPI(void) { note(__func__); }

void UsbServer_ReadReportRate(void) { note(__func__); }

void UsbServer_ReadDPILed(void) { note(__func__); }

void UsbServer_ReadLedBar(void) { note(__func__); }

void UsbServer_ReadBatteryLevel(void) { note(__func__); }

void UsbServer_ReadVersion(void) { note(__func__); }

void UsbServer_ReadConfig(void) { note(__func__); }

void UsbServer_SetCurrentConfig(uint8_t index) { note(__func__, std::to_string(index)); }

void UsbServer_SetClearSetting(void) { note(__func__); }

void UsbServer_SetBatteryOptimizeEnable(uint8_t enable) { note(__func__, std::to_string(enable)); }

void UsbServer_EnterDonglePairOnlyCid(uint8_t cid) { note(__func__, std::to_string(cid)); }

void UsbServer_ReadDonglePairStatus(void) { note(__func__); }

void ProtocolDataUpdate(const FlashDataMap *record)
{
    if (record) {
        const std::lock_guard<std::mutex> guard(world().lock);
        world().updates.push_back(*record);
    }
    note(__func__);
}

void ProtocolDataParser(const uint8_t *, FlashDataMap *record)
{
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        *record = world().parsed;
    }
    note(__func__);
}

void BufferToDPILed(const uint8_t *payload, uint8_t *record_byte_84)
{
    std::memcpy(record_byte_84, payload, 4);
    note(__func__);
}

void BufferToLedBar(const uint8_t *payload, uint8_t *record_byte_88)
{
    std::memcpy(record_byte_88, payload, 7);
    note(__func__);
}

void GetDeviceBatteryStatus(const uint8_t *payload, BatteryStatus *status)
{
    std::memcpy(status, payload, sizeof *status);
    note(__func__);
}

void GetDeviceStatusChanged(const uint8_t *payload, DeviceStatusChange *change)
{
    std::memcpy(change, payload, sizeof *change);
    note(__func__);
}

void UsbFinderC_Get4KDongleRGBValue(const char *path, DongleRGB *record)
{
    note(__func__, text(path));
    world().with(path, [&](const FakeDevice &device) {
        if (device.answersColor)
            *record = device.rgb;
    });
}

void UsbFinderC_Set4KDongleRGB(const char *path, const DongleRGB *record)
{
    note(__func__, text(path) + ' ' + std::to_string(record->Scheme));
    world().with(path, [&](FakeDevice &device) { device.rgb = *record; });
}

void UsbFinderC_GetDongleRGBBarMode(const char *path, DongleRgbBar *record)
{
    note(__func__, text(path));
    world().with(path, [&](const FakeDevice &device) {
        if (device.answersBar)
            *record = device.bar;
    });
}

uint8_t UsbFinderC_SetDongleRGBBarMode(const char *path, const DongleRgbBar *record)
{
    note(__func__, text(path));
    bool taken = false;
    world().with(path, [&](FakeDevice &device) {
        taken = device.takesLights;
        if (taken)
            device.bar = *record;
    });
    return taken;
}

void UsbFinderC_GetDongleIndicatorLed(const char *path, DongleIndicator *record)
{
    note(__func__, text(path));
    world().with(path, [&](const FakeDevice &device) {
        if (device.answersLamps)
            *record = device.indicator;
    });
}

uint8_t UsbFinderC_SetDongleIndicatorLed(const char *path, const DongleIndicator *record)
{
    note(__func__, text(path));
    bool taken = false;
    world().with(path, [&](FakeDevice &device) {
        taken = device.takesLights;
        if (taken)
            device.indicator = *record;
    });
    return taken;
}

void UsbFinderC_GetLongRangeMode(const char *path, uint8_t *mode)
{
    note(__func__, text(path));
    world().with(path, [&](const FakeDevice &device) {
        if (device.answersLongRange)
            *mode = device.longRange;
    });
}

void UsbFinderC_SetLongRangeMode(const char *path, uint8_t mode)
{
    note(__func__, text(path) + ' ' + std::to_string(mode));
    world().with(path, [&](FakeDevice &device) { device.longRange = mode; });
}

void UsbFinderC_SetDongleIDToMouse(const char *path, const uint8_t *pairing)
{
    std::string arguments = text(path);
    for (std::size_t i = 0; i < sizeof(DonglePairing); ++i)
        arguments += ' ' + std::to_string(pairing[i]);
    note(__func__, arguments);
}

uint8_t UsbFinderC_OpenDevice(const char *path)
{
    note(__func__, text(path));
    return world().with(path, [](const FakeDevice &) {});
}

void UsbFinderC_ReadWriteDeviceData(const uint8_t *write_buffer, uint8_t *, uint8_t length)
{
    std::string arguments = std::to_string(length);
    for (std::size_t i = 0; i < length; ++i)
        arguments += ' ' + std::to_string(write_buffer[i]);
    note(__func__, arguments);
}

void UsbUpgradeC_FindBootDevices(const uint8_t *, int32_t *count)
{
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        *count = world().bootDevices < *count ? world().bootDevices : *count;
    }
    note(__func__);
}

uint8_t UsbUpgrade_Start(const uint8_t *, UpgradeCallback_t callback, int32_t timeout_ms)
{
    bool starts;
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        starts = world().upgradeStarts;
        world().upgrade = starts ? callback : nullptr;
    }
    note(__func__, std::to_string(timeout_ms));
    return starts;
}

void StartUsbChanged(UsbChangedCallback_t callback, int32_t settle_ms)
{
    bool runs;
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        world().watch = callback;
        runs = world().watchRunsAtStart && callback;
    }
    note(__func__, std::to_string(settle_ms));
    if (runs)
        world().watchRow.post(callback);
}

void StopUsbChanged(void)
{
    {
        const std::lock_guard<std::mutex> guard(world().lock);
        world().watch = nullptr;
    }
    note(__func__);
}
