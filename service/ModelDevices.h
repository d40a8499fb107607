// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The attached devices of one model, searched for at the call. Any thread; each call blocks until the devices
// answer or their time-out ends.
#pragma once

#include "device/record/DeviceAllInfo.h"
#include "service/ModelFirmware.h"

#include <vector>

// Mice of the model on a cable and its receivers of the class, also those that have lost their mouse and do
// not know their model any more. Other devices must not be married to the mouse.
std::vector<DeviceAllInfo> attachedOfModel(const ModelFirmware &model);
