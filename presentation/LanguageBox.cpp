// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/LanguageBox.h"

#include "presentation/language/Languages.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace languagebox
{

void fill(QComboBox *box)
{
    box->setItemData(0, 0);
    const QStringList names = language::names();
    for (int language = 1; language < names.size(); ++language)
        if (!names[language].isEmpty())
            box->addItem(names[language], language);
}

int languageOf(const QComboBox *box, int row) { return box->itemData(row).toInt(); }

void show(QComboBox *box, int language)
{
    const QSignalBlocker silent(box);
    box->setCurrentIndex(qMax(0, box->findData(language)));
}

} // namespace languagebox
