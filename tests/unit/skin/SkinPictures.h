// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rendered pictures, as their tests read them.
#pragma once

#include <QImage>

inline const QString Pictures = QLatin1String(SKIN_PICTURES "/");

inline QImage picture(const QString &name)
{
    return QImage(Pictures + name).convertToFormat(QImage::Format_ARGB32);
}
