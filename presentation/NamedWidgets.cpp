// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/NamedWidgets.h"

#include "presentation/language/LanguageTables.h"

#include <QComboBox>
#include <QLabel>

namespace
{

constexpr char NameKey[] = "nameKey";

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
    nameControl(widget, name);
    if (tipIsName)
        widget->setToolTip(name);
}

// Nobody sees it: where a caption is shown, it may be in another panel and hold more than the name.
QLabel *labelOf(QComboBox *box)
{
    const QString labelName = box->objectName() + QStringLiteral("Name");
    auto *label = box->parentWidget()->findChild<QLabel *>(labelName, Qt::FindDirectChildrenOnly);
    if (!label) {
        label = new QLabel(box->parentWidget());
        label->setObjectName(labelName);
        label->setBuddy(box);
        label->hide();
    }
    return label;
}

} // namespace

void nameControl(QWidget *control, const QString &name)
{
    control->setAccessibleName(name);
    auto *box = qobject_cast<QComboBox *>(control);
    if (box && box->parentWidget())
        labelOf(box)->setText(name);
}

void nameWidgets(QWidget *root, int language)
{
    const QList<QWidget *> widgets = root->findChildren<QWidget *>() << root;
    for (QWidget *widget : widgets)
        if (widget->dynamicPropertyNames().contains(
                NameKey)) // a widget without would be asked for all it has
            nameWidget(widget, widget->property(NameKey).toString().split(QLatin1Char(' ')), language);
}
