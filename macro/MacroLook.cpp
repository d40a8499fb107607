// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MacroLook.h"

#include "device/DeviceState.h"
#include "device/hidusb/FlashDataMap.h"
#include "macro/ChoiceLabel.h"
#include "macro/MacroTexts.h"
#include "macro/RecordMark.h"
#include "macro/RowPainting.h"
#include "presentation/NamedWidgets.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "ui_Macro.h"

using namespace macro;
using namespace macrotexts;

namespace
{

constexpr int RecordFrameRadius = 12;
constexpr char WarningColor[] = "255,180,84";

} // namespace

void MacroLook::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("Macro"));
    const QString labelColor = style::color("LabelColor");
    form_.frameMacro->setStyleSheet(style::dialogBackground(folder, QStringLiteral("frameMacro")));
    form_.recordFrame->setStyleSheet(
        style::outline(QStringLiteral("recordFrame"), RecordMark::color(), RecordFrameRadius));
    for (QLabel *heading : {form_.label, form_.label_2, form_.label_3, form_.recordTitle, form_.cycleTitle})
        heading->setStyleSheet(style::heading());
    for (QLabel *hint : {form_.noMacros, form_.noEvents})
        hint->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    for (QLabel *text :
         {form_.AutoInsertDelayLabel, form_.ReUntilLabel, form_.ReUntilLooseLabel, form_.ReUntilClickLabel})
        text->setStyleSheet(style::caption());
    styleButtons(folder);
    for (QRadioButton *each : page_->findChildren<QRadioButton *>())
        each->setStyleSheet(style::radioButton(folder, labelColor));
    for (QSpinBox *each : {form_.DelayTime, form_.NumberEdit})
        each->setStyleSheet(style::spinBox(folder));
    for (QListWidget *list : std::initializer_list<QListWidget *>{form_.listWidgetHong, form_.listWidgetKey})
        list->setStyleSheet(style::listView());
    form_.listWidgetHong->setItemDelegate(new MacroDelegate(form_.listWidgetHong));
    form_.listWidgetKey->setItemDelegate(new EventDelegate(form_.listWidgetKey));
}

void MacroLook::styleButtons(const QString &folder)
{
    const QString ink = style::color("ButtonColor");
    const auto button = [&](QToolButton *each, const QString &stem) {
        each->setStyleSheet(style::textButton(folder, ink, stem) + style::textButtonOff(folder, stem));
    };
    for (QToolButton *each : {form_.NewHong, form_.DeleteHong})
        button(each, QStringLiteral("Third"));
    for (QToolButton *each : {form_.Amend, form_.DeleteKey})
        button(each, QStringLiteral("Half"));
    button(form_.StartRecord, QStringLiteral("Start"));
    button(form_.StopRecord, QStringLiteral("Stop"));
    button(form_.Save, QStringLiteral("Save"));
    button(form_.Discard, QStringLiteral("Discard"));
}

void MacroLook::setTexts(int language)
{
    for (const TextRow &row : WidgetTexts)
        if (const QString shown = text(row.key, language); !shown.isEmpty())
            page_->findChild<QWidget *>(QLatin1String(row.widget))->setProperty("text", shown);
    for (const auto *label : page_->findChildren<ChoiceLabel *>())
        label->buddy()->setAccessibleName(label->text());
    form_.recordMark->setText(text("Recording", language));
    form_.StartRecord->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_R)); // a text takes it away
    form_.StartRecord->setToolTip(QStringLiteral("%1 (%2)").arg(
        form_.StartRecord->text(), form_.StartRecord->shortcut().toString(QKeySequence::NativeText)));
    form_.StopRecord->setToolTip(text("StopByClick", language)); // no key reaches it
    nameWidgets(page_, language);
}

void MacroLook::show(const State &state)
{
    const rowediting::Summary &events = state.events;
    const QString count = form("EventCount", "%1/%2").arg(events.events).arg(MacroEventCount);
    form_.eventCount->setText(state.hasMacro ? count + QStringLiteral(" · ") + duration(events.milliseconds)
                                             : QString());
    const QString sheet = style::label(events.events > MacroEventCount ? QString::fromLatin1(WarningColor)
                                                                       : style::color("LinEditColorSecond"));
    if (form_.eventCount->styleSheet() != sheet)
        form_.eventCount->setStyleSheet(sheet);
    form_.noMacros->setVisible(form_.listWidgetHong->count() == 0);
    form_.noMacros->setText(text("NoMacros"));
    form_.noEvents->setVisible(form_.listWidgetKey->count() == 0);
    form_.noEvents->setText(text(!state.hasMacro      ? "NoMacroChosen"
                                 : MacroRecording     ? "PressKeys"
                                 : state.isUnreadable ? "MacroUnreadable"
                                                      : "NoEvents"));
    form_.Discard->setVisible(state.isUnsaved && !state.isLocked);
    showHint(events);
}

void MacroLook::showHint(const rowediting::Summary &events)
{
    QString hint;
    if (events.events > MacroEventCount)
        hint = form("TooManyEvents", "> %1").arg(MacroEventCount);
    else if (!events.held.isEmpty())
        hint = form("StillHeld", "%1").arg(events.held.join(QStringLiteral(", ")));
    form_.eventHint->setText(hint);
    form_.eventHint->setVisible(!MacroRecording);
}
