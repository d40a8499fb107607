// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/NoticeWindow.h"

#include "environment/DataRoot.h"
#include "presentation/NoticeShade.h"
#include "presentation/SkinPalette.h"

#include <QApplication>

namespace
{

constexpr Qt::WindowFlags NoticeFlags = Qt::SubWindow | Qt::X11BypassWindowManagerHint |
                                        Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                                        Qt::WindowMinimizeButtonHint;
static_assert(int(NoticeFlags) == 27666);

} // namespace

NoticeWindow::~NoticeWindow() { delete shade_; }

void NoticeWindow::becomeNotice()
{
    setWindowFlags(NoticeFlags);
    setFixedSize(size());
    roundCorners(this);
    // Closing a notice must not quit the program while its main window is hidden in the tray.
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(applicationName());
}

void NoticeWindow::placeOver(const QWidget *widget, const QPoint &offset)
{
    under_ = widget->window();
    const QPoint corner = widget->mapToGlobal(QPoint(0, 0));
    move(corner + QPoint((widget->width() - width()) / 2, (widget->height() - height()) / 2) + offset);
}

int NoticeWindow::openOver(const QWidget *widget, const QPoint &offset)
{
    if (widget)
        placeOver(widget, offset);
    return exec();
}

void NoticeWindow::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    before_ = QApplication::activeWindow();
    dimWindow();
    raise();
    activateWindow();
}

void NoticeWindow::dimWindow()
{
    QWidget *window = under_ ? under_ : before_;
    if (dimsWindow() && window && window != this && window->isVisible() && !NoticeShade::covers(window))
        shade_ = new NoticeShade(window, frameGeometry());
}

void NoticeWindow::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    delete shade_;
    if (before_ && before_->isVisible())
        before_->activateWindow();
}

// A click on the window behind activates the notice again, but the window manager may have raised that window
// above the notice: both would then ignore the user.
void NoticeWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        raise();
}
