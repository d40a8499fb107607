// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macro: the page of the macros. It gives the mouse buttons their names, which the macros' events have in
// common with whatever shows keys. Main thread.
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
