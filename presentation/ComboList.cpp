// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ComboList.h"

#include "presentation/SkinPalette.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyledItemDelegate>
#include <QTimer>
#include <qdrawutil.h>

namespace
{

constexpr int Slice = 8; // of the frame's picture, more than its corners' radius
constexpr int TickRoom = 24;

class Ticks : public QStyledItemDelegate
{
public:
    explicit Ticks(QComboBox *box) : QStyledItemDelegate(box), box_(box) {}
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        if (index.row() != box_->currentIndex())
            return;
        const bool lit = option.state & (QStyle::State_Selected | QStyle::State_MouseOver);
        const QPointF middle(option.rect.right() - TickRoom / 2.0,
                             option.rect.top() + option.rect.height() / 2.0);
        const QPointF tick[] = {middle + QPointF(-4, 0), middle + QPointF(-1, 3), middle + QPointF(4, -3.5)};
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(skinColor(lit ? "ComboxBackGroundColor" : "SliderColor"), 2, Qt::SolidLine,
                             Qt::RoundCap, Qt::RoundJoin));
        painter->drawPolyline(tick, int(std::size(tick)));
        painter->restore();
    }
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(TickRoom, 0);
    }

private:
    QComboBox *box_;
};

// Paints the list's window: what the page shows there, and the frame over it. Without a compositor no window
// is see-through, so the corners would be those of a rectangle.
class Frame : public QObject
{
public:
    Frame(QComboBox *box, const QString &picture) : QObject(box), box_(box), picture_(picture)
    {
        window()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            takeGround();
        if (event->type() != QEvent::Paint)
            return false;
        QPainter painter(window());
        painter.drawPixmap(0, 0, ground_);
        const QPixmap frame = skinPicture(picture_, window());
        const int slice = int(Slice * frame.devicePixelRatio()); // the source is measured in its own pixels
        qDrawBorderPixmap(&painter, window()->rect(), QMargins(Slice, Slice, Slice, Slice), frame,
                          frame.rect(), QMargins(slice, slice, slice, slice));
        return true;
    }

private:
    QWidget *window() const { return box_->view()->window(); }
    void takeGround()
    {
        QWidget *page = box_->window();
        const QRect place(page->mapFromGlobal(window()->pos()), window()->size());
        if (page->rect().contains(place)) {
            window()->clearMask();
            ground_ = page->grab(place);
        } else {
            roundCorners(window(), Slice);
            ground_ = QPixmap();
        }
    }

    QComboBox *box_;
    QString picture_;
    QPixmap ground_;
};

// The action by which a screen reader chooses an item only selects it, and leaves the current item where it
// is, as no key and no pointer does.
void takeSelectedItem(QComboBox *box)
{
    QAbstractItemView *const view = box->view();
    const QModelIndexList selected = view->selectionModel()->selectedIndexes();
    if (!view->isVisible() || selected.size() != 1 || selected.first() == view->currentIndex())
        return;
    view->setCurrentIndex(selected.first());
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &press);
}

} // namespace

void frameComboList(QComboBox *box, const QString &frame)
{
    box->setItemDelegate(new Ticks(box));
    new Frame(box, frame);
    // Keys and pointers select an item before they make it the current one.
    QObject::connect(box->view()->selectionModel(), &QItemSelectionModel::selectionChanged, box,
                     [box] { QTimer::singleShot(0, box, [box] { takeSelectedItem(box); }); });
}
