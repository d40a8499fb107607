// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The texts of the upgrade dialog and of the notices beside it.
#pragma once

#include "presentation/language/LanguageTables.h"
#include "service/UpgradeGate.h"

struct UpgradeTextRow {
    UpgradeText text;
    language::Section section;
    const char *key;
    language::Word word;
};

// clang-format off
inline constexpr UpgradeTextRow UpgradeTextRows[] = {
    {UpgradeText::WarnUpdate, language::Section::home, "WarnUpdate", language::Word::Mouse},
    {UpgradeText::NotDevice, language::Section::home, "NotDevice", language::Word::Mouse},
    {UpgradeText::SameDevice, language::Section::home, "SameDevice", language::Word::Mouse},
    {UpgradeText::DialogUpgradeFail, language::Section::update, "DialogUpgradeFail", language::Word::Mouse},
    {UpgradeText::DialogUpgradeSuccess, language::Section::update, "DialogUpgradeSuccess", language::Word::Mouse},
    {UpgradeText::NoRecieve, language::Section::home, "NoRecieve", language::Word::Mouse},
    {UpgradeText::NoUSB, language::Section::home, "NoUSB", language::Word::Mouse},
    {UpgradeText::Error1, language::Section::home, "Error1", language::Word::Mouse},
    {UpgradeText::Error, language::Section::home, "Error", language::Word::Mouse},
    {UpgradeText::ErrorFile, language::Section::home, "ErrorFile", language::Word::Mouse},
    {UpgradeText::MultiDongle, language::Section::home, "MultiDongle", language::Word::Mouse},
    {UpgradeText::MultiMouse, language::Section::home, "MultiMouse", language::Word::Mouse},
    {UpgradeText::ReadyUpdate, language::Section::home, "ReadyUpdate", language::Word::Mouse},
    {UpgradeText::NoDevice, language::Section::home, "NoDevice", language::Word::Mouse},
    {UpgradeText::WiredMode, language::Section::home, "WiredMode", language::Word::Mouse},
    {UpgradeText::newTips, language::Section::update, "newTips", language::Word::Keyboard},
};
// clang-format on

// Empty for None.
inline QString upgradeText(UpgradeText text, int index)
{
    for (const UpgradeTextRow &row : UpgradeTextRows)
        if (row.text == text)
            return language::text(row.section, row.key, index, row.word);
    return {};
}
