// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ChoiceLabel: the text beside a button that has none. A click on it is one on the button, which is its buddy
// and takes its text as a name. Main thread.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QMouseEvent>

class ChoiceLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

protected:
    void mousePressEvent(QMouseEvent *) override {} // accepted, so that the release comes here
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        auto *button = qobject_cast<QAbstractButton *>(buddy());
        if (button && event->button() == Qt::LeftButton && rect().contains(event->pos()))
            button->click();
    }
};
