// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The small mark beside a control whose tool tip tells what the control is for. Whoever does not use a
// pointer gets the same text as the control's description. Main thread.
#pragma once

class QLabel;
class QString;
class QWidget;

void styleTip(QLabel *tip);
void setTip(QWidget *tip, QWidget *control, const QString &text);
