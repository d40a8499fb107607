// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DeviceAllInfo: one attached device. A plain value; the selected device's
// copy is kept by SelectedDevice.
#pragma once

#include "catalogue/DeviceKinds.h"
#include "device/hidusb/DeviceRecords.h"

#include <QByteArray>
#include <QString>

struct DeviceAllInfo {
    QString DevicePath; // the HID path that every call of the layer takes
    QString Vid;        // as written in the catalogue
    QString Pid;        // as written in the catalogue
    uint8_t Cid = 0;
    uint8_t Mid = 0;
    uint16_t DeviceKind = 0; // a code of DeviceKinds, or another cable
    int32_t DriveIndex = 0;  // zero-based catalogue position; DeviceTotal for an unknown device
    bool Online = false;     // the mouse answers now
    bool Usb = false;        // connected by cable
    QString DongleVersion;   // of the connected interface, such as "v1.0A"
    QString MouseVersion;    // read from the mouse, same form
    QByteArray UsbAddress;   // three bytes, address of the paired mouse; empty when unknown
};

// "v" + major in decimal + "." + minor in two upper-case hexadecimal digits.
inline QString versionText(uint32_t version)
{
    const QString minor = QString::number(version & 0xFF, 16).toUpper().rightJustified(2, QLatin1Char('0'));
    return QStringLiteral("v%1.%2").arg((version >> 8) & 0xFF).arg(minor);
}
