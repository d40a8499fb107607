// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/FirstShow.h"

#include <QEvent>
#include <QWidget>

namespace
{

class FirstShow : public QObject
{
public:
    FirstShow(QWidget *shown, std::function<void()> applyStyle)
        : QObject(shown), applyStyle_(std::move(applyStyle))
    {
        shown->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            watched->removeEventFilter(this);
            deleteLater();
            applyStyle_();
        }
        return false;
    }

private:
    const std::function<void()> applyStyle_;
};

} // namespace

void onFirstShow(QWidget *widget, std::function<void()> applyStyle)
{
    new FirstShow(widget, std::move(applyStyle));
}
