// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// BusyBar: an indeterminate progress line, animated while it is visible.
#pragma once

#include <QVariantAnimation>
#include <QWidget>

class BusyBar : public QWidget
{
    Q_OBJECT

public:
    explicit BusyBar(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QVariantAnimation run_; // 0 to 1, repeating
};
