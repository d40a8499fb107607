// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ColorDialog.h"

#include "presentation/StyleSheets.h"
#include "presentation/ToolkitDialog.h"
#include "presentation/WellName.h"

#include <QColorDialog>
#include <QLabel>

namespace
{

// As the toolkit lays out its fields of colors.
constexpr int StandardRows = 6;
constexpr int CustomRows = 2;

void nameWells(const QColorDialog &dialog)
{
    struct Well {
        int rows;
        WellName::ColorAt colorAt;
    };
    static constexpr Well Wells[] = {{StandardRows, QColorDialog::standardColor},
                                     {CustomRows, QColorDialog::customColor}};
    std::size_t index = 0;
    for (const QLabel *caption : dialog.findChildren<QLabel *>()) {
        QWidget *const well = caption->buddy();
        if (!well || !well->inherits("QWellArray") || index == std::size(Wells))
            continue;
        const QString text = caption->text().remove(QLatin1Char('&'));
        new WellName(well, text, Wells[index].rows, Wells[index].colorAt);
        ++index;
    }
}

} // namespace

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
    nameWells(*dialog);
    styleToolkitDialog(dialog);
    return dialog;
}
