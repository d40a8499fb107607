// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every text that the user reads, by language index. The tables are filled once on the main thread before
// another thread starts, and only read after that. A look-up never fails: an unknown key or index gives
// the empty text.
#pragma once

#include "presentation/language/LanguageFile.h"

#include <QStringList>

// Reads "/Language/en.json" beside the program as language 0, then "/Language/Net.xml". A file that is
// missing or broken leaves its tables empty.
void LoadLanguageTables();

namespace language
{

QString text(Section section, const QString &key, int index, Word word = Word::Mouse);
QString text(Section section, const char *key, int index, Word word = Word::Mouse);
// The table of a name and type in Choices, key to caption.
Texts choices(const char *name, int index, Word word = Word::Mouse, const char *type = nullptr);
QString choice(const char *name, const QString &key, int index, Word word = Word::Mouse,
               const char *type = nullptr);
// Item 0 is the company's name, item 1 its address on the web.
QStringList companyLabels(int index);

// The file that the notice "already running" reads by itself, below the application's folder. All of them
// hold JSON, also those that are called ".xml".
QString noticeLanguageFile(int index);

} // namespace language
