// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reader of the catalogue, "usersetting/Config.ini" beside the program: the ids to search for, the models and
// their capabilities. The file is read at the first call; a missing, oversized or malformed file is an empty
// catalogue. Any thread.
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

    // Reads the file at `path` from now on, for tests.
    void open(const QString &path);

private:
    IniDocument &document() const; // the caller holds mutex_

    mutable std::mutex mutex_;
    QString path_;
    mutable std::optional<IniDocument> document_; // read at the first call
    const int encodedValues_ = 1; // any other value: single values are returned as they are stored
};
