// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/store/MacroFile.h"

#include "keys/KeyVocabulary.h"
#include "macro/store/MacroFolder.h"

#include <algorithm>

namespace macro
{

namespace
{

constexpr int LineLimit = 64; // characters; the longest line that a list writes has 13

// Removes the first line, with its end of either form or without one, from the front.
QByteArray takeLine(const QByteArray &text, int *at)
{
    const int end = text.indexOf('\n', *at);
    QByteArray line = text.mid(*at, end < 0 ? -1 : end - *at);
    *at = end < 0 ? text.size() : end + 1;
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

// A line that is text and short enough, as its parts between blanks.
QStringList partsOf(const QByteArray &line)
{
    const auto isControl = [](char c) { return uchar(c) < ' '; };
    if (line.size() > LineLimit || std::any_of(line.begin(), line.end(), isControl))
        return {};
    const QString text = QString::fromUtf8(line.simplified());
    if (text.isEmpty() || text.contains(QChar(QChar::ReplacementCharacter)))
        return {};
    return text.split(QLatin1Char(' '));
}

std::optional<MacroRow> rowOf(const QStringList &parts)
{
    if (parts.size() == 1) {
        const MacroRow row{parts[0], 0};
        return row.isDelay() ? row : delayRow(delayOf(row));
    }
    if (parts.size() != 3 || (parts[2] != QLatin1String("0") && parts[2] != QLatin1String("1")))
        return std::nullopt;
    return keyRow(KeyNameFromCodeText(parts[0], parts[1].toInt()), parts[2] == QLatin1String("0"));
}

// A name that is no key's in this language is written as the key without function, as a mouse gets it.
QString lineOf(const MacroRow &row)
{
    if (row.isDelay())
        return row.text;
    const QStringList code = KeyNameToCodeText(row.text);
    const QString key = code.isEmpty() ? QStringLiteral("0x00 1") : code.join(QLatin1Char(' '));
    return key + QLatin1String(row.isRelease() ? " 1" : " 0");
}

} // namespace

std::optional<MacroText> parseMacro(const QByteArray &text)
{
    MacroText macro;
    if (text.size() > MacroFileLimit)
        return std::nullopt;
    int at = 0;
    if (!text.isEmpty())
        macro.cycle = takeLine(text, &at).left(LineLimit).toInt();
    while (at < text.size()) {
        const std::optional<MacroRow> row = rowOf(partsOf(takeLine(text, &at)));
        if (!row)
            continue;
        if (macro.rows.size() == MacroRowLimit)
            return std::nullopt;
        macro.rows << *row;
    }
    return macro;
}

QByteArray rowsText(const MacroRows &rows)
{
    QByteArray text;
    for (const MacroRow &row : rows)
        text += lineOf(row).toUtf8() + '\n';
    return text;
}

QByteArray macroText(int cycle, const MacroRows &rows)
{
    return QByteArray::number(cycle) + '\n' + rowsText(rows);
}

std::optional<MacroText> loadMacro(const QString &name)
{
    const QByteArray text = readMacroFile(name);
    return text.isNull() ? std::nullopt : parseMacro(text);
}

bool saveMacro(const QString &name, int cycle, const MacroRows &rows)
{
    return writeMacroFile(name, macroText(cycle, rows));
}

bool AppendMacroRows(const QString &name, const MacroRows &rows)
{
    const QByteArray text = readMacroFile(name);
    return !text.isNull() && writeMacroFile(name, text + rowsText(rows));
}

} // namespace macro
