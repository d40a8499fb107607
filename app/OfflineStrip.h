// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// OfflineStrip: the line in the head of the device page that tells that the mouse is off line, where a notice
// would be in the way. It is as wide as its text and keeps its right edge. Main thread.
#pragma once

#include <QFrame>

class QLabel;

class OfflineStrip : public QFrame
{
    Q_OBJECT

public:
    explicit OfflineStrip(QWidget *parent = nullptr);

public slots:
    void SlotAllLanguage(int index);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void fit();

    QLabel *icon_;
    QLabel *text_;
};
