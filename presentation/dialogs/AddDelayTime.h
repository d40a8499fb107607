// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// AddDelayTime: asks for a delay. Main thread.
#pragma once

#include "presentation/dialogs/InputDialog.h"

#include <memory>

namespace Ui
{
class AddDelayTime;
}

class AddDelayTime : public InputDialog
{
    Q_OBJECT

public:
    AddDelayTime();
    ~AddDelayTime() override;

    // 10 to 65,535.
    int milliseconds() const;

private:
    std::unique_ptr<Ui::AddDelayTime> ui;
};
