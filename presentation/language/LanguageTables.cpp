// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/language/LanguageTables.h"

#include "environment/DataRoot.h"
#include "environment/SafeFile.h"
#include "presentation/language/CompanyLabels.h"

#include <QVector>

namespace
{

struct Tables {
    QVector<language::LanguageFile> languages;
    QVector<QStringList> labels;
};

// Never destroyed: a page may still look up a text while the process ends.
Tables &tables()
{
    static auto *all = new Tables;
    return *all;
}

const char *const NoticeFiles[] = {"/Language//en.json",     "/Language//zh-CN.json",
                                   "/Language/2-German.xml", "/Language/3-Korea.xml",
                                   "/Language/4-Russia.xml", "/Language/5-Japanese.xml"};

// Texts of the language asked for, each of language 0 where that has none.
template <typename Find> language::Texts withFallback(int index, Find find)
{
    const auto &all = tables().languages;
    language::Texts found = all.isEmpty() ? language::Texts() : find(all.first());
    if (index <= 0 || index >= all.size())
        return found;
    const language::Texts own = find(all.at(index));
    for (auto each = own.begin(); each != own.end(); ++each)
        found.insert(each.key(), each.value());
    return found;
}

} // namespace

void LoadLanguageTables()
{
    Tables loaded;
    const QString folder = applicationFolder() + QStringLiteral("/Language/");
    loaded.languages << language::readLanguageFile(folder + QStringLiteral("en.json"));
    if (const auto xml = readFile(folder + QStringLiteral("Net.xml"), LabelSizeLimit))
        loaded.labels << readCompanyLabels(*xml);
    tables() = loaded;
}

namespace language
{

QString text(Section section, const QString &key, int index, Word word)
{
    return withFallback(index, [&](const LanguageFile &file) { return file.section(word, section); })
        .value(key);
}

QString text(Section section, const char *key, int index, Word word)
{
    return text(section, QString::fromLatin1(key), index, word);
}

Texts choices(const char *name, int index, Word word, const char *type)
{
    return withFallback(index, [&](const LanguageFile &file) { return file.choice(name, word, type); });
}

QString choice(const char *name, const QString &key, int index, Word word, const char *type)
{
    return choices(name, index, word, type).value(key);
}

QStringList companyLabels(int index)
{
    const auto &labels = tables().labels;
    return labels.value(index, labels.value(0));
}

QString noticeLanguageFile(int index)
{
    const bool known = index >= 0 && index < int(std::size(NoticeFiles));
    return QString::fromLatin1(known ? NoticeFiles[index] : "/Language/0-English.xml");
}

} // namespace language
