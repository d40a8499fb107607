// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/HueField.h"

#include <QPainter>

namespace
{

constexpr int MarkerRadius = 5;
constexpr int HueTurn = 360;

QColor fieldColor(const QPoint &pixel, const QSize &size)
{
    const int hue = qMin(HueTurn - 1, HueTurn * pixel.x() / size.width());
    const int saturation = 255 - 255 * pixel.y() / qMax(1, size.height() - 1);
    return QColor::fromHsv(hue, saturation, 255).rgb(); // in the parts that the record has
}

QImage fieldImage(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = fieldColor({x, y}, size).rgb();
    }
    return image;
}

} // namespace

HueField::HueField(QWidget *parent) : QLabel(parent) { setCursor(Qt::CrossCursor); }

void HueField::setColor(const QColor &color)
{
    color_ = color;
    update();
}

QColor HueField::colorAt(const QPoint &point) const
{
    return rect().contains(point) ? fieldColor(point, size()) : QColor();
}

QPoint HueField::placeOf(const QColor &color) const
{
    const int hue = qMax(0, color.hsvHue()); // a grey has none
    return {hue * width() / HueTurn, (255 - color.hsvSaturation()) * (height() - 1) / 255};
}

void HueField::paintEvent(QPaintEvent *)
{
    const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (image_.size() != pixels)
        image_ = fieldImage(pixels);
    QPainter painter(this);
    painter.drawImage(rect(), image_);
    if (!color_.isValid() || underMouse())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect whole =
        rect().adjusted(MarkerRadius + 1, MarkerRadius + 1, -MarkerRadius - 2, -MarkerRadius - 2);
    const QPoint place = placeOf(color_);
    const QPointF at(qBound(whole.left(), place.x(), whole.right()),
                     qBound(whole.top(), place.y(), whole.bottom()));
    painter.setBrush(color_);
    painter.setPen(QPen(Qt::black, 3));
    painter.drawEllipse(at, MarkerRadius, MarkerRadius);
    painter.setPen(QPen(Qt::white, 1.5));
    painter.drawEllipse(at, MarkerRadius, MarkerRadius);
}

void HueField::enterEvent(QEvent *event)
{
    update();
    QLabel::enterEvent(event);
}

void HueField::leaveEvent(QEvent *event)
{
    update();
    QLabel::leaveEvent(event);
}
