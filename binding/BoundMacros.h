// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// BoundMacros: the macros that the mouse's buttons play. Each button has a copy of its own, so what is saved
// or renamed goes to every button whose caption names the macro. Main thread.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QString>
#include <optional>
#include <vector>

class ButtonBindings;
class ButtonList;
class QEventLoop;
class QWidget;

class BoundMacros
{
public:
    // `page`: under the notices. All of them outlive this.
    BoundMacros(ButtonBindings &bindings, ButtonList &list, QWidget *page);

    // The number of the cycle mode in the first line of the macro's file; empty without a file.
    static QString cycleOf(const QString &name);
    // None while the mouse is off line and for a macro without a readable file.
    static std::optional<MacroBlock> blockOf(const QString &name);

    // Whether the mouse took it. A macro with more events than a mouse holds is bound with the first ones.
    bool write(int button, const QString &name);
    std::vector<int> buttonsWithCaption(const QString &text) const;

    // Waits, with the event loop running, and has each button that plays the macro sent anew.
    void sendRowsLater(const QString &name);
    void sendCycle(const QString &name);
    // Sends what waits at once, with its cycle mode.
    void sendWaiting();
    void rename(const QString &before, const QString &name);

private:
    struct Waiting {
        QString name;
        QEventLoop *waiter;
    };

    void sendRows(const QEventLoop *waiter);

    ButtonBindings &bindings_;
    ButtonList &list_;
    QWidget *page_;
    std::vector<Waiting> waiting_; // saved, and not sent yet
};
