// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PieChartWidget: a slice of a disc whose radius follows the pointer that drags its rim. Angles are whole
// degrees, counted as QPainter does; lengths are pixels. Main thread.
#pragma once

#include <QWidget>

class PieChartWidget : public QWidget
{
    Q_OBJECT

public:
    explicit PieChartWidget(QWidget *parent = nullptr);

    QPointF middle() const { return {CenterX_, CenterY_}; }
    double radius() const { return Radius_; }
    bool isDragging() const { return Dragging_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    double distanceTo(const QPoint &position) const;

    double CenterX_ = 0, CenterY_ = 0;
    double Radius_ = 20;
    int StartAngle_ = 0;
    int SpanAngle_ = 120;
    bool Dragging_ = false;
    QPoint LastPos_;
};
