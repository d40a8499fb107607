// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A device in words: its model, and how it is connected. Main thread.
#pragma once

#include "device/record/DeviceAllInfo.h"

// "Model 7", or that the model is unknown.
QString deviceModelText(const DeviceAllInfo &info, int language);
// "8 kHz receiver" or "Cable".
QString deviceLinkText(const DeviceAllInfo &info, int language);
