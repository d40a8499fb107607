// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// GroupKey: asks for a combination of at most three keys. Modifiers come from the check boxes, the others
// from the keyboard. Main thread.
#pragma once

#include "presentation/dialogs/KeyDialog.h"

#include <QElapsedTimer>
#include <memory>

namespace Ui
{
class GroupKey;
}

class GroupKey : public KeyDialog
{
    Q_OBJECT

public:
    GroupKey();
    ~GroupKey() override;

    // Names joined with "+"; empty when nothing was chosen.
    QString text() const { return combination_; }

public slots:
    void UpdateCapslockTip(int keyCode, bool downOrUp, bool aotu) override;

public:
    // Not declared as a slot again: connectSlotsByName() would connect the button twice.
    void on_NewHong_clicked() override;

protected:
    // Milliseconds since the entry was begun.
    virtual qint64 entryAge() const { return GroupTimer_.elapsed(); }

private:
    void beginOrExpire();
    void add(int keyCode, const QString &name);
    QStringList modifiers() const;

    std::unique_ptr<Ui::GroupKey> ui;
    QString combination_;
    int LastGroupKey_ = -1;
    int PlusCount_ = 0;
    bool FirstGroupKey_ = true;
    QElapsedTimer GroupTimer_;
};
