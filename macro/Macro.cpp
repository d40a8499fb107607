// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/Macro.h"

#include "hub/PostMsg.h"
#include "keys/KeyVocabulary.h"
#include "presentation/language/LanguageTables.h"

Macro::Macro(QWidget *parent) : PageSurface(QStringLiteral("Macro"), QStringLiteral("Macro"), parent)
{
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
}

void Macro::SlotAllLanguage(int index)
{
    MouseButtonTexts names;
    const language::Texts events = language::choices("InsertEventOptions", index);
    for (std::size_t i = 0; i < MouseButtonCount && !events.isEmpty(); ++i) {
        const MouseButtonRow &row = MouseButtonTable[i];
        names[i] = events.value(QLatin1String(row.textKey), QString::fromUtf8(row.text));
    }
    SetMouseButtonNames(names);
}
