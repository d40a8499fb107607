// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/Advanced.h"

Advanced::Advanced(QWidget *parent)
    : PageSurface(QStringLiteral("Advanced"), QStringLiteral("Advanced"), parent)
{
}
