// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a button does when its macro is deleted, and after a reset.
#pragma once

#include "binding/actions/ActionTable.h"

namespace binding
{

constexpr int ButtonCount = 12;     // the page's; the record has more slots
constexpr int CatalogueButtons = 6; // may have a default of the model's, KeyParam1 to KeyParam6

// The built-in one. A fire key stands for the page's current interval and count. Null outside 0..11.
const ActionRow *builtInAction(int button);

struct DefaultAction {
    const ActionRow *action = nullptr; // null: the button stays as it is
    QString keys;                      // of a combination
};
// `keyParam`: the model's list for this button, empty for none; without effect beyond CatalogueButtons.
DefaultAction defaultAction(int button, const QStringList &keyParam);
// "KeyParam3" for button 2, empty for a button that has none.
QString keyParamName(int button);

} // namespace binding
