// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/store/MacroBlockCodec.h"

#include "environment/MacroName.h"
#include "keys/KeyVocabulary.h"

#include <algorithm>
#include <cstring>

namespace macro
{

namespace
{

constexpr uint8_t Press = 0, Release = 1; // of KeyEvent

// Walks the rows with the place of the event that each belongs to; `last` is the place of the last row.
template <typename OnRow> int walk(const MacroRows &rows, OnRow onRow)
{
    int place = 0;
    bool hasEvent = false; // at this place
    for (const MacroRow &row : rows) {
        place += !row.isDelay() && hasEvent ? 1 : 0;
        onRow(place, row);
        hasEvent = !row.isDelay();
        place += hasEvent ? 0 : 1;
    }
    return place;
}

void writeName(MacroBlock *block, const QString &name)
{
    const QByteArray bytes = cutToMacroBytes(QString(name).remove(QChar())).toLocal8Bit();
    block->NameLength = uint8_t(bytes.size());
    std::memcpy(block->Name, bytes.constData(), std::size_t(bytes.size()));
}

MacroBlock blockOf(const QString &name, const MacroRows &rows, int emptyCount)
{
    MacroBlock block{};
    writeName(&block, name);
    const int last = walk(rows, [&block](int place, const MacroRow &row) {
        if (place >= MacroEventCount)
            return;
        KeyEvent &event = block.Events[place];
        if (!row.isDelay()) {
            KeyNameToEvent(row.text, place, block);
            event.Direction = row.isRelease() ? Release : Press;
        } else if (place + 1 < MacroEventCount) {
            event.DelayMs.set(delayOf(row)); // nothing follows the event of the last place
        }
    });
    block.EventCount = uint8_t(rows.isEmpty() ? emptyCount : std::min(last + 1, MacroEventCount));
    return block;
}

int countOf(const MacroBlock &block) { return std::min<int>(block.EventCount, MacroEventCount); }

} // namespace

int eventCount(const MacroRows &rows)
{
    int count = 0;
    walk(rows, [&count](int place, const MacroRow &row) { count = row.isDelay() ? count : place + 1; });
    return count;
}

MacroBlock boundBlock(const QString &name, const MacroRows &rows) { return blockOf(name, rows, 1); }

MacroBlock savedBlock(const QString &name, const MacroRows &rows) { return blockOf(name, rows, 0); }

void renameBlock(MacroBlock *block, const QString &name) { writeName(block, name); }

QString blockName(const MacroBlock &block)
{
    return QString::fromLocal8Bit(block.Name, std::min<int>(block.NameLength, MacroNameSize)).remove(QChar());
}

MacroRows blockRows(const MacroBlock &block)
{
    MacroRows rows;
    const int count = countOf(block);
    for (int i = 0; i < count; ++i) {
        const KeyEvent &event = block.Events[i];
        const int code = event.Code.get();
        const bool isMouse = event.Kind == uint8_t(KeyKind::MouseButton);
        const QString name = isMouse ? MouseNameFromBit(code) : KeyNameFromCode(code, event.Kind);
        rows << keyRow(name, event.Direction == Press);
        if (i + 1 < count)
            rows << delayRow(event.DelayMs.get());
    }
    return rows;
}

bool sameEvents(const MacroBlock &a, const MacroBlock &b)
{
    return countOf(a) == countOf(b) &&
           std::memcmp(a.Events, b.Events, std::size_t(countOf(a)) * sizeof(KeyEvent)) == 0;
}

} // namespace macro
