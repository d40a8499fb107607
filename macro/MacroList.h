// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MacroList: the names of the macros in a list widget, at most one of them selected. Main thread.
#pragma once

#include <QListWidget>

class MacroList
{
public:
    explicit MacroList(QListWidget *list) : list_(list) {}

    QStringList names() const;
    bool contains(const QString &name) const { return rowOf(name) >= 0; }
    QString selected() const; // empty without

    // Those of `names`, and those of the list that are unsaved. Selection and marks of what stays are kept.
    void show(const QStringList &names);
    void append(const QString &name);
    void insertBehindSelected(const QString &name);
    void rename(const QString &name, const QString &newName);
    void remove(const QString &name) { delete list_->takeItem(rowOf(name)); }
    // An empty name selects nothing.
    void select(const QString &name);
    void setUnsaved(const QString &name, bool unsaved);

private:
    int rowOf(const QString &name) const; // -1 for none

    QListWidget *list_;
};
