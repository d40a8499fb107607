// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/Dialog.h"

#include "app/WindowFlags.h"
#include "binding/Buttoninterface.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageCache.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/CrashFile.h"
#include "hub/PostMsg.h"
#include "lighting/InputPic.h"
#include "lighting/LampLight.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "macro/Macro.h"
#include "presentation/FirstShow.h"
#include "presentation/Motion.h"
#include "presentation/SkinPalette.h"
#include "presentation/Spin.h"
#include "presentation/StyleSheets.h"
#include "presentation/UpDataParam.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Advanced.h"
#include "sensor/Sensor.h"
#include "service/FormSetting.h"
#include "ui_Dialog.h"

#include <QButtonGroup>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>

namespace
{

constexpr QPoint WaitOffset{0, -20};
constexpr int DriverStatusMs = 100;
constexpr int LowBattery = 16;
constexpr int LineOpacity = 28;
constexpr int StripGap = 8;
constexpr double AwayOpacity = 0.4;

const QString LowColor = QStringLiteral("152, 43, 34");
const QString LowTextColor = QStringLiteral("255,107,94");
const QString FullColor = QStringLiteral("0, 255, 153");

void explain(QWidget *state, const QString &text)
{
    state->setToolTip(text);
    state->setAccessibleDescription(text);
}

} // namespace

Dialog::Dialog(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Dialog>())
    , groupA_(new QButtonGroup(this))
    , groupB_(new QButtonGroup(this))
    , pictures_(style::pictureFolder(QStringLiteral("Dialog")))
{
    ui->setupUi(this);
    buildPages();
    upDataParam_ = std::make_unique<UpDataParam>();
    navigation_ = {{{ui->ButtonMain, buttons_, "PageButtons"},
                    {ui->SensorButton, sensor_, "PageSensor"},
                    {ui->MacroButton, macro_, "PageMacros"},
                    {ui->LightsButton, lights_, "PageLighting"},
                    {ui->Advanced, advanced_, "PageAdvanced"},
                    {ui->FormSetting, setting_, "PageSettings"}}};
    for (const Navigation &entry : navigation_)
        entry.button->setProperty("accessibleRole", QStringLiteral("choice"));
    onFirstShow(this, [this] {
        applyStyle();
        styleNavigation();
        askForMotion();
    });
    ui->offlineStrip->installEventFilter(this);
    ui->label->hide();
    ui->SetButton->hide();
    ui->label_3->hide();
    setWindowFlags(FramelessFlags);
    setFixedSize(size());
    ui->progressBar->setStyleSheet(style::batteryBar(FullColor));
    ui->BatteryButtonC->raise(); // rounds the corners of the fill
    installCrashFilter();
    SlotSecondDialog();
    connectSignals();
}

Dialog::~Dialog() = default;

void Dialog::buildPages()
{
    advanced_ = new class Advanced(this);
    buttons_ = new Buttoninterface(this);
    lights_ = new LampLight(this);
    macro_ = new Macro(this);
    sensor_ = new Sensor(this);
    setting_ = new class FormSetting(this);
    setting_->keep(std::make_unique<LedInfo>());
    setting_->keep(std::make_unique<InputPicA>());
    setting_->keep(std::make_unique<InputPicB>());
    setting_->keep(std::make_unique<LightModeSet>());
    for (QWidget *page :
         std::initializer_list<QWidget *>{advanced_, buttons_, lights_, macro_, sensor_, setting_})
        ui->stackedWidgetDialog->addWidget(page);
}

void Dialog::applyStyle()
{
    const QString labelColor = style::color("LabelColor");
    styleBackground();
    ui->UpArrow->setStyleSheet(style::titleButton(pictures_, QStringLiteral("UpArrow")));
    ui->MinButton->setStyleSheet(style::titleButton(pictures_, QStringLiteral("Min")));
    ui->CloseButton->setStyleSheet(style::titleButton(pictures_, QStringLiteral("Close")));
    showCharge(false);
    ui->label->setStyleSheet(style::labelPicture(pictures_, QStringLiteral("Charg.png")));
    ui->label_3->setStyleSheet(style::label(labelColor));
    for (QFrame *line : {ui->line, ui->line_8, ui->line_9})
        line->setStyleSheet(style::hairline(labelColor, LineOpacity));
}

// A sheet on this frame restyles every child, so it is only set when it differs.
void Dialog::styleBackground()
{
    const QString sheet = style::dialogBackground(pictures_, QStringLiteral("frame_2"));
    if (ui->frame_2->styleSheet() != sheet)
        ui->frame_2->setStyleSheet(sheet);
}

void Dialog::styleNavigation()
{
    for (const Navigation &entry : navigation_)
        entry.button->setStyleSheet(style::navigationButton(pictures_, entry.button->objectName()));
}

void Dialog::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigSecondPageChange()), this, SLOT(SlotSecondDialog()));
    connect(hub, SIGNAL(SigIsUsb(bool, bool)), this, SLOT(SlotIsUsb(bool, bool)));
    connect(hub, SIGNAL(SigUpDataParam(int)), this, SLOT(SlotUpDataParam(int)));
    connect(hub, SIGNAL(SigStartRecord(int)), this, SLOT(SlotStartRecord(int)));
    connect(hub, SIGNAL(SigMouseIndex(int)), this, SLOT(SlotMouseIndex(int)));
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigAddConfig(QString)), ui->deviceHead, SLOT(setProfile(QString)));
    connect(hub, SIGNAL(SigBattery(bool, int, bool)), this, SLOT(SlotBattery(bool, int, bool)),
            Qt::BlockingQueuedConnection);
    connect(ui->MinButton, &QToolButton::clicked, this, &Dialog::WindowMin);
    connect(hub, SIGNAL(SigSelectMouseInfo(DeviceAllInfo)), this, SLOT(SlotSelectMouseInfo(DeviceAllInfo)));
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormReset()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigForm()), this, SLOT(SlotForm()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigMouseOffLineo(int)), this, SLOT(SlotMouseOffLine(int)));
    connect(hub, SIGNAL(SigCloseOffOnline()), this, SLOT(SlotCloseOffOnline()));
}

// ---- Navigation ---------------------------------------------------------------------------------

QRect Dialog::navigationArea() const
{
    QRect area;
    for (const Navigation &entry : navigation_)
        area |= entry.button->geometry();
    return area;
}

// PreButton is invisible; its check state tells whether the binding page shows.
void Dialog::showPage(QWidget *page)
{
    const SoftChange movesMark(ui->frame, navigationArea());
    for (const Navigation &entry : navigation_)
        entry.button->setChecked(entry.page == page);
    showTitle();
    ui->PreButton->setChecked(page == buttons_);
    ui->stackedWidgetDialog->setCurrentWidget(page);
}

void Dialog::showTitle()
{
    for (const Navigation &entry : navigation_)
        if (entry.button->isChecked())
            ui->deviceHead->setTitle(entry.button->text());
}

void Dialog::SlotAllLanguage(int index)
{
    for (const Navigation &entry : navigation_) {
        const QString name = language::text(language::Section::common, entry.nameKey, index);
        if (name.isEmpty())
            continue;
        entry.button->setText(name);
        entry.button->setToolTip(name);
        entry.button->setAccessibleName(name);
    }
    ui->PreButton->setAccessibleName(ui->ButtonMain->accessibleName());
    ui->deviceHead->setLanguage(index);
    showTitle();
}

void Dialog::on_ButtonMain_clicked()
{
    showPage(buttons_);
    emit PostMsg::instance()->SigAddMacroButton();
}

void Dialog::on_SensorButton_clicked() { showPage(sensor_); }

void Dialog::on_MacroButton_clicked() { showPage(macro_); }

void Dialog::on_LightsButton_clicked() { showPage(lights_); }

void Dialog::on_FormSetting_clicked() { showPage(setting_); }

void Dialog::on_Advanced_clicked()
{
    emit PostMsg::instance()->SigtVis(0);
    showPage(advanced_);
}

void Dialog::SlotSecondDialog() { showPage(buttons_); }

void Dialog::on_stackedWidgetDialog_currentChanged(int)
{
    if (isVisible())
        styleBackground();
    ui->UpArrow->show();
}

void Dialog::SlotStartRecord(int index)
{
    if (index != 0 && index != 1)
        return;
    ui->PreButton->setEnabled(index == 1);
    for (const Navigation &entry : navigation_)
        entry.button->setEnabled(index == 1);
}

void Dialog::loadPictures(const DeviceAllInfo &device)
{
    skinPicture(pictures_ + QStringLiteral("BackGround.png"), this);
    buttons_->loadPictures(device);
}

// ---- Leaving ------------------------------------------------------------------------------------

void Dialog::writeCache() { ImageCacheWrite(SelectedDevice::imageName(), DeviceRecord::copy()); }

void Dialog::keepAll()
{
    buttons_->sendWaitingMacros();
    writeCache();
}

void Dialog::WindowClosed()
{
    keepAll();
    emit PostMsg::instance()->SigChangeSize(1);
}

void Dialog::on_CloseButton_clicked() { WindowClosed(); }

void Dialog::WindowMin()
{
    buttons_->sendWaitingMacros();
    emit PostMsg::instance()->SigChangeSize(0);
}

void Dialog::on_UpArrow_clicked()
{
    buttons_->sendWaitingMacros();
    UsbServer_SetPCDriverStatus(0);
    writeCache();
    ui->PreButton->setChecked(true);
    spinEventLoop(DriverStatusMs);
    UsbServer_Exit();
    emit PostMsg::instance()->SigChangeMainDialog(0);
    emit PostMsg::instance()->SigSetMacroPage();
}

// ---- State of the device -------------------------------------------------------------------------

// The battery in the head is still that of the device before.
void Dialog::SlotSelectMouseInfo(const DeviceAllInfo &SelectInfo)
{
    ui->label->hide();
    ui->progressBar->setValue(0);
    ui->label_2->clear();
    ui->deviceHead->setDevice(SelectInfo);
    showAway(!SelectInfo.Online);
}

void Dialog::SlotFormReset() { showPassed(); }

void Dialog::SlotForm() { showPassed(); }

void Dialog::SlotMouseOffLine(int) { showAway(true); }

void Dialog::SlotCloseOffOnline() { showAway(false); }

// A pass without the mouse ends in SigForm or SigFormReset, a full read in SigForm. The offline watch may
// have reached the mouse before the slot runs, and then the strip would stay although the mouse answers.
void Dialog::showPassed() { showAway(AwaitingMouse && !SelectedDevice::info().Online); }

// What the head shows of a mouse that does not answer may be out of date.
void Dialog::showAway(bool away)
{
    ui->offlineStrip->setVisible(away);
    for (QWidget *state : std::initializer_list<QWidget *>{ui->label_4, ui->BatteryButtonC, ui->progressBar,
                                                           ui->label_2, ui->label}) {
        auto *dim = away ? new QGraphicsOpacityEffect(state) : nullptr;
        if (dim)
            dim->setOpacity(AwayOpacity);
        state->setGraphicsEffect(dim);
    }
}

bool Dialog::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (watched == ui->offlineStrip &&
        (type == QEvent::Resize || type == QEvent::ShowToParent || type == QEvent::HideToParent))
        makeRoomInHead();
    return QDialog::eventFilter(watched, event);
}

// While it shows, the strip covers the right part of the head.
void Dialog::makeRoomInHead()
{
    const int width = ui->offlineStrip->isHidden() ? 0 : ui->offlineStrip->width() + StripGap;
    const int right = ui->offlineStrip->geometry().right() + 1 - width;
    ui->deviceHead->resize(right - ui->deviceHead->x(), ui->deviceHead->height());
}

void Dialog::SlotIsUsb(bool Usb, bool)
{
    const QString name = Usb ? QStringLiteral("OnLineUsb.png") : QStringLiteral("OnLineWifi.png");
    ui->label_4->setStyleSheet(style::stretchedPicture(pictures_, name));
    explain(ui->label_4,
            language::text(language::Section::home, Usb ? "LinkCable" : "LinkRadio", LanguageIndex));
}

// The dark red of the fill alone does not stand out from the shell, so the shell and the figure warn as well.
void Dialog::showCharge(bool low)
{
    const QString shell = low ? QStringLiteral("BatteryLow.png") : QStringLiteral("Battery.png");
    ui->BatteryButtonC->setStyleSheet(style::tile(pictures_, shell));
    ui->label_2->setStyleSheet(style::label(low ? LowTextColor : style::color("LabelColor")));
}

void Dialog::SlotBattery(bool IsCharg, int Number, bool IsText)
{
    ui->label->setVisible(IsCharg);
    ui->progressBar->setValue(Number);
    ui->label_2->setText(QString::number(Number) + (IsText ? QStringLiteral("%") : QString()));
    ui->progressBar->setStyleSheet(style::batteryBar(Number < LowBattery ? LowColor : FullColor));
    showCharge(Number < LowBattery);
    const QString level = language::choice("receiverStatusList", QStringLiteral("battery"), LanguageIndex);
    explain(ui->BatteryButtonC, QStringLiteral("%1: %2%").arg(level).arg(Number));
}

// A load that begins while the wait dialog is open is covered by the same dialog.
void Dialog::SlotUpDataParam(int index)
{
    showAway(false); // only a mouse that answers is read
    if (index == 1)
        upDataParam_->setRefreshing();
    if (upDataParam_->isVisible())
        return;
    upDataParam_->startTimer();
    upDataParam_->openOver(this, WaitOffset);
}

// Leaves the keys to the window; QDialog would close on Escape.
void Dialog::keyPressEvent(QKeyEvent *event) { event->ignore(); }
