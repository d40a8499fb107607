// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// InsertionChoice: the box from which an event is inserted. It stands on its first item, which inserts
// nothing and is not offered; a choice acts at once, so keys open the list in place of choosing. Main thread.
#pragma once

#include <QObject>

class MyConmboBox;

class InsertionChoice : public QObject
{
    Q_OBJECT

public:
    InsertionChoice(MyConmboBox *box, QObject *parent);

    void applyStyle();
    void setTexts(int language);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MyConmboBox *box_;
};
