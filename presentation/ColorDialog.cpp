// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ColorDialog.h"

#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QPushButton>

QColorDialog *makeColorDialog(QWidget *parent)
{
    auto *const dialog = new QColorDialog(parent);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    for (QAbstractButton *button : dialog->findChild<QDialogButtonBox *>()->buttons())
        button->setIcon(QIcon()); // the program's other buttons have no icons
    // The fields of colours draw bevels of these.
    QPalette colors = dialog->palette();
    for (const QPalette::ColorRole bevel :
         {QPalette::Light, QPalette::Midlight, QPalette::Mid, QPalette::Dark, QPalette::Shadow})
        colors.setColor(bevel, style::outlineColor());
    dialog->setPalette(colors);
    dialog->setStyleSheet(style::colorDialog(style::pictureFolder(QStringLiteral("WarningDialog"))));
    passWheels(dialog);
    return dialog;
}
