// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ToolTips.h"

#include "presentation/Motion.h"
#include "presentation/SkinPalette.h"
#include "presentation/SkinStyle.h"
#include "presentation/StyleSheets.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

namespace
{

constexpr int Width = 260;
constexpr int Padding = 8;
constexpr int AnchorGap = 8; // to what it explains
constexpr int Edge = 8;      // to the window's edge
constexpr int TipRadius = 6;
// What is taller has its tip at the pointer.
constexpr int TallControl = 64;

bool endsTip(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::KeyPress || type == QEvent::Wheel ||
           type == QEvent::WindowDeactivate || type == QEvent::WindowBlocked;
}

// Of what the tip explains, in its window.
QRect anchorOf(const QWidget *widget, const QPoint &pointer)
{
    if (widget->height() > TallControl)
        return QRect(widget->window()->mapFromGlobal(pointer), QSize(1, 1))
            .adjusted(0, -AnchorGap, 0, AnchorGap);
    return QRect(widget->mapTo(widget->window(), QPoint()), widget->size());
}

// A text that is elided is read in the tip.
QString tipOf(QWidget *widget)
{
    const QString hidden = SkinStyle::elidedText(widget);
    QString tip = widget->toolTip();
    if (hidden.isEmpty() || tip.contains(hidden))
        return tip;
    const auto escaped = [](const QString &text) {
        return Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
    };
    if (Qt::mightBeRichText(tip))
        return escaped(hidden) + tip;
    // What is drawn as it is may look like markup to the tip.
    const QString plain = tip.isEmpty() ? hidden : hidden + QLatin1Char('\n') + tip;
    return Qt::mightBeRichText(plain) ? escaped(plain) : plain;
}

// Below the anchor, or above it where there is no room below.
QPoint placeOf(const QSize &tip, const QRect &anchor, const QRect &window)
{
    const QRect room = window.adjusted(Edge, Edge, -Edge, -Edge);
    const int below = anchor.bottom() + AnchorGap;
    const int y = below + tip.height() <= room.bottom() ? below : anchor.top() - AnchorGap - tip.height();
    const QPoint last = room.bottomRight() - QPoint(tip.width(), tip.height()) + QPoint(1, 1);
    return {qMax(room.left(), qMin(anchor.center().x() - tip.width() / 2, last.x())),
            qMax(room.top(), qMin(y, last.y()))};
}

} // namespace

class ToolTips::Bubble : public QLabel
{
public:
    explicit Bubble(QWidget *window)
        : QLabel(window), plate_(skinColor("ComboxBackGroundColor")), edge_(style::outlineColor())
    {
        setObjectName(QStringLiteral("ToolTip"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setMargin(Padding);
        QPalette colors = palette();
        colors.setColor(QPalette::WindowText, skinColor("LabelColor"));
        setPalette(colors);
    }
    void setTip(const QString &tip, int widest)
    {
        setFont(QToolTip::font());
        setText(tip);
        setWordWrap(false);
        const int width = qMin(sizeHint().width(), qMin(Width, widest));
        setWordWrap(true);
        resize(width, heightForWidth(width));
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(edge_);
        painter.setBrush(plate_);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), TipRadius, TipRadius);
        painter.end();
        QLabel::paintEvent(event);
    }

private:
    QColor plate_;
    QColor edge_;
};

void ToolTips::install()
{
    static QPointer<ToolTips> tips;
    if (!tips)
        tips = new ToolTips;
}

ToolTips::ToolTips() : QObject(qApp) { qApp->installEventFilter(this); }

ToolTips::~ToolTips() = default;

bool ToolTips::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::ToolTip && watched->isWidgetType()) {
        auto *widget = static_cast<QWidget *>(watched);
        const QString tip = tipOf(widget);
        if (tip.isEmpty())
            return false;
        show(widget, tip, static_cast<QHelpEvent *>(event)->globalPos());
        return true;
    }
    if (owner_ && (endsTip(type) || (watched == owner_ && (type == QEvent::Leave || type == QEvent::Hide))))
        hide();
    return false;
}

void ToolTips::show(QWidget *widget, const QString &tip, const QPoint &pointer)
{
    QWidget *window = widget->window();
    if (bubble_ && bubble_->parentWidget() != window)
        delete bubble_;
    if (!bubble_)
        bubble_ = new Bubble(window);
    owner_ = widget;
    bubble_->setTip(tip, window->width() - 2 * Edge);
    bubble_->move(placeOf(bubble_->size(), anchorOf(widget, pointer), window->rect()));
    bubble_->raise();
    bubble_->show();
    fadeIn(bubble_);
}

void ToolTips::hide()
{
    owner_ = nullptr;
    if (bubble_)
        bubble_->hide();
}
