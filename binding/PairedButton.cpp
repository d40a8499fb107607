// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/PairedButton.h"

#include <QStyleOptionToolButton>
#include <QStylePainter>

void PairedButton::setLit(bool lit)
{
    if (lit == lit_)
        return;
    lit_ = lit;
    update();
}

void PairedButton::paintEvent(QPaintEvent *)
{
    QStyleOptionToolButton option;
    initStyleOption(&option);
    if (lit_)
        option.state |= QStyle::State_MouseOver;
    QStylePainter painter(this);
    fade_.paint(this, painter, option.state, [this, option](QPainter &on, QStyle::State state) {
        QStyleOptionToolButton shown = option;
        shown.state = state;
        draw(on, shown);
    });
}

void PairedButton::hideEvent(QHideEvent *event)
{
    fade_.forget();
    QToolButton::hideEvent(event);
}

void PairedButton::draw(QPainter &painter, const QStyleOptionToolButton &option) const
{
    style()->drawComplexControl(QStyle::CC_ToolButton, &option, &painter, this);
}
