// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/BusyBar.h"

#include "presentation/SkinPalette.h"

#include <QPainter>

namespace
{
constexpr int CycleMs = 1400;
constexpr double LightShare = 0.25; // of the line's length
constexpr int TrackOpacity = 28;
} // namespace

BusyBar::BusyBar(QWidget *parent) : QWidget(parent)
{
    run_.setStartValue(0.0);
    run_.setEndValue(1.0);
    run_.setDuration(CycleMs);
    run_.setEasingCurve(QEasingCurve::InOutSine);
    run_.setLoopCount(-1);
    connect(&run_, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void BusyBar::paintEvent(QPaintEvent *)
{
    QColor track = skinColor("LabelColor");
    track.setAlpha(TrackOpacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double radius = height() / 2.0;
    painter.setBrush(track);
    painter.drawRoundedRect(rect(), radius, radius);
    const double light = width() * LightShare;
    const double left = run_.currentValue().toDouble() * (width() + light) - light;
    painter.setBrush(skinColor("SliderColor"));
    painter.drawRoundedRect(QRectF(left, 0, light, height()).intersected(QRectF(rect())), radius, radius);
}

void BusyBar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    run_.start();
}

void BusyBar::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    run_.stop();
}
