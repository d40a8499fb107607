// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The two decisions whether an upgrade or a repair may start, over what is attached, what the last failure
// has left and what the firmware folder holds. No state, no device is asked but through the functions given.
// Any thread.
#pragma once

#include "device/record/DeviceAllInfo.h"
#include "service/UpdateFailRecord.h"

#include <QString>
#include <functional>
#include <vector>

// What the upgrade dialog says; each has a row in the table of its texts.
enum class UpgradeText : uint8_t {
    None,
    WarnUpdate,
    UpgradeAsking,
    NotDevice,
    SameDevice,
    DialogUpgradeFail,
    DialogUpgradeSuccess,
    NoRecieve,
    NoUSB,
    Error1,
    Error,
    ErrorFile,
    MultiDongle,
    MultiMouse,
    ReadyUpdate,
    NoDevice,
    WiredMode,
    newTips,
};

// Firmware that a start would write.
struct FirmwareOffer {
    int target;
    QString from; // empty for a device in its boot loader
    QString to;
};

struct GateVerdict {
    bool ready = false;
    UpgradeText text = UpgradeText::None; // of the notice, unless ready
    int stages = 1;
    int connectionKind = 0; // of the receiver
    int failedTarget = 0;   // the target that the record names; 0 without a record
    bool receiverNew = false;
    bool mouseNew = false;
    bool recordIsSenseless = false; // to be removed
    std::vector<FirmwareOffer> offers;
};

// How the gates learn what the folder and the bus hold.
struct GateQuestions {
    // Whether there is a file for the target; `anyVersion`: also the one that it is known to run.
    std::function<bool(int target, int connectionKind, bool anyVersion)> hasFile;
    // Attached boot loaders that the file for the target fits.
    std::function<int(int target, int connectionKind)> bootLoaders;
};

// The settings page's gate: `devices` is the device page's list, `record` the text of UpdateFailInfo.
GateVerdict upgradeGate(const std::vector<DeviceAllInfo> &devices, const QString &record,
                        const GateQuestions &questions);

// Whether that gate asks boot loaders, which may take them some tenths of a second.
bool asksBootLoaders(const std::vector<DeviceAllInfo> &devices, const QString &record);

// The selection page's gate, which always does: `devices` are all attached ones.
GateVerdict repairGate(const std::vector<DeviceAllInfo> &devices, const QString &record,
                       const GateQuestions &questions);
