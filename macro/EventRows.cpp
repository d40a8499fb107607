// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/EventRows.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>

EventRows::EventRows(QWidget *parent) : QListWidget(parent) { setDragDropMode(InternalMove); }

// Without what the toolkit does behind a move: it removes the dragged row.
void EventRows::startDrag(Qt::DropActions)
{
    const QModelIndexList dragged = selectedIndexes();
    if (dragged.isEmpty())
        return;
    const QRect place = visualRect(dragged.first());
    auto *const drag = new QDrag(this);
    drag->setMimeData(model()->mimeData(dragged));
    drag->setPixmap(viewport()->grab(place));
    drag->setHotSpot(viewport()->mapFromGlobal(QCursor::pos()) - place.topLeft());
    drag->exec(Qt::MoveAction);
}

void EventRows::dropEvent(QDropEvent *event)
{
    const QModelIndex at = indexAt(event->pos());
    const int place = !at.isValid()                          ? count()
                      : dropIndicatorPosition() == BelowItem ? at.row() + 1
                                                             : at.row();
    event->accept();
    stopAutoScroll();
    setState(NoState);
    viewport()->update(); // without the mark of the place
    emit dropped(place);
}
