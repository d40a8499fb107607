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
        return kind == QAccessible::Name && given.isEmpty() ? button()->text() : given;
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
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
    const bool isGroup = widget && hasRole(widget, "grouping");
    return isGroup ? new QAccessibleWidget(widget, QAccessible::Grouping)
                   : nullptr; // null: the toolkit's own
}

} // namespace

void installAccessibleRoles() { QAccessible::installFactory(makeInterface); }
