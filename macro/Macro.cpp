// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/Macro.h"

Macro::Macro(QWidget *parent) : PageSurface(QStringLiteral("Macro"), QStringLiteral("Macro"), parent) {}
