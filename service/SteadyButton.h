// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SteadyButton: a button whose centred text may grow at its end without moving, such as by dots that come and
// go. Main thread.
#pragma once

#include <QToolButton>

class SteadyButton : public QToolButton
{
    Q_OBJECT

public:
    using QToolButton::QToolButton;

    // The text begins where this one would; empty: it is centred as any.
    void setWidest(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString widest_;
};
