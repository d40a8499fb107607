// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RepairRoute: repairs what an upgrade that did not succeed has left: first the receiver, then the mouse, as
// far as the folder has their firmware. check() and start() belong to the main thread; the results come on
// the layer's upgrade thread and go out by the hub.
#pragma once

#include "service/UpgradeGate.h"

class RepairRoute
{
public:
    // Decides by the devices given, by the records of failed upgrades, of which it removes those that make no
    // sense, and by what waits in a boot loader.
    GateVerdict check(const std::vector<DeviceAllInfo> &attached);
    // Starts what the last check allowed. False when there is no file for it any more.
    bool start();

private:
    GateVerdict checkRecord(const std::vector<DeviceAllInfo> &attached, const QString &text);

    GateVerdict last_;
    QString record_; // the one that the verdict is about
};
