// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macro: the page of the macros. Main thread.
#pragma once

#include "presentation/PageSurface.h"

class Macro : public PageSurface
{
    Q_OBJECT

public:
    explicit Macro(QWidget *parent = nullptr);
};
