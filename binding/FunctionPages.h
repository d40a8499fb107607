// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FunctionPages: the widgets that offer the actions: the list of functions, which covers the list of buttons,
// and the panels beside it. It makes them from the table of actions; the pages of two stacks own them. It
// shows and checks widgets; the binding page decides what a click does. Main thread.
#pragma once

#include "binding/actions/ActionTable.h"

#include <QObject>
#include <QStringList>
#include <map>

class ActionButton;
class QButtonGroup;
class QGridLayout;
class QLabel;
class QScrollArea;
class QStackedWidget;
class QToolButton;
class QWidget;

namespace binding
{
struct DecodedBinding;
}

class FunctionPages : public QObject
{
    Q_OBJECT

public:
    FunctionPages(QStackedWidget *functions, QStackedWidget *panels);

    void setLanguage(int index);

    ActionButton *button(const binding::ActionRow &row) const { return buttons_.at(&row); }
    QToolButton *backButton() const { return back_; }
    void setTitle(const QString &text);

    binding::Panel panel() const;
    void showPanel(binding::Panel panel);
    // Shows and checks the widgets of a stored action and unchecks all others.
    void preselect(const binding::DecodedBinding &decoded, const QString &macro);
    void clearDetails();
    // Keyboard focus: focusChosen() sets it to the checked function, focusPanel() to the panel beside it.
    void focusChosen();
    void focusPanel();

    // Returns the buttons that were made; none when the same names show already.
    QList<ActionButton *> setMacros(const QStringList &names);
    bool hasMacros() const { return !macros_.isEmpty(); }

signals:
    void chosen(const binding::ActionRow &row);

private:
    QWidget *page(binding::Panel panel) const;
    void addFunctions();
    void addPanel(binding::Panel panel);
    void addMacroPanel();
    ActionButton *addAction(const binding::ActionRow &row, QWidget *parent);
    ActionButton *addMacro(const QString &name, int place);
    void stylePanel(QWidget *page);

    QStackedWidget *functionStack_;
    QStackedWidget *panelStack_;
    QButtonGroup *functionGroup_;
    QButtonGroup *detailGroup_;
    std::map<const binding::ActionRow *, ActionButton *> buttons_;
    std::map<binding::Panel, QLabel *> titles_;
    QLabel *title_;
    QToolButton *back_;
    QScrollArea *macroArea_ = nullptr;
    QGridLayout *macroGrid_ = nullptr;
    QList<ActionButton *> macros_;
    QStringList macroNames_;
    bool macrosStyled_ = false;
};
