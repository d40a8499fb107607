// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The part of Buttoninterface that turns clicks into bindings.
#include "binding/ActionButton.h"
#include "binding/ButtonList.h"
#include "binding/Buttoninterface.h"
#include "binding/FunctionPages.h"
#include "binding/actions/BindingDecoder.h"
#include "binding/actions/BindingEncoder.h"
#include "binding/actions/DefaultActions.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"
#include "presentation/dialogs/FireKey.h"
#include "presentation/dialogs/GroupKey.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Buttoninterface.h"

#include <QAbstractButton>
#include <QKeyEvent>

using namespace binding;

namespace
{

constexpr QPoint NoticeOffset{-100, -50};
constexpr int FireButton = 10; // has the dialog's first values by default

QString leftText() { return actionText(ActionRows.front(), LanguageIndex); }

// Whose keyboard it is: a control that goes out of sight must not keep it.
bool hasFocusIn(const QWidget *widget)
{
    const QWidget *focus = widget->window()->focusWidget();
    return focus && widget->isAncestorOf(focus);
}

bool isMacro(const FlashDataMap &map, int button) { return map.KeyBindings[button].Class == MacroClass; }

} // namespace

// ---- Buttons ------------------------------------------------------------------------------------

// The mouse must keep a left button, or the user has none to go on with.
void Buttoninterface::openRow(std::size_t row)
{
    const QString left = leftText();
    if (list_->isShown(row) && list_->caption(row)->text() == left && list_->countOf(left) == 1) {
        showButtons();
        functions_->showPanel(Panel::Debounce);
        list_->uncheckAll();
        LeftButtonOnly notice;
        notice.openOver(this, NoticeOffset);
        return;
    }
    list_->check(row);
    preselect(ButtonRows[row].button);
    showFunctions();
}

void Buttoninterface::pointAt(std::size_t row)
{
    CheckOnline();
    list_->check(row);
    list_->scrollTo(row);
}

void Buttoninterface::preselect(int button)
{
    if (button < 0 || button >= KeyClass_.size() || button >= KeyParamA_.size())
        return;
    const FlashDataMap record = DeviceRecord::copy();
    const uint8_t second = uint8_t(KeyParamB_.value(button));
    const KeyBinding binding{uint8_t(KeyClass_[button]), uint8_t(KeyParamA_[button]), second};
    functions_->preselect(decoded(button, binding, record), macroName(record.MacroBlocks[button]));
}

void Buttoninterface::showFunctions()
{
    const bool byKeyboard = hasFocusIn(ui->scrollArea_11);
    ui->stackedWidget->setCurrentWidget(ui->page_2);
    ui->stackedWidget->raise();
    ui->scrollArea_11->hide();
    nameChosenRow();
    if (byKeyboard)
        functions_->focusChosen();
}

void Buttoninterface::showButtons()
{
    const bool byKeyboard = hasFocusIn(ui->stackedWidget) || hasFocusIn(ui->stackedWidget_2);
    const bool wasOpen = ui->scrollArea_11->isHidden();
    ui->scrollArea_11->show();
    ui->stackedWidget->setCurrentWidget(ui->page);
    ui->scrollArea_11->raise();
    if (byKeyboard && wasOpen && list_->checkedRow() >= 0)
        list_->caption(std::size_t(list_->checkedRow()))->setFocus(Qt::TabFocusReason);
}

void Buttoninterface::leaveFunctions()
{
    showButtons();
    functions_->showPanel(Panel::Debounce);
}

// The toolkit's buttons know the space bar alone.
void Buttoninterface::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *const button = qobject_cast<QAbstractButton *>(focusWidget());
    if (event->key() == Qt::Key_Escape && ui->stackedWidget->currentWidget() == ui->page_2)
        leaveFunctions();
    else if (enter && button)
        button->click();
    else
        QWidget::keyPressEvent(event);
}

void Buttoninterface::nameChosenRow()
{
    const int row = list_->checkedRow();
    functions_->setTitle(row < 0 ? QString() : list_->caption(std::size_t(row))->accessibleName());
}

int Buttoninterface::chosenButton() const
{
    const int row = list_->checkedRow();
    return row < 0 ? -1 : ButtonRows[std::size_t(row)].button;
}

// ---- Functions ----------------------------------------------------------------------------------

void Buttoninterface::choose(const ActionRow &row)
{
    if (row.form == Form::Opener && row.shows != Panel::Macros)
        openPanel(row.shows);
    else if (row.form != Form::Fire)
        if (const auto action = encodeAction(row, sensor_))
            bindChosen(*action);
}

void Buttoninterface::openPanel(Panel panel)
{
    functions_->showPanel(panel);
    if (hasFocusIn(ui->stackedWidget))
        functions_->focusPanel();
}

void Buttoninterface::bindChosen(const EncodedAction &action)
{
    const int button = chosenButton();
    functions_->clearDetails();
    if (button >= 0)
        bind(button, action);
    leaveFunctions();
}

void Buttoninterface::on_DPI_6_clicked()
{
    const int button = chosenButton();
    if (!ButtonPageBusy && !CheckOnline()) {
        leaveFunctions();
        return;
    }
    functions_->showPanel(Panel::Debounce);
    const KeyBinding first = builtInAction(FireButton)->binding;
    const bool isFire = KeyClass_.value(button, -1) == FireKeyClass;
    FireKey dialog;
    dialog.setValues(isFire ? KeyParamA_.value(button) : first.First,
                     isFire ? KeyParamB_.value(button) : first.Second);
    dialog.openOver(this, InputDialogOffset);
    if (!dialog.isAccepted()) {
        preselect(button);
        return;
    }
    FireInterval_ = dialog.interval();
    FireCount_ = dialog.count();
    bindChosen(encodeFireKey(FireInterval_, FireCount_));
}

void Buttoninterface::on_DPI_8_clicked()
{
    functions_->showPanel(Panel::Debounce);
    GroupKey dialog;
    dialog.openOver(this, InputDialogOffset);
    if (dialog.isAccepted())
        bindChosen(encodeCombination(dialog.text()));
    else
        preselect(chosenButton());
}

bool Buttoninterface::bind(int button, const EncodedAction &action)
{
    const bool taken = action.sequence ? SetKeySequence(button, action.binding, *action.sequence)
                                       : SetBinding(button, action.binding);
    if (!taken)
        return false;
    RecordBinding(button, action.binding);
    ShowBinding(button, action.binding.Class, action.binding.First, action.binding.Second,
                DeviceRecord::copy());
    return true;
}

bool Buttoninterface::SetMediaAction(int button, uint8_t code)
{
    const ActionRow *row = mediaAction(code);
    return row && bind(button, encodeMedia(row->value));
}

bool Buttoninterface::SetComboAction(int button, const QString &keys)
{
    return bind(button, encodeCombination(keys));
}

void Buttoninterface::RecordBinding(int button, const KeyBinding &binding)
{
    const std::pair<QList<int> &, int> entries[] = {
        {KeyClass_, binding.Class}, {KeyParamA_, binding.First}, {KeyParamB_, binding.Second}};
    for (const auto &[values, value] : entries) {
        while (values.size() <= button)
            values << 0;
        values[button] = value;
    }
}

// ---- Macros -------------------------------------------------------------------------------------

// Those that the mouse holds, since a macro stands in the slot of the button that plays it.
void Buttoninterface::showMacros(const FlashDataMap &map)
{
    QStringList names;
    for (int k = 0; k < qMin(KeyClass_.size(), ButtonCount); ++k)
        if (const QString name = macroName(map.MacroBlocks[k]);
            isMacro(map, k) && !name.isEmpty() && !names.contains(name))
            names << name;
    names.sort(Qt::CaseInsensitive);
    functions_->setMacros(names);
}

void Buttoninterface::SlotAddMacroButton() { showMacros(DeviceRecord::copy()); }

void Buttoninterface::on_DPI_10_clicked()
{
    if (functions_->hasMacros()) {
        openPanel(Panel::Macros);
        return;
    }
    functions_->showPanel(Panel::Debounce);
    MakeMacro notice;
    notice.openOver(this, NoticeOffset);
}

void Buttoninterface::slotButtonClicked(const QString &macro)
{
    const int button = chosenButton();
    functions_->clearDetails();
    const FlashDataMap record = DeviceRecord::copy();
    for (int k = 0; button >= 0 && k < ButtonCount; ++k) {
        if (!isMacro(record, k) || macroName(record.MacroBlocks[k]) != macro)
            continue;
        const KeyBinding binding = macroBinding(button, record.KeyBindings[k].Second);
        if (SetMacroBinding(button, binding, record.MacroBlocks[k])) {
            RecordBinding(button, binding);
            ShowBinding(button, binding.Class, binding.First, binding.Second, DeviceRecord::copy());
        }
        break;
    }
    leaveFunctions();
}
