// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/plots/CurvePlotWidget.h"

#include <QDebug>
#include <QMouseEvent>
#include <QPainter>
#include <QtMath>
#include <random>

namespace
{

constexpr int PointCount = 8;
// In data units with both axes mixed: a long ellipse in pixels, easy to hit from the side.
constexpr double GrabRadius = 50.0;
constexpr double HoverRadius = 60.0;

constexpr double DotRadius = 8;
constexpr int TickLength = 6;
constexpr int LabelWidth = 48, LabelHeight = 16, LabelGap = 4;
constexpr QSize BoxSize{120, 50};
constexpr QPoint BoxOffset{-60, -80};
constexpr int BoxRoom = 20;
constexpr double BoxCorner = 3.0;
constexpr int BoxPointSize = 10;

const QColor GridColor(255, 255, 255, 100);
const QColor CurveColor(0, 255, 153);
const QColor BoxColor(0, 0, 0, 180);

QString valueText(const char *form, const QPointF &point)
{
    return QString::fromLatin1(form)
        .arg(point.x(), 0, 'f', 1, QLatin1Char(' '))
        .arg(point.y(), 0, 'f', 1, QLatin1Char(' '));
}

// The box takes its size from no text, so that it does not change while a point is dragged.
void drawBox(QPainter &painter, const QString &measured, const QString &text, const QPointF &at, int align)
{
    QRect area = painter.fontMetrics().boundingRect(measured);
    area.setSize(BoxSize);
    area.translate(at.toPoint() + BoxOffset);
    painter.drawRoundedRect(area.adjusted(-BoxRoom, -BoxRoom, BoxRoom, BoxRoom), BoxCorner, BoxCorner);
    painter.drawText(area, align | Qt::TextDontClip, text);
}

} // namespace

CurvePlotWidget::CurvePlotWidget(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_MouseTracking);
    std::random_device random;
    std::uniform_int_distribution<int> height(10, 59);
    for (int i = 0; i < PointCount; ++i)
        Points_ << QPointF(i * (XMax_ - XMin_) / (PointCount - 1) + XMin_, height(random));
}

void CurvePlotWidget::setEditable(bool editable)
{
    Editable_ = editable;
    if (!editable)
        DragIndex_ = -1;
    update();
}

void CurvePlotWidget::setPoints(const QVector<QPointF> &points)
{
    Points_ = points;
    DragIndex_ = HoverIndex_ = -1;
    update();
}

// ---- Coordinates ----------------------------------------------------------------------------------

// At least a pixel, so that a widget smaller than its margins still has coordinates.
double CurvePlotWidget::plotWidth() const { return qMax(1, width() - 2 * Margin_); }
double CurvePlotWidget::plotHeight() const { return qMax(1, height() - 2 * Margin_); }

QPointF CurvePlotWidget::toPixel(const QPointF &data) const
{
    return {(data.x() - XMin_) * plotWidth() / (XMax_ - XMin_) + Margin_,
            (height() - Margin_) - (data.y() - YMin_) * plotHeight() / (YMax_ - YMin_)};
}

QPointF CurvePlotWidget::toData(const QPointF &pixel) const
{
    return {(pixel.x() - Margin_) * (XMax_ - XMin_) / plotWidth() + XMin_,
            YMax_ - (pixel.y() - Margin_) * (YMax_ - YMin_) / plotHeight()};
}

QPainterPath CurvePlotWidget::path() const
{
    QPainterPath spline;
    const int count = Points_.size();
    if (count < 2)
        return spline;
    spline.moveTo(toPixel(Points_[0]));
    for (int i = 0; i + 1 < count; ++i) {
        const QPointF p0 = toPixel(Points_[qMax(i - 1, 0)]);
        const QPointF p1 = toPixel(Points_[i]);
        const QPointF p2 = toPixel(Points_[i + 1]);
        const QPointF p3 = toPixel(Points_[qMin(i + 2, count - 1)]);
        spline.cubicTo(p1 + (p2 - p0) / 6, p2 - (p3 - p1) / 6, p2);
    }
    return spline;
}

// ---- Painting -------------------------------------------------------------------------------------

void CurvePlotWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawGrid(painter);
    drawAxes(painter);
    painter.strokePath(path(), QPen(CurveColor, 2));
    drawPoints(painter);
    drawValues(painter);
}

void CurvePlotWidget::drawGrid(QPainter &painter) const
{
    painter.setPen(QPen(GridColor, 1, Qt::DashLine));
    for (const double x : XTicks_)
        painter.drawLine(toPixel({x, YMin_}), toPixel({x, YMax_}));
    for (const double y : YTicks_)
        painter.drawLine(toPixel({XMin_, y}), toPixel({XMax_, y}));
}

void CurvePlotWidget::drawAxes(QPainter &painter) const
{
    painter.setPen(Qt::white);
    painter.drawLine(toPixel({XMin_, YMin_}), toPixel({XMax_, YMin_}));
    painter.drawLine(toPixel({XMin_, YMin_}), toPixel({XMin_, YMax_}));
    for (const double x : XTicks_) {
        const QPointF at = toPixel({x, YMin_});
        painter.drawLine(at, at + QPointF(0, TickLength));
        painter.drawText(
            QRectF(at.x() - LabelWidth / 2.0, at.y() + TickLength + LabelGap, LabelWidth, LabelHeight),
            Qt::AlignHCenter | Qt::AlignTop, QString::number(int(x)));
    }
    for (const double y : YTicks_) {
        const QPointF at = toPixel({XMin_, y});
        painter.drawLine(at, at - QPointF(TickLength, 0));
        painter.drawText(QRectF(at.x() - TickLength - LabelGap - LabelWidth, at.y() - LabelHeight / 2.0,
                                LabelWidth, LabelHeight),
                         Qt::AlignRight | Qt::AlignVCenter, QString::number(int(y)));
    }
}

void CurvePlotWidget::drawPoints(QPainter &painter) const
{
    painter.setBrush(Qt::yellow);
    for (int i = 0; i < Points_.size(); ++i) {
        painter.setPen(i == DragIndex_ ? QPen(Qt::white, 3) : QPen(Qt::black, 1));
        painter.drawEllipse(toPixel(Points_[i]), DotRadius, DotRadius);
    }
}

void CurvePlotWidget::drawValues(QPainter &painter) const
{
    painter.setPen(Qt::white);
    painter.setBrush(BoxColor);
    QFont font = painter.font();
    font.setPointSize(BoxPointSize);
    painter.setFont(font);
    if (DragIndex_ >= 0) {
        const QString text = valueText("X: %1, Y: %2", Points_[DragIndex_]);
        drawBox(painter, text, text, toPixel(Points_[DragIndex_]), Qt::AlignCenter);
    }
    if (HoverIndex_ >= 0)
        drawBox(painter, QStringLiteral("aaaaaaaaaaaaaa"), valueText("X: %1\nY: %2", Points_[HoverIndex_]),
                toPixel(Points_[HoverIndex_]), Qt::AlignLeft | Qt::AlignVCenter);
}

// ---- Pointer --------------------------------------------------------------------------------------

int CurvePlotWidget::pointNear(const QPointF &data, double radius) const
{
    for (int i = 0; i < Points_.size(); ++i) {
        const double distance =
            qSqrt(qPow(Points_[i].x() - data.x(), 2) + qPow(Points_[i].y() - data.y(), 2));
        qDebug() << distance;
        if (distance < radius)
            return i;
    }
    return -1;
}

void CurvePlotWidget::mousePressEvent(QMouseEvent *event)
{
    if (Editable_ && event->button() == Qt::LeftButton) {
        DragIndex_ = pointNear(toData(event->localPos()), GrabRadius);
        if (DragIndex_ >= 0) {
            setCursor(Qt::ClosedHandCursor);
            update();
            return;
        }
        setCursor(Qt::ArrowCursor);
    }
    QWidget::mousePressEvent(event);
}

void CurvePlotWidget::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF data = toData(event->localPos());
    if (Editable_ && DragIndex_ >= 0) {
        dragTo(data);
        return;
    }
    hoverAt(data);
    if (HoverIndex_ >= 0)
        return;
    setCursor(Qt::ArrowCursor);
    QWidget::mouseMoveEvent(event);
}

void CurvePlotWidget::dragTo(const QPointF &data)
{
    Points_[DragIndex_] = {qBound(XMin_, data.x(), XMax_), qBound(YMin_, data.y(), YMax_)};
    update();
}

void CurvePlotWidget::hoverAt(const QPointF &data)
{
    const int before = HoverIndex_;
    HoverIndex_ = pointNear(data, HoverRadius);
    if (HoverIndex_ >= 0 || HoverIndex_ != before)
        update();
}

void CurvePlotWidget::mouseReleaseEvent(QMouseEvent *event)
{
    if (DragIndex_ >= 0) {
        DragIndex_ = -1;
        setCursor(Qt::ArrowCursor);
        update();
    }
    QWidget::mouseReleaseEvent(event);
}
