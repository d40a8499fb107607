// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MacroLook: how the page of macros looks, and what its headings, hints and buttons say of the present state.
// Main thread.
#pragma once

#include "macro/store/RowEditing.h"

class QWidget;

namespace Ui
{
class Macro;
}

class MacroLook
{
public:
    struct State {
        macro::rowediting::Summary events; // of the macro that is shown
        bool hasMacro = false;
        bool isUnreadable = false; // its file
        bool isUnsaved = false;
        bool isLocked = false; // from the start of a recording to its stop
    };

    MacroLook(Ui::Macro &form, QWidget *page) : form_(form), page_(page) {}

    void applyStyle();
    void setTexts(int language);
    void show(const State &state);

private:
    void styleButtons(const QString &folder);
    void showHint(const macro::rowediting::Summary &events);

    Ui::Macro &form_;
    QWidget *page_;
};
