// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Language files in the place of those that ship, while a test asks for them.
#pragma once

#include "environment/DataRoot.h"
#include "presentation/language/LanguageTables.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace support
{

// Another language file in the place of the one that ships, which is loaded again at the end.
class OtherLanguage
{
public:
    explicit OtherLanguage(const QByteArray &json)
    {
        QDir(folder_.path()).mkdir(QStringLiteral("Language"));
        QFile file(folder_.filePath(QStringLiteral("Language/en.json")));
        if (file.open(QIODevice::WriteOnly))
            file.write(json);
        file.close();
        setApplicationFolder(folder_.path());
        LoadLanguageTables();
    }
    ~OtherLanguage()
    {
        setApplicationFolder(shipped_);
        LoadLanguageTables();
    }
    OtherLanguage(const OtherLanguage &) = delete;
    OtherLanguage &operator=(const OtherLanguage &) = delete;

private:
    const QString shipped_ = applicationFolder();
    QTemporaryDir folder_;
};

// While it lives, no language has any text, so what is built in shows.
struct WithoutTexts : OtherLanguage {
    WithoutTexts() : OtherLanguage("{}") {}
};

} // namespace support
