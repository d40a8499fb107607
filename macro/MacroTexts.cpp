// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MacroTexts.h"

#include "device/DeviceState.h"
#include "presentation/language/LanguageTables.h"

namespace macrotexts
{

QString text(const char *key, int language)
{
    const QString text = language::text(language::Section::macro, key, language);
    return text.isEmpty() ? language::text(language::Section::common, key, language) : text;
}

QString text(const char *key) { return text(key, LanguageIndex); }

QString form(const char *key, const char *fallback)
{
    const QString form = text(key);
    return form.isEmpty() ? QLatin1String(fallback) : form;
}

QString duration(qint64 milliseconds)
{
    return milliseconds < 1000 ? QStringLiteral("%1 ms").arg(milliseconds)
                               : QStringLiteral("%1 s").arg(double(milliseconds) / 1000, 0, 'f', 2);
}

QString text(const InsertionRow &row, int language)
{
    QString found;
    if (row.what == Insertion::Delay)
        found = text(row.textKey, language);
    else if (row.textKey)
        found = language::choice("InsertEventOptions", QLatin1String(row.textKey), language);
    return found.isEmpty() ? QString::fromUtf8(row.text) : found;
}

} // namespace macrotexts
