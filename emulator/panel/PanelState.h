// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The state of the devices as the panel shows it, parsed from the emulator's text. The text is not trusted:
// invalid parts are skipped, numbers clamped and texts cut.
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVector>

// As the program names it: from 1, while the device and the orders count from 0.
QString profileName(int profile);

struct PanelDevice {
    QString id;
    bool isMouse = false;
    QString receiverClass; // "8k"; of a receiver
    QString name;          // of a mouse
    QString version;
    QString address;
    bool plugged = false;
    bool boot = false;
    bool online = false;
    int faults = 0;       // rules that stand
    int erase = 0;        // ms that its boot loader takes to erase
    bool pairing = false; // the receiver waits for a mouse, or the mouse looks for a receiver
    // Of a receiver.
    bool refusesPairing = false;
    int pairTime = 0; // ms
    // Of a mouse.
    bool radio = false;
    bool asleep = false;
    bool charging = false;
    int battery = 0;
    int profile = 0;
    int stage = 0; // zero-based
    int stages = 0;
    int rate = 0; // Hz; 0 when the flash holds none

    bool operator==(const PanelDevice &other) const;
    bool operator!=(const PanelDevice &other) const { return !(*this == other); }
    QString kindText() const;   // "8k receiver", "Mouse \"Seven\""
    QString statusText() const; // "Plugged in, online"
    QString detailText() const; // battery, profile, stage and rate of a mouse; version of a receiver
};
Q_DECLARE_METATYPE(PanelDevice)

struct PanelState {
    static constexpr int DeviceLimit = 64;

    bool pace = false;
    QVector<PanelDevice> devices;

    const PanelDevice *find(const QString &id) const;
    // The mouse itself, or the mouse with the receiver's address; null when there is none.
    const PanelDevice *mouseOf(const QString &id) const;
};

// The lines of an answer to "state".
PanelState parseState(const QList<QByteArray> &lines);
// The bytes in an answer to "show"; empty unless they are `size` in all and at their addresses.
QByteArray parseFlash(const QList<QByteArray> &lines, int size);
