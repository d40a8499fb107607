// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/SteadyButton.h"

#include <QStyleOptionToolButton>
#include <QStylePainter>

void SteadyButton::setWidest(const QString &text)
{
    widest_ = text;
    update();
}

void SteadyButton::paintEvent(QPaintEvent *event)
{
    if (widest_.isEmpty())
        return QToolButton::paintEvent(event);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text.clear();
    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    ensurePolished();
    const int left = qMax(0, (width() - fontMetrics().size(Qt::TextSingleLine, widest_).width()) / 2);
    painter.drawItemText(rect().adjusted(left, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                         isEnabled(), text(), QPalette::ButtonText);
}
