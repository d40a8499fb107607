// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What can be done with a row of a list of the page of macros: by the context menu, and by keys. Main thread.
#pragma once

#include <QKeySequence>
#include <QString>
#include <functional>
#include <vector>

class QKeyEvent;
class QListWidget;
class QPoint;

struct ListCommand {
    QString text;
    std::function<void()> run;
    QKeySequence key{};
};
// Returns when the menu is closed.
void showListMenu(QListWidget *list, const QPoint &place, const std::vector<ListCommand> &commands);
// False when the key is none of theirs.
bool runListCommand(const QKeyEvent &event, const std::vector<ListCommand> &commands);
