// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/DialogChange.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/SideBySide.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/MainThread.h"
#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
#include "presentation/LanguageBox.h"
#include "presentation/Notices.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/Languages.h"
#include "service/UpDateRepair.h"
#include "ui_DialogChange.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <algorithm>
#include <thread>

namespace
{

QPointer<DialogChange> thePage; // read on the main thread only

QString homeText(const char *key, int index) { return language::text(language::Section::home, key, index); }

} // namespace

DialogChange::DialogChange(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::DialogChange>())
    , pictures_(style::pictureFolder(QStringLiteral("DialogChange")))
    , board_((ui->setupUi(this), ui->stackedWidget), pictures_)
    , click_(this, attached_)
{
    applyStyle();
    connectSignals();
    showPrompt();
    ui->Repair->hide(); // until a search has looked for a failed upgrade
    ui->FindVer->hide();
    languagebox::fill(ui->comboBox);
    SlotAllLanguage(storedLanguage(UserStore::instance()));
    thePage = this;
    StartUsbChanged(&DialogChange::UsbChanged, UsbSettleMs);
}

DialogChange::~DialogChange() = default;

void DialogChange::applyStyle()
{
    const QString notices = style::pictureFolder(QStringLiteral("WarningDialog"));
    const QString labelSheet = style::label(style::color("LabelColor"));
    const auto confirm = [color = style::color("ButtonColor")](const QString &folder) {
        return style::textButton(folder, color, QStringLiteral("Confirm"));
    };
    ui->frameChange->setStyleSheet(style::windowBackground(pictures_, QStringLiteral("frameChange")));
    ui->MinButton->setStyleSheet(style::titleButton(pictures_, QStringLiteral("Min")));
    ui->CloseButton->setStyleSheet(style::titleButton(pictures_, QStringLiteral("Close")));
    setStyleSheetWhenShown(ui->LeftButton, style::arrow(pictures_, QStringLiteral("Left")));
    setStyleSheetWhenShown(ui->RightButton, style::arrow(pictures_, QStringLiteral("Right")));
    setStyleSheetWhenShown(ui->Repair, confirm(pictures_));
    // The first search has mostly ended before the first picture, and then nobody sees the prompt.
    onFirstPaint(ui->label, [this] {
        ui->label->setStyleSheet(style::labelPicture(pictures_, QStringLiteral("Prompt.png")));
    });
    ui->label_2->setStyleSheet(labelSheet);
    ui->label_3->setStyleSheet(labelSheet);
    styleComboBox(ui->comboBox, pictures_);
    setStyleSheetWhenShown(ui->FindVer, style::dialogBackground(notices, QStringLiteral("FindVer")));
    setStyleSheetWhenShown(ui->FindVerlaebl, labelSheet);
    setStyleSheetWhenShown(ui->CloseButton_2, style::titleButton(notices, QStringLiteral("Close")));
    setStyleSheetWhenShown(ui->NewHong, confirm(notices));
    setStyleSheetWhenShown(ui->NoApear, style::checkBox(pictures_, style::color("LabelColor")));
}

void DialogChange::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigLanguageSameA(int)), this, SLOT(SlotSameLanguageA(int)));
    connect(hub, SIGNAL(SigUpDateButton(bool)), this, SLOT(SlotUpDateButton(bool)));
    connect(hub, SIGNAL(SigEnterKey()), this, SLOT(SlotEnterKey()));
    connect(ui->permissionHint, &PermissionHint::permissionGranted, this, [this] {
        if (!isHidden())
            std::thread(&DialogChange::UsbChanged).detach();
    });
}

// ---- Search -------------------------------------------------------------------------------------

void DialogChange::UsbChanged()
{
    const DeviceScan scan = scanDevices();
    runOnMainThread([scan] {
        if (thePage)
            thePage->take(scan);
    });
    // The search may have waited seconds for a silent device, so the answers of the others may be outdated.
    std::vector<DeviceAllInfo> tiles = scan.tiles();
    sideBySide(tiles, [&scan](const DeviceAllInfo &device) { refreshShown(device, scan.generation); });
}

// Drops results while the device page shows, which has a watch of its own; the return to this page starts a
// search.
void DialogChange::take(const DeviceScan &scan)
{
    if (scan.generation < takenGeneration_ || isHidden())
        return;
    takenGeneration_ = scan.generation;
    ui->permissionHint->setNodes(scan.refused);
    SlotUpDateButton(RegistryStore::instance()
                         .value(registry::BaseGroup, QString::fromLatin1(registry::UpdateFailInfo))
                         .isEmpty());
    rebuild(scan);
    // What can be repaired depends on the attached devices.
    const UpDateRepair *const dialog = UpDateRepair::instance();
    if (dialog && dialog->isForRepair() && !UpdateBusy)
        checkRepair();
}

void DialogChange::rebuild(const DeviceScan &scan)
{
    std::vector<DeviceAllInfo> tiles = scan.devices;
    duplicates_ = scan.tally.settle(tiles, unknownIndex());
    attached_.set(scan.devices, std::move(tiles));
    setPromptText();
    if (!attached_.tiles().empty() && !duplicates_) {
        showCarousel();
        return;
    }
    board_.clear();
    showPrompt();
    tellsUnplugged_ = false;
    if (duplicates_)
        warnOfDuplicates();
}

// A search that ends while the notice is open opens no second one.
void DialogChange::warnOfDuplicates()
{
    if (warning_)
        return;
    warning_ = true;
    notice::ask<QuestiondialogB>(this);
    warning_ = false;
}

void DialogChange::showPrompt()
{
    ui->label->show();
    ui->label_2->show();
    ui->label_3->hide();
    ui->stackedWidget->hide();
    ui->LeftButton->hide();
    ui->RightButton->hide();
}

void DialogChange::showCarousel()
{
    ui->label->hide();
    ui->label_2->hide();
    ui->label_3->show();
    const QWidget *const focus = window()->focusWidget();
    const auto focused = std::find_if(board_.tiles().begin(), board_.tiles().end(),
                                      [focus](const TileBoard::Tile &tile) { return tile.button == focus; });
    const bool isOnTiles = focused != board_.tiles().end();
    const QString path = isOnTiles ? focused->device.DevicePath : QString();
    board_.build(attached_.tiles());
    for (const TileBoard::Tile &tile : board_.tiles()) {
        connect(tile.button, SIGNAL(clicked()), this, SLOT(slotButtonClicked()), Qt::UniqueConnection);
        connect(tile.button, &mytoolButtonEnter::entered, this, &DialogChange::refreshTile,
                Qt::UniqueConnection);
    }
    orderTabs();
    ui->stackedWidget->show();
    ui->RightButton->setVisible(attached_.tiles().size() > 3);
    ui->LeftButton->hide();
    if (isOnTiles || (unplugged_ && focus == this))
        focusTile(path);
}

// Falls back on the first tile. A screen reader stops telling the name of the page when the focus leaves it,
// so the tile says once why the page is there again.
void DialogChange::focusTile(const QString &devicePath)
{
    QWidget *found = nullptr;
    for (const TileBoard::Tile &tile : board_.tiles()) {
        tile.button->setAccessibleDescription(QString());
        if (!found || (tile.device.DevicePath == devicePath && tile.button->isVisibleTo(this)))
            found = tile.button;
    }
    // The page keeps its name, which a screen reader may ask for after the focus has moved on.
    found->setAccessibleDescription(tellsUnplugged_ ? accessibleName() : QString());
    tellsUnplugged_ = false;
    found->setFocus();
}

// The tab order follows the layout: left arrow, tiles, right arrow.
void DialogChange::orderTabs()
{
    QWidget *before = ui->LeftButton;
    for (const TileBoard::Tile &tile : board_.tiles()) {
        setTabOrder(before, tile.button);
        before = tile.button;
    }
    setTabOrder(before, ui->RightButton);
}

// The pointer may cross further tiles while a silent device is still being asked, so each question has a
// detached thread of its own.
void DialogChange::refreshTile(int index)
{
    if (index < 0 || index >= int(attached_.tiles().size()))
        return;
    const DeviceAllInfo device = attached_.tiles()[std::size_t(index)];
    std::thread(&refreshShown, device, takenGeneration_).detach();
    emit tileEntered(device);
}

void DialogChange::refreshShown(DeviceAllInfo device, uint64_t generation)
{
    refreshDevice(device);
    runOnMainThread([device, generation] {
        if (thePage)
            thePage->takeRefreshed(device, generation);
    });
}

// Another device may have come to the path since that search.
void DialogChange::takeRefreshed(const DeviceAllInfo &device, uint64_t generation)
{
    if (generation != takenGeneration_)
        return;
    attached_.update(device);
    board_.refresh(device);
}

// ---- Buttons ------------------------------------------------------------------------------------

void DialogChange::WindowClosedA() { window()->close(); }

void DialogChange::WindowMinA() { window()->showMinimized(); }

void DialogChange::on_MinButton_clicked() { emit PostMsg::instance()->SigChangeSize(0); }

void DialogChange::on_CloseButton_clicked() { emit PostMsg::instance()->SigChangeSize(1); }

// With three pages or more only one of the two arrows is ever visible.
void DialogChange::on_RightButton_clicked()
{
    ui->label_2->hide();
    ui->label_3->show();
    const int page = ui->stackedWidget->currentIndex();
    if (page == ui->stackedWidget->count() - 2) {
        ui->LeftButton->show();
        ui->RightButton->hide();
    }
    ui->stackedWidget->setCurrentIndex(page + 1);
}

void DialogChange::on_LeftButton_clicked()
{
    ui->label_2->hide();
    ui->label_3->show();
    const int page = ui->stackedWidget->currentIndex();
    if (page == 1) {
        ui->LeftButton->hide();
        ui->RightButton->show();
    }
    ui->stackedWidget->setCurrentIndex(page - 1);
}

void DialogChange::slotButtonClicked()
{
    if (const auto *tile = qobject_cast<mytoolButtonEnter *>(sender()))
        click_.open(tile->deviceIndex());
}

void DialogChange::on_Repair_clicked()
{
    if (UpDateRepair *const dialog = UpDateRepair::instance()) {
        dialog->resetForm();
        dialog->showForRepair(this);
    }
    checkRepair();
}

void DialogChange::checkRepair()
{
    if (UpDateRepair *const dialog = UpDateRepair::instance())
        dialog->setAttached(attached_.all());
    emit PostMsg::instance()->SigRepairCheckUpdate();
}

void DialogChange::SlotUpDateButton(bool IsHide)
{
    ui->Repair->setVisible(!IsHide);
    setPromptText();
}

// Identical devices and one without permission are plugged in already, so the prompt does not ask for one.
void DialogChange::setPromptText()
{
    ui->label_2->setText(!ui->Repair->isHidden()          ? repairDevice_
                         : duplicates_                    ? identical_
                         : ui->permissionHint->isNeeded() ? notOpen_
                                                          : pleaseEnter_);
}

// The key is that of the whole window, also while the device page shows.
void DialogChange::SlotEnterKey()
{
    if (ui->FindVer->isVisible())
        ui->FindVer->hide();
    else if (ui->Repair->isVisible())
        on_Repair_clicked();
}

void DialogChange::on_CloseButton_2_clicked() { ui->FindVer->hide(); }

void DialogChange::on_NewHong_clicked() { ui->FindVer->hide(); }

void DialogChange::on_NoApear_clicked(bool checked)
{
    UserStore::instance().WriteValue(QStringLiteral("FindNew"), QStringLiteral("IsShow"),
                                     checked ? QStringLiteral("1") : QStringLiteral("0"));
}

// ---- Language -----------------------------------------------------------------------------------

void DialogChange::on_comboBox_activated(int index)
{
    const int language = languagebox::languageOf(ui->comboBox, index);
    storeLanguage(UserStore::instance(), language, language::names().value(language));
    LanguageIndex = language;
    emit PostMsg::instance()->SigAllLanguage(language);
    emit PostMsg::instance()->SigLanguageSameB(language);
}

void DialogChange::SlotSameLanguageA(int index) { languagebox::show(ui->comboBox, index); }

void DialogChange::SlotAllLanguage(int index)
{
    pleaseEnter_ = homeText("PleaseEnter", index);
    repairDevice_ = homeText("RepairDevice", index);
    identical_ = homeText("ErrorDevice", index);
    notOpen_ = homeText("PermissionPrompt", index);
    newVersion_ = homeText("NewVerTips", index);
    pairTips_ = homeText("PairTips_z", index);
    dialogOffline_ = language::text(language::Section::infoTips, "DialogOffline", index);
    ui->permissionHint->setLanguage(index);
    SlotUpDateButton(ui->Repair->isHidden());
    if (const QString repair = homeText("RepairButton", index); !repair.isEmpty())
        ui->Repair->setText(repair);
    ui->Repair->setToolTip(repairDevice_); // the tiles stand where the prompt says it
    ui->label_3->setText(homeText("ClickIn", index));
    ui->FindVerlaebl->setText(language::text(language::Section::update, "UpgradeTips", index));
    ui->NewHong->setText(language::text(language::Section::common, "OK", index));
    ui->NoApear->setText(homeText("NoApear", index));
    board_.setLanguage(index);
    setUnplugged(unplugged_);
    board_.setOfflineTip(dialogOffline_ + QLatin1Char('\n') + pairTips_, ui->NoApear->font());
}

void DialogChange::setUnplugged(bool unplugged)
{
    unplugged_ = tellsUnplugged_ = unplugged;
    setAccessibleName(homeText(unplugged ? "DeviceUnplugged" : "DevicesPage", LanguageIndex));
    for (const TileBoard::Tile &tile : board_.tiles())
        tile.button->setAccessibleDescription(QString());
}

// Enter opens a tile as the space bar does, unless it has to open the repair.
void DialogChange::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *tile = qobject_cast<mytoolButtonEnter *>(QApplication::focusWidget());
    if (isEnter && !event->isAutoRepeat() && tile && !ui->Repair->isVisible() && !ui->FindVer->isVisible())
        tile->click();
    else
        QWidget::keyPressEvent(event);
}

void DialogChange::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        ui->retranslateUi(this);
        SlotSameLanguageA(0);
    }
    QWidget::changeEvent(event);
}
