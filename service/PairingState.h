// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The process-wide state of a pairing. The layer's callback has no object, so the state stands apart from the
// dialog: the callback and the main thread change it, each change under one lock, so that a pairing has one
// outcome. Any thread.
#pragma once

#include <cstdint>

enum class PairingPhase : int32_t { Idle, Pairing, Succeeded, Failed };

namespace pairing
{

PairingPhase phase();
// PairingActive: true between a start and its outcome, while the dialog cannot be closed.
bool isActive();

// A dialog opens: nothing runs and nothing has been tried.
void prepare();
// A start. From the device page the worker is paused: OnDevicePage is 0 and WorkerPaused is set until the
// outcome.
void begin();
// The outcome, which lets a paused worker go on.
void end(PairingPhase outcome);
// An outcome that the layer does not tell. False, and nothing changes, when it has told one meanwhile.
bool failActive();
// The device page was left during the pairing: there is nothing to go back to.
void leaveDevicePage();

// The layer's callback during a pairing. Emits SigTimerStop and SigButtonEnable for an outcome.
void callback(const uint8_t *header, int32_t headerLength, const uint8_t *payload, uint32_t payloadLength);

} // namespace pairing
