// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/FormSetting.h"

FormSetting::FormSetting(QWidget *parent)
    : PageSurface(QStringLiteral("FormSetting"), QStringLiteral("FormSetting"), parent)
{
}
