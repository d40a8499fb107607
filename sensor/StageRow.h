// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// StageRow: the eight stages as they are seen: a button with the DPI above a bar in the stage's colour. The
// selected stage is larger than the others and grows from its place in the form. A widget's sheet is set
// only when its look changes, since setting one costs more than all else here. Owns no widget; stages are
// counted from 0 and must be below 8. Main thread.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QRect>
#include <QSignalBlocker>
#include <QString>
#include <array>
#include <vector>

class QAbstractButton;
class QColor;

constexpr bool isStage(int stage) { return stage >= 0 && stage < DpiStageLimit; }
// "r,g,b"
QString listedColor(const QColor &color);

class StageRow
{
public:
    using Widgets = std::array<QAbstractButton *, DpiStageLimit>;

    StageRow(const Widgets &stageButtons, const Widgets &colorBars);
    // Before the first call, no style sheet is set.
    void applyStyle();

    void setText(int stage, const QString &text);
    QString text(int stage) const;
    // The number on the button.
    int number(int stage) const { return text(stage).toInt(); }
    // As listedColor() gives it.
    void setColor(int stage, const QString &color);
    QString color(int stage) const { return StageColor_[std::size_t(stage)]; }
    void swap(int one, int other);

    void selectButton(int stage, bool selected);
    void selectBar(int stage, bool selected);
    // The looks of the whole row; -1: all plain.
    void selectOnly(int stage);
    // The stage over which the marker is dragged looks like one about to be selected.
    static constexpr int NoTarget = -1;
    void setTarget(int stage);
    void show(int lastStage);
    // The Tab key comes to this stage alone; the arrow keys go on from there.
    void stopTabAt(int stage);

    QAbstractButton *button(int stage) const { return buttons_[std::size_t(stage)]; }
    QAbstractButton *bar(int stage) const { return bars_[std::size_t(stage)]; }
    // -1: none
    int checkedButton() const;
    int checkedBar() const;
    // No stage signals while it lives.
    std::vector<QSignalBlocker> silence() const;

private:
    void styleButton(int stage);
    void styleBar(int stage);

    Widgets buttons_, bars_;
    std::array<QRect, DpiStageLimit> BigRect_, BarRect_;
    std::array<QString, DpiStageLimit> StageColor_;
    std::array<bool, DpiStageLimit> buttonSelected_{}, barSelected_{};
    int target_ = NoTarget;
    QString folder_, ink_; // of the pictures, of the numbers; empty before applyStyle()
};
