// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ActionButton: one entry of the page's lists. Its text is left-aligned and elided when a macro's name or a
// combination is too long. The arrow keys focus the neighbour without checking it, since checking writes to
// the mouse; all buttons of a group stay in the tab order. Main thread.
#pragma once

#include "binding/PairedButton.h"

class ActionButton : public PairedButton
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
