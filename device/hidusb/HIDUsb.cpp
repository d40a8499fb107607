// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/HIDUsb.h"

#include "device/hidusb/Codec.h"
#include "device/hidusb/Connection.h"
#include "device/hidusb/Finder.h"
#include "device/hidusb/FirmwareTargets.h"
#include "device/hidusb/HotPlug.h"
#include "device/hidusb/Question.h"
#include "device/hidusb/RawDevice.h"
#include "device/hidusb/Upgrade.h"
#include "device/hidusb/wire/BusName.h"

#include <algorithm>
#include <exception>

using namespace hidusb;
using wire::Command;

// No exception may pass the C functions. Those that occur are for lack of memory or threads.
template <typename Result, typename Body> static Result guarded(Result failure, Body body) noexcept
{
    try {
        return body();
    } catch (const std::exception &) {
        return failure;
    }
}

template <typename Body> static void guarded(Body body) noexcept
{
    try {
        body();
    } catch (const std::exception &) {
        return;
    }
}

// ---- Discovery and identity

static const char *const NoPaths[] = {nullptr};

const char *const *UsbFinderC_FindHidDevicesByDeviceId(const char *vendor_id, const char *product_id,
                                                       int32_t interface_number, int32_t usage,
                                                       int32_t *count)
{
    constexpr int vendorPages = 0xFF00;
    const bool inRange = usage >= 0 && usage <= 0xFF;
    const char *const *const none = NoPaths;
    const char *const *const paths = guarded(none, [&] {
        return findPaths(inRange ? vendor_id : nullptr, product_id, interface_number, vendorPages + usage,
                         count);
    });
    if (paths == none && count != nullptr)
        *count = 0;
    return paths;
}

const char *const *UsbFinderC_FindHidDevicesByDefaultDeviceId(const char *vendor_id, const char *product_id,
                                                              int32_t *count)
{
    constexpr int settings = wire::SettingsUsagePage & 0xFF;
    return UsbFinderC_FindHidDevicesByDeviceId(vendor_id, product_id, wire::SettingsInterface, settings,
                                               count);
}

DeviceIdentity UsbFinderC_GetDeviceInfo(const char *path, int32_t /*reserved*/)
{
    return guarded(DeviceIdentity{}, [path] {
        DeviceIdentity identity{};
        fetch(path, Command::Identity, &identity, 1);
        return identity;
    });
}

void UsbFinderC_GetUsbDeviceAttribute(const char *path, UsbAttribute *attribute)
{
    guarded([path, attribute] {
        const auto info = findByPath(path);
        if (!info || attribute == nullptr)
            return;
        attribute->Size.set(sizeof *attribute);
        attribute->VendorId.set(info->vendorId);
        attribute->ProductId.set(info->productId);
        attribute->Version.set(info->release);
    });
}

uint8_t UsbFinderC_GetDeviceOnLine(const char *path)
{
    return guarded(uint8_t{0}, [path]() -> uint8_t {
        const auto reply = askOnLine(path);
        return reply && reply->Online != 0 ? 1 : 0;
    });
}

uint8_t UsbFinderC_GetDeviceOnLineWithUsbAddress(const char *path, OnlineAddress *record)
{
    return guarded(uint8_t{0}, [path, record]() -> uint8_t {
        const auto reply = askOnLine(path);
        if (!reply)
            return 0;
        const uint8_t online = reply->Online != 0 ? 1 : 0;
        if (record != nullptr) {
            record->Online = online;
            std::copy(std::begin(reply->Address), std::end(reply->Address), record->Address);
        }
        return online;
    });
}

static uint32_t versionNumber(const wire::VersionReply &reply)
{
    return static_cast<uint32_t>((reply.Major << 8) | reply.Minor);
}

uint32_t UsbFinderC_GetVersion(const char *path)
{
    return guarded(0U, [path] {
        wire::VersionReply reply{};
        fetch(path, Command::Version, &reply);
        return versionNumber(reply);
    });
}

uint8_t UsbFinderC_GetSlaveVersion(const char *path, uint32_t *version)
{
    return guarded(uint8_t{0}, [path, version]() -> uint8_t {
        wire::VersionReply reply{};
        if (version == nullptr || !fetch(path, Command::SlaveVersion, &reply))
            return 0;
        *version = versionNumber(reply);
        return 1;
    });
}

// ---- The connection

void UsbServerC_Start(const char *path, const char * /*same_path*/, ProtocolCallback_t callback)
{
    guarded([path, callback] { openConnection(path, callback); });
}

void UsbServer_Exit(void) { guarded(closeConnection); }

static void postOrder(Command command, uint8_t argument = 0, uint16_t address = 0)
{
    guarded([command, argument, address] {
        if (const auto connection = currentConnection())
            connection->order({command, argument, address});
    });
}

void UsbServer_SetPCDriverStatus(uint8_t in_charge) { postOrder(Command::DriverStatus, in_charge); }

void UsbServer_ReadAllFlashData(void) { postOrder(Command::FlashRead); }

void UsbServer_ReadCurrentDPI(void) { postOrder(Command::FlashRead, 1, FlashCurrentStageAddress); }

void UsbServer_ReadReportRate(void) { postOrder(Command::FlashRead, 1, FlashReportRateAddress); }

void UsbServer_ReadDPILed(void) { postOrder(Command::FlashRead, FlashDpiLedSize, FlashDpiLedAddress); }

void UsbServer_ReadLedBar(void) { postOrder(Command::FlashRead, FlashLedBarSize, FlashLedBarAddress); }

void UsbServer_ReadBatteryLevel(void) { postOrder(Command::Battery); }

void UsbServer_ReadVersion(void) { postOrder(Command::Version); }

void UsbServer_ReadConfig(void) { postOrder(Command::Config); }

void UsbServer_SetCurrentConfig(uint8_t index) { postOrder(Command::ConfigSelect, index); }

void UsbServer_SetClearSetting(void) { postOrder(Command::ClearSettings); }

void UsbServer_SetBatteryOptimizeEnable(uint8_t enable) { postOrder(Command::BatteryOptimize, enable); }

void UsbServer_EnterDonglePairOnlyCid(uint8_t cid) { postOrder(Command::PairEnter, cid); }

void UsbServer_ReadDonglePairStatus(void) { postOrder(Command::PairStatus); }

void ProtocolDataUpdate(const FlashDataMap *record)
{
    guarded([record] {
        const auto connection = currentConnection();
        if (!connection || record == nullptr)
            return;
        FlashImage image{};
        encode(*record, image);
        connection->update(image);
    });
}

// ---- Conversions

void ProtocolDataParser(const uint8_t *image, FlashDataMap *record)
{
    if (image != nullptr && record != nullptr)
        decode(*reinterpret_cast<const FlashImage *>(image), *record);
}

template <std::size_t Size> static void copyBytes(const uint8_t *payload, void *to)
{
    if (payload != nullptr && to != nullptr)
        std::memcpy(to, payload, Size);
}

void BufferToDPILed(const uint8_t *payload, uint8_t *record_byte_84)
{
    copyBytes<SPAN_SIZE(FlashDataMap, DpiLedMode, DpiLedEnable)>(payload, record_byte_84);
}

void BufferToLedBar(const uint8_t *payload, uint8_t *record_byte_88)
{
    copyBytes<SPAN_SIZE(FlashDataMap, LedBarMode, LedBarEnable)>(payload, record_byte_88);
}

void GetDeviceBatteryStatus(const uint8_t *payload, BatteryStatus *status)
{
    copyBytes<sizeof *status>(payload, status);
}

void GetDeviceStatusChanged(const uint8_t *payload, DeviceStatusChange *change)
{
    copyBytes<sizeof *change>(payload, change);
}

// ---- The receiver

void UsbFinderC_Get4KDongleRGBValue(const char *path, DongleRGB *record)
{
    guarded([path, record] { fetch(path, Command::DongleColor, record); });
}

void UsbFinderC_Set4KDongleRGB(const char *path, const DongleRGB *record)
{
    guarded([path, record] { store(path, Command::DongleColorWrite, record); });
}

void UsbFinderC_GetDongleRGBBarMode(const char *path, DongleRgbBar *record)
{
    guarded([path, record] { fetch(path, Command::DongleBar, record); });
}

uint8_t UsbFinderC_SetDongleRGBBarMode(const char *path, const DongleRgbBar *record)
{
    return guarded(uint8_t{0}, [&]() -> uint8_t { return store(path, Command::DongleBarWrite, record); });
}

// Asked behind the light bar, which takes a try when it is answered: the two take no longer than one question
// that stays open.
static constexpr int IndicatorTries = UsualTries - 1;

void UsbFinderC_GetDongleIndicatorLed(const char *path, DongleIndicator *record)
{
    guarded([path, record] { fetch(path, Command::Indicator, record, IndicatorTries); });
}

uint8_t UsbFinderC_SetDongleIndicatorLed(const char *path, const DongleIndicator *record)
{
    return guarded(uint8_t{0}, [&]() -> uint8_t { return store(path, Command::IndicatorWrite, record); });
}

void UsbFinderC_GetLongRangeMode(const char *path, uint8_t *mode)
{
    guarded([path, mode] { fetch(path, Command::LongRange, mode); });
}

void UsbFinderC_SetLongRangeMode(const char *path, uint8_t mode)
{
    guarded([path, mode] { store(path, Command::LongRangeWrite, &mode); });
}

void UsbFinderC_SetDongleIDToMouse(const char *path, const uint8_t *pairing)
{
    guarded([path, pairing] {
        store(path, Command::PairedAddress, reinterpret_cast<const DonglePairing *>(pairing));
    });
}

// ---- Raw reports

uint8_t UsbFinderC_OpenDevice(const char *path)
{
    return guarded(uint8_t{0}, [path]() -> uint8_t { return openRaw(path); });
}

void UsbFinderC_ReadWriteDeviceData(const uint8_t *write_buffer, uint8_t *read_buffer, uint8_t length)
{
    guarded([=] { exchangeRaw(write_buffer, read_buffer, length); });
}

// ---- Firmware

void UsbUpgradeC_FindBootDevices(const uint8_t *image, int32_t *count)
{
    if (count == nullptr)
        return;
    const int32_t most = std::max(*count, 0);
    *count = guarded(0, [image, most] {
        const auto firmware = most > 0 ? readFirmware(image) : std::nullopt;
        return firmware ? std::min(most, countBootLoaders(*firmware)) : 0;
    });
}

uint8_t UsbUpgrade_Start(const uint8_t *image, UpgradeCallback_t callback, int32_t timeout_ms)
{
    return guarded(uint8_t{0}, [&]() -> uint8_t {
        auto firmware = readFirmware(image);
        return firmware && startUpgrade(std::move(*firmware), callback, timeout_ms);
    });
}

// ---- Hot-plug

void StartUsbChanged(UsbChangedCallback_t callback, int32_t settle_ms)
{
    guarded([callback, settle_ms] { startWatch(callback, settle_ms); });
}

void StopUsbChanged(void) { guarded(stopWatch); }
