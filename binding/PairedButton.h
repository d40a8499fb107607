// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PairedButton: a button that can look hovered while the pointer or the keyboard focus is on the other button
// of its pair. Main thread.
#pragma once

#include "presentation/Motion.h"

#include <QToolButton>

class QStyleOptionToolButton;

class PairedButton : public QToolButton
{
    Q_OBJECT

public:
    using QToolButton::QToolButton;

    bool isLit() const { return lit_; }
    void setLit(bool lit);

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    virtual void draw(QPainter &painter, const QStyleOptionToolButton &option) const;

private:
    bool lit_ = false;
    StateFade fade_;
};
