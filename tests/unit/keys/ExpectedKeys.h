// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The key vocabulary as its tests expect it: tests/data/keys.tsv, and the mouse buttons in one language.
#pragma once

#include "keys/KeyVocabulary.h"
#include "tests/support/KeysFile.h"

#include <QtTest>

namespace expected
{

constexpr int CodeEnd = 0x200;
constexpr int KindEnd = 5;
constexpr int ModifierKind = 0, OrdinaryKind = 1, MouseKind = 4;

inline const std::vector<ExpectedKey> &table()
{
    static const std::vector<ExpectedKey> rows = readKeysFile();
    return rows;
}

inline const MouseButtonTexts English = {"Left button", "Right button", "Middle button", "Back button",
                                         "Forward button"};
inline const std::map<int, int> MouseBits = {{1, 0}, {2, 1}, {4, 2}, {8, 3}, {16, 4}};

inline QString hexText(int code)
{
    return QString("0x%1").arg(QString("%1").arg(code, 2, 16, QChar('0')).toUpper());
}

} // namespace expected
