// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/RecordingKeys.h"

#include <QApplication>
#include <QContextMenuEvent>

RecordingKeys::RecordingKeys(QWidget *page) : QObject(page), page_(page), source_(KeySource::AltKeys::Known)
{
    connect(&source_, &KeySource::keyEvent, this, &RecordingKeys::keyEvent);
}

void RecordingKeys::start()
{
    qApp->installEventFilter(this);
    source_.start();
}

void RecordingKeys::stopTelling() { source_.stop(); }

void RecordingKeys::stop()
{
    source_.stop();
    qApp->removeEventFilter(this);
}

// The source reads what comes to the window; this takes it from the widgets.
bool RecordingKeys::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        break;
    case QEvent::ContextMenu: // of the menu key
        if (static_cast<QContextMenuEvent *>(event)->reason() != QContextMenuEvent::Keyboard)
            return false;
        break;
    default:
        return false;
    }
    if (!watched->isWidgetType() || static_cast<QWidget *>(watched)->window() != page_->window())
        return false;
    event->accept();
    return true;
}
