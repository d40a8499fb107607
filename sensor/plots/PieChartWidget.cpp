// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/plots/PieChartWidget.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

namespace
{

constexpr int SmallestSide = 300;
constexpr double SmallestRadius = 20;
constexpr double RadiusShare = 0.25; // of the smaller side
constexpr double RimRoom = 5;        // between the rim and the widget's border
constexpr double GrabWidth = 5.0;    // to both sides of the rim
constexpr double MarkRadius = 5;
constexpr int PartsPerDegree = 16; // of QPainter's angles

const QColor Light(50, 150, 255);
const QColor Deep(0, 80, 200);

} // namespace

PieChartWidget::PieChartWidget(QWidget *parent) : QWidget(parent)
{
    setMinimumSize(SmallestSide, SmallestSide);
}

void PieChartWidget::resizeEvent(QResizeEvent *)
{
    CenterX_ = rect().center().x();
    CenterY_ = rect().center().y();
    Radius_ = qMax(SmallestRadius, qMin(width(), height()) * RadiusShare);
}

void PieChartWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc(CenterX_ - Radius_, CenterY_ - Radius_, 2 * Radius_, 2 * Radius_);
    painter.setPen(QPen(Deep, 2));
    painter.setBrush(Light);
    painter.drawPie(disc, StartAngle_ * PartsPerDegree, SpanAngle_ * PartsPerDegree);
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(disc);
    const double end = qDegreesToRadians(double(StartAngle_ + SpanAngle_));
    painter.setBrush(Deep);
    painter.drawEllipse(QPointF(CenterX_ + Radius_ * qCos(end), CenterY_ - Radius_ * qSin(end)), MarkRadius,
                        MarkRadius);
}

double PieChartWidget::distanceTo(const QPoint &position) const
{
    return qSqrt(qPow(position.x() - CenterX_, 2) + qPow(position.y() - CenterY_, 2));
}

void PieChartWidget::mousePressEvent(QMouseEvent *event)
{
    if (qAbs(distanceTo(event->pos()) - Radius_) >= GrabWidth)
        return;
    Dragging_ = true;
    LastPos_ = event->pos();
    setCursor(Qt::SizeAllCursor);
}

void PieChartWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!Dragging_)
        return;
    const double largest = qMin(width(), height()) / 2.0 - RimRoom;
    const double wanted = qMax(SmallestRadius, qMin(distanceTo(event->pos()), largest));
    if (!qFuzzyCompare(wanted, Radius_)) {
        Radius_ = wanted;
        update();
    }
    LastPos_ = event->pos();
}

void PieChartWidget::mouseReleaseEvent(QMouseEvent *)
{
    Dragging_ = false;
    setCursor(Qt::ArrowCursor);
}
