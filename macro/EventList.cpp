// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/EventList.h"

#include "device/DeviceState.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

using namespace macro;

namespace
{

EventList::Sort sortOf(const MacroRow &row)
{
    return row.isDelay() ? EventList::Delay : row.isRelease() ? EventList::Release : EventList::Press;
}

constexpr const char *IconFiles[] = {"MacroDown.png", "MacroUp.png", "MacroTime.png"}; // by Sort
constexpr const char *SpokenKeys[] = {"EventPressed", "EventReleased", "EventDelay"};  // by Sort

// Reads itself out: the text alone does not say whether the key goes down or up.
class EventItem : public QListWidgetItem
{
public:
    EventItem(const MacroRow &row, const QIcon &icon)
        : QListWidgetItem(icon, row.text, nullptr, row.type), sort_(sortOf(row))
    {
        setFlags(flags() & ~Qt::ItemIsDropEnabled); // what is dragged goes between the rows
    }

    QVariant data(int role) const override
    {
        if (role == EventList::SortRole)
            return int(sort_);
        if (role == Qt::AccessibleTextRole)
            return spoken();
        return QListWidgetItem::data(role);
    }

private:
    QString spoken() const
    {
        const QString form = language::text(language::Section::macro, SpokenKeys[sort_], LanguageIndex);
        const QString plain = sort_ == EventList::Delay ? QString::number(delayOf({text(), 0})) : text();
        return form.isEmpty() ? text() : form.arg(plain);
    }

    const EventList::Sort sort_;
};

} // namespace

EventList::EventList(QListWidget *list) : list_(list) {}

// A start has no row yet, so the pictures are loaded with the first one.
const QIcon &EventList::iconOf(Sort sort)
{
    QIcon &icon = icons_[sort];
    if (icon.isNull())
        icon = QIcon(style::pictureFolder(QStringLiteral("Macro")) + QLatin1String(IconFiles[sort]));
    return icon;
}

// A list that gets the keyboard focus has a current item, which is not selected by that.
int EventList::selectedRow() const
{
    const QList<QListWidgetItem *> selected = list_->selectedItems();
    return selected.isEmpty() ? rowediting::NoRow : list_->row(selected.first());
}

MacroRow EventList::rowAt(int row) const
{
    const QListWidgetItem *item = list_->item(row);
    return {item->text(), item->type()};
}

MacroRows EventList::rows() const
{
    MacroRows rows;
    rows.reserve(list_->count());
    for (int row = 0; row < list_->count(); ++row)
        rows << rowAt(row);
    return rows;
}

QListWidgetItem *EventList::itemOf(const MacroRow &row) { return new EventItem(row, iconOf(sortOf(row))); }

void EventList::show(const MacroRows &rows, int selected)
{
    const int shorter = qMin(rows.size(), list_->count());
    int head = 0;
    while (head < shorter && rowAt(head) == rows[head])
        ++head;
    int tail = 0;
    while (tail < shorter - head && rowAt(list_->count() - 1 - tail) == rows[rows.size() - 1 - tail])
        ++tail;
    while (list_->count() > head + tail)
        delete list_->takeItem(head);
    for (int row = head; row < rows.size() - tail; ++row)
        list_->insertItem(row, itemOf(rows[row]));
    select(selected);
}

void EventList::append(const MacroRow &row) { list_->addItem(itemOf(row)); }

void EventList::select(int row)
{
    if (row == rowediting::NoRow)
        list_->clearSelection();
    list_->setCurrentRow(row);
}
