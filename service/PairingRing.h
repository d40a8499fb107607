// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PairingRing: the sign between the receiver and the mouse of the pairing dialog. While a pairing runs, a
// ring that empties and the seconds that it may still take; then a tick or a cross. Main thread.
#pragma once

#include "service/PairingState.h"

#include <QWidget>

class PairingRing : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    void setPhase(PairingPhase phase);
    // How much of `total` is left, in milliseconds; shown while a pairing runs.
    void setLeft(qint64 left, qint64 total);
    int secondsLeft() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    PairingPhase phase_ = PairingPhase::Idle;
    qint64 left_ = 0;
    qint64 total_ = 1;
};
