// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/InsertionChoice.h"

#include "macro/MacroTexts.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"

#include <QKeyEvent>
#include <QListView>
#include <algorithm>

using namespace macrotexts;

namespace
{

// Those that choose nothing in a closed combo box.
constexpr Qt::Key HarmlessKeys[] = {Qt::Key_Space,  Qt::Key_F4,  Qt::Key_Enter,  Qt::Key_Return,
                                    Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Backtab};

} // namespace

InsertionChoice::InsertionChoice(MyConmboBox *box, QObject *parent) : QObject(parent), box_(box)
{
    for (std::size_t item = 0; item < std::size(Insertions); ++item)
        box_->addItem(QString());
    box_->installEventFilter(this);
}

void InsertionChoice::applyStyle()
{
    styleComboBox(box_, style::pictureFolder(QStringLiteral("Macro")));
    static_cast<QListView *>(box_->view())->setRowHidden(0, true);
}

void InsertionChoice::setTexts(int language)
{
    box_->setHint(text("ChooseInsertion", language));
    for (int item = 0; item < int(std::size(Insertions)); ++item)
        box_->setItemText(item, text(Insertions[item], language));
}

// Arrow keys, letters and the like would insert an event.
bool InsertionChoice::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || box_->view()->isVisible())
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down)
        box_->showPopup();
    return std::find(std::begin(HarmlessKeys), std::end(HarmlessKeys), key) == std::end(HarmlessKeys);
}
