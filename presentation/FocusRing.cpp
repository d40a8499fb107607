// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/FocusRing.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPainter>

namespace
{

constexpr int Gap = 2;
constexpr int LineWidth = 2;
constexpr int Radius = 8;

bool fromKeyboard(const QEvent *event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent *>(event)->reason();
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

class Outline : public QWidget
{
public:
    Outline(const QColor &color, QWidget *parent) : QWidget(parent), ink_(color)
    {
        setObjectName(QStringLiteral("FocusOutline"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(ink_, LineWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius, Radius);
    }

private:
    QColor ink_;
};

} // namespace

void FocusRing::install(const QColor &color)
{
    static QPointer<FocusRing> ring;
    if (!ring)
        ring = new FocusRing(color);
}

FocusRing::FocusRing(const QColor &color) : QObject(qApp), ink_(color) { qApp->installEventFilter(this); }

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && watched->isWidgetType() && fromKeyboard(event)) {
        surround(static_cast<QWidget *>(watched));
    } else if (control_ && watched == control_) {
        const QEvent::Type type = event->type();
        if (type == QEvent::Move || type == QEvent::Resize) {
            follow();
        } else if (type == QEvent::FocusOut || type == QEvent::Hide) {
            control_ = nullptr;
            if (outline_)
                outline_->hide();
        }
    }
    return false;
}

void FocusRing::surround(QWidget *widget)
{
    QWidget *ground = widget->parentWidget();
    if (!ground || widget->isWindow())
        return;
    control_ = widget;
    if (!outline_)
        outline_ = new Outline(ink_, ground);
    else if (outline_->parentWidget() != ground)
        outline_->setParent(ground);
    follow();
    outline_->show();
    outline_->raise();
}

void FocusRing::follow()
{
    const int room = Gap + LineWidth;
    const QRect around = control_->geometry().adjusted(-room, -room, room, room);
    if (outline_)
        outline_->setGeometry(around.intersected(outline_->parentWidget()->rect()));
}
