// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DesktopEntry: the group "Desktop Entry" of a .desktop file. Such files come from any package of the system,
// so one that is too large or malformed is read as empty. Any thread.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

class DesktopEntry
{
public:
    // Empty when the file cannot be read.
    explicit DesktopEntry(const QString &path);

    QString text(const char *key) const; // without its escapes; empty when the key is missing
    QStringList list(const char *key) const;
    // The words of Exec without its field codes, such as %U.
    QStringList command() const;
    // Whether the desktop with these names (XDG_CURRENT_DESKTOP) may start it: it is no tombstone, it is
    // meant for that desktop, and its programs exist.
    bool isOffered(const QStringList &desktops) const;

    // A value of type string.
    static QString escaped(const QString &text);
    // One argument of Exec.
    static QString quotedArgument(const QString &argument);

private:
    QMap<QString, QString> values_;
};
