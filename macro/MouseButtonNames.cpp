// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MouseButtonNames.h"

#include "presentation/language/LanguageTables.h"

#include <algorithm>

void setMouseButtonNames(int language)
{
    MouseButtonTexts names;
    const language::Texts events = language::choices("InsertEventOptions", language);
    for (std::size_t i = 0; i < MouseButtonCount && !events.isEmpty(); ++i) {
        const MouseButtonRow &row = MouseButtonTable[i];
        names[i] = events.value(QLatin1String(row.textKey), QString::fromUtf8(row.text));
    }
    SetMouseButtonNames(names);
}

macro::MacroRows withButtonNames(macro::MacroRows rows, const MouseButtonTexts &before)
{
    const MouseButtonTexts &now = MouseButtonNames();
    for (macro::MacroRow &row : rows) {
        const auto known = std::find(before.begin(), before.end(), row.text);
        if (!row.text.isEmpty() && known != before.end())
            row.text = now[std::size_t(known - before.begin())];
    }
    return rows;
}
