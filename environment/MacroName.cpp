// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/MacroName.h"

#include <algorithm>

namespace
{

const QLatin1String Hiding("xml"); // no list shows a file with these letters in its name

bool cannotBeNamed(QChar c)
{
    switch (c.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return c == QLatin1Char('/') || c == QChar(QChar::ReplacementCharacter);
    }
}

} // namespace

QString cutToMacroBytes(const QString &name)
{
    if (name.toLocal8Bit().size() <= MacroNameBytes)
        return name;
    int length = qMin(name.size(), MacroNameBytes + 1);
    const auto splits = [&name](int at) { return at > 0 && name.at(at - 1).isHighSurrogate(); };
    while (length > 0 && (name.left(length).toLocal8Bit().size() > MacroNameBytes || splits(length)))
        --length;
    return name.left(length);
}

QString fittingMacroName(const QString &typed)
{
    QString name = typed;
    if (name.endsWith(QLatin1Char(' ')))
        name.remove(QLatin1Char(' '));
    const auto kept = std::remove_if(name.begin(), name.end(), cannotBeNamed);
    name.truncate(int(kept - name.begin()));
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    for (int at = name.indexOf(Hiding); at >= 0; at = name.indexOf(Hiding))
        name.remove(at + Hiding.size() - 1, 1);
    return cutToMacroBytes(name);
}

bool isMacroName(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(QLatin1Char('.')) && !name.contains(Hiding) &&
           std::none_of(name.begin(), name.end(), cannotBeNamed) && cutToMacroBytes(name) == name;
}
