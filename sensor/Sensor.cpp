// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/Sensor.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DpiCodes.h"
#include "catalogue/LevelFile.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/PageSurface.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/PerformanceTimes.h"
#include "sensor/Tip.h"
#include "ui_Sensor.h"

#include <QButtonGroup>
#include <QDir>
#include <QListView>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <algorithm>

namespace
{

constexpr int TipGap = 8; // pixels between a caption and its tip
constexpr int HelpBelowSettings = 456;
constexpr int PlainModel = 2; // of the key XIn1: rates and stages are all that this model has
constexpr int ResetTimeIndex = 2;
constexpr int ResetTimeFallback = 1;
constexpr char SmallLodSensor[] = "3950";

// A mouse on its cable does not run at these, whatever its flash holds.
constexpr bool tooFastForCable(uint8_t code) { return code == 16 || code == 32; }

bool fixesMode(uint8_t code)
{
    const int index = rateIndexOf(code);
    return index >= 0 && RateRows[std::size_t(index)].hidesModel;
}

// No record holds more than DpiStageLimit, whatever the catalogue claims.
int stagesOf(const DeviceAllInfo &info)
{
    return qBound(0, DeviceCatalogue().number(info.DriveIndex, "DPIMaxGrade"), DpiStageLimit);
}

QString sensorText(const char *key, int index)
{
    return language::text(language::Section::sensor, key, index);
}

bool isFastReceiver(uint16_t deviceKind) { return connectionKind(deviceKind) > 1; }

// An empty text leaves the default of the form.
template <typename Widget> void setTextOf(Widget *widget, const QString &text)
{
    if (!text.isEmpty())
        widget->setText(text);
}

} // namespace

Sensor::Sensor(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::Sensor>())
    , groupA_(new QButtonGroup(this))
    , groupB_(new QButtonGroup(this))
    , SavePath_(dataRoot() + QStringLiteral("/usersetting/SensorPage"))
    , PicturePath_(style::pictureFolder(QStringLiteral("Sensor")))
{
    ui->setupUi(this);
    ui->SensorDPI->raise(); // its marker overlaps the rate panel
    QDir().mkpath(SavePath_);
    ui->SensorDPI->SetStageCount(LoadDpiStageCount());
    onFirstShow(this, [this] { applyStyle(); });
    capabilities_ = ReadSensorDefines();
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

Sensor::~Sensor() = default;

void Sensor::applyStyle()
{
    const QString labelColor = style::color("LabelColor");
    ui->frameSensor->setStyleSheet(style::dialogBackground(PicturePath_, QStringLiteral("frameSensor")));
    ui->settingsCard->setStyleSheet(style::labelPicture(PicturePath_, QStringLiteral("Card.png")));
    for (QLabel *mark : {ui->TitleButton, ui->TitleButton_2, ui->TitleButton_3})
        mark->setStyleSheet(style::sectionTitle(PicturePath_, mark->objectName()));
    ui->label_10->setStyleSheet(style::heading());
    ui->label_11->setStyleSheet(style::label(labelColor));
    ui->TitleButton_4->setStyleSheet(style::tile(PicturePath_, QStringLiteral("Tips.png")));
    styleTip(ui->performanceTip);
    ui->Performance->setStyleSheet(style::checkBox(PicturePath_, labelColor));
    const bool corded = !modeView()->isRowHidden(Corded);
    styleComboBox(ui->ModelChoose, PicturePath_);
    showCorded(corded); // styleComboBox() has replaced the list
    styleComboBox(ui->PerformanceOpen, PicturePath_);
    placeTips(); // the fonts are final only now
}

void Sensor::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigHideModel(int)), this, SLOT(SlotHideModel(int)));
    connect(hub, SIGNAL(SigUpDataLightSensor(FlashDataMap)), this,
            SLOT(SlotUpDataSenSorUISensor(FlashDataMap)), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormReset()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataReportRate(int)), this, SLOT(SlotUpDataReportRate(int)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataDPI(int)), this, SLOT(SlotUpDataDPI(int)), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataSensorUIB(FlashDataMap)), this, SLOT(SlotUpDataSenSorUIB(FlashDataMap)));
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
}

// ---- The controls of the page itself ------------------------------------------------------------

void Sensor::on_ModelChoose_currentIndexChanged(int index)
{
    if (index < 0 || index == Corded)
        return;
    if (edit(
            SensorPageBusy, ui->ModelChoose, [index] { return SetModelChoose(uint8_t(index)); },
            [this] { ui->ModelChoose->setCurrentIndex(ModeIndex_); }) == EditResult::Written)
        ModeIndex_ = index;
}

void Sensor::on_Performance_clicked(bool checked)
{
    const auto restore = [this, checked] {
        ui->Performance->setChecked(!checked);
        ui->PerformanceOpen->setEnabled(!checked);
    };
    if (edit(
            ui->Performance, [checked] { return SetPerformance(checked ? 1 : 0); }, restore) ==
        EditResult::Written)
        emit PostMsg::instance()->Sig20KOpen(checked);
}

void Sensor::on_Performance_toggled(bool checked) { ui->PerformanceOpen->setEnabled(checked); }

void Sensor::on_PerformanceOpen_currentIndexChanged(int index)
{
    if (index < 0 || index >= int(PerformanceTimes.size()))
        return;
    edit(
        SensorPageBusy, ui->PerformanceOpen,
        [index] { return SetPerformanceOpen(PerformanceTimes[std::size_t(index)]); },
        [this] { ui->PerformanceOpen->setCurrentIndex(PerformanceIndex_); });
}

void Sensor::on_RippeControl_clicked(bool checked)
{
    if (UiArmed)
        SetRippeControl(checked ? 1 : 0);
}

void Sensor::on_StraightLine_clicked(bool checked)
{
    if (UiArmed)
        SetStraightLine(checked ? 1 : 0);
}

void Sensor::on_MotionSync_clicked(bool checked)
{
    if (UiArmed)
        SetMotionSync(checked ? 1 : 0);
}

void Sensor::on_pushButton_clicked() { ui->SensorLOD->AddSmallLod(); }

void Sensor::on_pushButton_2_clicked() { ui->SensorLOD->RemoveSmallLod(); }

// ---- Sensor mode --------------------------------------------------------------------------------

bool Sensor::modeSelectable() const { return capabilities_.SensorModeSupport.contains(SensorName); }

void Sensor::freeMode(int index)
{
    ui->ModelChoose->setEnabled(true);
    showCorded(false);
    setMode(index);
}

void Sensor::lockMode()
{
    showCorded(true);
    setMode(Corded);
    ui->ModelChoose->setEnabled(false);
}

// With signals blocked, so that a mode that the device reported is not written back to it.
void Sensor::setMode(int index)
{
    const QSignalBlocker quiet(ui->ModelChoose);
    ui->ModelChoose->setCurrentIndex(index);
    ModeIndex_ = index;
}

QListView *Sensor::modeView() const { return qobject_cast<QListView *>(ui->ModelChoose->view()); }

// The arrow keys pass over a row that is disabled, but not over one that is hidden.
void Sensor::showCorded(bool shown)
{
    modeView()->setRowHidden(Corded, !shown);
    qobject_cast<QStandardItemModel *>(ui->ModelChoose->model())->item(Corded)->setEnabled(shown);
}

void Sensor::SlotHideModel(int state)
{
    if (!modeSelectable())
        return;
    const DeviceAllInfo info = SelectedDevice::info();
    if (state == 0 && !info.Usb)
        freeMode(DeviceRecord::copy().ModelChoose);
    else if (state == 1 && isFastReceiver(info.DeviceKind))
        lockMode();
}

// ---- What the device reports --------------------------------------------------------------------

void Sensor::SlotUpDataReportRate(int code)
{
    const int index = rateIndexOf(code);
    if (index < 0)
        return;
    ui->SensorRate->SetRate(index);
    if (!modeSelectable() || SelectedDevice::info().Usb)
        return;
    if (RateRows[std::size_t(index)].hidesModel)
        lockMode();
    else
        freeMode(DeviceRecord::copy().ModelChoose);
}

void Sensor::SlotUpDataDPI(int stage)
{
    UiArmed = false;
    ui->SensorDPI->SelectStage(stage); // a number beyond the last stage changes nothing
    UiArmed = true;
}

void Sensor::SlotUpDataSenSorUISensor(FlashDataMap DataMap)
{
    SensorPageLoaded = false;
    paint(DataMap);
    SensorPageLoaded = true;
}

void Sensor::SlotUpDataSenSorUIB(FlashDataMap DataMap) { paint(DataMap); }

// ---- A record on the page -----------------------------------------------------------------------

// Steps run in this order because a later one overrides an earlier one.
void Sensor::paint(const FlashDataMap &map)
{
    const DeviceAllInfo info = SelectedDevice::info();
    const DeviceCatalogue catalogue;
    const PageFilling filling(SensorPageBusy);
    paintRate(map.ReportRate, info.Usb);
    SensorName = catalogue.text(info.DriveIndex, "Sensor");
    offerSmallLod(SensorName == QLatin1String(SmallLodSensor));
    paintMode(map, info);
    ui->SensorLOD->SetLod(map.LiftOffDistance - 1);
    paintPerformance(map);
    ui->RippeControl->SetChecked(map.RippeControl != 0);
    ui->StraightLine->SetChecked(map.StraightLine != 0);
    ui->MotionSync->SetChecked(map.MotionSync != 0);
    showSettings(catalogue.number(info.DriveIndex, "XIn1") != PlainModel);
    ReadDpiRange(info.DriveIndex);
    ui->SensorDPI->paint(map, stagesOf(info));
    ui->SensorRate->SetRateVisibility(rateLevelOf(info.DeviceKind));
    gateByCapability();
}

void Sensor::paintRate(uint8_t code, bool wired)
{
    ui->SensorRate->SetRate(rateIndexOf(code));
    if (wired && tooFastForCable(code))
        ui->SensorRate->SetRate(Rate1000);
}

void Sensor::offerSmallLod(bool offered)
{
    if (offered)
        ui->SensorLOD->AddSmallLod();
    else
        ui->SensorLOD->RemoveSmallLod();
}

void Sensor::paintMode(const FlashDataMap &map, const DeviceAllInfo &info)
{
    if (!modeSelectable()) {
        ui->SensorDPI->SetChoice(0);
        ui->ModelChoose->setEnabled(false);
    } else if (info.Usb || (connectionKind(info.DeviceKind) > 1 && fixesMode(map.ReportRate))) {
        lockMode();
    } else {
        freeMode(map.ModelChoose);
    }
}

void Sensor::paintPerformance(const FlashDataMap &map)
{
    const bool on = map.Performance != 0;
    ui->Performance->setChecked(on);
    ui->PerformanceOpen->setEnabled(on);
    emit PostMsg::instance()->Sig20KOpen(on);
    const int index = performanceIndexOf(map.PerformanceOpen);
    if (index < 0)
        return;
    ui->PerformanceOpen->setCurrentIndex(index);
    PerformanceIndex_ = index;
}

// ---- Which settings there are -------------------------------------------------------------------

void Sensor::showSettings(bool shown)
{
    for (QWidget *widget : settings())
        widget->setVisible(shown);
}

// Runs after showSettings(): what a sensor cannot do stays hidden, whatever the model shows.
void Sensor::gateByCapability()
{
    ui->SensorLOD->setLodEnabled(capabilities_.LodSupport.contains(SensorName));
    ui->RippeControl->setVisible(capabilities_.RippleSupport.contains(SensorName));
    ui->StraightLine->setVisible(capabilities_.FixLineSupport.contains(SensorName));
    ui->MotionSync->setVisible(capabilities_.MotionSyncSupport.contains(SensorName));
    const auto all = settings();
    ui->settingsCard->setVisible(
        std::any_of(all.begin(), all.end(), [](const QWidget *widget) { return !widget->isHidden(); }));
    ui->settingHelp->move(ui->settingsCard->x(),
                          ui->settingsCard->isHidden() ? ui->settingsCard->y() : HelpBelowSettings);
}

std::array<QWidget *, 12> Sensor::settings() const
{
    return {ui->TitleButton_3,   ui->label_10,     ui->TitleButton_4, ui->label_11,
            ui->ModelChoose,     ui->SensorLOD,    ui->Performance,   ui->performanceTip,
            ui->PerformanceOpen, ui->RippeControl, ui->StraightLine,  ui->MotionSync};
}

// ---- Without a device ---------------------------------------------------------------------------

void Sensor::SlotFormReset()
{
    const PageFilling filling(SensorPageBusy);
    ui->SensorDPI->reset();
    resetByKind(SelectedDevice::info());
    ui->PerformanceOpen->setCurrentIndex(ResetTimeIndex);
    PerformanceIndex_ = ResetTimeFallback;
    ui->SensorLOD->SetLod(0);
    ui->Performance->setEnabled(true);
    ui->Performance->setChecked(false);
    emit PostMsg::instance()->Sig20KOpen(false);
    ui->PerformanceOpen->setEnabled(false);
    ui->MotionSync->SetChecked(true);
    ui->StraightLine->SetChecked(false);
    ui->RippeControl->SetChecked(false);
}

void Sensor::resetByKind(const DeviceAllInfo &info)
{
    const int level = rateLevelOf(info.DeviceKind);
    if (level >= 0) {
        ui->SensorRate->SetRateVisibility(level);
        setMode(level == 0 ? LowPower : Corded);
        ui->SensorRate->SetRate(Rate1000);
    }
    if (info.Usb)
        setMode(Corded);
}

// ---- Texts --------------------------------------------------------------------------------------

void Sensor::SlotAllLanguage(int index)
{
    ui->SensorDPI->setTitle(sensorText("DPISetting", index));
    ui->SensorRate->setTitle(sensorText("ReportRate", index));
    setTextOf(ui->label_10, sensorText("SensorSetting", index));
    setTextOf(ui->label_11, sensorText("SensorMode", index));
    setTextOf(ui->Performance, sensorText("Performance", index));
    for (int i = 0; i < ShownPerformanceTimes; ++i) {
        const QString key = QString::number(PerformanceTimes[std::size_t(i)]);
        const QString time = language::choice("PerformanceOptions", key, index);
        if (!time.isEmpty())
            ui->PerformanceOpen->setItemText(i, time);
    }
    ui->SensorLOD->SlotAllLanguage(index);
    for (SwitchPanel *panel :
         std::initializer_list<SwitchPanel *>{ui->RippeControl, ui->StraightLine, ui->MotionSync})
        panel->SlotAllLanguage(index);
    setTips(index);
    placeTips();
    setHelp(index);
}

void Sensor::setHelp(int index)
{
    const auto entry = [index](const QVector<QWidget *> &areas, const char *title, const char *text) {
        return SettingHelp::Entry{areas, sensorText(title, index), sensorText(text, index)};
    };
    ui->settingHelp->setEntries(
        {entry({ui->SensorDPI}, "DPISetting", "DPISettingTips"),
         entry({ui->SensorRate}, "ReportRate", "ReportRateTips"),
         entry({ui->ModelChoose, ui->label_11, ui->TitleButton_4}, "SensorMode", "SensorModeTips"),
         entry({ui->SensorLOD}, "LOD", "LODTips"),
         entry({ui->Performance, ui->performanceTip, ui->PerformanceOpen}, "Performance", "PerformanceTips"),
         entry({ui->RippeControl}, "Ripple", "RippleTips"), entry({ui->StraightLine}, "Angle", "AngleTips"),
         entry({ui->MotionSync}, "MotionSync", "MotionSyncTips")},
        entry({}, "HelpTitle", "HelpHint"));
}

void Sensor::setTips(int index)
{
    setTip(ui->TitleButton_4, ui->ModelChoose, sensorText("SensorModeTips", index));
    setTip(ui->performanceTip, ui->Performance, sensorText("PerformanceTips", index));
}

// Places the tips behind the captions, whose lengths differ by language.
void Sensor::placeTips()
{
    const int mode = ui->label_11->x() + ui->label_11->sizeHint().width();
    ui->TitleButton_4->move(mode + TipGap, ui->TitleButton_4->y());
    const int performance = ui->Performance->x() + ui->Performance->sizeHint().width();
    ui->performanceTip->move(performance + TipGap, ui->performanceTip->y());
}
