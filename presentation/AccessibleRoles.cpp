// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/AccessibleRoles.h"

#include <QAccessibleWidget>
#include <QToolButton>
#include <QVariant>

namespace
{

bool hasRole(const QWidget *widget, const char *role)
{
    return widget->property("accessibleRole").toString() == QLatin1String(role);
}

// "&Save && close" is told as "Save & close".
QString withoutMnemonic(QString text)
{
    for (int i = text.indexOf(QLatin1Char('&')); i >= 0; i = text.indexOf(QLatin1Char('&'), i + 1))
        text.remove(i, 1);
    return text;
}

// A screen reader may ask for it before its owner has put it into a group, so the role is found at each
// question.
class ToolButtonInterface : public QAccessibleWidget
{
public:
    explicit ToolButtonInterface(QToolButton *button) : QAccessibleWidget(button) {}

    QAccessible::Role role() const override
    {
        if (!button()->isCheckable())
            return QAccessible::Button;
        const bool isChoice = button()->group() || button()->autoExclusive() || hasRole(button(), "choice");
        return isChoice ? QAccessible::RadioButton : QAccessible::CheckBox;
    }
    QString text(QAccessible::Text kind) const override
    {
        const QString given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? withoutMnemonic(button()->text()) : given;
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
        state.hasPopup = button()->menu() != nullptr;
        return state;
    }
    QStringList actionNames() const override
    {
        const QStringList others = QAccessibleWidget::actionNames();
        return button()->isEnabled() ? QStringList(clickAction()) + others : others;
    }
    void doAction(const QString &name) override
    {
        if (name == clickAction())
            button()->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QToolButton *button() const { return static_cast<QToolButton *>(widget()); }
    QString clickAction() const { return button()->isCheckable() ? toggleAction() : pressAction(); }
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    if (auto *button = qobject_cast<QToolButton *>(object))
        return new ToolButtonInterface(button);
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget && hasRole(widget, "grouping"))
        return new QAccessibleWidget(widget, QAccessible::Grouping);
    if (widget && hasRole(widget, "list"))
        return new QAccessibleWidget(widget, QAccessible::List);
    return nullptr; // the toolkit's own
}

} // namespace

void installAccessibleRoles() { QAccessible::installFactory(makeInterface); }
