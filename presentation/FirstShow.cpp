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
    FirstShow(QWidget *shown, std::function<void()> dressing) : QObject(shown), dress_(std::move(dressing))
    {
        shown->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            watched->removeEventFilter(this);
            deleteLater();
            dress_();
        }
        return false;
    }

private:
    const std::function<void()> dress_;
};

} // namespace

void onFirstShow(QWidget *widget, std::function<void()> applyStyle)
{
    new FirstShow(widget, std::move(applyStyle));
}
