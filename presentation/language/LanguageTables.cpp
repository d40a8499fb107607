// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/language/LanguageTables.h"

#include "environment/DataRoot.h"
#include "environment/SafeFile.h"
#include "presentation/language/CompanyLabels.h"
#include "presentation/language/Languages.h"

#include <QDir>
#include <QVector>

namespace
{

struct Tables {
    QVector<language::LanguageFile> languages; // each has the texts of language 0 where it has none
    QStringList names;                         // empty for an index without a file
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

const language::LanguageFile &fileOf(int index)
{
    static const language::LanguageFile none;
    const auto &all = tables().languages;
    if (all.isEmpty())
        return none;
    return index > 0 && index < all.size() ? all.at(index) : all.first();
}

void addTexts(language::Texts *texts, const language::Texts &own)
{
    for (auto each = own.begin(); each != own.end(); ++each)
        texts->insert(each.key(), each.value());
}

language::LanguageFile over(language::LanguageFile file, const language::LanguageFile &own)
{
    for (std::size_t word = 0; word < file.texts.size(); ++word)
        for (std::size_t section = 0; section < file.texts[word].size(); ++section)
            addTexts(&file.texts[word][section], own.texts[word][section]);
    for (std::size_t choice = 0; choice < file.choices.size(); ++choice)
        addTexts(&file.choices[choice], own.choices[choice]);
    return file;
}

QString nameOf(const language::LanguageFile &file)
{
    return file.section(language::Word::Mouse, language::Section::common)
        .value(QStringLiteral("LanguageName"));
}

// By language index. The notice "already running" reads its texts by the same index.
QStringList fileNames(const QString &folder)
{
    QStringList names;
    for (const char *notice : NoticeFiles)
        names << QFileInfo(QString::fromLatin1(notice)).fileName();
    for (const QString &name : QDir(folder).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name))
        if (!names.contains(name))
            names << name;
    return names;
}

// Of a file that does not name itself nothing is taken.
void addLanguages(const QString &folder, Tables *loaded)
{
    const QStringList files = fileNames(folder);
    const language::LanguageFile first = loaded->languages.first();
    for (int index = 1; index < files.size(); ++index) {
        const language::LanguageFile own = language::readLanguageFile(folder + files[index]);
        const QString name = nameOf(own);
        if (name.isEmpty())
            continue;
        while (loaded->names.size() < index) {
            loaded->names << QString();
            loaded->languages << first;
        }
        loaded->names << name;
        loaded->languages << over(first, own);
    }
}

} // namespace

void LoadLanguageTables()
{
    Tables loaded;
    const QString folder = applicationFolder() + QStringLiteral("/Language/");
    loaded.languages << language::readLanguageFile(folder + QStringLiteral("en.json"));
    loaded.names << nameOf(loaded.languages.first());
    addLanguages(folder, &loaded);
    if (const auto xml = readFile(folder + QStringLiteral("Net.xml"), LabelSizeLimit))
        loaded.labels << readCompanyLabels(*xml);
    tables() = loaded;
}

namespace language
{

QString text(Section section, const QString &key, int index, Word word)
{
    return fileOf(index).section(word, section).value(key);
}

QString text(Section section, const char *key, int index, Word word)
{
    return text(section, QString::fromLatin1(key), index, word);
}

Texts choices(const char *name, int index, Word word, const char *type)
{
    return fileOf(index).choice(name, word, type);
}

QString choice(const char *name, const QString &key, int index, Word word, const char *type)
{
    return choices(name, index, word, type).value(key);
}

QStringList names() { return tables().names; }

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
