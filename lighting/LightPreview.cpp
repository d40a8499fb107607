// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LightPreview.h"

#include "presentation/Motion.h"
#include "presentation/StyleSheets.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTimerEvent>
#include <QWindow>

namespace
{

constexpr double PlateRadius = 8;
constexpr double LampRadius = 4;
constexpr int LampPitch = 26;
constexpr int LampGap = 6;
constexpr int SideRoom = 16;
constexpr int LampHeight = 34;
constexpr int GlowRoom = 5; // around a lamp
constexpr int GlowAlpha = 60;
const QColor Plate(13, 15, 17);
const QColor DarkLamp(38, 44, 48);

// A dark lamp is grey, so that it is seen.
QColor lit(const QColor &color)
{
    const double share = color.valueF();
    const auto mix = [share](int part, int dark) { return int(part + dark * (1 - share)); };
    return {mix(color.red(), DarkLamp.red()), mix(color.green(), DarkLamp.green()),
            mix(color.blue(), DarkLamp.blue())};
}

} // namespace

LightPreview::LightPreview(QWidget *parent) : QWidget(parent) {}

void LightPreview::setLight(const ShownLight &light)
{
    if (light.mode != light_.mode)
        turns_ = 0;
    light_ = light;
    moveOrRest();
    update();
}

void LightPreview::showEvent(QShowEvent *event)
{
    motionAllowed_ = motionTime() > 0;
    if (!motionAllowed_)
        turns_ = 0; // the moment at which the light stands is its first
    QWidget::showEvent(event);
}

void LightPreview::hideEvent(QHideEvent *event)
{
    frames_.stop();
    QWidget::hideEvent(event);
}

// A window that is minimised is still visible to the toolkit, and so is what a page has scrolled away.
bool LightPreview::isSeen() const
{
    const QWindow *screenWindow = window()->windowHandle();
    return isVisible() && !visibleRegion().isEmpty() && screenWindow && screenWindow->isExposed();
}

void LightPreview::moveOrRest()
{
    const bool wanted = motionAllowed_ && moves(light_) && isSeen();
    if (wanted && !frames_.isActive()) {
        frames_.start(FrameMs, this);
        clock_.start();
    } else if (!wanted)
        frames_.stop();
}

void LightPreview::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != frames_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    moveOrRest();
    if (!frames_.isActive())
        return;
    turns_ += turnsIn(light_, clock_.restart());
    update(lampRow());
}

QRect LightPreview::lampRow() const
{
    return QRect(0, (height() - LampHeight) / 2, width(), LampHeight)
        .adjusted(SideRoom - GlowRoom, -GlowRoom, GlowRoom - SideRoom, GlowRoom);
}

// What comes into sight is painted, which starts the motion again.
void LightPreview::paintEvent(QPaintEvent *event)
{
    moveOrRest();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (lampRow().contains(event->rect())) {
        painter.fillRect(event->rect(), Plate);
    } else {
        painter.setPen(style::outlineColor());
        painter.setBrush(Plate);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), PlateRadius, PlateRadius);
    }
    painter.setPen(Qt::NoPen);
    const int count = qMax(1, (width() - 2 * SideRoom + LampGap) / LampPitch);
    const int left = (width() - count * LampPitch + LampGap) / 2;
    const int top = (height() - LampHeight) / 2;
    for (int i = 0; i < count; ++i) {
        const QColor color = lampColor(light_, double(i) / count, turns_);
        const QRectF lamp(left + i * LampPitch, top, LampPitch - LampGap, LampHeight);
        QColor glow = color;
        glow.setAlpha(GlowAlpha * color.value() / 255);
        painter.setBrush(glow);
        painter.drawRoundedRect(lamp.adjusted(-GlowRoom, -GlowRoom, GlowRoom, GlowRoom), PlateRadius,
                                PlateRadius);
        painter.setBrush(lit(color));
        painter.drawRoundedRect(lamp, LampRadius, LampRadius);
    }
}
