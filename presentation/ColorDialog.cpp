// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/ColorDialog.h"

#include "presentation/StyleSheets.h"
#include "presentation/ToolkitDialog.h"

#include <QColorDialog>
#include <QLabel>

namespace
{

// Tells a screen reader the colour on which the arrow keys stand in one of the dialog's two fields of
// colours, which the toolkit only draws.
class WellName : public QObject
{
    Q_OBJECT

public:
    using ColorAt = QColor (*)(int index);

    // `colorAt` counts down the columns of `rows` colours.
    WellName(QWidget *well, const QString &caption, int rows, ColorAt colorAt)
        : QObject(well), well_(well), caption_(caption), rows_(rows), colorAt_(colorAt)
    {
        well->setProperty("accessibleRole", QStringLiteral("list"));
        connect(well, SIGNAL(currentChanged(int, int)), this, SLOT(tell(int, int)));
    }

private slots:
    void tell(int row, int column)
    {
        const QColor color = colorAt_(row + column * rows_);
        well_->setAccessibleName(QStringLiteral("%1: %2").arg(caption_, color.name().toUpper()));
    }

private:
    QWidget *const well_;
    const QString caption_;
    const int rows_;
    const ColorAt colorAt_;
};

void nameWells(const QColorDialog &dialog)
{
    struct Well {
        int rows;
        WellName::ColorAt colorAt;
    };
    static constexpr Well Wells[] = {{6, QColorDialog::standardColor}, {2, QColorDialog::customColor}};
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

#include "ColorDialog.moc"
