// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/ListMenu.h"

#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"

#include <QListWidget>
#include <QMenu>

static QString menuStyle()
{
    return QStringLiteral("QMenu{border: 1px solid %1;padding: 4px;background-color: rgb(%2);color: rgb(%3);}"
                          "QMenu::item{padding: 6px 22px;min-width: 130px;border-radius: 4px;}"
                          "QMenu::item:selected{background-color: rgb(%4);color: rgb(%2);}")
        .arg(style::outlineColor().name(), style::color("ComboxBackGroundColor"), style::color("LabelColor"),
             style::color("ComboxSelectColor"));
}

void showListMenu(QListWidget *list, const QPoint &place, const std::vector<ListMenuEntry> &entries)
{
    QMenu menu(list->parentWidget()); // the list has a style sheet of its own
    menu.setStyleSheet(menuStyle());
    menu.setFont(list->font());
    for (const ListMenuEntry &entry : entries)
        menu.addAction(entry.text, entry.run)->setShortcut(entry.key);
    menu.exec(list->viewport()->mapToGlobal(place));
}
