// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ProfileBox: the choice of the mouse's profile in a combo box that the page owns. It publishes the name of
// the shown profile on the hub and restores the profile in use when the mouse does not answer. Main thread.
#pragma once

#include <QString>

class QComboBox;

class ProfileBox
{
public:
    explicit ProfileBox(QComboBox *box) : box_(box) {}

    // The mouse's report: number of profiles, index in use, whether it may change. A count of 0 shows one
    // profile.
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
    int used_ = 0;   // the last index that the mouse reported or was sent
};
