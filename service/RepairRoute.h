// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RepairRoute: repairs what an upgrade that did not succeed has left: first the receiver, then the mouse, as
// far as the folder has their firmware. take() and start() belong to the main thread; the results come on
// the layer's upgrade thread and go out by the hub.
#pragma once

#include "service/UpgradeGate.h"

#include <QStringList>

class RepairRoute
{
public:
    struct Check {
        GateVerdict verdict;
        QString record;        // the one that the verdict is about
        QStringList senseless; // records to be removed
    };
    // Decides by the devices given, by the records of failed upgrades and by what waits in a boot loader. Any
    // thread; blocks until the boot loaders answer or their time-out ends.
    static Check check(const std::vector<DeviceAllInfo> &attached);
    void take(const Check &check);
    // Starts what the check taken last allowed. False when there is no file for it any more.
    bool start();

private:
    Check last_;
};
