// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A combo box that offers the languages. Main thread.
#pragma once

class QComboBox;

namespace languagebox
{

// Its first item, which the form gives, is language 0; the others are added.
void fill(QComboBox *box);
int languageOf(const QComboBox *box, int row);
// Silently. An index that is no language shows the first, whose texts it gets.
void show(QComboBox *box, int language);

} // namespace languagebox
