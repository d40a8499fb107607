// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// NoticeWindow: the window of every notice and small dialog: frameless, with round corners, run modally. It
// has no parent, which with these window flags would embed it as a child. It bypasses the window manager, so
// it activates itself and then the previous window. Main thread.
#pragma once

#include <QDialog>
#include <QPointer>

class NoticeWindow : public QDialog
{
    Q_OBJECT

public:
    ~NoticeWindow() override;
    // Moves the dialog over the middle of `widget`, plus `offset`.
    void placeOver(const QWidget *widget, const QPoint &offset = {});
    // Runs the dialog there, or in the middle of the screen without a widget.
    int openOver(const QWidget *widget, const QPoint &offset = {});

protected:
    NoticeWindow() = default;
    // Call after setupUi(): fixes the window to the form's size.
    void becomeNotice();
    // Whether the window under the notice is dimmed while it shows.
    virtual bool dimsWindow() const { return true; }

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void dimWindow();

    QPointer<QWidget> before_; // the window to activate at the end
    QPointer<QWidget> under_;  // the window that it was placed over
    QPointer<QWidget> shade_;
};
