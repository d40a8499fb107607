// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/Sensor.h"

#include "catalogue/DpiCodes.h"
#include "catalogue/LevelFile.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
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

namespace
{

constexpr int TipGap = 8; // pixels between a caption and its tip

QString sensorText(const char *key, int index)
{
    return language::text(language::Section::sensor, key, index);
}

bool isFastReceiver(uint16_t deviceKind) { return connectionKind(deviceKind) > 1; }

// Empty texts leave the defaults of the form.
template <typename Widget> void say(Widget *widget, const QString &text)
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
    setAccessibleName(QStringLiteral("Sensor"));
    ui->sensorDPI->raise(); // its marker reaches into the rates
    QDir().mkpath(SavePath_);
    ui->sensorDPI->SetStageCount(LoadDpiStageCount());
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
    for (QLabel *label : {ui->label_10, ui->label_11})
        label->setStyleSheet(style::label(labelColor));
    ui->TitleButton_4->setStyleSheet(style::tile(PicturePath_, QStringLiteral("Tips.png")));
    styleTip(ui->performanceTip);
    ui->Performance->setStyleSheet(style::checkBox(PicturePath_, labelColor));
    const bool corded = !modeView()->isRowHidden(Corded);
    styleComboBox(ui->ModelChoose, PicturePath_);
    showCorded(corded); // in the list that it has now
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
    if (!UiArmed || SensorPageBusy || index < 0 || index == Corded)
        return;
    if (SetModelChoose(uint8_t(index))) {
        ModeIndex_ = index;
        return;
    }
    const QSignalBlocker quiet(ui->ModelChoose);
    ui->ModelChoose->setCurrentIndex(ModeIndex_);
}

void Sensor::on_Performance_clicked(bool checked)
{
    if (!UiArmed)
        return;
    if (SetPerformance(checked ? 1 : 0)) {
        emit PostMsg::instance()->Sig20KOpen(checked);
        return;
    }
    const QSignalBlocker quiet(ui->Performance);
    ui->Performance->setChecked(!checked);
    ui->PerformanceOpen->setEnabled(!checked);
}

void Sensor::on_Performance_toggled(bool checked) { ui->PerformanceOpen->setEnabled(checked); }

void Sensor::on_PerformanceOpen_currentIndexChanged(int index)
{
    if (!UiArmed || SensorPageBusy || index < 0 || index >= int(PerformanceTimes.size()))
        return;
    if (SetPerformanceOpen(PerformanceTimes[std::size_t(index)]))
        return;
    const QSignalBlocker quiet(ui->PerformanceOpen);
    ui->PerformanceOpen->setCurrentIndex(PerformanceIndex_);
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

void Sensor::on_pushButton_clicked() { ui->sensorLOD->AddSmallLod(); }

void Sensor::on_pushButton_2_clicked() { ui->sensorLOD->RemoveSmallLod(); }

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

// Quietly: what the device has decided is not written back to it.
void Sensor::setMode(int index)
{
    const QSignalBlocker quiet(ui->ModelChoose);
    ui->ModelChoose->setCurrentIndex(index);
    ModeIndex_ = index;
}

QListView *Sensor::modeView() const { return qobject_cast<QListView *>(ui->ModelChoose->view()); }

// The arrow keys and the wheel pass over a row that is disabled, but not over one that is hidden.
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

// ---- What the device says -----------------------------------------------------------------------

void Sensor::SlotUpDataReportRate(int code)
{
    const int index = rateIndexOf(code);
    if (index < 0)
        return;
    ui->sensorRate->SetRate(index);
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
    if (stage >= 0 && stage < DpiStageLimit) {
        ui->sensorDPI->SetCurrentStage(stage + 1);
        ui->sensorDPI->SelectStage(stage);
        ui->sensorDPI->SetCurrentStage(stage);
    }
    UiArmed = true;
}

void Sensor::SlotUpDataSenSorUISensor(FlashDataMap DataMap)
{
    SensorPageLoaded = false;
    paint(DataMap);
    SensorPageLoaded = true;
}

void Sensor::SlotUpDataSenSorUIB(FlashDataMap DataMap) { paint(DataMap); }

// ---- Texts --------------------------------------------------------------------------------------

void Sensor::SlotAllLanguage(int index)
{
    ui->sensorDPI->setTitle(sensorText("DPISetting", index));
    ui->sensorRate->setTitle(sensorText("ReportRate", index));
    say(ui->label_10, sensorText("SensorSetting", index));
    say(ui->label_11, sensorText("SensorMode", index));
    say(ui->Performance, sensorText("Performance", index));
    for (int i = 0; i < ShownPerformanceTimes; ++i) {
        const QString key = QString::number(PerformanceTimes[std::size_t(i)]);
        const QString time = language::choice("PerformanceOptions", key, index);
        if (!time.isEmpty())
            ui->PerformanceOpen->setItemText(i, time);
    }
    ui->sensorLOD->SlotAllLanguage(index);
    for (SwitchPanel *panel :
         std::initializer_list<SwitchPanel *>{ui->rippeControl, ui->straightLine, ui->motionSync})
        panel->SlotAllLanguage(index);
    setTips(index);
    placeTips();
}

void Sensor::setTips(int index)
{
    setTip(ui->TitleButton_4, ui->ModelChoose, sensorText("SensorModeTips", index));
    setTip(ui->performanceTip, ui->Performance, sensorText("PerformanceTips", index));
}

// Behind the captions, whatever their length.
void Sensor::placeTips()
{
    const int mode = ui->label_11->x() + ui->label_11->sizeHint().width();
    ui->TitleButton_4->move(mode + TipGap, ui->TitleButton_4->y());
    const int performance = ui->Performance->x() + ui->Performance->sizeHint().width();
    ui->performanceTip->move(performance + TipGap, ui->performanceTip->y());
}
