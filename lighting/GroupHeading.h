// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// GroupHeading: the mark and the title at the top of a group of the page. Main thread.
#pragma once

#include <QString>

class QLabel;
class QWidget;

class GroupHeading
{
public:
    // At the upper left of `group`; `name` is the title's object name.
    GroupHeading(QWidget *group, const QString &name);
    void applyStyle() const;
    void setText(const QString &text) const; // an empty one leaves what there is

private:
    QLabel *mark_;
    QLabel *title_;
};
