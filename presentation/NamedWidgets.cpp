// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/NamedWidgets.h"

#include "presentation/language/LanguageTables.h"

#include <QWidget>

namespace
{

void nameWidget(QWidget *widget, const QStringList &place, int language)
{
    const auto row = std::find_if(
        language::Sections.begin(), language::Sections.end(),
        [&place](const language::SectionRow &each) { return place.value(0) == QLatin1String(each.name); });
    if (row == language::Sections.end())
        return;
    const auto section = language::Section(row - language::Sections.begin());
    QString name = language::text(section, place.value(1), language);
    if (name.isEmpty())
        return;
    if (place.size() > 2)
        name = name.arg(place.at(2));
    const bool tipIsName = !widget->toolTip().isEmpty() && widget->toolTip() == widget->accessibleName();
    widget->setAccessibleName(name);
    if (tipIsName)
        widget->setToolTip(name);
}

} // namespace

void nameWidgets(QWidget *root, int language)
{
    const QList<QWidget *> widgets = root->findChildren<QWidget *>() << root;
    for (QWidget *widget : widgets)
        if (const QVariant key = widget->property("nameKey"); key.isValid())
            nameWidget(widget, key.toString().split(QLatin1Char(' ')), language);
}
