// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PresetButton: a colour to press. It is checked while the light has this colour. Main thread.
#pragma once

#include <QColor>
#include <QToolButton>

class PresetButton : public QToolButton
{
    Q_OBJECT

public:
    explicit PresetButton(const QColor &color, QWidget *parent = nullptr);
    const QColor &color() const { return color_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void nextCheckState() override {} // the light's colour decides

private:
    QColor color_;
};
