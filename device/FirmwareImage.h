// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FirmwareImage: the library's two functions that take a firmware file. They get its bytes without a length
// and read as far as the file's head says, so a file whose head gives another length than it has is not
// passed on. Any thread; each call may take half a second.
#pragma once

#include "device/hidusb/HIDUsb.h"

#include <QByteArray>
#include <QString>

// A complete, undamaged firmware file of a mouse or a receiver.
bool isSoundFirmware(const QByteArray &image);
// The version of a sound file, such as "v1.0A".
QString firmwareVersion(const QByteArray &image);

// The attached boot loaders that the file fits, at most `most`.
int findBootDevices(const QByteArray &image, int most);
// Starts flashing the one device that the file fits. `image` may go once this has returned.
bool startFirmwareUpgrade(const QByteArray &image, UpgradeCallback_t callback, int timeoutMs);
