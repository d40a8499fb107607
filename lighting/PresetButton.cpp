// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/PresetButton.h"

#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"

#include <QPainter>
#include <QVariant>

namespace
{
constexpr double Radius = 6;
constexpr double ChosenInset = 4; // between the ring of the chosen colour and its patch
constexpr double PressedInset = 2;
} // namespace

PresetButton::PresetButton(const QColor &color, QWidget *parent) : QToolButton(parent), color_(color)
{
    setCheckable(true);
    setProperty("accessibleRole", QStringLiteral("choice"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void PresetButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    const double inset = isDown() ? PressedInset : isChecked() ? ChosenInset : 0;
    const int line = inset > 0 ? 0 : underMouse() ? 2 : 1;
    const double edge = inset - (line == 1 ? 0.5 : 0); // a line on pixels, not between them
    painter.setPen(line == 0 ? QPen(Qt::NoPen)
                             : QPen(underMouse() ? skinColor("LabelColor") : style::outlineColor(), line));
    painter.setBrush(color_);
    painter.drawRoundedRect(frame.adjusted(edge, edge, -edge, -edge), Radius - inset / 2, Radius - inset / 2);
    if (!isChecked() && !isDown())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(skinColor(underMouse() ? "LabelColor" : "SliderColor"), 2));
    painter.drawRoundedRect(frame, Radius, Radius);
}
