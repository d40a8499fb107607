// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Short motion where something appears or switches. Nothing runs before it or after it, and none runs when
// the desktop's settings ask for none. Main thread.
#pragma once

class QAbstractButton;
class QString;
class QWidget;

// Milliseconds; 0 when the user has turned the desktop's animations off.
int motionTime();
// When the switch is switched, its picture fades into the other one. `folder`: that of style::switchButton().
void switchSoftly(QAbstractButton *button, const QString &folder);
// The widget fades in. Show it first.
void fadeIn(QWidget *widget);
