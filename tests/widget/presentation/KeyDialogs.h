// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of the key dialogs share.
#pragma once

#include "keys/KeyVocabulary.h"
#include "presentation/dialogs/GroupKey.h"
#include "presentation/dialogs/KeyField.h"
#include "presentation/dialogs/addKey.h"
#include "presentation/language/LanguageTables.h"
#include "tests/widget/Fixture.h"

#include <QToolButton>

namespace keydialogs
{

// Virtual keys.
constexpr int A = 0x41, B = 0x42, C = 0x43, D = 0x44, F = 0x46, Tab = 0x09, Enter = 0x0D, Backtick = 0xC0,
              Nameless = 0x0C, LeftShift = 0xA0, RightCtrl = 0xA3, LeftAlt = 0xA4, NumPlus = 0x6B,
              Unknown = 0x15;

inline QString field(const QWidget &dialog) { return dialog.findChild<KeyField *>("lineEdit")->text(); }

inline void click(const QWidget &dialog, const char *button)
{
    QTest::mouseClick(dialog.findChild<QToolButton *>(button), Qt::LeftButton);
}

inline void open(QWidget &dialog)
{
    dialog.show();
    QApplication::setActiveWindow(&dialog);
}

} // namespace keydialogs
