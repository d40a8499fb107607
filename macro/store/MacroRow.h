// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MacroRow: one row of a macro's list of events, as the page shows it and the file keeps it. Rows alternate,
// event and delay, and a list usually ends in an event; hand editing may break both.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QString>
#include <QVector>

namespace macro
{

constexpr int ReleaseItemType = 1; // item type of a release; presses and delays have type 0

struct MacroRow {
    QString text; // the key's name, or the milliseconds and "ms"
    int type = 0; // of its list item

    bool isRelease() const { return type == ReleaseItemType; }
    // No key's name holds these two letters.
    bool isDelay() const { return text.contains(QLatin1String("ms")); }
};
inline bool operator==(const MacroRow &a, const MacroRow &b) { return a.text == b.text && a.type == b.type; }
inline bool operator!=(const MacroRow &a, const MacroRow &b) { return !(a == b); }

using MacroRows = QVector<MacroRow>;

inline MacroRow keyRow(const QString &name, bool press) { return {name, press ? 0 : ReleaseItemType}; }
inline MacroRow delayRow(quint32 ms) { return {QString::number(ms) + QLatin1String("ms"), 0}; }
// The milliseconds of a delay's text; 0 for a text without a number.
inline quint32 delayOf(const MacroRow &row)
{
    return QString(row.text).remove(QStringLiteral("ms")).toUInt();
}

// Of a macro whose file says nothing else, and the limits of the number of its repetitions.
constexpr int CycleOnce = 1, CycleMost = 250;
constexpr int CycleUntilPressed = 253, CycleUntilReleased = 254, CycleUntilAny = 255;

} // namespace macro
