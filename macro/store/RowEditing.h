// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Hand editing of a macro's event list, in which events and delays alternate. Where a row goes depends on the
// selected one; the tables of the tests show each case. Pure functions, any thread.
#pragma once

#include "macro/store/MacroRow.h"

#include <QStringList>

namespace macro::rowediting
{

constexpr int NoRow = -1;
constexpr int InsertedDelayMs = 10;

// Rows and the selected one among them, NoRow without.
struct Editing {
    MacroRows rows;
    int selected = NoRow;
};

// Each returns whether it changed anything. A row that was inserted is the selected one afterwards.
bool insertKey(Editing &list, const QString &name, bool press);
// Press and release of a mouse button.
bool insertClick(Editing &list, const QString &name);
// Changes a neighbouring delay where there is one, so that events and delays still alternate.
bool insertDelay(Editing &list, int milliseconds);
// Removes an event with a delay beside it; the row that then stands in that place is selected. A list shorter
// than ShortList is cleared.
constexpr int ShortList = 4;
bool remove(Editing &list);

// Moves the selected event over `steps` others, towards the end when positive, and no further than there are
// any. The delays keep their places, so that events and delays still alternate. A delay moves among the
// delays.
bool move(Editing &list, int steps);
// The steps that bring the selected row to the place in front of row `place`; a place past the rows, which
// may have become fewer since it was chosen, is behind the last one. 0 when no row of its sort is on the way.
int stepsTo(const Editing &list, int place);

// What the heading of the list shows.
struct Summary {
    int events = 0;
    qint64 milliseconds = 0;
    QStringList held; // keys that are pressed and not released, in the order of their presses
};
Summary summaryOf(const MacroRows &rows);

} // namespace macro::rowediting
