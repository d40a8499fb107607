// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/Tip.h"

#include "presentation/StyleSheets.h"

#include <QLabel>

void styleTip(QLabel *tip)
{
    tip->setStyleSheet(
        style::labelPicture(style::pictureFolder(QStringLiteral("Sensor")), QStringLiteral("Tips.png")));
}

void setTip(QWidget *tip, QWidget *control, const QString &text)
{
    // Only rich text is wrapped.
    tip->setToolTip(text.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()));
    control->setAccessibleDescription(text);
}
