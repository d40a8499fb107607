// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A language that no one speaks: the texts that ship, with accents and 40 % longer, as long as the object
// lives. Places that texts are put into, line breaks and keys stay.
#pragma once

#include "environment/DataRoot.h"
#include "presentation/language/LanguageTables.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace support
{

inline QString longText(QString text)
{
    const QString plain = QStringLiteral("aeiouncsAEIOU");
    const QString accented = QStringLiteral("åëïõůñçšÅËÏÕŮ");
    const QRegularExpression kept(QStringLiteral("%\\d|\\\\.|<[^>]*>"));
    QString made;
    int at = 0;
    const auto accent = [&](QString part) {
        for (QChar &each : part)
            if (const int index = plain.indexOf(each); index >= 0)
                each = accented[index];
        made += part;
    };
    for (auto each = kept.globalMatch(text); each.hasNext();) {
        const QRegularExpressionMatch match = each.next();
        accent(text.mid(at, match.capturedStart() - at));
        made += match.captured();
        at = match.capturedEnd();
    }
    accent(text.mid(at));
    // One more word or, behind a word that is alone, a longer one.
    const QString filler = QStringLiteral("lörém ïpsům dölör sït åmët ");
    const int missing = (text.size() * 2 + 4) / 5;
    QString tail;
    while (tail.size() < missing)
        tail += text.contains(QLatin1Char(' ')) ? filler : QStringLiteral("öňïåëš");
    tail.truncate(missing);
    if (text.contains(QLatin1Char(' ')) && missing > 1)
        tail[0] = QLatin1Char(' ');
    if (tail.endsWith(QLatin1Char(' ')))
        tail.back() = QChar(0xF6);
    return made + tail;
}

inline QByteArray longLanguage(const QByteArray &json)
{
    const QString source = QString::fromUtf8(json);
    const QStringList keys = {"value", "info", "type", "command", "id"};
    QString made;
    int at = 0;
    const QRegularExpression member(QStringLiteral("\"(\\w+)\"(\\s*:\\s*\")((?:[^\"\\\\]|\\\\.)+)\""));
    for (auto each = member.globalMatch(source); each.hasNext();) {
        const QRegularExpressionMatch match = each.next();
        if (keys.contains(match.captured(1)))
            continue;
        made += source.mid(at, match.capturedStart(3) - at) + longText(match.captured(3));
        at = match.capturedEnd(3);
    }
    return (made + source.mid(at)).toUtf8();
}

class LongTexts
{
public:
    LongTexts()
    {
        const QString shipped = applicationFolder();
        static const QTemporaryDir folder; // pages load pictures meanwhile, so the folder is used only here
        const QString made = folder.filePath(QStringLiteral("Language/en.json"));
        if (!QFile::exists(made)) {
            QDir(folder.path()).mkdir(QStringLiteral("Language"));
            QFile source(shipped + QStringLiteral("/Language/en.json"));
            QFile file(made);
            if (source.open(QIODevice::ReadOnly) && file.open(QIODevice::WriteOnly))
                file.write(longLanguage(source.readAll()));
        }
        setApplicationFolder(folder.path());
        LoadLanguageTables();
        setApplicationFolder(shipped);
    }
    ~LongTexts() { LoadLanguageTables(); }
    LongTexts(const LongTexts &) = delete;
    LongTexts &operator=(const LongTexts &) = delete;
};

} // namespace support
