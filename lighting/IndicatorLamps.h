// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// IndicatorLamps: what each of the receiver's three lamps tells, and the legend of their colours. They are
// the receiver's own setting and work without the mouse. Main thread.
#pragma once

#include "device/hidusb/DeviceRecords.h"
#include "lighting/GroupHeading.h"

#include <QWidget>
#include <array>

class QComboBox;
class QLabel;

class IndicatorLamps : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Count = 3;
    static constexpr QSize Size{800, 136};

    explicit IndicatorLamps(QWidget *parent);
    void applyStyle();
    void setTexts(int language);

    // Asks the receiver and shows its answer; without one, what was read before stays.
    void read();
    void notRead() { known_ = reset_ = false; } // what is shown stays, and a choice reads the record first
    bool isKnown() const { return known_; }     // by the last read
    void forget();                              // the record is that of another receiver
    void reset();
    void change(int lamp, int index); // what the slots of the page do

private:
    void buildLegend();
    bool fetch();
    bool prepare(int lamp, int index);
    void accept();
    void show(int lamp, int index);

    GroupHeading heading_;
    QLabel *tips_;
    std::array<QLabel *, Count> captions_{};
    std::array<QComboBox *, Count> boxes_{};
    std::array<QLabel *, Count> lamps_{};
    std::array<QLabel *, Count> meanings_{};
    DongleIndicator DongleIndicator_{};
    bool known_ = false;                // the last read got the record
    bool reset_ = false;                // since the last read: a refused choice goes back to the first item
    std::array<int, Count> accepted_{}; // the items that a refused choice goes back to
};
