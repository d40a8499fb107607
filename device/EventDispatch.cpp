// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/EventDispatch.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/RegistryStore.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/hidusb/wire/FlashLayout.h"
#include "hub/PostMsg.h"

#include <QElapsedTimer>
#include <QStringList>
#include <algorithm>
#include <vector>

namespace
{

constexpr int WholeReadPauseMs = 3000; // least time between two whole new reads that the device asks for
constexpr int ConfigTotal = 4;         // configurations of a device
constexpr uint8_t NoAnswer = 's';      // preset of the long range question

// A message of the device. Fields that a short head lacks are 0.
struct Message {
    uint8_t code = 0;
    uint8_t addressHigh = 0;
    uint8_t addressLow = 0;
    const uint8_t *payload = nullptr;
    uint32_t length = 0;
};

// Never freed, since the pages keep pointers to the colour record.
struct Allocations {
    BatteryStatus battery{};
    DeviceStatusChange change{};
    DongleRGB color{};
    QElapsedTimer statusTimer;
    std::vector<int> keptSlots; // key slots that survive a reset
};

Allocations &allocations()
{
    static auto *const instance = new Allocations;
    return *instance;
}

PostMsg *hub() { return PostMsg::instance(); }

QStringList driveList(const QByteArray &key)
{
    return DeviceCatalogue().list(SelectedDevice::info().DriveIndex, key.constData());
}

void announceColor()
{
    if (allocations().color.Scheme)
        emit hub()->SigRGBValue(&allocations().color);
}

// The conversion reads as many bytes as its record has. Another library may send fewer; those are 0.
template <typename Record>
void decode(const Message &message, void (*convert)(const uint8_t *, Record *), Record *record)
{
    uint8_t padded[sizeof(Record)] = {};
    std::copy_n(message.payload, std::min<std::size_t>(message.length, sizeof padded), padded);
    convert(message.length < sizeof padded ? padded : message.payload, record);
}

void onBattery(const Message &message)
{
    BatteryStatus &battery = allocations().battery;
    decode(message, GetDeviceBatteryStatus, &battery);
    emit hub()->SigBattery(battery.Charging > 0, battery.Level, BatteryAsNumber == 1);
}

// A receiver that does not answer leaves nothing of the one before it.
void askReceiver()
{
    if (!SelectedDevice::info().Usb) {
        DongleRGB color{};
        UsbFinderC_Get4KDongleRGBValue(CurrentDevicePath(), &color);
        allocations().color = color;
        announceColor();
    }
    uint8_t mode = NoAnswer;
    UsbFinderC_GetLongRangeMode(CurrentDevicePath(), &mode);
    if (mode != NoAnswer && mode != 0)
        emit hub()->SigLongRangeMode(true);
}

void collectKeptSlots()
{
    for (int key = 1; key <= 6; ++key) {
        const QStringList list = driveList("KeyParam" + QByteArray::number(key));
        if (!list.isEmpty() && list.first() == QLatin1String("0x05"))
            allocations().keptSlots.push_back(key - 1);
    }
}

// Clears the slots before the first kept one; those after it are not cleared either.
void clearBlocks()
{
    collectKeptSlots();
    const std::vector<int> &kept = allocations().keptSlots;
    const int end = kept.empty() ? KeySlotCount : kept.front();
    DeviceRecord::edit([end](FlashDataMap &record) {
        for (int slot = 0; slot < end; ++slot) {
            record.KeySequences[slot] = KeySequence();
            record.MacroBlocks[slot] = MacroBlock();
        }
    });
}

void feedPages()
{
    FullReadPending = true;
    LightPageLoaded = SensorPageLoaded = ButtonPageLoaded = false;
    const FlashDataMap record = DeviceRecord::copy();
    emit hub()->SigUpDataLightUIButton(record);
    emit hub()->SigUpDataLightLight(record);
    emit hub()->SigUpDataLightSensor(record);
    emit hub()->SigForm();
    DataLoaded = true;
    FullReadPending = false;
    WorkerArmed = false;
}

void onFullRead(const Message &message)
{
    DeviceRecord::edit([&message](FlashDataMap &record) {
        record =
            FlashDataMap(); // fields that the parser does not fill must not keep the previous device's values
        ProtocolDataParser(message.payload, &record);
    });
    FullReadAwaited = false;
    const DeviceAllInfo selected = SelectedDevice::info();
    SelectedDevice::setImageName(imageFileName(selected.Cid, selected.Mid));
    UsbServer_ReadDPILed();
    UsbServer_ReadBatteryLevel();
    UsbServer_ReadVersion();
    UsbServer_ReadConfig();
    emit hub()->SigIsUsb(selected.Usb, true);
    if (!SkipReceiverQuery.exchange(false))
        askReceiver();
    if (ClearBlocksAfterRead.exchange(false))
        clearBlocks();
    DeviceRecord::push();
    allocations().keptSlots.clear();
    feedPages();
}

// Stores the device's byte in the record and announces it to the page. An edit that the user makes meanwhile
// wins: it is announced again, since the page has just been given the older value of the device.
void followDevice(uint8_t FlashDataMap::*field, uint8_t value, void (PostMsg::*announce)(int))
{
    DeviceRecord::edit([=](FlashDataMap &record) { record.*field = value; });
    uint8_t shown = value;
    emit(hub()->*announce)(shown);
    for (uint8_t held = DeviceRecord::copy().*field; held != shown; held = DeviceRecord::copy().*field) {
        shown = held;
        emit(hub()->*announce)(shown);
    }
    DeviceRecord::push();
}

void onReportRate(const Message &message)
{
    followDevice(&FlashDataMap::ReportRate, message.payload[0], &PostMsg::SigUpDataReportRate);
}

void onCurrentStage(const Message &message)
{
    followDevice(&FlashDataMap::CurrentDpiStage, message.payload[0], &PostMsg::SigUpDataDPI);
}

void onDpiLed(const Message &message)
{
    DeviceRecord::edit(
        [&message](FlashDataMap &record) { BufferToDPILed(message.payload, &record.DpiLedMode); });
    emit hub()->SigUpDataDPILed(DeviceRecord::copy());
}

void onLedBar(const Message &message)
{
    DeviceRecord::edit(
        [&message](FlashDataMap &record) { BufferToLedBar(message.payload, &record.LedBarMode); });
    emit hub()->SigUpDataLightLight(DeviceRecord::copy());
}

// The address and the length of a read of device memory together select its handler.
struct MemoryRow {
    uint8_t addressLow;
    uint32_t length;
    void (*handle)(const Message &);
};
constexpr MemoryRow MemoryRows[] = {
    {0x00, FlashSize, onFullRead},
    {0x00, 1, onReportRate},
    {FlashCurrentStageAddress, 1, onCurrentStage},
    {FlashDpiLedAddress, FlashDpiLedSize, onDpiLed},
    {FlashLedBarAddress, FlashLedBarSize, onLedBar},
};

void onMemory(const Message &message)
{
    if (message.addressHigh != 0)
        return;
    for (const MemoryRow &row : MemoryRows)
        if (row.addressLow == message.addressLow && row.length == message.length)
            row.handle(message);
}

void restoreReceiverDefaults()
{
    const QStringList defaults = driveList("Adveanced");
    const QString longRange = defaults.value(0);
    const int scheme = defaults.value(1).toInt();
    if (scheme >= 1 && !SelectedDevice::info().Usb) {
        allocations().color.Scheme = static_cast<uint8_t>(scheme);
        UsbFinderC_Set4KDongleRGB(CurrentDevicePath(), &allocations().color);
        announceColor();
    }
    if (longRange == QLatin1String("0") || longRange == QLatin1String("1")) {
        const bool on = longRange == QLatin1String("1");
        UsbFinderC_SetLongRangeMode(CurrentDevicePath(), on ? 1 : 0);
        emit hub()->SigLongRangeMode(on);
    }
}

void onSettingsCleared(const Message &)
{
    UsbServer_SetBatteryOptimizeEnable(1);
    restoreReceiverDefaults();
    ClearBlocksAfterRead = true; // set before the read that they apply to is requested
    SkipReceiverQuery = true;
    UsbServer_ReadAllFlashData();
}

void askForWholeRead()
{
    QElapsedTimer &timer = allocations().statusTimer;
    if (timer.elapsed() <= WholeReadPauseMs)
        return;
    timer.restart();
    ConfigChanged = true; // set before RestartWorker, which starts the pass that reads it
    RestartWorker = true;
}

void onStatusChanged(const Message &message)
{
    DeviceStatusChange &change = allocations().change;
    decode(message, GetDeviceStatusChanged, &change);
    if (change.CurrentDpi)
        UsbServer_ReadCurrentDPI();
    if (change.ReportRate)
        UsbServer_ReadReportRate();
    if (change.Battery)
        UsbServer_ReadBatteryLevel();
    if (change.LedBar)
        UsbServer_ReadLedBar();
    if (change.DpiLed)
        UsbServer_ReadDPILed();
    if (change.Everything)
        askForWholeRead();
}

void onConfig(const Message &message)
{
    if (message.length == 1)
        emit hub()->SigUpDataConfigUI(ConfigTotal, message.payload[0], true);
    else
        emit hub()->SigUpDataConfigUI(0, 0, false);
}

void onVersion(const Message &)
{
    const DeviceAllInfo selected = SelectedDevice::info();
    const QString version = versionText(UsbFinderC_GetVersion(selected.DevicePath.toLocal8Bit().constData()));
    SelectedDevice::setMouseVersion(version);
    emit hub()->SigSetver(0);
    RegistryStore::instance().setValue(
        registry::BaseGroup, registry::mouseVersionName(DeviceCatalogue(), selected.DriveIndex), version);
}

void onColorChanged(const Message &) { emit hub()->SigRGBValue(&allocations().color); }

void onLongRangeOff(const Message &message)
{
    if (message.length == 10)
        emit hub()->SigLongRangeMode(false);
}

struct MessageRow {
    uint8_t code;
    uint32_t leastBytes; // of payload; a shorter message is dropped
    void (*handle)(const Message &);
};
constexpr MessageRow MessageRows[] = {
    {4, 1, onBattery}, {8, 0, onMemory},   {9, 0, onSettingsCleared}, {10, 1, onStatusChanged},
    {14, 0, onConfig}, {18, 0, onVersion}, {21, 0, onColorChanged},   {23, 0, onLongRangeOff},
};

} // namespace

void forgetReceiver() { allocations().color = {}; }

void startStatusTimer() { allocations().statusTimer.start(); }

void ProtocolCallback(const uint8_t *header, int32_t headerLength, const uint8_t *payload,
                      uint32_t payloadLength)
{
    Message message;
    const auto field = [&](int index) {
        return header && headerLength > index ? header[index] : static_cast<uint8_t>(0);
    };
    message.code = field(1);
    message.addressHigh = field(3);
    message.addressLow = field(4);
    message.payload = payload;
    message.length = payload ? payloadLength : 0;
    for (const MessageRow &row : MessageRows)
        if (row.code == message.code && message.length >= row.leastBytes)
            row.handle(message);
}
