// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/SkinPalette.h"

#include "presentation/ComboList.h"
#include "presentation/FocusRing.h"
#include "presentation/SkinStyle.h"
#include "presentation/StyleSheets.h"
#include "presentation/ToolTips.h"

#include <QApplication>
#include <QComboBox>
#include <QListView>
#include <QPalette>
#include <QPixmap>
#include <QToolTip>
#include <cmath>

namespace
{

constexpr int VisibleItems = 5;

} // namespace

QColor skinColor(const char *key)
{
    const QStringList parts = style::color(key).split(QLatin1Char(','));
    return parts.size() == 3 ? QColor(parts[0].toInt(), parts[1].toInt(), parts[2].toInt()) : QColor();
}

QPixmap skinPicture(const QString &path, const QWidget *on)
{
    const QString doublePath = path.left(path.size() - 4) + QStringLiteral("@2x.png");
    QPixmap twice = on->devicePixelRatioF() > 1 ? QPixmap(doublePath) : QPixmap();
    if (twice.isNull())
        return QPixmap(path);
    twice.setDevicePixelRatio(2);
    return twice;
}

void applySkin()
{
    const QColor ground = skinColor("ComboxBackGroundColor");
    const QColor ink = skinColor("LabelColor");
    QApplication::setStyle(new SkinStyle);
    QPalette palette(ink, ground.lighter(120), ground.lighter(150), ground.darker(150), ground.lighter(110),
                     ink, Qt::white, ground.darker(120), ground);
    palette.setColor(QPalette::Highlight, skinColor("ComboxSelectColor"));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::ToolTipText, ink);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
    FocusRing::install(ink); // the accent marks what is checked
    ToolTips::install();
}

void styleComboBox(QComboBox *box, const QString &folder)
{
    const QString selectColor = style::color("ComboxSelectColor");
    auto *list = new QListView(box);
    list->setStyleSheet(style::comboList(selectColor));
    // Set before the view: QComboBox asks its style only once whether the list gets a scroll bar.
    box->setStyleSheet(style::comboBox(folder, style::color("ComboxTextColor"), selectColor));
    box->setView(list);
    list->setFont(box->font()); // a window of its own, it would have the desktop's
    box->setMaxVisibleItems(VisibleItems);
    frameComboList(box, folder + QStringLiteral("ComboboxTextBack.png"));
}

// Built row by row, because a polygon region loses half a pixel at the right and bottom edges. Pixels that
// the curve touches stay in the region, so that the background's outline is complete.
void roundCorners(QWidget *window, int radius)
{
    const int width = window->width();
    const int height = window->height();
    QRegion region(0, radius, width, height - 2 * radius);
    for (int row = 0; row < radius; ++row) {
        const double rise = radius - row - 0.5;
        const int inset = int(radius - std::sqrt(radius * radius - rise * rise));
        region += QRect(inset, row, width - 2 * inset, 1);
        region += QRect(inset, height - 1 - row, width - 2 * inset, 1);
    }
    window->setMask(region);
}
