// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MacroRow: a row of a macro's event list: a press or a release with the key's name, or a delay.
#pragma once

#include <QString>
#include <QVector>

// Types of list items, and the direction in a macro file. A delay has that of a press.
constexpr int PressRow = 0;
constexpr int ReleaseRow = 1;

struct MacroRow {
    QString text; // a key's name, or a delay such as "10ms"
    int type = PressRow;

    // No key's name holds these letters.
    bool isDelay() const { return text.contains(QLatin1String("ms")); }
};
using MacroRows = QVector<MacroRow>;

inline bool operator==(const MacroRow &one, const MacroRow &other)
{
    return one.text == other.text && one.type == other.type;
}
inline bool operator!=(const MacroRow &one, const MacroRow &other) { return !(one == other); }

inline MacroRow keyRow(const QString &name, bool press) { return {name, press ? PressRow : ReleaseRow}; }
inline MacroRow delayRow(qint64 milliseconds)
{
    return {QString::number(milliseconds) + QStringLiteral("ms"), PressRow};
}
