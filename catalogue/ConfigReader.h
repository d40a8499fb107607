// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reader of the catalogue, "usersetting/Config.ini" beside the program: which devices to look for, which
// models exist, what each can do. The file is read at the first question; one that is missing, too large
// or nonsense is an empty catalogue. Any thread.
#pragma once

#include "catalogue/IniDocument.h"

#include <mutex>
#include <optional>

class ConfigReader
{
public:
    // Made at the first use and never destroyed.
    static ConfigReader &instance();

    explicit ConfigReader(const QString &path);
    ConfigReader(const ConfigReader &) = delete;
    ConfigReader &operator=(const ConfigReader &) = delete;

    // Encoded keys are decoded, with every line feed and blank removed. Empty when the key is missing.
    QString ReadConfig(const QString &section, const QString &key) const;
    QStringList ReadConfigList(const QString &section, const QString &key) const;

    // Stored as given. The program itself never writes its catalogue.
    bool WriteConfig(const QString &section, const QString &key, const QString &value);
    bool RemoveConfig(const QString &section, const QString &key);

    // Takes the file at `path` for all later questions, for tests.
    void open(const QString &path);

private:
    IniDocument &document() const; // mutex_ held

    mutable std::mutex mutex_;
    QString path_;
    mutable std::optional<IniDocument> document_; // read when first asked for
    const int encodedValues_ = 1;                 // other values would leave single values as they are stored
};
