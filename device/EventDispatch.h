// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the layer's callbacks do for the selected device.
#pragma once

#include <cstdint>

// Receives everything that the device sends and publishes it through PostMsg. On the layer's callback
// thread; returns when the pages have taken what was published.
void ProtocolCallback(const uint8_t *header, int32_t headerLength, const uint8_t *payload,
                      uint32_t payloadLength);

// Begins the time over which whole new reads are spread; made once, with the worker.
void startStatusTimer();

// The hot-plug callback while the device page shows, on the layer's hot-plug thread.
void DevicePageUsbChanged();
