// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// From an action to the bytes of a button's slot. Pure. The macro blocks themselves are made where macros
// are.
#pragma once

#include "binding/actions/ActionTable.h"

#include <optional>

struct SensorCodes;

namespace binding
{

constexpr int FireIntervalMin = 10, FireIntervalMax = 255;
constexpr int FireCountMax = 3; // 0 fires for as long as the button is held
constexpr int KeyDelayMs = 10;  // behind each event of a sequence

struct EncodedAction {
    KeyBinding binding;
    std::optional<KeySequence> sequence; // of the class SequenceClass alone; the others leave the slot's own
};

// What a click on the row's widget binds. Nothing for an opener and for the combination, which binds by
// its text. A fire key gets the first values of its dialog.
std::optional<EncodedAction> encodeAction(const ActionRow &row, const SensorCodes &sensor);
EncodedAction encodeMedia(uint16_t usage);
// Values outside the dialog's ranges are taken to the nearest end.
EncodedAction encodeFireKey(int interval, int count);
// `keys`: names joined by "+". Takes the first three; a name that is no key becomes a key of code 0.
EncodedAction encodeCombination(const QString &keys);
KeySequence BuildKeySequence(const QString &keys);
// The macro stands in the slot of the button itself. `cycle` is the mode of the macro's repetition.
KeyBinding macroBinding(int button, uint8_t cycle);

} // namespace binding
