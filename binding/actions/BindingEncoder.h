// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Encodes an action into the bytes of a button's slot. Pure functions. Macro blocks are encoded by the macro
// page.
#pragma once

#include "binding/actions/ActionTable.h"

#include <optional>

struct SensorCodes;

namespace binding
{

constexpr int FireIntervalMin = 10, FireIntervalMax = 255;
constexpr int FireCountMax = 3; // 0 fires for as long as the button is held
constexpr int KeyDelayMs = 10;  // after each event of a sequence

struct EncodedAction {
    KeyBinding binding;
    std::optional<KeySequence> sequence; // set for SequenceClass only; other classes keep the slot's sequence
};

// The binding of a click on the row's widget. None for an opener, and for the combination, which needs its
// text. A fire key gets the initial values of its dialog.
std::optional<EncodedAction> encodeAction(const ActionRow &row, const SensorCodes &sensor);
EncodedAction encodeMedia(uint16_t usage);
// Values outside the dialog's ranges are clamped.
EncodedAction encodeFireKey(int interval, int count);
// `keys`: names joined by "+". Takes the first three; a name that is no key becomes a key of code 0.
EncodedAction encodeCombination(const QString &keys);
KeySequence BuildKeySequence(const QString &keys);
// The binding of a macro in the button's own slot. `cycle`: repetition mode of the macro.
KeyBinding macroBinding(int button, uint8_t cycle);

} // namespace binding
