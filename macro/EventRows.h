// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// EventRows: a list whose selected row can be dragged to another place in it. The list itself moves nothing,
// since events and delays have to alternate afterwards. Main thread.
#pragma once

#include <QListWidget>

class EventRows : public QListWidget
{
    Q_OBJECT

public:
    explicit EventRows(QWidget *parent = nullptr);

signals:
    // The selected row was dropped in front of this one, where the mark stood; the count of the rows is
    // behind the last one.
    void dropped(int place);

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    static constexpr int NoPlace = -1;

    int placeAt(const QPoint &point) const;
    void showMark(int place);

    int mark_ = NoPlace; // where what is dragged would go
};
