// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// addKey: asks for one key, modifiers included; the last key pressed or released counts. Main thread.
#pragma once

#include "presentation/dialogs/KeyDialog.h"

#include <memory>

namespace Ui
{
class addKey;
}

class addKey : public KeyDialog
{
    Q_OBJECT

public:
    addKey();
    ~addKey() override;

    // Empty without a key event.
    QString keyName() const { return name_; }

public slots:
    void UpdateCapslockTip(int keyCode, bool downOrUp, bool aotu) override;

protected:
    void fieldLeft() override;

private:
    std::unique_ptr<Ui::addKey> ui;
    QString name_;
    QString before_; // the previous name
};
