// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/Buttoninterface.h"

#include "binding/ActionButton.h"
#include "binding/ButtonList.h"
#include "binding/FunctionPages.h"
#include "binding/actions/BindingDecoder.h"
#include "binding/actions/DefaultActions.h"
#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageCache.h"
#include "device/ImageFile.h"
#include "device/Worker.h"
#include "hub/PostMsg.h"
#include "presentation/DeviceOperations.h"
#include "presentation/FirstShow.h"
#include "presentation/PageSurface.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Buttoninterface.h"

#include <QFileDialog>
#include <QStandardPaths>

using namespace binding;

namespace
{

constexpr int SleepUnitSeconds = 10;
constexpr int DefaultSleepSeconds = 60;

} // namespace

Buttoninterface::Buttoninterface(QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::Buttoninterface>()), worker_(std::make_unique<Worker>())
{
    ui->setupUi(this);
    setAccessibleName(QStringLiteral("Buttons"));
    list_ = new ButtonList(ui->scrollArea_11, ui->widget);
    functions_ = new FunctionPages(ui->stackedWidget, ui->stackedWidget_2);
    QMetaObject::connectSlotsByName(this); // the form leaves it to us, as some of its widgets are made here
    connect(list_, &ButtonList::checkedChanged, this, &Buttoninterface::nameChosenRow);
    connect(functions_, &FunctionPages::chosen, this, &Buttoninterface::choose);
    connect(functions_, &FunctionPages::macroChosen, this, &Buttoninterface::slotButtonClicked);
    connect(functions_->backButton(), &QToolButton::clicked, this, &Buttoninterface::leaveFunctions);
    onFirstShow(this, [this] { applyStyle(); });
    showButtons();
    arrangeTabs();
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

// A pass may be delivering to this very thread, so the end of it is waited for with the event loop turning.
Buttoninterface::~Buttoninterface()
{
    worker_->shutDown();
    worker_.reset();
    StopUsbChanged();
}

void Buttoninterface::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("Buttoninterface"));
    const QString stem = QStringLiteral("Button");
    const QString button =
        style::textButton(folder, style::color("ButtonColor"), stem) + style::textButtonHover(folder, stem);
    const QString label = style::label(style::color("LabelColor"));
    ui->frameButton->setStyleSheet(style::dialogBackground(folder, QStringLiteral("frameButton")));
    for (QLabel *each : {ui->label_8, ui->label_3})
        each->setStyleSheet(label);
    ui->DebounceNote->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    for (QToolButton *each : {ui->Reset, ui->ImportData, ui->OutputData})
        each->setStyleSheet(button);
    styleComboBox(ui->ProjectChoose, folder);
    ui->scrollArea_11->setStyleSheet(style::scrollArea());
    list_->applyStyle(folder);
    dressed_ = true;
    stylePicture();
}

void Buttoninterface::stylePicture()
{
    const QString folder = style::pictureFolder(QStringLiteral("Buttoninterface"));
    ui->widget->setStyleSheet(style::areaPicture(folder, ui->widget->objectName(), picture_));
}

// As the eye reads: the line on top, the picture's marks, the list, the panel below.
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
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
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
    if (sensor_.names.isEmpty())
        ReadSensorDefines(&sensor_.names, &sensor_.values);
    sensor_.sensor = DeviceCatalogue().text(SelectedDevice::info().DriveIndex, "Sensor");
    SensorName = sensor_.sensor;
    emit PostMsg::instance()->SigLightToFrom(map.StopCloseTime * SleepUnitSeconds);
    showBindings(map);
    ui->DebunceButton->SetDebounce(map.DebounceTime);
}

void Buttoninterface::showBindings(const FlashDataMap &map)
{
    const int count = DeviceCatalogue().number(SelectedDevice::info().DriveIndex, "KeyNumber");
    list_->setButtonCount(count);
    KeyClass_.clear();
    KeyParamA_.clear();
    KeyParamB_.clear();
    for (int k = 0; k < qBound(0, count, KeySlotCount); ++k)
        RecordBinding(k, map.KeyBindings[k]);
    for (int k = 0; k < qMin(KeyClass_.size(), ButtonCount); ++k)
        ShowBinding(k, KeyClass_[k], KeyParamA_[k], KeyParamB_[k], map);
    showMacros(map);
    nameChosenRow();
}

void Buttoninterface::ShowBinding(int button, int actionClass, int first, int second,
                                  const FlashDataMap &record)
{
    const KeyBinding binding{uint8_t(actionClass), uint8_t(first), uint8_t(second)};
    if (const auto caption = decoded(button, binding, record).caption)
        list_->setText(button, *caption);
}

DecodedBinding Buttoninterface::decoded(int button, const KeyBinding &binding,
                                        const FlashDataMap &record) const
{
    return decodeBinding({binding, record.KeySequences[button], record.MacroBlocks[button]}, sensor_,
                         LanguageIndex);
}

void Buttoninterface::SlotFormResetButton()
{
    const PageFilling filling(ButtonPageBusy);
    showButtons();
    functions_->showPanel(Panel::Debounce);
    KeyClass_.clear();
    KeyParamA_.clear();
    for (int k = 0; k < ButtonCount; ++k) {
        const KeyBinding binding = builtInAction(k)->binding;
        KeyClass_ << binding.Class;
        KeyParamA_ << binding.First;
    }
    KeyParamB_.clear();
    ui->DebunceButton->SetDebounce(0);
    emit PostMsg::instance()->SigLightToFrom(DefaultSleepSeconds);
}

void Buttoninterface::SlotMouseIndex(int index)
{
    const int model = index - FirstModelIndex;
    picture_ = QStringLiteral("mouse%1.png").arg(model);
    if (dressed_)
        stylePicture();
    list_->setModel(model);
    // A device has just been chosen; what was open belonged to another one.
    list_->uncheckAll();
    leaveFunctions();
}

// ---- Profiles -----------------------------------------------------------------------------------

void Buttoninterface::fillProfiles(int count)
{
    ui->ProjectChoose->clear();
    for (int i = 1; i <= qMax(count, 1); ++i)
        ui->ProjectChoose->addItem(ConfigPrefix_ + QString::number(i));
}

void Buttoninterface::SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable)
{
    const QSignalBlocker silent(ui->ProjectChoose);
    fillProfiles(ToTalItem);
    ui->ProjectChoose->setEnabled(ItemEnable);
    if (ToTalItem > 0)
        ui->ProjectChoose->setCurrentIndex(SelectIndex);
    profile_ = ui->ProjectChoose->currentIndex();
    emit PostMsg::instance()->SigAddConfig(ui->ProjectChoose->currentText());
}

void Buttoninterface::on_ProjectChoose_activated(int index)
{
    if (!ButtonPageBusy && !UsbFinderC_GetDeviceOnLine(CurrentDevicePath())) {
        const QSignalBlocker silent(ui->ProjectChoose);
        ui->ProjectChoose->setCurrentIndex(profile_);
        emit PostMsg::instance()->SigMouseOffLineo(0);
        return;
    }
    UsbServer_SetCurrentConfig(uint8_t(index));
    profile_ = index;
    emit PostMsg::instance()->SigAddConfig(ui->ProjectChoose->currentText());
}

// ---- The whole device ---------------------------------------------------------------------------

void Buttoninterface::on_Reset_clicked() { runFactoryReset(this); }

void Buttoninterface::on_ImportData_clicked() { runImageImport(this); }

void Buttoninterface::on_OutputData_clicked()
{
    QFileDialog dialog(this, QStringLiteral("FileSave"),
                       QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                       QStringLiteral("File(*.bin)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("bin"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    writeImageFile(dialog.selectedFiles().first(), driveSection(SelectedDevice::info()),
                   DeviceRecord::copy());
}

// ---- Texts --------------------------------------------------------------------------------------

void Buttoninterface::SlotAllLanguage(int index)
{
    using language::Section;
    using language::text;
    ConfigPrefix_ = language::choice("ProfileOptions", QStringLiteral("0"), index).remove(QLatin1Char('1'));
    ui->label_8->setText(text(Section::key, "configName", index));
    ui->OutputData->setText(text(Section::key, "Export", index));
    ui->ImportData->setText(text(Section::key, "Import", index));
    ui->Reset->setText(text(Section::Settings, "Restore", index));
    ui->label_3->setText(text(Section::key, "DebounceTime", index));
    ui->DebounceNote->setText(text(Section::key, "DialogDebounceTips", index));
    ui->DebunceButton->SlotAllLanguage(index);
    functions_->setLanguage(index);
    {
        const QSignalBlocker silent(ui->ProjectChoose);
        fillProfiles(ui->ProjectChoose->count());
        ui->ProjectChoose->setCurrentIndex(profile_);
    }
    // Captions are texts. A mouse that is away is shown by its kept image.
    FlashDataMap record = DeviceRecord::copy();
    if (!MouseOnline && !ImageCacheRead(SelectedDevice::cacheName(), &record))
        return;
    const PageFilling filling(ButtonPageBusy);
    showBindings(record);
}
