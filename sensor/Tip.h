// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The small mark beside a control, whose tool tip explains the control. Screen readers get the same text as
// the control's accessible description. Main thread.
#pragma once

class QLabel;
class QString;
class QWidget;

void styleTip(QLabel *tip);
void setTip(QWidget *tip, QWidget *control, const QString &text);
