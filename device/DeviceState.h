// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The process-wide state of the selected device. The main thread, the worker, the layer's callback thread and
// its hot-plug thread read and write it: each flag is an atomic, the record has one lock (DeviceRecord), the
// selection another (SelectedDevice).
#pragma once

#include "device/DeviceFlag.h"
#include "device/record/DeviceAllInfo.h"

#include <mutex>

#include <QString>
#include <vector>

// Changes of the attached devices within this time, in milliseconds, cause one call of a watch.
constexpr int UsbSettleMs = 600;

inline DeviceFlag<bool> MouseOnline{false};       // last answer to the on-line question
inline DeviceFlag<bool> ReadStartedOnline{false}; // MouseOnline when the last connection was started
inline DeviceFlag<bool> DataLoaded{false};        // a full read has been distributed
inline DeviceFlag<bool> WorkerArmed{false}; // the worker's next pass does its work; clear, it returns at once
inline DeviceFlag<bool> RestartWorker{false};        // start the worker as soon as the mouse is on line
inline DeviceFlag<bool> AwaitingMouse{false};        // the mouse is away and is polled for
inline DeviceFlag<bool> ConfigChanged{false};        // the device has asked for a whole new read
inline DeviceFlag<bool> SettingsBusy{false};         // an import or reset runs its own wait dialog
inline DeviceFlag<bool> ClearBlocksAfterRead{false}; // the next full read follows a reset and clears blocks
inline DeviceFlag<bool> SkipReceiverQuery{false};    // the next full read does not ask the receiver
inline DeviceFlag<bool> FullReadAwaited{false};      // the connection is new; its read replaces the record
inline DeviceFlag<bool> FullReadPending{false};      // the pages are being sent the record
inline DeviceFlag<bool> DeviceMatched{false};        // the hot-plug search has found the selected device
inline DeviceFlag<bool> DeviceUnplugged{false};      // the page of the device was left because it is gone
inline DeviceFlag<int32_t> OnDevicePage{0};          // 1 while the device page shows
inline DeviceFlag<bool> UiArmed{false};              // page slots act on input
inline DeviceFlag<bool> NotUpgrading{true};          // false while firmware is being written
inline DeviceFlag<bool> UpdateBusy{false};           // an upgrade is under way
inline DeviceFlag<bool> UpgradeDialogOpen{false};    // the upgrade dialog shows
inline DeviceFlag<bool> MacroRecording{false};       // keys belong to the macro being recorded
inline DeviceFlag<bool> SensorPageBusy{false};       // the page fills its widgets from a record
inline DeviceFlag<bool> LightPageBusy{false};
inline DeviceFlag<bool> ButtonPageBusy{false};
inline DeviceFlag<bool> SensorPageLoaded{false}; // the page has finished a load from a full read
inline DeviceFlag<bool> LightPageLoaded{false};
inline DeviceFlag<bool> ButtonPageLoaded{false};
inline DeviceFlag<int32_t> BatteryAsNumber{0}; // 1: the battery is shown as a number
inline DeviceFlag<int32_t> OffLineKind{0};     // which text the off-line notice shows
inline DeviceFlag<int32_t> ImportResult{0};    // of the last check of an image file
inline DeviceFlag<int32_t> LanguageIndex{0};   // current language
// The MID of the model that was clicked last of those with a screen of their own, 6 to 9; 0 before any.
inline DeviceFlag<int32_t> ScreenClass{0};
// The class of the receiver that was opened last: 1, 2, 4 or 8; 0 before any. A cable leaves it as it was.
inline DeviceFlag<int32_t> CurrentConnectionKind{0};

// The device in use and the cache names that go with it. Copies in, copies out.
class SelectedDevice
{
public:
    static DeviceAllInfo info();
    // Replaces the whole entry; CurrentDevicePath() is not changed.
    static void set(const DeviceAllInfo &info);
    static void setOnline(bool online);
    static void setMouseVersion(const QString &version);
    static void setDongleVersion(const QString &version);

    static QString cacheName(); // CacheName: set at selection
    static void setCacheName(const QString &name);
    static QString imageName(); // ImageName: set when a full read ends
    static void setImageName(const QString &name);
};

// CurrentDevicePath: the handle that nearly every call of the layer takes. The characters stay valid
// until the process ends. Before any selection it names no device.
const char *CurrentDevicePath();
void pointCurrentDeviceAt(const QString &path);
void pointCurrentDeviceAtNothing();

// The catalogue section of a device, and "Device_CID12_MID06.bin".
QString driveSection(const DeviceAllInfo &info);
QString imageFileName(uint8_t cid, uint8_t mid);

// Polls for the mouse that does not answer; when it does, the worker reads it again, which fills the pages.
inline void awaitMouse()
{
    AwaitingMouse = true;
    RestartWorker = true;
}

// The mouse may be another one from here on: the read that follows a reset is not its read, and would clear
// what it holds.
inline void forgetReset() { ClearBlocksAfterRead = SkipReceiverQuery = false; }

// DeviceList: the result of the device page's last search. Copies in, copies out.
std::vector<DeviceAllInfo> deviceList();
void setDeviceList(const std::vector<DeviceAllInfo> &list);
// The receiver that belongs to the selected device: itself, or the one beside it while it is on its cable.
// Empty for a cable without one.
DeviceAllInfo selectedReceiver();

// Restores the state at the start of the process: every DeviceFlag, the selection and the record.
void resetDeviceState();
