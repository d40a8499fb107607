// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FireKey: asks for the interval and the number of shots of a fire key. Main thread.
#pragma once

#include "presentation/dialogs/InputDialog.h"

#include <memory>

namespace Ui
{
class FireKey;
}

class FireKey : public InputDialog
{
    Q_OBJECT

public:
    FireKey();
    ~FireKey() override;

    // Initial values, clamped: interval 10 to 255 ms, count 0 to 3 shots, where 0 fires while the button is
    // held.
    void setValues(int interval, int count);
    int interval() const;
    int count() const;

private:
    std::unique_ptr<Ui::FireKey> ui;
};
