// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The parts of a text between separators, without empty ones.
#pragma once

#include <QStringList>

inline QStringList splitWords(const QString &text, QChar separator)
{
    QStringList words = text.split(separator);
    words.removeAll(QString());
    return words;
}
