// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FocusRing: one outline around the control that got the focus by the keyboard. The skin has no pictures for
// the focused state, and a style sheet per control would be parsed again at each focus change.
#pragma once

#include <QColor>
#include <QPointer>
#include <QWidget>

class QEvent;

// The keyboard leads the focus to the widget that gets this event.
bool isKeyboardFocus(const QEvent *event);

class FocusRing : public QObject
{
public:
    // Serves all windows of the application until it ends. Main thread.
    static void install(const QColor &color);
    ~FocusRing() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class Outline;

    explicit FocusRing(const QColor &color);
    void surround(QWidget *control);
    bool isBetween(const QWidget *widget) const;

    QColor ink_;
    QPointer<QWidget> control_;
    QPointer<QWidget> lender_;  // had the ring when a list or another window took the keyboard
    QPointer<Outline> outline_; // in the same window as the control, so that it moves with it
};
