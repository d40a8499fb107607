// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// EventList: the rows of a macro in a list widget, whose items carry the text, the icon and the type. Main
// thread.
#pragma once

#include "macro/store/RowEditing.h"

#include <QIcon>
#include <QListWidget>

class EventList
{
public:
    explicit EventList(QListWidget *list);

    // The sort of a row, under this role of its item: a Sort.
    static constexpr int SortRole = Qt::UserRole;
    enum Sort : uint8_t { Press, Release, Delay };

    int selectedRow() const; // rowediting::NoRow without
    macro::rowediting::Editing editing() const { return {rows(), selectedRow()}; }
    macro::MacroRows rows() const;
    bool isEmpty() const { return list_->count() == 0; }

    // Items of rows that stay in their place are kept. No change of an item is signalled.
    void show(const macro::MacroRows &rows, int selected = macro::rowediting::NoRow);
    void append(const macro::MacroRow &row);
    void setText(int row, const QString &text) { list_->item(row)->setText(text); }
    void select(int row);

private:
    QListWidgetItem *itemOf(const macro::MacroRow &row);
    const QIcon &iconOf(Sort sort);
    macro::MacroRow rowAt(int row) const;

    QListWidget *list_;
    QIcon icons_[3]; // by Sort
};
