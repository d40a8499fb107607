// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/EventRows.h"

#include "presentation/SkinPalette.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>

static constexpr int MarkHeight = 2;

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

int EventRows::placeAt(const QPoint &point) const
{
    const QModelIndex at = indexAt(point);
    if (!at.isValid())
        return count();
    return dropIndicatorPosition() == BelowItem ? at.row() + 1 : at.row();
}

void EventRows::showMark(int place)
{
    mark_ = place;
    viewport()->update();
}

void EventRows::dragMoveEvent(QDragMoveEvent *event)
{
    QListWidget::dragMoveEvent(event);
    showMark(placeAt(event->pos()));
}

void EventRows::dragLeaveEvent(QDragLeaveEvent *event)
{
    QListWidget::dragLeaveEvent(event);
    showMark(NoPlace);
}

void EventRows::dropEvent(QDropEvent *event)
{
    const int place = placeAt(event->pos());
    event->accept();
    stopAutoScroll();
    setState(NoState);
    showMark(NoPlace);
    emit dropped(place);
}

// The toolkit's own mark is a black line, which is not seen on the skin, and there is none behind the rows.
void EventRows::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    if (mark_ == NoPlace || count() == 0)
        return;
    const bool isBehind = mark_ >= count();
    const QRect row = visualItemRect(item(isBehind ? count() - 1 : mark_));
    const int top = qMax(0, (isBehind ? row.bottom() + 1 : row.top()) - MarkHeight / 2);
    QPainter(viewport()).fillRect(row.left(), top, row.width(), MarkHeight, skinColor("SliderColor"));
}
