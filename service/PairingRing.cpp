// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/PairingRing.h"

#include "presentation/SkinPalette.h"

#include <QPainter>

namespace
{

constexpr double Stroke = 4;
constexpr int TrackOpacity = 56;
constexpr int FullCircle = 360 * 16; // the painter's unit is 1/16 of a degree
constexpr int Top = 90 * 16;
constexpr int SecondsPixels = 22;
const QColor FailureColor(255, 107, 94);

// The signs, within a square from -10 to 10.
const QPolygonF Tick(QVector<QPointF>{{-9, 0}, {-3, 7}, {9, -7}});
const QPolygonF CrossDown(QVector<QPointF>{{-7, -7}, {7, 7}});
const QPolygonF CrossUp(QVector<QPointF>{{-7, 7}, {7, -7}});

QPen stroke(const QColor &color) { return {color, Stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin}; }

} // namespace

void PairingRing::setPhase(PairingPhase phase)
{
    phase_ = phase;
    update();
}

void PairingRing::setLeft(qint64 left, qint64 total)
{
    left_ = qBound(qint64(0), left, total);
    total_ = qMax(qint64(1), total);
    update();
}

int PairingRing::secondsLeft() const { return int((left_ + 999) / 1000); }

void PairingRing::paintEvent(QPaintEvent *)
{
    const QColor ink = skinColor("LabelColor");
    const QColor accent = skinColor("SliderColor");
    QColor track = ink;
    track.setAlpha(TrackOpacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = qMin(width(), height()) - Stroke;
    const QRectF circle((width() - side) / 2, (height() - side) / 2, side, side);
    painter.setPen(stroke(track));
    painter.drawEllipse(circle);
    if (phase_ == PairingPhase::Pairing) {
        painter.setPen(stroke(accent));
        painter.drawArc(circle, Top, int(FullCircle * left_ / total_));
        QFont figures = font();
        figures.setPixelSize(SecondsPixels);
        painter.setFont(figures);
        painter.setPen(ink);
        painter.drawText(rect(), Qt::AlignCenter, QString::number(secondsLeft()));
        return;
    }
    painter.translate(circle.center());
    if (phase_ == PairingPhase::Succeeded) {
        painter.setPen(stroke(accent));
        painter.drawEllipse(circle.translated(-circle.center()));
        painter.drawPolyline(Tick);
    } else if (phase_ == PairingPhase::Failed) {
        painter.setPen(stroke(FailureColor));
        painter.drawEllipse(circle.translated(-circle.center()));
        painter.drawPolyline(CrossDown);
        painter.drawPolyline(CrossUp);
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(track);
        for (const double x : {-12.0, 0.0, 12.0})
            painter.drawEllipse(QPointF(x, 0), Stroke * 0.75, Stroke * 0.75);
    }
}
