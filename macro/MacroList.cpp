// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MacroList.h"

#include "device/DeviceState.h"
#include "macro/RowPainting.h"
#include "presentation/language/LanguageTables.h"

namespace
{

// Reads itself out with what its dot says.
class MacroItem : public QListWidgetItem
{
public:
    using QListWidgetItem::QListWidgetItem;

    QVariant data(int role) const override
    {
        if (role != Qt::AccessibleTextRole || !data(MacroDelegate::UnsavedRole).toBool())
            return QListWidgetItem::data(role);
        const QString form = language::text(language::Section::macro, "UnsavedName", LanguageIndex);
        return form.isEmpty() ? text() : form.arg(text());
    }
};

} // namespace

QStringList MacroList::names() const
{
    QStringList names;
    for (int row = 0; row < list_->count(); ++row)
        names << list_->item(row)->text();
    return names;
}

int MacroList::rowOf(const QString &name) const
{
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->text() == name)
            return row;
    return -1;
}

// A list that gets the keyboard focus has a current item, which is not selected by that.
QString MacroList::selected() const
{
    const QList<QListWidgetItem *> selected = list_->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

void MacroList::show(const QStringList &names)
{
    if (names == this->names())
        return;
    const QString chosen = selected();
    QStringList unsaved;
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->data(MacroDelegate::UnsavedRole).toBool())
            unsaved << list_->item(row)->text();
    list_->clear();
    for (const QString &name : names)
        append(name);
    for (const QString &name : qAsConst(unsaved)) {
        if (!contains(name))
            append(name);
        setUnsaved(name, true);
    }
    select(chosen);
}

void MacroList::append(const QString &name) { list_->addItem(new MacroItem(name)); }

void MacroList::insertBehindSelected(const QString &name)
{
    const int selected = rowOf(this->selected());
    list_->insertItem(selected < 0 ? list_->count() : selected + 1, new MacroItem(name));
}

void MacroList::rename(const QString &name, const QString &newName)
{
    if (QListWidgetItem *item = list_->item(rowOf(name)))
        item->setText(newName);
}

void MacroList::select(const QString &name)
{
    const int row = name.isEmpty() ? -1 : rowOf(name);
    if (row < 0)
        list_->clearSelection();
    list_->setCurrentRow(row);
}

void MacroList::setUnsaved(const QString &name, bool unsaved)
{
    if (QListWidgetItem *item = list_->item(rowOf(name)))
        item->setData(MacroDelegate::UnsavedRole, unsaved);
}
