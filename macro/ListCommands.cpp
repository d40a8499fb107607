// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/ListCommands.h"

#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"

#include <QKeyEvent>
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

void showListMenu(QListWidget *list, const QPoint &place, const std::vector<ListCommand> &commands)
{
    QMenu menu(list->parentWidget()); // the list has a style sheet of its own
    menu.setStyleSheet(menuStyle());
    menu.setFont(list->font());
    for (const ListCommand &command : commands)
        menu.addAction(command.text, command.run)->setShortcut(command.key);
    menu.exec(list->viewport()->mapToGlobal(place));
}

bool runListCommand(const QKeyEvent &event, const std::vector<ListCommand> &commands)
{
    const QKeySequence pressed(event.key() | int(event.modifiers() & ~Qt::KeypadModifier));
    for (const ListCommand &command : commands)
        if (!command.key.isEmpty() && command.key == pressed) {
            command.run();
            return true;
        }
    return false;
}
