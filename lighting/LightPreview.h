// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LightPreview: a row of lamps that shows what a light does. It moves at 25 frames a second, and only while
// it can be seen and its light moves; where the desktop asks for no motion, it shows one moment. Main thread.
#pragma once

#include "lighting/LampColor.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

class LightPreview : public QWidget
{
    Q_OBJECT

public:
    static constexpr int FrameMs = 40;

    explicit LightPreview(QWidget *parent = nullptr);
    void setLight(const ShownLight &light);
    const ShownLight &light() const { return light_; }
    bool isMoving() const { return frames_.isActive(); }
    double turns() const { return turns_; } // since the light began

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    bool isSeen() const;
    void moveOrRest();
    QRect lampRow() const;

    ShownLight light_;
    QBasicTimer frames_;
    QElapsedTimer clock_; // since the last frame
    double turns_ = 0;    // a change of the speed goes on from here
    bool motionAllowed_ = true;
};
