// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HueField: a field of all hues from left to right and of their saturation from the bottom up, with a marker
// at the current colour. While the pointer is over the field there is no marker: what is read off the screen
// under the pointer must be the field's own colour. Main thread.
#pragma once

#include <QImage>
#include <QLabel>

class HueField : public QLabel
{
    Q_OBJECT

public:
    explicit HueField(QWidget *parent = nullptr);
    void setColor(const QColor &color);
    // Of the field itself, without the marker, at a point of the widget; invalid outside.
    QColor colorAt(const QPoint &point) const;
    // Where the marker of a colour stands.
    QPoint placeOf(const QColor &color) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QImage image_; // in the pixels of the screen that it was last painted on
    QColor color_;
};
