// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The layer's callbacks for the selected device.
#pragma once

#include <cstdint>

// Receives every message of the device and publishes it through PostMsg. On the layer's callback thread;
// returns when the slots of the pages have returned.
void ProtocolCallback(const uint8_t *header, int32_t headerLength, const uint8_t *payload,
                      uint32_t payloadLength);

// What is known of a receiver is that of another one. On the worker's thread, before the pages are fed.
void forgetReceiver();

// Starts the timer that limits how often a device may ask for a whole new read. Called once, by the worker.
void startStatusTimer();

// The hot-plug callback while the device page shows, on the layer's hot-plug thread.
void DevicePageUsbChanged();
