// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/Buttoninterface.h"

#include "binding/ActionButton.h"
#include "binding/BoundMacros.h"
#include "binding/ButtonList.h"
#include "binding/FunctionPages.h"
#include "binding/ProfileBox.h"
#include "binding/actions/DefaultActions.h"
#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageCache.h"
#include "device/Worker.h"
#include "device/WriteFamily.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "macro/missed/MissedNames.h"
#include "macro/store/MacroFolder.h"
#include "presentation/DeviceOperations.h"
#include "presentation/FirstShow.h"
#include "presentation/Motion.h"
#include "presentation/Notices.h"
#include "presentation/PageSurface.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/dialogs/FireKey.h"
#include "presentation/dialogs/GroupKey.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Buttoninterface.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>

using namespace binding;

namespace
{

constexpr int SleepUnitSeconds = 10;
constexpr int DefaultSleepSeconds = 60;
constexpr int FireButton = 10; // its default binding holds the dialog's initial values

// mid: the model's.
QString pictureOf(int mid) { return QStringLiteral("mouse%1.png").arg(mid - FirstModelIndex); }

QString leftText() { return actionText(ActionRows.front(), LanguageIndex); }

// Whether a control inside the widget has the keyboard focus, which must move before the widget is hidden.
bool hasFocusIn(const QWidget *widget)
{
    const QWidget *focus = widget->window()->focusWidget();
    return focus && widget->isAncestorOf(focus);
}

} // namespace

Buttoninterface::Buttoninterface(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::Buttoninterface>())
    , fireInterval_(builtInAction(FireButton)->binding.First)
    , fireCount_(builtInAction(FireButton)->binding.Second)
    , worker_(std::make_unique<Worker>())
{
    ui->setupUi(this);
    list_ = new ButtonList(ui->scrollArea_11, ui->widget);
    profiles_ = std::make_unique<ProfileBox>(ui->ProjectChoose);
    functions_ = new FunctionPages(ui->stackedWidget, ui->stackedWidget_2);
    macros_ = std::make_unique<BoundMacros>(bindings_, *list_, this);
    QMetaObject::connectSlotsByName(this); // after the widgets that are made here exist
    connect(list_, &ButtonList::checkedChanged, this, &Buttoninterface::nameChosenRow);
    connect(functions_, &FunctionPages::chosen, this, &Buttoninterface::choose);
    connect(functions_->backButton(), &QToolButton::clicked, this, &Buttoninterface::leaveFunctions);
    onFirstShow(this, [this] { applyStyle(); });
    showButtons();
    arrangeTabs();
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

// shutDown() runs the event loop until the pass has ended, because the pass may be delivering to this thread.
Buttoninterface::~Buttoninterface()
{
    worker_->shutDown();
    worker_.reset();
    StopUsbChanged();
}

void Buttoninterface::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("Buttoninterface"));
    const QString button = style::textButton(folder, style::color("ButtonColor"), QStringLiteral("Button"));
    ui->frameButton->setStyleSheet(style::dialogBackground(folder, QStringLiteral("frameButton")));
    ui->label_8->setStyleSheet(style::label(style::color("LabelColor")));
    ui->label_3->setStyleSheet(style::heading());
    ui->DebounceNote->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    for (QToolButton *each : {ui->Reset, ui->ImportData, ui->OutputData})
        each->setStyleSheet(button);
    styleComboBox(ui->ProjectChoose, folder);
    // A sheet on the area would style all rows anew.
    ui->scrollArea_11->verticalScrollBar()->setStyleSheet(style::scrollArea());
    ui->scrollArea_11->viewport()->setAutoFillBackground(false);
    list_->applyStyle(folder);
    styled_ = true;
    stylePicture();
}

void Buttoninterface::loadPictures(const DeviceAllInfo &device) const
{
    const QString folder = style::pictureFolder(QStringLiteral("Buttoninterface"));
    const QString mouse = pictureOf(DeviceCatalogue().number(device.DriveIndex, "MID"));
    for (const QString &file : {QStringLiteral("BackGround.png"), mouse})
        skinPicture(folder + file, this);
}

void Buttoninterface::stylePicture()
{
    const QString folder = style::pictureFolder(QStringLiteral("Buttoninterface"));
    ui->widget->setStyleSheet(style::areaPicture(folder, ui->widget->objectName(), picture_));
}

// Tab order: the top line, the markers on the picture, the list, the panel below.
void Buttoninterface::arrangeTabs()
{
    QList<QWidget *> order = {ui->ProjectChoose, ui->OutputData, ui->ImportData, ui->Reset};
    for (std::size_t row = 0; row < ButtonRows.size(); ++row)
        order << list_->marker(row);
    for (std::size_t row = 0; row < ButtonRows.size(); ++row)
        order << list_->caption(row);
    order << functions_->backButton();
    for (const ActionRow &row : ActionRows)
        order << functions_->button(row);
    order << ui->DebunceButton->findChild<QWidget *>(QStringLiteral("Debunce"));
    for (int i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void Buttoninterface::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigUpDataLightUIButton(FlashDataMap)), this,
            SLOT(SlotUpDataButtonUIButton(FlashDataMap)), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataButtonUIC(FlashDataMap)), this, SLOT(SlotUpDataButtonUIB(FlashDataMap)));
    connect(hub, SIGNAL(SigUpDataConfigUI(int, int, bool)), this, SLOT(SlotUpDataConfigUI(int, int, bool)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormResetButton()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigMouseIndex(int)), this, SLOT(SlotMouseIndex(int)));
    connect(hub, SIGNAL(SigAddMacroButton()), this, SLOT(SlotAddMacroButton()));
    connect(hub, SIGNAL(SigUpDataMacro(QString, int)), this, SLOT(SlotUpDataMacro(QString, int)));
    connect(hub, SIGNAL(SigMacroRename(QString, QString)), this, SLOT(SlotMacroRename(QString, QString)));
    connect(hub, SIGNAL(SigDeleteMacroButton(QString)), this, SLOT(SlotDeleteMacroButton(QString)));
    connect(hub, SIGNAL(SigMainPageChange()), this, SLOT(sendWaitingMacros()));
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    // The worker was made before and thus has taken the selected device when this page's slot runs.
    connect(hub, SIGNAL(SigSelectMouseInfo(DeviceAllInfo)), this, SLOT(SlotSelectMouseInfo(DeviceAllInfo)));
}

// ---- Showing a record ---------------------------------------------------------------------------

void Buttoninterface::SlotUpDataButtonUIButton(FlashDataMap DataMap)
{
    ButtonPageLoaded = false;
    showRecord(DataMap);
    ButtonPageLoaded = true;
}

void Buttoninterface::SlotUpDataButtonUIB(FlashDataMap DataMap) { showRecord(DataMap); }

void Buttoninterface::showRecord(const FlashDataMap &map)
{
    const PageFilling filling(ButtonPageBusy);
    bindings_.readSensor();
    emit PostMsg::instance()->SigLightToFrom(map.StopCloseTime * SleepUnitSeconds);
    showBindings(map);
    ui->DebunceButton->SetDebounce(map.DebounceTime);
}

void Buttoninterface::showBindings(const FlashDataMap &map)
{
    const int count = DeviceCatalogue().number(SelectedDevice::info().DriveIndex, "KeyNumber");
    list_->setButtonCount(count);
    bindings_.load(map, count);
    const FlashDataMap before = DeviceRecord::copy();
    for (int k = 0; k < bindings_.count(); ++k)
        ShowBinding(k, map.KeyBindings[k].Class, map.KeyBindings[k].First, map.KeyBindings[k].Second, map);
    bindings_.takeSent(before); // macros that the mouse had missed
    SlotAddMacroButton();
    nameChosenRow();
}

void Buttoninterface::ShowBinding(int button, int actionClass, int first, int second,
                                  const FlashDataMap &record)
{
    if (!ButtonList::rowOf(button))
        return;
    showCaption(button, {uint8_t(actionClass), uint8_t(first), uint8_t(second)}, record);
    if (actionClass == MacroClass)
        emit PostMsg::instance()->SigButtonToMacro(record, button);
}

void Buttoninterface::showCaption(int button, const KeyBinding &binding, const FlashDataMap &record)
{
    if (const auto caption = bindings_.decoded(button, binding, record).caption)
        list_->setText(button, *caption);
}

// Until another device has been read, its rows show what a mouse does when it is new. The same device keeps
// its rows: while it stays off line, no pass shows its cached image again.
void Buttoninterface::SlotSelectMouseInfo(const DeviceAllInfo &SelectInfo)
{
    const bool isShown = SelectInfo.DevicePath == shown_.DevicePath && SelectInfo.Cid == shown_.Cid &&
                         SelectInfo.Mid == shown_.Mid;
    shown_ = SelectInfo;
    if (isShown)
        return;
    const PageFilling filling(ButtonPageBusy);
    bindings_.readSensor();
    list_->uncheckAll();
    leaveFunctions();
    showBindings(ButtonBindings::builtIn());
    profiles_->show(0, 0, false);
}

void Buttoninterface::SlotFormResetButton()
{
    const PageFilling filling(ButtonPageBusy);
    showButtons();
    functions_->showPanel(Panel::Debounce);
    bindings_.loadBuiltIn();
    ui->DebunceButton->SetDebounce(0);
    emit PostMsg::instance()->SigLightToFrom(DefaultSleepSeconds);
}

void Buttoninterface::SlotMouseIndex(int index)
{
    picture_ = pictureOf(index);
    if (styled_)
        stylePicture();
    list_->setModel(index - FirstModelIndex);
    list_->scrollToTop();
    // Another device was chosen; the open row belonged to the previous one.
    list_->uncheckAll();
    leaveFunctions();
}

// ---- Profiles and the whole device ---------------------------------------------------------------

void Buttoninterface::SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable)
{
    profiles_->show(ToTalItem, SelectIndex, ItemEnable);
}

void Buttoninterface::on_ProjectChoose_activated(int index)
{
    sendWaitingMacros(); // saved for the buttons of the profile that is left
    profiles_->choose(index);
}

void Buttoninterface::on_Reset_clicked() { runFactoryReset(this); }

void Buttoninterface::on_ImportData_clicked() { runImageImport(this); }

void Buttoninterface::on_OutputData_clicked() { runImageExport(this); }

// ---- Buttons ------------------------------------------------------------------------------------

bool Buttoninterface::isLastLeft(std::size_t row) const
{
    const QString left = leftText();
    return list_->isShown(row) && list_->caption(row)->text() == left && list_->countOf(left) == 1;
}

// Without a left button the user could not click any more.
void Buttoninterface::refuseLastLeft()
{
    leaveFunctions();
    list_->uncheckAll();
    notice::ask<LeftButtonOnly>(this, BindingNoticeOffset);
}

void Buttoninterface::openRow(std::size_t row)
{
    if (isLastLeft(row)) {
        refuseLastLeft();
        return;
    }
    list_->check(row);
    preselect(ButtonRows[row].button);
    showFunctions();
}

// A marker can be clicked while the functions are open; they then apply to the marker's row.
void Buttoninterface::pointAt(std::size_t row)
{
    CheckOnline();
    list_->check(row);
    list_->scrollTo(row);
    if (ui->stackedWidget->currentWidget() != ui->page_2)
        return;
    if (isLastLeft(row))
        leaveFunctions();
    else
        preselect(ButtonRows[row].button);
}

void Buttoninterface::preselect(int button)
{
    const std::optional<KeyBinding> binding = bindings_.at(button);
    if (!binding)
        return;
    const FlashDataMap &record = bindings_.record();
    functions_->preselect(bindings_.decoded(button, *binding, record), macro::macroName(record, button));
}

void Buttoninterface::showFunctions()
{
    const bool byKeyboard = hasFocusIn(ui->scrollArea_11);
    const SoftChange opens(ui->stackedWidget->parentWidget(), ui->stackedWidget->geometry());
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
    const SoftChange closes(ui->stackedWidget->parentWidget(),
                            wasOpen ? ui->stackedWidget->geometry() : QRect());
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

// Enter clicks as well; the toolkit's buttons react to the space bar only.
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
        if (const auto action = encodeAction(row, bindings_.sensor()))
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
    const std::optional<KeyBinding> bound = bindings_.at(button);
    const bool isFire = bound && bound->Class == FireKeyClass;
    const KeyBinding shown = isFire ? *bound : builtInAction(FireButton)->binding;
    FireKey dialog;
    dialog.setValues(shown.First, shown.Second);
    dialog.openOver(this, InputDialogOffset);
    if (!dialog.isAccepted()) {
        preselect(button);
        return;
    }
    fireInterval_ = dialog.interval();
    fireCount_ = dialog.count();
    bindChosen(encodeFireKey(fireInterval_, fireCount_));
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
    return bind(button, [&] { return bindings_.write(button, action); });
}

bool Buttoninterface::bind(int button, const std::function<bool()> &write)
{
    const std::optional<std::size_t> row = ButtonList::rowOf(button);
    if (!row)
        return false;
    // A caption can stand for a binding that this program does not know, so bindings count as well.
    if (isLastLeft(*row) || bindings_.isOnlyLeft(button)) {
        refuseLastLeft();
        return false;
    }
    if (!write())
        return false;
    showCaption(button, *bindings_.at(button), bindings_.record());
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

// ---- Macros -------------------------------------------------------------------------------------

void Buttoninterface::SlotAddMacroButton()
{
    for (ActionButton *each : functions_->setMacros(macro::macroNames()))
        connect(each, SIGNAL(clicked(bool)), this, SLOT(slotButtonClicked(bool)));
}

void Buttoninterface::on_DPI_10_clicked()
{
    SlotAddMacroButton(); // a file may have come or gone
    if (functions_->hasMacros()) {
        openPanel(Panel::Macros);
        return;
    }
    functions_->showPanel(Panel::Debounce);
    notice::ask<MakeMacro>(this, BindingNoticeOffset);
    preselect(chosenButton()); // the function was not chosen; only its panel stays closed
    functions_->showPanel(Panel::Debounce);
}

QString Buttoninterface::ReadCycle(const QString &name) const { return BoundMacros::cycleOf(name); }

std::optional<MacroBlock> Buttoninterface::BuildMacroBlock(const QString &name) const
{
    return BoundMacros::blockOf(name);
}

void Buttoninterface::slotButtonClicked(bool)
{
    const auto *const clicked = qobject_cast<const ActionButton *>(sender());
    const QString name = clicked ? clicked->text() : QString();
    const int button = chosenButton();
    functions_->clearDetails();
    if (button >= 0)
        bind(button, [&] { return macros_->write(button, name); });
    leaveFunctions();
}

void Buttoninterface::SlotUpDataMacro(const QString &MacroName, int index)
{
    index == 0 ? macros_->sendRowsLater(MacroName) : macros_->sendCycle(MacroName);
}

void Buttoninterface::sendWaitingMacros()
{
    const PageFilling filling(ButtonPageBusy); // nobody is there to wake the mouse up
    macros_->sendWaiting();
}

void Buttoninterface::SlotMacroRename(const QString &Rename, const QString &Name)
{
    macros_->rename(Rename, Name);
}

void Buttoninterface::SlotDeleteMacroButton(const QString &MacroName)
{
    for (const int button : macros_->buttonsWithCaption(MacroName)) {
        list_->check(*ButtonList::rowOf(button));
        if (!bindDefault(button))
            return;
        // The mouse gets this with the next record.
        DeviceRecord::edit([button](FlashDataMap &record) { record.KeySequences[button] = {}; });
    }
}

// The action of a button whose macro is gone. True as well for a model that leaves the button as it is.
bool Buttoninterface::bindDefault(int button)
{
    const int model = SelectedDevice::info().DriveIndex;
    const QByteArray key = keyParamName(button).toLatin1();
    const DefaultAction action =
        defaultAction(button, key.isEmpty() ? QStringList() : DeviceCatalogue().list(model, key.constData()));
    if (!action.action)
        return true;
    functions_->button(*action.action)->setChecked(true);
    if (action.action->form == Form::Combination)
        return bind(button, encodeCombination(action.keys));
    if (action.action->form == Form::Fire)
        return bind(button, encodeFireKey(fireInterval_, fireCount_));
    return bind(button, *encodeAction(*action.action, bindings_.sensor()));
}

// ---- Texts --------------------------------------------------------------------------------------

void Buttoninterface::SlotAllLanguage(int index)
{
    using language::Section;
    using language::text;
    ui->label_8->setText(text(Section::key, "configName", index));
    ui->OutputData->setText(text(Section::key, "Export", index));
    ui->ImportData->setText(text(Section::key, "Import", index));
    ui->Reset->setText(text(Section::Settings, "Restore", index));
    ui->label_3->setText(text(Section::key, "DebounceTime", index));
    ui->DebounceNote->setText(text(Section::key, "DialogDebounceTips", index));
    ui->DebunceButton->SlotAllLanguage(index);
    list_->renewNames();
    functions_->setLanguage(index);
    profiles_->setLanguage(index);
    // Captions are translated. The cached image stands in for a mouse that is off line, and without one the
    // bindings that show.
    FlashDataMap record = DeviceRecord::copy();
    if (!MouseOnline) {
        if (ImageCacheRead(SelectedDevice::cacheName(), &record))
            bindings_.putNamesOn(&record);
        else if (bindings_.count() > 0)
            record = bindings_.record();
        else
            return;
    }
    const PageFilling filling(ButtonPageBusy);
    showBindings(record);
}
