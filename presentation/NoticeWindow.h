// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// NoticeWindow: the window of every notice and small dialog: frameless, round, run modally. It has no
// parent, since a parent would make it an embedded child with these window flags; and no window manager
// looks after it, so it takes the keyboard by itself and gives it back. Main thread.
#pragma once

#include <QDialog>
#include <QPointer>

class NoticeWindow : public QDialog
{
    Q_OBJECT

public:
    // Stands over the middle of `widget`, moved by `offset`.
    void placeOver(const QWidget *widget, const QPoint &offset = {});
    // Runs the dialog there, or in the middle of the screen without a widget.
    int openOver(const QWidget *widget, const QPoint &offset = {});

protected:
    NoticeWindow() = default;
    // To be called when the form has been built: its size is the window's.
    void becomeNotice();

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QPointer<QWidget> before_; // had the keyboard
};
