// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// NoticeShade: dims a window while a notice stands above it, and draws the notice's shadow, which a window
// without a frame gets from nobody. It exists as long as the notice shows. Main thread.
#pragma once

#include <QWidget>

class NoticeShade : public QWidget
{
    Q_OBJECT

public:
    // A child of `window`. `notice`: where the notice stands on the screen.
    NoticeShade(QWidget *window, const QRect &notice);

    // Whether the window is dimmed already, by a notice that opened this one.
    static bool covers(const QWidget *window);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QRect notice_; // within the window
};
