// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/Widgets.h"

#include "presentation/SkinPalette.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <algorithm>

namespace
{
constexpr int ProgressStepMs = 20;
constexpr double HintOpacity = 0.6;
constexpr int FillHeight = 4; // of the sheets' grooves

class WheelFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::Wheel)
            return false;
        event->ignore(); // so that it goes on to what lies below
        return true;
    }
};

} // namespace

void passWheels(QWidget *dialog)
{
    auto *const filter = new WheelFilter(dialog);
    for (QWidget *widget : dialog->findChildren<QWidget *>()) {
        if (!qobject_cast<QComboBox *>(widget) && !qobject_cast<QAbstractSpinBox *>(widget))
            continue;
        widget->setFocusPolicy(Qt::StrongFocus);
        widget->installEventFilter(filter);
    }
}

void stopTabAtChecked(const QList<QAbstractButton *> &choices)
{
    const bool any =
        std::any_of(choices.begin(), choices.end(), [](auto *each) { return each->isChecked(); });
    for (QAbstractButton *each : choices)
        each->setFocusPolicy(!any || each->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

void tabEntersAtChecked(const QList<QAbstractButton *> &choices)
{
    for (QAbstractButton *each : choices)
        QObject::connect(each, &QAbstractButton::toggled, each, [choices] { stopTabAtChecked(choices); });
    stopTabAtChecked(choices);
}

void MySlider::mousePressEvent(QMouseEvent *event)
{
    pressEnded_ = false;
    QSlider::mousePressEvent(event);
    if (!pressEnded_) {
        const double share = width() > 0 ? double(event->x()) / width() : 0;
        setValue(int(minimum() + (maximum() - minimum()) * share));
    }
    if (pressEnded_)
        endPress(); // the base class goes on with its press after the signal that disabled the slider
    if (parentWidget())
        QCoreApplication::postEvent(parentWidget(), new QEvent(Jumped));
}

void MySlider::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        endPress();
    QSlider::mouseMoveEvent(event);
}

// The base class ends a drag when it is disabled, with a last step.
void MySlider::changeEvent(QEvent *event)
{
    if (asking_) {
        QWidget::changeEvent(event); // NOLINT(bugprone-parent-virtual-call)
        return;
    }
    QSlider::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        endPress();
}

bool MySlider::event(QEvent *event)
{
    const bool handled = QSlider::event(event);
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide)
        endPress();
    return handled;
}

// Only a release clears what the base class keeps of a press; setSliderDown(false) leaves the pressed handle
// and the repeated steps of a press beside it.
void MySlider::endPress()
{
    pressEnded_ = true;
    const QSignalBlocker silent(this);
    setSliderPosition(value()); // a release takes over the position of the drag
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QSlider::mouseReleaseEvent(&release);
    setSliderDown(false);
    setRepeatAction(SliderNoAction);
}

void MySlider::giveBack(int value)
{
    const QSignalBlocker silent(this);
    setEnabled(false);
    setValue(value);
}

bool MySlider::enabledBy(const std::function<bool()> &question)
{
    const bool focused = hasFocus(); // which goes to the next control when this one is disabled
    asking_ = true;
    setEnabled(false);
    const bool enabled = question();
    setEnabled(enabled);
    asking_ = false;
    if (!enabled)
        endPress();
    else if (focused)
        setFocus();
    return enabled;
}

void CentredSlider::paintEvent(QPaintEvent *event)
{
    MySlider::paintEvent(event);
    if (!isEnabled())
        return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const auto handleAt = [&](int place) {
        option.sliderPosition = place;
        return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    };
    const QRect handle = handleAt(sliderPosition());
    const int zero = handleAt(0).center().x();
    const int from = sliderPosition() > 0 ? zero : handle.right() + 1;
    const int to = sliderPosition() > 0 ? handle.left() : zero;
    if (from < to)
        QPainter(this).fillRect(from, (height() - FillHeight) / 2, to - from, FillHeight,
                                skinColor("SliderColor"));
}

void MyConmboBox::mousePressEvent(QMouseEvent *event)
{
    indexAtPress_ = currentIndex();
    QComboBox::mousePressEvent(event);
}

void MyConmboBox::setHint(const QString &hint)
{
    hint_ = hint;
    update();
}

void MyConmboBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    if (option.currentText.isEmpty()) {
        option.currentText = hint_;
        painter.setOpacity(HintOpacity);
    }
    if (option.frame) {
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
        return;
    }
    QStyleOptionButton label;
    label.initFrom(this);
    label.text = option.currentText;
    label.icon = option.currentIcon;
    label.iconSize = option.iconSize;
    painter.drawControl(QStyle::CE_PushButtonLabel, label);
}

void MyToolButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setChecked(true);
    emit clicked(false);
}

void MyToolButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setChecked(true);
    emit clicked(true);
}

// The press has done it all; the toolkit's own release would click again.
void MyToolButton::mouseReleaseEvent(QMouseEvent *) {}

MySpinBox::MySpinBox(QWidget *parent) : WheelPasses(parent)
{
    connect(this, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int now) {
        QAccessibleValueChangeEvent event(this, now);
        QAccessible::updateAccessibility(&event);
    });
}

void MySpinBox::take(int value)
{
    if (isEnabled() && !isReadOnly())
        setValue(value);
}

int mytoolButtonEnter::deviceIndex() const
{
    bool isNumber = false;
    const int index = objectName().remove(QStringLiteral("btn")).toInt(&isNumber);
    return isNumber ? index : -1;
}

void mytoolButtonEnter::enterEvent(QEvent *event)
{
    QToolButton::enterEvent(event);
    emit entered(deviceIndex());
}

void MyButton::enterEvent(QEvent *event)
{
    setCursor(Qt::PointingHandCursor);
    QPushButton::enterEvent(event);
}

void MyButton::leaveEvent(QEvent *event)
{
    setCursor(Qt::ArrowCursor);
    QPushButton::leaveEvent(event);
}

MyProgressBar::MyProgressBar(QWidget *parent) : QProgressBar(parent)
{
    timer_.setInterval(ProgressStepMs);
    connect(&timer_, &QTimer::timeout, this, &MyProgressBar::tick);
}

void MyProgressBar::addTarget(int value)
{
    targets_ << qBound(minimum(), value, maximum()); // one that cannot be reached would keep the timer going
    timer_.start();
}

void MyProgressBar::tick()
{
    while (!targets_.isEmpty() && value() >= targets_.first())
        targets_.removeFirst();
    if (targets_.isEmpty())
        timer_.stop();
    else
        setValue(qMax(value(), minimum()) + 1);
}
