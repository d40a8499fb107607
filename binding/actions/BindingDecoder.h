// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Decodes the bytes of a button's slot for the page: the caption, and the panel and widgets to select when
// the button is opened. The bytes come from a device or a file and are not trusted: no read passes the end of
// a block.
#pragma once

#include "binding/actions/ActionTable.h"

#include <optional>

struct SensorCodes;

namespace binding
{

struct SlotView { // refers into a record, which must outlive it
    KeyBinding binding;
    const KeySequence &sequence;
    const MacroBlock &macro;
};
SlotView slotOf(const FlashDataMap &record, int button); // 0..15

struct DecodedBinding {
    std::optional<QString> caption; // none: the button keeps the one it has
    Panel panel = Panel::Debounce;
    const ActionRow *function = nullptr; // to check on the list of functions; null: none of them
    const ActionRow *detail = nullptr;   // to check on the panel; null: none. A macro's widget is its name's
};
DecodedBinding decodeBinding(const SlotView &slot, const SensorCodes &sensor, int language);

// The names of the sequence's keys joined by "+", of at most the six events that a sequence has.
QString combinationText(const KeySequence &sequence);
// Of a button that plays the macro, in the language.
QString macroCaption(const QString &name, int language);

} // namespace binding
