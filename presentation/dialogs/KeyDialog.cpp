// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/dialogs/KeyDialog.h"

#include "presentation/dialogs/KeyField.h"

#include <QApplication>

namespace
{

constexpr int Tab = 0x09;
constexpr int LeftShift = 0xA0;
constexpr int RightShift = 0xA1;

} // namespace

KeyDialog::KeyDialog(std::vector<FormText> texts)
    : InputDialog(std::move(texts)), source_(KeySource::AltKeys::Unknown)
{
}

void KeyDialog::finishKeyForm()
{
    finishForm();
    findChild<KeyField *>()->setFocus();
    connect(&source_, &KeySource::keyEvent, this, &KeyDialog::take);
    // The source is the context: it is destroyed before the window, whose destruction moves the focus.
    connect(qApp, &QApplication::focusChanged, &source_,
            [this](const QWidget *, const QWidget *focused) { follow(focused); });
    source_.start();
}

// Focus in a notice or in another program does not start or stop the source.
void KeyDialog::follow(const QWidget *focused)
{
    if (!isVisible() || !focused || focused->window() != this)
        return;
    if (qobject_cast<const KeyField *>(focused))
        source_.start();
    else
        source_.stop();
}

void KeyDialog::take(int keyCode, bool downOrUp, bool aotu)
{
    if (keyCode == LeftShift || keyCode == RightShift)
        shiftHeld_ = downOrUp;
    if (keyCode == Tab && shiftHeld_)
        fieldLeft();
    else
        UpdateCapslockTip(keyCode, downOrUp, aotu);
}

void KeyDialog::on_lineEdit_textEdited(const QString &arg1)
{
    findChild<KeyField *>()->setText(arg1.toUpper());
}

void KeyDialog::done(int result)
{
    source_.stop();
    InputDialog::done(result);
}
