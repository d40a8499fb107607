// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/FocusRing.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QFocusEvent>
#include <QPainter>
#include <QScrollArea>
#include <QStyle>

namespace
{

constexpr int Gap = 2;
constexpr int LineWidth = 2;
constexpr double Radius = 10;
constexpr double BarRadius = 5;
// Heights of controls with round ends (switches, marks on a picture), and of lower ones (colour bars).
constexpr int RoundFrom = 20;
constexpr int RoundTo = 28;

// The toolkit sends a dialog's first widget such an event before the widget has the focus.
bool fromKeyboard(const QWidget *widget, const QEvent *event)
{
    return isKeyboardFocus(event) && widget->hasFocus();
}

// A list or another window takes the keyboard and gives it back to the same control.
bool isLent(const QEvent *event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent *>(event)->reason();
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
}

bool opensList(const QObject *watched, const QEvent *event)
{
    return event->type() == QEvent::Show && watched->isWidgetType() &&
           static_cast<const QWidget *>(watched)->windowType() == Qt::Popup;
}

// A window that becomes active between two changes of the focus tells the first control nothing.
bool isTurnedOff(const QWidget *control, const QEvent *event)
{
    return event->type() == QEvent::EnabledChange && !control->isEnabled();
}

// Of a check box its mark and its text, which may be much narrower than the widget.
QRect drawnPart(const QWidget *control)
{
    if (!qobject_cast<const QCheckBox *>(control))
        return control->rect();
    return QStyle::alignedRect(control->layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter,
                               control->sizeHint().boundedTo(control->size()), control->rect());
}

double radiusAround(const QWidget *control)
{
    const int height = control->height();
    const auto *button = qobject_cast<const QAbstractButton *>(control);
    const bool isRow = button && !button->text().isEmpty() && button->width() > height;
    if (!button || isRow || height > RoundTo)
        return Radius;
    return height < RoundFrom ? BarRadius : height / 2.0 + Gap + LineWidth;
}

bool isScrolled(const QWidget *widget)
{
    const QWidget *viewport = widget->parentWidget();
    const auto *area =
        viewport ? qobject_cast<const QAbstractScrollArea *>(viewport->parentWidget()) : nullptr;
    return area && area->viewport() == viewport;
}

// The toolkit scrolls only when Tab is pressed within the area.
void scrollTo(QWidget *control)
{
    for (QWidget *each = control->parentWidget(); each; each = each->parentWidget())
        if (auto *area = qobject_cast<QScrollArea *>(each))
            area->ensureWidgetVisible(control);
}

QRect ringIn(const QWidget *ground, const QWidget *control)
{
    const QRect part = drawnPart(control);
    const int room = Gap + LineWidth;
    return QRect(control->mapTo(ground, part.topLeft()), part.size()).adjusted(-room, -room, room, room);
}

// The nearest ancestor with room for the ring, but none beyond a list that scrolls, which moves and cuts it.
QWidget *groundOf(const QWidget *control)
{
    QWidget *ground = control->parentWidget();
    while (!ground->isWindow() && !isScrolled(ground) && !ground->rect().contains(ringIn(ground, control)))
        ground = ground->parentWidget();
    return ground;
}

} // namespace

bool isKeyboardFocus(const QEvent *event)
{
    if (event->type() != QEvent::FocusIn)
        return false;
    const Qt::FocusReason reason = static_cast<const QFocusEvent *>(event)->reason();
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

class FocusRing::Outline : public QWidget
{
public:
    Outline(const QColor &color, QWidget *parent) : QWidget(parent), ink_(color)
    {
        setObjectName(QStringLiteral("FocusOutline"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }
    void follow(const QWidget *control)
    {
        radius_ = radiusAround(control);
        setGeometry(ringIn(parentWidget(), control).intersected(parentWidget()->rect()));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(ink_, LineWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius_ - 1, radius_ - 1);
    }

private:
    QColor ink_;
    double radius_ = Radius;
};

void FocusRing::install(const QColor &color)
{
    static QPointer<FocusRing> ring;
    if (!ring)
        ring = new FocusRing(color);
}

FocusRing::FocusRing(const QColor &color) : QObject(qApp), ink_(color) { qApp->installEventFilter(this); }

FocusRing::~FocusRing() = default;

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    // What kind of event it is comes first: the ring itself may be the one that is being destroyed.
    if (opensList(watched, event) && outline_) {
        outline_->hide(); // before the list takes what the page shows for its corners
    } else if (watched->isWidgetType() &&
               (fromKeyboard(static_cast<QWidget *>(watched), event) ||
                (type == QEvent::FocusIn && watched == lender_ && isLent(event)))) {
        surround(static_cast<QWidget *>(watched));
    } else if ((type == QEvent::Move || type == QEvent::Resize) && control_ && outline_) {
        if (watched == control_ || (watched->isWidgetType() && isBetween(static_cast<QWidget *>(watched))))
            outline_->follow(control_);
    } else if (control_ && watched == control_ &&
               (type == QEvent::FocusOut || type == QEvent::Hide || isTurnedOff(control_, event))) {
        lender_ = type == QEvent::FocusOut && isLent(event) ? control_ : nullptr;
        control_ = nullptr;
        if (outline_)
            outline_->hide();
    }
    return false;
}

// An ancestor of the control within the widget on which the ring is drawn.
bool FocusRing::isBetween(const QWidget *widget) const
{
    return widget->isAncestorOf(control_) && outline_->parentWidget()->isAncestorOf(widget);
}

void FocusRing::surround(QWidget *widget)
{
    if (!widget->parentWidget() || widget->isWindow())
        return;
    control_ = widget;
    lender_ = nullptr;
    scrollTo(widget);
    QWidget *ground = groundOf(widget);
    if (!outline_)
        outline_ = new Outline(ink_, ground);
    else if (outline_->parentWidget() != ground)
        outline_->setParent(ground);
    outline_->follow(widget);
    outline_->show();
    outline_->raise();
}
