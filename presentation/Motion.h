// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Short motion where something appears or switches. Nothing runs before it or after it, and none runs when
// the desktop's settings ask for none. Main thread.
#pragma once

#include <QPixmap>
#include <QRect>

class QAbstractButton;
class QString;
class QWidget;

// Asks the desktop's settings manager on a thread, once. Until it has answered nothing moves. Make no call
// before the window is shown.
void askForMotion();
// Milliseconds; 0 when the user has turned the desktop's animations off. The first call asks for it.
int motionTime();
// When the switch is switched, its picture fades into the other one. `folder`: that of style::switchButton().
void switchSoftly(QAbstractButton *button, const QString &folder);

// While it lives, a part of the widget changes; then what showed there fades into what shows now, which can
// be used at once.
class SoftChange
{
public:
    SoftChange(QWidget *ground, const QRect &part);
    ~SoftChange();
    SoftChange(const SoftChange &) = delete;
    SoftChange &operator=(const SoftChange &) = delete;

private:
    QWidget *ground_;
    QRect part_;
    QPixmap before_;
};

// The widget fades in. Show it first.
void fadeIn(QWidget *widget);
