// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpgradePage: what an upgrade reads from the settings page and shows there. Main thread.
#pragma once

#include <QString>

class QWidget;

class UpgradePage
{
public:
    // The dialog and the notices open over the middle of it.
    virtual QWidget *place() = 0;
    // The version that the page shows: label_5 of the receiver, label_7 of the mouse.
    virtual QString shownVersion(int target) const = 0;
    // The mark beside that version, toolButton_2 or toolButton_3: the target cannot be upgraded now.
    virtual void showMark(int target, bool shown) = 0;
    // Receive_2's picture: "WaitUpdate.png" while firmware waits, else "Confirm.png".
    virtual void showWaiting(bool waits) = 0;
    // Receive_2 says newTips: both targets run what the folder holds. SetVer() takes it back.
    virtual void showUpToDate() = 0;
    virtual bool isUpToDate() const = 0;

protected:
    ~UpgradePage() = default;
};
