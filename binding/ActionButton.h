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
    // What a click leads to, drawn behind the text: nothing for an action that is bound at once, a chevron
    // for a panel, an ellipsis for a dialog.
    enum class Opens { Nothing, Panel, Dialog };

    ActionButton(const QString &name, QWidget *parent);

    void setOpens(Opens opens);
    Opens opens() const { return opens_; }

    bool isElided() const;

protected:
    void draw(QPainter &painter, const QStyleOptionToolButton &option) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    QRect textArea() const;
    QString fullText() const;
    void drawChevron(QPainter &painter) const;
    ActionButton *neighbour(int key) const;

    Opens opens_ = Opens::Nothing;
};
