// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/FirstShow.h"

#include <QEvent>
#include <QVariant>
#include <QWidget>

namespace
{

class FirstShow : public QObject
{
public:
    FirstShow(QWidget *shown, QEvent::Type event, std::function<void()> applyStyle)
        : QObject(shown), event_(event), applyStyle_(std::move(applyStyle))
    {
        shown->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == event_) {
            watched->removeEventFilter(this);
            deleteLater();
            applyStyle_();
        }
        return false;
    }

private:
    const QEvent::Type event_;
    const std::function<void()> applyStyle_;
};

} // namespace

void onFirstShow(QWidget *widget, std::function<void()> applyStyle)
{
    new FirstShow(widget, QEvent::Show, std::move(applyStyle));
}

void onFirstPaint(QWidget *widget, std::function<void()> applyStyle)
{
    new FirstShow(widget, QEvent::Paint, std::move(applyStyle));
}

void setStyleSheetWhenShown(QWidget *widget, const QString &sheet)
{
    static constexpr char Waiting[] = "waitingStyleSheet";
    const bool waits = widget->property(Waiting).isValid();
    if (widget->isVisible() && !waits) {
        if (widget->styleSheet() != sheet)
            widget->setStyleSheet(sheet);
        return;
    }
    widget->setProperty(Waiting, sheet);
    if (waits)
        return;
    onFirstShow(widget, [widget] {
        widget->setStyleSheet(widget->property(Waiting).toString());
        widget->setProperty(Waiting, {});
    });
}
