// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ProfileBox: the choice of the mouse's profile in a combo box that the page owns. It names the shown profile
// to the hub and goes back to the mouse's own when the mouse does not answer. Main thread.
#pragma once

#include <QString>

class QComboBox;

class ProfileBox
{
public:
    explicit ProfileBox(QComboBox *box) : box_(box) {}

    // What the mouse reports: how many profiles, which one is in use, whether it may change. A mouse without
    // profiles shows one.
    void show(int count, int selected, bool enabled);
    // The user chose a profile.
    void choose(int index);
    void setLanguage(int index);

private:
    void fill(int count);
    void showUsed();
    void publish() const;

    QComboBox *box_;
    QString prefix_; // of each profile's name
    int used_ = 0;   // by the mouse, as far as it is known
};
