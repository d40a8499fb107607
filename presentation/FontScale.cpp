// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/FontScale.h"

#include <QFont>
#include <QToolTip>
#include <QWidget>
#include <utility>
#include <vector>

namespace
{

using ScaledFonts = std::vector<std::pair<QWidget *, QFont>>;

// Reads all fonts before it sets the first, because setting a parent's font changes its children's.
void collect(QWidget *widget, double factor, ScaledFonts *fonts)
{
    QFont font = widget->font();
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
        fonts->emplace_back(widget, font);
    }
    for (QObject *child : widget->children()) {
        if (auto *childWidget = qobject_cast<QWidget *>(child))
            collect(childWidget, factor, fonts);
    }
}

} // namespace

void scaleFonts(QWidget *root, double factor)
{
    // On most screens nothing changes, and setting each font again would be a tenth of the start.
    if (factor == 1) {
        if (const auto *box = root->findChild<QWidget *>(QStringLiteral("NoApear")))
            QToolTip::setFont(box->font());
        return;
    }
    ScaledFonts fonts;
    collect(root, factor, &fonts);
    for (const auto &[widget, font] : fonts) {
        if (widget->objectName() != QLatin1String("Receive_2"))
            widget->setFont(font);
        if (widget->objectName() == QLatin1String("NoApear"))
            QToolTip::setFont(font);
    }
}
