// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The default actions of the buttons: after a reset, and when a button's macro is deleted.
#pragma once

#include "binding/actions/ActionTable.h"

namespace binding
{

constexpr int ButtonCount = 12;     // on the page; the record has more slots
constexpr int CatalogueButtons = 6; // the model may set their default, KeyParam1 to KeyParam6

// The default without a catalogue entry. Null outside 0..11.
const ActionRow *builtInAction(int button);

struct DefaultAction {
    const ActionRow *action = nullptr; // null: the button stays as it is
    QString keys;                      // of a combination
};
// `keyParam`: the model's list for this button, empty for none; ignored from CatalogueButtons on.
DefaultAction defaultAction(int button, const QStringList &keyParam);
// "KeyParam3" for button 2, empty for a button that has none.
QString keyParamName(int button);

} // namespace binding
