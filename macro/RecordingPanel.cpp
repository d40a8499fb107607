// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/RecordingPanel.h"

#include <QWidget>

namespace
{

void enable(const QList<QWidget *> &widgets, bool enabled)
{
    for (QWidget *each : widgets)
        each->setEnabled(enabled);
}

} // namespace

RecordingPanel::RecordingPanel(Widgets widgetsOfPage) : widgets_(std::move(widgetsOfPage)) {}

bool RecordingPanel::isLocked() const { return !widgets_.stop->isHidden(); }

void RecordingPanel::showSigns(bool shown)
{
    widgets_.frame->setVisible(shown);
    widgets_.mark->setVisible(shown);
}

void RecordingPanel::showRunning()
{
    enable(widgets_.choices, false);
    enable(widgets_.selecting, false);
    widgets_.start->hide();
    widgets_.stop->show();
    showSigns(true);
}

void RecordingPanel::showFull() { showSigns(false); }

void RecordingPanel::showEnded(Ending ending)
{
    if (ending == Ending::Stopped)
        enable(widgets_.choices, true);
    enable(widgets_.selecting, true);
    widgets_.stop->hide();
    widgets_.start->show();
    showSigns(false);
}
