// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Advanced: the page of the settings that few people need. Main thread.
#pragma once

#include "presentation/PageSurface.h"

class Advanced : public PageSurface
{
    Q_OBJECT

public:
    explicit Advanced(QWidget *parent = nullptr);
};
