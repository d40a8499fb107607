// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// All texts of the program by language index. The main thread fills the tables once before another thread
// starts; after that they are read-only. A text that a language does not have, and every text of an index
// that is none, is that of language 0; an unknown key gives an empty text.
#pragma once

#include "presentation/language/LanguageFile.h"

#include <QStringList>

// Reads "/Language/en.json" beside the program as language 0, the other languages of the folder
// (presentation/language/Languages.h), then "/Language/Net.xml". A file that is missing or broken leaves its
// tables empty.
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

// The file from which the notice "already running" reads its texts, below the application's folder. All of
// these files contain JSON, also those named ".xml".
QString noticeLanguageFile(int index);

} // namespace language
