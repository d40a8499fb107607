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
    Outline(const QColor &color, QWidget *parent) : QWidget(parent), ink(color)
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
        painter.setPen(QPen(ink, LineWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius, Radius);
    }

private:
    QColor ink;
};

} // namespace

void FocusRing::install(const QColor &color)
{
    static QPointer<FocusRing> ring;
    if (!ring)
        ring = new FocusRing(color);
}

FocusRing::FocusRing(const QColor &color) : QObject(qApp), ink(color) { qApp->installEventFilter(this); }

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && watched->isWidgetType() && fromKeyboard(event)) {
        surround(static_cast<QWidget *>(watched));
    } else if (control && watched == control) {
        const QEvent::Type type = event->type();
        if (type == QEvent::Move || type == QEvent::Resize) {
            follow();
        } else if (type == QEvent::FocusOut || type == QEvent::Hide) {
            control = nullptr;
            if (outline)
                outline->hide();
        }
    }
    return false;
}

void FocusRing::surround(QWidget *widget)
{
    QWidget *ground = widget->parentWidget();
    if (!ground || widget->isWindow())
        return;
    control = widget;
    if (!outline)
        outline = new Outline(ink, ground);
    else if (outline->parentWidget() != ground)
        outline->setParent(ground);
    follow();
    outline->show();
    outline->raise();
}

void FocusRing::follow()
{
    const int room = Gap + LineWidth;
    const QRect around = control->geometry().adjusted(-room, -room, room, room);
    if (outline)
        outline->setGeometry(around.intersected(outline->parentWidget()->rect()));
}
