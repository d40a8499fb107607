// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SensorRate: the seven report rates. The panel remembers the last rate that the mouse took, and goes back
// to it when the mouse does not answer. Main thread.
#pragma once

#include <QFrame>
#include <array>
#include <memory>

class QToolButton;

namespace Ui
{
class SensorRate;
}

struct RateRow {
    uint8_t code; // FlashDataMap::ReportRate
    int hertz;
    int hidesModel; // 1: the sensor mode is fixed at this rate
};
// By the index of the button.
constexpr std::array<RateRow, 7> RateRows = {{
    {8, 125, 0},
    {4, 250, 0},
    {2, 500, 0},
    {1, 1000, 0},
    {16, 2000, 1},
    {32, 4000, 1},
    {64, 8000, 1},
}};
constexpr int Rate1000 = 3;

// Index into RateRows, or -1.
int rateIndexOf(int code);
// Which fast rates a kind of device can do: 0 none, 1 up to 4000, 2 up to 2000, 3 all; -1 for other kinds.
int rateLevelOf(int code);

class SensorRate : public QFrame
{
    Q_OBJECT

public:
    explicit SensorRate(QWidget *parent = nullptr);
    ~SensorRate() override;

    void SetRate(int index);
    void SetRateVisibility(int level);
    // An empty text leaves the one of the form.
    void setTitle(const QString &title);
    QToolButton *button(int index) const { return buttons_[std::size_t(index)]; }

public slots:
    void on_Button125HZ_clicked(bool checked) { choose(0, checked); }
    void on_Button250HZ_clicked(bool checked) { choose(1, checked); }
    void on_Button500HZ_clicked(bool checked) { choose(2, checked); }
    void on_Button1000HZ_clicked(bool checked) { choose(3, checked); }
    void on_Button2000HZ_clicked(bool checked) { choose(4, checked); }
    void on_Button4000HZ_clicked(bool checked) { choose(5, checked); }
    void on_Button8000HZ_clicked(bool checked) { choose(6, checked); }

private:
    void applyStyle();
    void choose(int index, bool checked);

    std::unique_ptr<Ui::SensorRate> ui;
    std::array<QToolButton *, RateRows.size()> buttons_;
    int lastIndex_ = Rate1000;
};
