// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/BoundMacros.h"

#include "binding/ActionButton.h"
#include "binding/ButtonBindings.h"
#include "binding/ButtonList.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "environment/MacroName.h"
#include "hub/PostMsg.h"
#include "macro/missed/MissedNames.h"
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "presentation/LossWatch.h"
#include "presentation/Notices.h"

#include <QEventLoop>
#include <QTimer>
#include <algorithm>

using namespace binding;

namespace
{

constexpr int RowsWait = 1500; // milliseconds from a macro's save to the mouse's copies

// By a name that is cut in the mouse, its buttons would not be found again.
bool mayBeBound(const QString &name) { return MouseOnline && isMacroName(name); }

} // namespace

BoundMacros::BoundMacros(ButtonBindings &bindings, ButtonList &list, QWidget *page)
    : bindings_(bindings), list_(list), page_(page)
{
}

QString BoundMacros::cycleOf(const QString &name)
{
    const std::optional<macro::MacroText> file = macro::loadMacro(name);
    return file && file->cycle ? QString::number(*file->cycle) : QString();
}

std::optional<MacroBlock> BoundMacros::blockOf(const QString &name)
{
    const std::optional<macro::MacroText> file = macro::loadMacro(name);
    if (!mayBeBound(name) || !file)
        return std::nullopt;
    return macro::boundBlock(name, file->rows);
}

// The limit is told of a mouse that answers only, because the off-line notice would follow.
bool BoundMacros::write(int button, const QString &name)
{
    const std::optional<macro::MacroText> file = macro::loadMacro(name);
    if (!mayBeBound(name) || !file)
        return false;
    if (!macro::fitsBlock(file->rows)) {
        if (!CheckOnline())
            return false;
        notice::ask<KeyNumberLimit>(page_, BindingNoticeOffset);
    }
    return bindings_.writeMacro(button, macro::cycleByte(file->cycle.value_or(0)),
                                macro::boundBlock(name, file->rows));
}

std::vector<int> BoundMacros::buttonsWithCaption(const QString &text) const
{
    std::vector<int> buttons;
    for (std::size_t row = 0; row < ButtonRows.size(); ++row)
        // What a mouse before had on the buttons that this one lacks is still there, hidden.
        if (ButtonRows[row].button < bindings_.count() && list_.caption(row)->text().remove(QChar()) == text)
            buttons.push_back(ButtonRows[row].button);
    return buttons;
}

void BoundMacros::sendRowsLater(const QString &name)
{
    QEventLoop waiter;
    waiting_.push_back({name, &waiter});
    QTimer::singleShot(RowsWait, Qt::PreciseTimer, &waiter, [&] { sendRows(&waiter); });
    waiter.exec();
}

// Each macro is sent when its own wait ends, although the waits are nested.
void BoundMacros::sendRows(const QEventLoop *waiter)
{
    const auto isOf = [waiter](const Waiting &each) { return each.waiter == waiter; };
    const auto found = std::find_if(waiting_.begin(), waiting_.end(), isOf);
    if (found == waiting_.end())
        return;
    const Waiting macro = *found;
    waiting_.erase(found);
    const LossWatch watch;
    for (const int button : buttonsWithCaption(macroCaption(macro.name, LanguageIndex)))
        if (!watch.isLost()) // the others would only repeat the notice
            emit PostMsg::instance()->SigMacroDownLoadData(macro.name, button);
    macro.waiter->quit();
}

void BoundMacros::sendWaiting()
{
    while (!waiting_.empty()) {
        const Waiting macro = waiting_.front();
        sendRows(macro.waiter);
        sendCycle(macro.name);
    }
}

void BoundMacros::sendCycle(const QString &name)
{
    const uint8_t cycle = macro::cycleByte(cycleOf(name).toInt());
    for (const int button : buttonsWithCaption(macroCaption(name, LanguageIndex)))
        if (!bindings_.writeMacroCycle(button, cycle))
            return;
}

void BoundMacros::rename(const QString &before, const QString &name)
{
    for (Waiting &each : waiting_)
        if (each.name == before)
            each.name = name;
    bool taken = true;
    for (const int button : buttonsWithCaption(macroCaption(before, LanguageIndex))) {
        list_.setText(button, macroCaption(name, LanguageIndex));
        taken = taken && bindings_.writeMacroName(button, name); // a second one would repeat the notice
        if (!taken)
            macro::setMissedName(button, before, name);
    }
}
