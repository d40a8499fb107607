// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// TileClick: what a click on a tile does: it opens the device's pages, opens the pairing of the receiver
// whose mouse is away, or shows a notice over the selection page. Main thread.
#pragma once

#include "device/AttachedDevices.h"

#include <QObject>

class QWidget;

class TileClick : public QObject
{
    Q_OBJECT

public:
    // Both outlive this object.
    TileClick(QWidget *page, AttachedDevices &devices);

    // The tile's number; others do nothing.
    void open(int index);
    // Opens the only attached receiver as if its off-line tile were clicked; ignores cables.
    void openOnlyReceiver();

public slots:
    void SlotChangeMainDialog(int index);

private:
    // Tells the pages which model they show, then decides. `asOffline`: without asking the device.
    void take(int index, bool asOffline);
    bool isOfflineTile(int index) const;
    // True when the click goes on to the device's pages.
    bool settleOfflineTile(const DeviceAllInfo &device);
    void pair(const DeviceAllInfo &receiver);
    void enter(const DeviceAllInfo &device);

    QWidget *page_;
    AttachedDevices &devices_;
    bool leftAgain_ = false; // the device page was left while enter() waited for it
};
