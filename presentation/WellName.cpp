// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/WellName.h"

#include <QVariant>

WellName::WellName(QWidget *well, const QString &caption, int rows, ColorAt colorAt)
    : QObject(well), well_(well), caption_(caption), rows_(rows), colorAt_(colorAt)
{
    well->setProperty("accessibleRole", QStringLiteral("list"));
    // The field's class is the toolkit's own, so its signal is known by name only.
    connect(well, SIGNAL(currentChanged(int, int)), this, SLOT(tell(int, int)));
}

void WellName::tell(int row, int column)
{
    const QColor color = colorAt_(row + column * rows_);
    well_->setAccessibleName(QStringLiteral("%1: %2").arg(caption_, color.name().toUpper()));
}
