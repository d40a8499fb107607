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

QStyleOptionToolButton PairedButton::styleOption() const
{
    QStyleOptionToolButton option;
    initStyleOption(&option);
    if (lit_)
        option.state |= QStyle::State_MouseOver;
    return option;
}

void PairedButton::paintEvent(QPaintEvent *)
{
    QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, styleOption());
}
