// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SchemeChoice: the three colour schemes of the receiver, of which it shows one. Main thread.
#pragma once

#include "device/hidusb/DeviceRecords.h"
#include "lighting/GroupHeading.h"

#include <QWidget>
#include <array>

class QAbstractButton;
class QButtonGroup;
class QTextEdit;

class SchemeChoice : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Count = 3;
    static constexpr QSize Size{800, 154};

    explicit SchemeChoice(QWidget *parent);
    void applyStyle();
    void setTexts(int language);

    // Shows the record, which later choices change; it lives until the process ends. A scheme that is none of
    // the three checks none.
    void setRecord(DongleRGB *record);
    // Checks none when the last read of the receiver got no record.
    void dropUnread();
    void change(int scheme, bool checked); // 1 to 3: what the slots of the page do

private:
    void show(int scheme);
    bool write(int scheme);

    GroupHeading heading_;
    QButtonGroup *group_;
    std::array<QAbstractButton *, Count> buttons_{};
    std::array<QTextEdit *, Count> descriptions_{};
    DongleRGB nothingRead_{};
    DongleRGB *record_ = &nothingRead_;
    int shown_ = 0; // what a refused choice goes back to: a read may have changed the record unannounced
};
