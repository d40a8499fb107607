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

    // What the dialog begins with: an interval of 10 to 255 and 0 to 3 shots, 0 for as long as the button
    // is held. Others are brought into range.
    void setValues(int interval, int count);
    int interval() const;
    int count() const;

private:
    std::unique_ptr<Ui::FireKey> ui;
};
