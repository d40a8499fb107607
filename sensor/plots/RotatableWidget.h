// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RotatableWidget: a picture that is turned about its middle, with its child widgets turned along. It asks
// for the room that its turned content needs. Angles are whole degrees, clockwise. Main thread.
#pragma once

#include <QPixmap>
#include <QWidget>

class RotatableWidget : public QWidget
{
    Q_OBJECT

public:
    explicit RotatableWidget(QWidget *parent = nullptr);

    // 0 to 359.
    int Angle() const { return angle_; }
    // A file that does not load leaves the picture out.
    void SetImage(const QString &path);
    void SetAngle(int degrees);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QPixmap &picture();

    int angle_ = 0;
    QString imagePath_;
    QPixmap scaled_; // the picture at the widget's size in device pixels; null until it is painted
};
