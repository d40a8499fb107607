// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/RecordMark.h"

#include "presentation/Motion.h"

#include <QPainter>
#include <QtMath>

namespace
{

constexpr int BeatMs = 50;
constexpr int SteadyBeatMs = 500; // where the desktop wants no motion
constexpr int PulseMs = 1200;
constexpr double DotRadius = 6;
constexpr double HaloRadius = 11;
constexpr double HaloOpacity = 0.35;
constexpr int TextLeft = 32;

} // namespace

RecordMark::RecordMark(QWidget *parent) : QWidget(parent)
{
    connect(&beat_, &QTimer::timeout, this, QOverload<>::of(&QWidget::update));
}

QColor RecordMark::color() { return {255, 107, 94}; }

void RecordMark::setText(const QString &text)
{
    text_ = text;
    setAccessibleName(text);
    update();
}

void RecordMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPointF middle(HaloRadius + 1, height() / 2.0);
    const double pulse =
        pulses_ ? 0.5 - 0.5 * qCos(2 * M_PI * double(clock_.elapsed() % PulseMs) / PulseMs) : 0;
    QColor halo = color();
    halo.setAlphaF(HaloOpacity * pulse);
    painter.setBrush(halo);
    painter.drawEllipse(middle, HaloRadius, HaloRadius);
    painter.setBrush(color());
    painter.drawEllipse(middle, DotRadius, DotRadius);
    const qint64 seconds = clock_.elapsed() / 1000;
    const QString time = QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    painter.setPen(color());
    style()->drawItemText(&painter, rect().adjusted(TextLeft, 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine,
                          palette(), true, text_ + QStringLiteral("  ") + time, QPalette::NoRole);
}

void RecordMark::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    pulses_ = motionTime() > 0;
    clock_.start();
    beat_.start(pulses_ ? BeatMs : SteadyBeatMs);
}

void RecordMark::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    beat_.stop();
}
