// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/RowPainting.h"

#include "macro/EventList.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace
{

constexpr int MacroHeight = 34;
constexpr int KeyHeight = 34;
constexpr int DelayHeight = 24;
constexpr int Margin = 12; // of a row's text
constexpr int DotRoom = 18;
constexpr int DotSize = 8;
constexpr int Radius = 6;
constexpr int ChosenOpacity = 56;
constexpr int HoverOpacity = 16;

constexpr int IconSize = 20;
constexpr int IconLeft = 14;
constexpr int CapLeft = 44;
constexpr int CapHeight = 26;
constexpr int CapPadding = 10;
constexpr int CapLeast = 34;

QRect middleOf(const QRect &row, int left, int width, int height)
{
    return {row.left() + left, row.top() + (row.height() - height) / 2, width, height};
}

QRect nameRect(const QRect &row) { return row.adjusted(Margin, 0, -Margin - DotRoom, 0); }

} // namespace

RowColors::RowColors()
    : ink(skinColor("LabelColor"))
    , dim(skinColor("LinEditColorSecond"))
    , cap(skinColor("ComboxBackGroundColor").lighter(150))
    , line(style::outlineColor())
    , chosen(skinColor("ComboxSelectColor"))
    , accent(skinColor("SliderColor"))
{
}

void RowDelegate::paintGround(QPainter *painter, const QStyleOptionViewItem &option) const
{
    const bool chosen = option.state & QStyle::State_Selected;
    if (!chosen && !(option.state & QStyle::State_MouseOver))
        return;
    QColor fill = chosen ? colors_.chosen : colors_.ink;
    fill.setAlpha(chosen ? ChosenOpacity : HoverOpacity);
    painter->setPen(chosen ? QPen(colors_.accent) : QPen(Qt::NoPen));
    painter->setBrush(fill);
    painter->drawRoundedRect(QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5), Radius, Radius);
}

void MacroDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintGround(painter, option);
    painter->setPen(option.state & QStyle::State_Enabled ? colors().ink : colors().dim);
    const QRect place = nameRect(option.rect);
    painter->drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, place.width()));
    if (index.data(UnsavedRole).toBool()) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(colors().accent);
        painter->drawEllipse(middleOf(option.rect, option.rect.width() - Margin - DotSize, DotSize, DotSize));
    }
    painter->restore();
}

QSize MacroDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, MacroHeight};
}

bool MacroDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                              const QModelIndex &index)
{
    const QString name = index.data().toString();
    const bool cut =
        option.fontMetrics.size(Qt::TextSingleLine, name).width() > nameRect(option.rect).width();
    QToolTip::showText(event->globalPos(), cut ? name : QString(), view);
    return true;
}

void EventDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintGround(painter, option);
    const QString text = index.data().toString();
    const int sort = index.data(EventList::SortRole).toInt();
    if (sort == EventList::Delay) {
        paintDelay(painter, option, text);
    } else {
        index.data(Qt::DecorationRole)
            .value<QIcon>()
            .paint(painter, middleOf(option.rect, IconLeft, IconSize, IconSize));
        paintKey(painter, option, text, sort == EventList::Release);
    }
    painter->restore();
}

// Of what is dim, which the ground of a chosen row would swallow.
QColor EventDelegate::inkOn(const QStyleOptionViewItem &option) const
{
    return option.state & QStyle::State_Selected ? colors().ink : colors().dim;
}

// A line between the events, and the time beside it.
void EventDelegate::paintDelay(QPainter *painter, const QStyleOptionViewItem &option,
                               const QString &text) const
{
    const QRect row = option.rect;
    painter->setPen(colors().line);
    const qreal x = row.left() + IconLeft + IconSize / 2.0;
    painter->drawLine(QPointF(x, row.top() + 3), QPointF(x, row.bottom() - 2));
    QString shown = text;
    shown.replace(QLatin1String("ms"), QLatin1String(" ms"));
    painter->setPen(inkOn(option));
    painter->drawText(row.adjusted(CapLeft, 0, -Margin, 0), Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

// A pressed key is a filled cap, a released one its outline.
void EventDelegate::paintKey(QPainter *painter, const QStyleOptionViewItem &option, const QString &text,
                             bool release) const
{
    const QRect row = option.rect;
    const int room = row.width() - CapLeft - Margin;
    const QFontMetrics metrics(painter->font());
    const QString shown = metrics.elidedText(text, Qt::ElideRight, room - 2 * CapPadding);
    const int width =
        qBound(CapLeast, metrics.size(Qt::TextSingleLine, shown).width() + 2 * CapPadding, room);
    const QRect cap = middleOf(row, CapLeft, width, CapHeight);
    painter->setPen(release ? QPen(colors().line, 1, Qt::DashLine) : QPen(colors().line));
    painter->setBrush(release ? QBrush(Qt::NoBrush) : QBrush(colors().cap));
    painter->drawRoundedRect(QRectF(cap).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
    painter->setPen(release ? inkOn(option) : colors().ink);
    painter->drawText(cap, Qt::AlignCenter | Qt::TextSingleLine, shown);
}

QSize EventDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    return {0, index.data(EventList::SortRole).toInt() == EventList::Delay ? DelayHeight : KeyHeight};
}
