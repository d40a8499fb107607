// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DebounceTime: for how many milliseconds a button's contact may bounce, 0 to 15. The panel remembers the
// last time that the mouse took, goes back to it when the mouse does not answer, and warns of a short one.
// Main thread.
#pragma once

#include <QFrame>
#include <memory>

namespace Ui
{
class DebounceTime;
}

constexpr int DebounceItems = 16;
constexpr int SafeDebounce = 8; // milliseconds: below it a worn switch may double-click

class DebounceTime : public QFrame
{
    Q_OBJECT

public:
    explicit DebounceTime(QWidget *parent = nullptr);
    ~DebounceTime() override;

    // index: milliseconds. Writes nothing; the hub is told what is shown.
    void SetDebounce(int index);
    // The host's own slot of this name calls it.
    void SlotAllLanguage(int index);

public slots:
    void on_Debunce_currentIndexChanged(int index);

private:
    void showIndex(int index);
    void tellShown();
    void warnOfDoubleClicks();

    std::unique_ptr<Ui::DebounceTime> ui;
    int lastIndex_ = 0;
};
