// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DpiBox: shows the DPI of the current stage and takes another one: a number that is typed counts from Enter
// on, and the arrow keys ask for the next value up or down. Until its owner sets it, the box keeps its value,
// so Escape, a Tab and a click elsewhere bring that back. Main thread.
#pragma once

#include "presentation/Widgets.h"

class DpiBox : public MySpinBox
{
    Q_OBJECT

public:
    explicit DpiBox(QWidget *parent = nullptr);
    void stepBy(int steps) override;

signals:
    void entered(int dpi);
    void stepped(bool up);

protected:
    int valueFromText(const QString &text) const override;
    StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

    void take(int dpi) override;

private:
    void forget();
};
