// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ColorDialog.h"

#include "presentation/StyleSheets.h"
#include "presentation/ToolkitDialog.h"

#include <QColorDialog>

QColorDialog *makeColorDialog(QWidget *parent)
{
    auto *const dialog = new QColorDialog(parent);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    // The fields of colours draw bevels of these.
    QPalette colors = dialog->palette();
    for (const QPalette::ColorRole bevel :
         {QPalette::Light, QPalette::Midlight, QPalette::Mid, QPalette::Dark, QPalette::Shadow})
        colors.setColor(bevel, style::outlineColor());
    dialog->setPalette(colors);
    styleToolkitDialog(dialog);
    return dialog;
}
