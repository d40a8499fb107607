// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The context menu of a list of the page of macros. Main thread.
#pragma once

#include <QKeySequence>
#include <QString>
#include <functional>
#include <vector>

class QListWidget;
class QPoint;

struct ListMenuEntry {
    QString text;
    std::function<void()> run;
    QKeySequence key; // shown only; the list itself takes the key
};
// Returns when the menu is closed.
void showListMenu(QListWidget *list, const QPoint &place, const std::vector<ListMenuEntry> &entries);
