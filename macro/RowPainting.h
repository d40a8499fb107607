// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How the lists of the page of macros look: macros by their names, with a dot beside the unsaved ones, and
// events as key caps with quiet delays between them. Main thread.
#pragma once

#include <QAbstractItemDelegate>
#include <QColor>

struct RowColors {
    RowColors();
    QColor ink, dim, cap, line, chosen, accent;
};

class RowDelegate : public QAbstractItemDelegate
{
public:
    using QAbstractItemDelegate::QAbstractItemDelegate;

protected:
    // The ground of a row: chosen, pointed at, or nothing.
    void paintGround(QPainter *painter, const QStyleOptionViewItem &option) const;
    const RowColors &colors() const { return colors_; }

private:
    RowColors colors_;
};

class MacroDelegate : public RowDelegate
{
public:
    using RowDelegate::RowDelegate;
    static constexpr int UnsavedRole = Qt::UserRole;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    // A tool tip with the whole name where the row has no room for it.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
};

class EventDelegate : public RowDelegate
{
public:
    using RowDelegate::RowDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintDelay(QPainter *painter, const QRect &row, const QString &text) const;
    void paintKey(QPainter *painter, const QRect &row, const QString &text, bool release) const;
};
