// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/plots/RotatableWidget.h"

#include <QPainter>
#include <cmath>

namespace
{

constexpr double RadiansPerDegree = 0.017453292519943295;

QSize turned(const QSize &size, int degrees)
{
    if (degrees % 180 == 0)
        return size;
    if (degrees % 90 == 0)
        return size.transposed();
    const double sine = std::abs(std::sin(degrees * RadiansPerDegree));
    const double cosine = std::abs(std::cos(degrees * RadiansPerDegree));
    return {int(std::lround(size.width() * cosine + size.height() * sine)),
            int(std::lround(size.width() * sine + size.height() * cosine))};
}

} // namespace

RotatableWidget::RotatableWidget(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

void RotatableWidget::SetImage(const QString &path)
{
    if (path == imagePath_)
        return;
    imagePath_ = path;
    scaled_ = QPixmap();
    update();
}

void RotatableWidget::SetAngle(int degrees)
{
    angle_ = degrees % 360;
    if (angle_ < 0)
        angle_ += 360;
    updateGeometry();
    repaint();
}

QSize RotatableWidget::minimumSizeHint() const { return turned(QWidget::minimumSizeHint(), angle_); }

QSize RotatableWidget::sizeHint() const { return turned(QWidget::sizeHint(), angle_); }

// A drag of the slider turns the picture at each step, so it is read and scaled once.
const QPixmap &RotatableWidget::picture()
{
    const QSize wanted = size() * devicePixelRatioF();
    if (!imagePath_.isEmpty() && scaled_.size() != wanted) {
        scaled_ = QPixmap(imagePath_);
        if (!scaled_.isNull())
            scaled_ = scaled_.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        scaled_.setDevicePixelRatio(devicePixelRatioF());
    }
    return scaled_;
}

void RotatableWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QPoint middle(width() / 2, height() / 2);
    painter.translate(middle);
    painter.rotate(angle_);
    painter.translate(-middle);
    if (!picture().isNull())
        painter.drawPixmap(rect(), picture());
    const QList<QWidget *> children = findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (!child->isVisible())
            continue;
        painter.save();
        painter.translate(child->pos());
        child->render(&painter);
        painter.restore();
    }
    if (children.isEmpty())
        painter.drawText(rect(), Qt::AlignCenter, QString());
}
