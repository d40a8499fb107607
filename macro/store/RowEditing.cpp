// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/store/RowEditing.h"

#include <utility>

namespace macro::rowediting
{
namespace
{

enum class Place {
    NoSelection,
    First,
    Delay, // not the last row
    Event, // neither the first row nor the last
    Last,  // not the first
};

Place placeOf(const Editing &list)
{
    const int last = list.rows.size() - 1;
    if (list.selected < 0 || list.selected > last)
        return Place::NoSelection;
    if (list.selected == 0)
        return Place::First;
    if (list.selected == last)
        return Place::Last;
    return list.rows[list.selected].isDelay() ? Place::Delay : Place::Event;
}

bool hasDelay(const Editing &list, int row)
{
    return row >= 0 && row < list.rows.size() && list.rows[row].isDelay();
}

// Selects the last event of what was inserted. A single row has no row 1, so that `at` may lie behind the
// end.
bool insertRows(Editing &list, int at, const MacroRows &inserted)
{
    at = qMin(at, list.rows.size());
    for (int i = 0; i < inserted.size(); ++i)
        list.rows.insert(at + i, inserted[i]);
    int event = inserted.size() - 1;
    while (inserted[event].isDelay())
        --event;
    list.selected = at + event;
    return true;
}

} // namespace

bool insertKey(Editing &list, const QString &name, bool press)
{
    const MacroRow key = keyRow(name, press);
    const MacroRow pause = delayRow(InsertedDelayMs);
    switch (placeOf(list)) {
    case Place::NoSelection:
        return insertRows(list, list.rows.size(), {key, pause});
    case Place::First:
    case Place::Event:
        return insertRows(list, list.selected + 2, {key, pause});
    case Place::Delay:
        return insertRows(list, list.selected + 1, {key, pause});
    case Place::Last:
        return insertRows(list, list.rows.size(), {pause, key});
    }
    return false;
}

bool insertClick(Editing &list, const QString &name)
{
    const MacroRow press = keyRow(name, true);
    const MacroRow release = keyRow(name, false);
    const MacroRow pause = delayRow(InsertedDelayMs);
    switch (placeOf(list)) {
    case Place::NoSelection:
        return list.rows.isEmpty() ? insertRows(list, 0, {press, pause, release})
                                   : insertRows(list, list.rows.size(), {pause, press, pause, release});
    case Place::First:
        return insertRows(list, 2, {press, pause, release, pause});
    case Place::Delay:
        return insertRows(list, list.selected + 1, {press, pause, release, pause});
    case Place::Event:
    case Place::Last:
        return insertRows(list, list.selected + 1, {pause, press, pause, release});
    }
    return false;
}

bool insertDelay(Editing &list, int milliseconds)
{
    const MacroRow pause = delayRow(quint32(milliseconds));
    if (placeOf(list) == Place::NoSelection) {
        list.rows.append(pause);
        list.selected = list.rows.size() - 1;
        return true;
    }
    if (list.selected == 0)
        return false;
    if (!hasDelay(list, list.selected) && !hasDelay(list, list.selected - 1)) {
        list.rows.insert(list.selected, pause);
        return true;
    }
    if (!hasDelay(list, list.selected))
        --list.selected;
    list.rows[list.selected] = pause;
    return true;
}

bool remove(Editing &list)
{
    if (list.rows.size() < ShortList) {
        list = {};
        return true;
    }
    const Place place = placeOf(list);
    if (place == Place::NoSelection)
        return false;
    const bool withTheOneBefore = place == Place::Delay || place == Place::Last;
    const int first = list.selected - (withTheOneBefore ? 1 : 0);
    list.rows.remove(first, 2);
    list.selected = qMin(first, list.rows.size() - 1);
    return true;
}

bool move(Editing &list, int steps)
{
    if (placeOf(list) == Place::NoSelection)
        return false;
    const bool isDelay = list.rows[list.selected].isDelay();
    const int before = list.selected;
    const int step = steps < 0 ? -1 : 1;
    for (int row = before + step; steps != 0 && row >= 0 && row < list.rows.size(); row += step) {
        if (list.rows[row].isDelay() != isDelay)
            continue;
        std::swap(list.rows[row], list.rows[list.selected]);
        list.selected = row;
        steps -= step;
    }
    return list.selected != before;
}

int stepsTo(const Editing &list, int place)
{
    if (placeOf(list) == Place::NoSelection)
        return 0;
    const auto isPassed = [&](const MacroRow &row) {
        return row.isDelay() == list.rows[list.selected].isDelay();
    };
    const auto rows = list.rows.constBegin();
    place = qMin(place, list.rows.size());
    return place <= list.selected ? -int(std::count_if(rows + place, rows + list.selected, isPassed))
                                  : int(std::count_if(rows + list.selected + 1, rows + place, isPassed));
}

Summary summaryOf(const MacroRows &rows)
{
    Summary summary;
    for (const MacroRow &row : rows) {
        if (row.isDelay()) {
            summary.milliseconds += delayOf(row);
            continue;
        }
        ++summary.events;
        if (row.isRelease())
            summary.held.removeOne(row.text);
        else if (!summary.held.contains(row.text))
            summary.held << row.text;
    }
    return summary;
}

} // namespace macro::rowediting
