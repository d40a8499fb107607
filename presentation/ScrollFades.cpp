// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ScrollFades.h"

#include "presentation/FirstShow.h"
#include "presentation/FocusRing.h"
#include "presentation/StyleSheets.h"

#include <QEvent>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <utility>

ScrollFades::ScrollFades(QScrollArea *area, const QString &page, Cuts cuts)
    : QObject(area)
    , area_(area)
    , viewport_(area->viewport())
    , cuts_(std::move(cuts))
    , top_(add("FadeTop", page))
    , bottom_(add("FadeBottom", page))
{
    const QScrollBar *bar = area_->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, &ScrollFades::update);
    connect(bar, &QScrollBar::rangeChanged, this, &ScrollFades::update);
    viewport_->installEventFilter(this);
    onFirstShow(area_, [this] { watchContents(); });
    place();
    update();
}

QLabel *ScrollFades::add(const char *name, const QString &page)
{
    auto *fade = new QLabel(area_);
    fade->setObjectName(QLatin1String(name));
    fade->setAttribute(Qt::WA_TransparentForMouseEvents);
    fade->hide();
    setStyleSheetWhenShown(fade, style::stretchedPicture(style::pictureFolder(page),
                                                         fade->objectName() + QStringLiteral(".png")));
    return fade;
}

// Beside the scroll bar, which comes and goes with the contents.
void ScrollFades::place()
{
    const QRect seen = viewport_->geometry();
    top_->setGeometry(seen.x(), seen.y(), seen.width(), Height);
    bottom_->setGeometry(seen.x(), seen.y() + seen.height() - Height, seen.width(), Height);
}

void ScrollFades::update()
{
    const QScrollBar *bar = area_->verticalScrollBar();
    const int top = bar->value();
    const auto fades = [this](bool goesOn, int y) { return cuts_ ? cuts_(y) : goesOn; };
    top_->setVisible(fades(top > bar->minimum(), top));
    bottom_->setVisible(fades(top < bar->maximum(), top + viewport_->height()));
}

void ScrollFades::watchContents()
{
    for (QWidget *widget : area_->widget()->findChildren<QWidget *>())
        if (widget->focusPolicy() & Qt::TabFocus)
            widget->installEventFilter(this);
}

// The area itself scrolls to what gets the focus only when a part of it lies beyond the edge.
void ScrollFades::showWhole(const QWidget *widget)
{
    const int top = widget->mapTo(area_->widget(), QPoint()).y();
    for (const int edge : {top, top + widget->height() - 1})
        area_->ensureVisible(0, edge, 0, Height);
}

bool ScrollFades::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == viewport_) { // which outlives its area's own part
        if (event->type() == QEvent::Resize) {
            place();
            update();
        }
    } else if (isKeyboardFocus(event)) {
        showWhole(static_cast<QWidget *>(watched));
    }
    return false;
}
