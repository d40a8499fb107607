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
    language::Word word;
    const char *key;
};

// clang-format off
inline constexpr UpgradeTextRow UpgradeTextRows[] = {
    {UpgradeText::WarnUpdate, language::Section::home, language::Word::Mouse, "WarnUpdate"},
    {UpgradeText::UpgradeAsking, language::Section::update, language::Word::Mouse, "UpgradeAsking"},
    {UpgradeText::NotDevice, language::Section::home, language::Word::Mouse, "NotDevice"},
    {UpgradeText::SameDevice, language::Section::home, language::Word::Mouse, "SameDevice"},
    {UpgradeText::DialogUpgradeFail, language::Section::update, language::Word::Mouse, "DialogUpgradeFail"},
    {UpgradeText::DialogUpgradeSuccess, language::Section::update, language::Word::Mouse, "DialogUpgradeSuccess"},
    {UpgradeText::NoRecieve, language::Section::home, language::Word::Mouse, "NoRecieve"},
    {UpgradeText::NoUSB, language::Section::home, language::Word::Mouse, "NoUSB"},
    {UpgradeText::Error1, language::Section::home, language::Word::Mouse, "Error1"},
    {UpgradeText::Error, language::Section::home, language::Word::Mouse, "Error"},
    {UpgradeText::ErrorFile, language::Section::home, language::Word::Mouse, "ErrorFile"},
    {UpgradeText::MultiDongle, language::Section::home, language::Word::Mouse, "MultiDongle"},
    {UpgradeText::MultiMouse, language::Section::home, language::Word::Mouse, "MultiMouse"},
    {UpgradeText::ReadyUpdate, language::Section::home, language::Word::Mouse, "ReadyUpdate"},
    {UpgradeText::NoDevice, language::Section::home, language::Word::Mouse, "NoDevice"},
    {UpgradeText::WiredMode, language::Section::home, language::Word::Mouse, "WiredMode"},
    {UpgradeText::newTips, language::Section::update, language::Word::Keyboard, "newTips"},
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
