// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// EventEditor: changes the rows of the shown macro by hand. It asks for keys and delays in dialogs over the
// page. Main thread.
#pragma once

#include "macro/EventList.h"
#include "macro/MacroTexts.h"

#include <QObject>
#include <functional>

class EventEditor : public QObject
{
    Q_OBJECT

public:
    // `hasMacro`: whether a macro is shown, which may end while a dialog is open.
    EventEditor(EventList &events, std::function<bool()> hasMacro, QWidget *page);

    void insert(const macrotexts::InsertionRow &what); // asks what it needs
    void insertKey(const QString &name, bool press);
    void insertClick(const QString &name);
    void insertDelay(int milliseconds);
    void amend(); // the list's own signal tells of it
    void remove();
    void move(int steps); // as rowediting::move()

signals:
    // `isTold`: the mouse is told of it with the save.
    void changed(bool isTold);

private:
    template <typename Edit> bool edit(Edit edit);

    EventList &events_;
    const std::function<bool()> hasMacro_;
    QWidget *page_;
};
