// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// WellName: tells a screen reader the colour on which the arrow keys stand in one of the two fields of
// colours of the toolkit's dialog, which the toolkit only draws. Main thread.
#pragma once

#include <QColor>
#include <QWidget>

class WellName : public QObject
{
    Q_OBJECT

public:
    using ColorAt = QColor (*)(int index);

    // `colorAt` counts down the columns of `rows` colours.
    WellName(QWidget *well, const QString &caption, int rows, ColorAt colorAt);

private slots:
    void tell(int row, int column);

private:
    QWidget *const well_;
    const QString caption_;
    const int rows_;
    const ColorAt colorAt_;
};
