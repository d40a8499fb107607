// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One value of an ini file in the syntax of QSettings: items between commas, quotes, backslash escapes,
// UTF-8. Serialised variants ("@Variant(…)" and its like) are never unpacked: their readers open files
// and load plug-ins that a foreign file names.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The items of a stored value, at least one. An item that holds a serialised object is empty.
QStringList parseIniValue(const QByteArray &stored);
// The stored form of the items.
QByteArray formatIniValue(const QStringList &items);

// The same for the names of sections and keys, where "/" parts the levels.
QString parseIniName(const QByteArray &stored);
QByteArray formatIniName(const QString &name);
