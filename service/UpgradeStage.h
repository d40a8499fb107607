// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpgradeStage: one target of an upgrade: the devices that its file fits, and its flashing with all that the
// result changes: the records, the stored version, the addresses of a mouse and the words of the hub.
#pragma once

#include "device/record/DeviceAllInfo.h"
#include "service/ModelFirmware.h"
#include "service/UpgradeState.h"

#include <functional>
#include <vector>

// The outcome of the target's last stage.
DeviceFlag<UpgradeStatus> &statusOf(int target);

// Any thread; each asks devices and blocks until they answer or their time-out ends.
// The listed devices of the target and the boot loaders that the file fits.
int fittingDevices(int target, const QByteArray &image, const std::vector<DeviceAllInfo> &devices);
// Whether a listed receiver runs the file's version: what the page shows may be older than that.
bool aReceiverRuns(const QByteArray &image, const std::vector<DeviceAllInfo> &devices);

// Returns at once. `told` is called last, on any thread, when the hub has got the result and the status is
// set.
void flashStage(int target, const QByteArray &image, const ModelFirmware &firmware,
                const std::function<void()> &told);
