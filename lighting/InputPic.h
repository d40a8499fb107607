// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// InputPicA and InputPicB: the pictures and the brightness of a mouse's screen. Their controls reach no
// device yet, and nothing opens them. InputPicA sets the screen's clock every ten seconds once it is told to.
// Main thread.
#pragma once

#include "presentation/NoticeWindow.h"

#include <QTimer>
#include <memory>

namespace Ui
{
class InputPic;
}

class InputPic : public NoticeWindow
{
    Q_OBJECT

public:
    ~InputPic() override;

public slots:
    void SlotAllLanguage(int) {} // the tables have no text of the form
    void on_CloseButton_clicked();

protected:
    InputPic();

private:
    void applyStyle();

    const QString PicturePath_;
    std::unique_ptr<Ui::InputPic> ui;
};

class InputPicA : public InputPic
{
    Q_OBJECT

public:
    InputPicA();
    // Nothing in the program calls it.
    void StartScreenClock(bool on);
    const QTimer &eraseTimer() const { return EraseTimer_; }
    void setBusy(bool busy) { Busy_ = busy; } // something else is being sent to the screen

public slots:
    void onEraseChipTimeTimer();
    void on_Input_clicked() {}

private:
    bool Busy_ = false;
    int TickCount_ = 0;
    QTimer EraseTimer_;
};

class InputPicB : public InputPic
{
    Q_OBJECT
};
