// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// CurvePlotWidget: a curve through control points over a grid. When it is editable, the pointer drags its
// points within the data range; otherwise it only shows the values of the point under the pointer. Points
// are in data units, the plot has a margin of Margin pixels on all four sides. Main thread.
#pragma once

#include <QPainterPath>
#include <QVector>
#include <QWidget>

class CurvePlotWidget : public QWidget
{
    Q_OBJECT

public:
    explicit CurvePlotWidget(QWidget *parent = nullptr);

    bool isEditable() const { return Editable_; }
    void setEditable(bool editable);
    const QVector<QPointF> &points() const { return Points_; }
    void setPoints(const QVector<QPointF> &points);
    // Index of the point, or -1.
    int dragIndex() const { return DragIndex_; }
    int hoverIndex() const { return HoverIndex_; }

    QPointF toPixel(const QPointF &data) const;
    QPointF toData(const QPointF &pixel) const;
    // Through all points, in pixels; empty with fewer than two.
    QPainterPath path() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    double plotWidth() const;
    double plotHeight() const;
    int pointNear(const QPointF &data, double radius) const;
    void dragTo(const QPointF &data);
    void hoverAt(const QPointF &data);
    void drawGrid(QPainter &painter) const;
    void drawAxes(QPainter &painter) const;
    void drawPoints(QPainter &painter) const;
    void drawValues(QPainter &painter) const;

    bool Editable_ = false;
    QVector<QPointF> Points_;
    int DragIndex_ = -1;
    double XMin_ = 0, XMax_ = 7000;
    double YMin_ = 0, YMax_ = 70;
    QVector<double> XTicks_{0, 500, 1000, 2000, 3000, 4000, 5000, 6000, 7000};
    QVector<double> YTicks_{0, 5, 10, 20, 30, 40, 50, 60, 70};
    int Margin_ = 80;
    int HoverIndex_ = -1;
};
