// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/EventEditor.h"

#include "keys/KeyVocabulary.h"
#include "presentation/dialogs/AddDelayTime.h"
#include "presentation/dialogs/addKey.h"

using namespace macro;
using macrotexts::Insertion;

namespace
{

// The name of a key; empty is an answer as well.
std::optional<QString> askKey(QWidget *page)
{
    addKey dialog;
    dialog.openOver(page, InputDialogOffset);
    return dialog.isAccepted() ? std::make_optional(dialog.keyName()) : std::nullopt;
}

std::optional<int> askDelay(QWidget *page)
{
    AddDelayTime dialog;
    dialog.openOver(page, InputDialogOffset);
    return dialog.isAccepted() ? std::make_optional(dialog.milliseconds()) : std::nullopt;
}

} // namespace

EventEditor::EventEditor(EventList &events, std::function<bool()> hasMacro, QWidget *page)
    : QObject(page), events_(events), hasMacro_(std::move(hasMacro)), page_(page)
{
}

template <typename Edit> bool EventEditor::edit(Edit edit)
{
    rowediting::Editing list = events_.editing();
    if (!edit(list))
        return false;
    events_.show(list.rows, list.selected);
    return true;
}

void EventEditor::insert(const macrotexts::InsertionRow &what)
{
    if (what.what == Insertion::Press || what.what == Insertion::Release) {
        const std::optional<QString> key = askKey(page_);
        if (key && hasMacro_())
            insertKey(*key, what.what == Insertion::Press);
    } else if (what.what == Insertion::Delay) {
        const std::optional<int> delay = askDelay(page_);
        if (delay && hasMacro_() && events_.selectedRow() != rowediting::NoRow)
            insertDelay(*delay);
    } else if (what.what == Insertion::Click && hasMacro_()) {
        insertClick(MouseNameFromBit(what.bit));
    }
}

void EventEditor::insertKey(const QString &name, bool press)
{
    if (edit([&](rowediting::Editing &list) { return rowediting::insertKey(list, name, press); }))
        emit changed(true);
}

void EventEditor::insertClick(const QString &name)
{
    if (edit([&](rowediting::Editing &list) { return rowediting::insertClick(list, name); }))
        emit changed(true);
}

void EventEditor::insertDelay(int milliseconds)
{
    if (edit([&](rowediting::Editing &list) { return rowediting::insertDelay(list, milliseconds); }))
        emit changed(true);
}

void EventEditor::amend()
{
    const int selected = events_.selectedRow();
    if (selected == rowediting::NoRow)
        return;
    std::optional<QString> text;
    if (!events_.rows()[selected].isDelay())
        text = askKey(page_);
    else if (const std::optional<int> delay = askDelay(page_))
        text = delayRow(quint32(*delay)).text;
    if (const int row = events_.selectedRow(); text && row != rowediting::NoRow)
        events_.setText(row, *text);
}

// Clearing a short list is no change that a mouse is told of.
void EventEditor::remove()
{
    const bool isShort = events_.rows().size() < rowediting::ShortList;
    if (edit(rowediting::remove))
        emit changed(!isShort);
}

void EventEditor::move(int steps)
{
    if (edit([steps](rowediting::Editing &list) { return rowediting::move(list, steps); }))
        emit changed(true);
}
