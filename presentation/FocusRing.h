// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FocusRing: one outline that stands around whichever control has the keyboard's focus, and only when the
// keyboard brought it there. The pictures of a control know no focused state, and a sheet per control
// would have to be set anew at each change.
#pragma once

#include <QColor>
#include <QPointer>
#include <QWidget>

class FocusRing : public QObject
{
public:
    // Serves all windows of the application until it ends. Main thread.
    static void install(const QColor &color);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit FocusRing(const QColor &color);
    void surround(QWidget *control);
    void follow();

    QColor ink_;
    QPointer<QWidget> control_;
    QPointer<QWidget> outline_; // a sibling of the control, so it goes where the window goes
};
