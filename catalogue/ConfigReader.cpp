// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/ConfigReader.h"

#include "catalogue/CatalogueKeys.h"
#include "environment/DataRoot.h"
#include "environment/SafeFile.h"

namespace
{

QString decoded(const QString &stored)
{
    QString text = QString::fromUtf8(QByteArray::fromBase64(stored.toUtf8()));
    return text.remove(QLatin1Char('\n')).remove(QLatin1Char(' '));
}

bool isEncoded(const QString &key) { return isEncodedKey(key.toStdString()); }

} // namespace

ConfigReader &ConfigReader::instance()
{
    static std::mutex mutex;
    static ConfigReader *reader = nullptr;
    const std::lock_guard lock(mutex);
    if (reader == nullptr)
        reader = new ConfigReader(applicationFolder() + QStringLiteral("/usersetting/Config.ini"));
    return *reader;
}

ConfigReader::ConfigReader(const QString &path) : path_(path) {}

void ConfigReader::open(const QString &path)
{
    const std::lock_guard lock(mutex_);
    path_ = path;
    document_.reset();
}

IniDocument &ConfigReader::document() const
{
    if (!document_)
        document_ = IniDocument::parse(readFile(path_, IniSizeLimit).value_or(QByteArray()));
    return *document_;
}

QString ConfigReader::ReadConfig(const QString &section, const QString &key) const
{
    const std::lock_guard lock(mutex_);
    const QString text = document().text(section, key);
    return encodedValues_ == 1 && isEncoded(key) ? decoded(text) : text;
}

QStringList ConfigReader::ReadConfigList(const QString &section, const QString &key) const
{
    const std::lock_guard lock(mutex_);
    QStringList items = document().list(section, key);
    if (isEncoded(key)) {
        for (QString &item : items)
            item = decoded(item);
    }
    return items;
}

bool ConfigReader::WriteConfig(const QString &section, const QString &key, const QString &value)
{
    const std::lock_guard lock(mutex_);
    document().set(section, key, value);
    return writeFileSafely(path_, document().serialise());
}

bool ConfigReader::RemoveConfig(const QString &section, const QString &key)
{
    const std::lock_guard lock(mutex_);
    document().remove(section, key);
    return writeFileSafely(path_, document().serialise());
}
