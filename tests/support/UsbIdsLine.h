// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A scenario's first line: the USB ids of the emulated devices, which are those of the catalogue that ships.
#pragma once

constexpr const char *UsbIdsLine =
    "usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007\n";
