// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macro: the page of the macros. It also sets the translated names of the mouse buttons, which the key
// vocabulary shares with the other pages. Main thread.
#pragma once

#include "presentation/PageSurface.h"

class Macro : public PageSurface
{
    Q_OBJECT

public:
    explicit Macro(QWidget *parent = nullptr);

public slots:
    void SlotAllLanguage(int index);
};
