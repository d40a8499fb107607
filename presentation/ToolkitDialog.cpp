// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ToolkitDialog.h"

#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

void styleToolkitDialog(QDialog *dialog)
{
    const QString sheet = style::toolkitDialog(style::pictureFolder(QStringLiteral("WarningDialog")));
    dialog->setStyleSheet(sheet);
    for (const QDialogButtonBox *box : dialog->findChildren<QDialogButtonBox *>())
        for (QAbstractButton *button : box->buttons()) {
            button->setIcon(QIcon()); // the program's other buttons have none
            // A box on a page with a sheet sets its own style on its buttons, and the dialog's sheet no
            // longer applies to them.
            button->setStyleSheet(sheet);
        }
    passWheels(dialog);
}
