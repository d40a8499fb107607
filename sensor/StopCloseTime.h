// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// StopCloseTime: after how long without movement the mouse sleeps. The panel remembers the last time that
// the mouse took, and goes back to it when the mouse does not answer. Main thread.
#pragma once

#include <QFrame>
#include <array>
#include <memory>

class QComboBox;

namespace Ui
{
class StopCloseTime;
}

// FlashDataMap::StopCloseTime in tens of seconds, by index. The box ends before the last three.
constexpr std::array<uint8_t, 11> SleepCodes = {1, 3, 6, 12, 18, 30, 60, 90, 180, 210, 240};
constexpr int SleepItems = 8;

// Index of an item of the box, or -1.
int sleepIndexOf(uint8_t code);

class StopCloseTime : public QFrame
{
    Q_OBJECT

public:
    explicit StopCloseTime(QWidget *parent = nullptr);
    ~StopCloseTime() override;

    // Silent; an index that the box does not have leaves it as it is.
    void SetStopClose(int index);
    // An empty text leaves the item as it is.
    void setItemText(int index, const QString &text);
    QComboBox *box() const;

public slots:
    void on_StopClose_activated(int index);

private:
    std::unique_ptr<Ui::StopCloseTime> ui;
    int lastIndex_ = 0;
};
