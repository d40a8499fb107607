// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ActionButton: one entry of the page's lists. Its text stands at the left and is elided when a macro's name
// or a combination is too long for it. The arrow keys go to the neighbour without choosing it, since here
// choosing writes to the mouse; and a group keeps all its members in the tab order. Main thread.
#pragma once

#include <QToolButton>

class ActionButton : public QToolButton
{
    Q_OBJECT

public:
    ActionButton(const QString &name, QWidget *parent);

    bool isElided() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QRect textArea() const;
    QString shownText() const;
    ActionButton *neighbour(int key) const;
};
