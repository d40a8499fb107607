// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The content of an ini file in the format of QSettings, in memory. Malformed lines and comments
// are dropped, serialised objects become empty. Not thread-safe.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

constexpr qint64 IniSizeLimit = 1048576; // bytes; larger files are refused before they are read

class IniDocument
{
public:
    static IniDocument parse(const QByteArray &bytes);
    QByteArray serialise() const;

    // Empty when the value is missing. A value of several items has no text, as in QVariant.
    QString text(const QString &section, const QString &key) const;
    QStringList list(const QString &section, const QString &key) const;
    bool operator==(const IniDocument &other) const { return values_ == other.values_; }

    void set(const QString &section, const QString &key, const QString &text);
    void remove(const QString &section, const QString &key);

private:
    void parseLine(const QByteArray &line, int equals, QString *section);

    QMap<QString, QStringList> values_; // "section/key" to items, at least one
};
