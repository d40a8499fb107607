// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LedInfo: the receiver's three colour schemes in a dialog of their own, which nothing opens. Main thread;
// the emitting thread waits while SlotRGBValue() runs.
#pragma once

#include "device/hidusb/DeviceRecords.h"
#include "presentation/NoticeWindow.h"

class QFrame;
class QToolButton;
class SchemeChoice;

class LedInfo : public NoticeWindow
{
    Q_OBJECT

public:
    LedInfo();

public slots:
    void SlotRGBValue(DongleRGB *Rgb);
    void SlotAllLanguage(int index);
    void on_CloseButton_clicked();

private:
    void applyStyle();

    QFrame *frame_;
    QToolButton *close_;
    SchemeChoice *choice_;
};
