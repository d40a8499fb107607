// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/ActionButton.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionToolButton>

namespace
{

constexpr int TextLeft = 12; // right of the bar that marks a checked button
constexpr int TextRight = 4;
constexpr int ChevronRoom = 20;
constexpr QSize Chevron{4, 8};
constexpr double ChevronWidth = 1.5;

// Distance of `to` from `from` in the direction of an arrow key, sideways offset counted twice; negative
// when `to` lies in another direction.
int distance(const QPoint &from, const QPoint &to, int key)
{
    const QPoint offset = to - from;
    const int along = key == Qt::Key_Up     ? -offset.y()
                      : key == Qt::Key_Down ? offset.y()
                      : key == Qt::Key_Left ? -offset.x()
                                            : offset.x();
    const int aside = key == Qt::Key_Up || key == Qt::Key_Down ? qAbs(offset.x()) : qAbs(offset.y());
    return along > 0 ? along + 2 * aside : -1;
}

bool isArrow(int key) { return key >= Qt::Key_Left && key <= Qt::Key_Down; }

} // namespace

ActionButton::ActionButton(const QString &name, QWidget *parent) : PairedButton(parent)
{
    setObjectName(name);
    setCheckable(true);
}

void ActionButton::setOpens(Opens opens)
{
    opens_ = opens;
    update();
}

QRect ActionButton::textArea() const
{
    return rect().adjusted(TextLeft, 0, opens_ == Opens::Panel ? -ChevronRoom : -TextRight, 0);
}

QString ActionButton::fullText() const { return opens_ == Opens::Dialog ? text() + QChar(0x2026) : text(); }

bool ActionButton::isElided() const { return fontMetrics().size(0, fullText()).width() > textArea().width(); }

void ActionButton::draw(QPainter &painter, const QStyleOptionToolButton &option) const
{
    QStyleOptionToolButton plate = option;
    plate.text.clear();
    PairedButton::draw(painter, plate);
    style()->drawItemText(&painter, textArea(), Qt::AlignLeft | Qt::AlignVCenter, option.palette, isEnabled(),
                          fullText(), QPalette::ButtonText);
    if (opens_ == Opens::Panel)
        drawChevron(painter);
}

void ActionButton::drawChevron(QPainter &painter) const
{
    const QPointF tip(width() - ChevronRoom / 2.0 + Chevron.width() / 2.0, height() / 2.0);
    const QPointF back(Chevron.width(), Chevron.height() / 2.0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().buttonText(), ChevronWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({tip - back, tip, {tip.x() - back.x(), tip.y() + back.y()}}));
}

void ActionButton::keyPressEvent(QKeyEvent *event)
{
    if (!isArrow(event->key())) {
        QToolButton::keyPressEvent(event);
        return;
    }
    if (ActionButton *next = neighbour(event->key()))
        next->setFocus(Qt::TabFocusReason);
}

// QToolButton would remove all other buttons of the group from the tab order, also those on other panels.
void ActionButton::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
}

ActionButton *ActionButton::neighbour(int key) const
{
    ActionButton *nearest = nullptr;
    int least = 0;
    for (ActionButton *each :
         parentWidget()->findChildren<ActionButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        const int far = distance(geometry().center(), each->geometry().center(), key);
        if (far < 0 || !each->isVisible() || !each->isEnabled())
            continue;
        if (!nearest || far < least) {
            nearest = each;
            least = far;
        }
    }
    return nearest;
}
