// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/DpiBox.h"

#include <QKeyEvent>
#include <QLineEdit>

DpiBox::DpiBox(QWidget *parent) : MySpinBox(parent) { setKeyboardTracking(false); }

// What is typed is no value of the box before its owner sets it.
int DpiBox::valueFromText(const QString &) const { return value(); }

void DpiBox::stepBy(int steps) { emit stepped(steps > 0); }

QAbstractSpinBox::StepEnabled DpiBox::stepEnabled() const { return StepUpEnabled | StepDownEnabled; }

void DpiBox::take(int dpi)
{
    if (isEnabled() && dpi != value())
        emit entered(dpi);
}

// What is typed.
void DpiBox::forget() { lineEdit()->setText(textFromValue(value())); }

void DpiBox::focusOutEvent(QFocusEvent *event)
{
    MySpinBox::focusOutEvent(event);
    forget();
}

void DpiBox::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!isEnter && key != Qt::Key_Escape) {
        MySpinBox::keyPressEvent(event);
        return;
    }
    bool isNumber = false;
    const int typed = locale().toInt(lineEdit()->text(), &isNumber);
    forget();
    if (isEnter && isNumber)
        take(typed);
    selectAll();
    event->accept();
}
