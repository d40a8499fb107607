// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Names for those who do not see a control: a widget whose form gives it the dynamic property "nameKey" takes
// its accessible name, and a tool tip that repeats it, from the language tables. The property holds a section
// and a key, and behind them the number that takes the place of %1: "common StageName 3".
#pragma once

class QString;
class QWidget;

// Sets the names of `root` and of everything in it. A name that the tables lack stays as it is.
void nameWidgets(QWidget *root, int language);
// The name of one control. A combo box tells its choice in place of a name, as its platform wants it, and
// takes the name from a label whose buddy it is.
void nameControl(QWidget *control, const QString &name);
