// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/Advanced.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/ModelPicture.h"
#include "presentation/Motion.h"
#include "presentation/NamedWidgets.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Tip.h"
#include "ui_Advanced.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QTabBar>

namespace
{

constexpr char NoLongRange[] = "-1";
constexpr int SleepAfterReset = 2;

// Where the captions of the groups stand; a group at 0 is hidden.
struct LayoutRow {
    int kfps;
    int longRange;
    int angle;
};
constexpr LayoutRow BothGroups = {153, 256, 359};
constexpr LayoutRow KfpsOnly = {153, 0, 256};
constexpr LayoutRow NeitherGroup = {0, 0, 153};
constexpr LayoutRow LongRangeOnly = {0, 153, 256};

const LayoutRow &layoutRow(bool kfps, bool longRange, int index)
{
    static constexpr LayoutRow WithBoth[] = {BothGroups, KfpsOnly, NeitherGroup, LongRangeOnly};
    if (kfps && longRange)
        return WithBoth[index >= 1 && index <= 3 ? index : 0];
    return kfps ? KfpsOnly : longRange ? LongRangeOnly : NeitherGroup;
}

// The captions are of different lengths, so the tip icons stand at another place in each language.
constexpr int SleepTipX[] = {300, 200, 200, 320, 300, 300, 300, 290};
constexpr int CaptionColumn = 68;
constexpr int CaptionRoom = 8; // before the icon
constexpr int LineOpacity = 28;

int tipColumn(int language)
{
    return SleepTipX[language >= 0 && language < int(std::size(SleepTipX)) ? language : 0];
}

QString advancedText(const char *key, int index)
{
    return language::text(language::Section::AdvancedSettings, key, index);
}

// An empty text leaves the default of the form.
void setTextOf(QLabel *label, const QString &text)
{
    if (!text.isEmpty())
        label->setText(text);
}

QString degreesText(int degrees) { return QString::number(degrees) + QChar(0x00B0); }

bool offersLongRange()
{
    const int model = SelectedDevice::info().DriveIndex;
    return DeviceCatalogue().list(model, "Adveanced").value(0) != QLatin1String(NoLongRange);
}

// The mode belongs to the receiver and is not in the record; the receiver's answer is not tested.
bool writeLongRange(bool on)
{
    if (!UsbFinderC_GetDeviceOnLine(CurrentDevicePath())) {
        emit PostMsg::instance()->SigMouseOffLineo(0);
        return false;
    }
    UsbFinderC_SetLongRangeMode(CurrentDevicePath(), on ? 1 : 0);
    return true;
}

} // namespace

// A widget of a group: its place from the left, and below the top of the group's caption.
struct Advanced::Placed {
    QWidget *widget;
    int x;
    int below;
};

Advanced::Advanced(QWidget *parent)
    : PageSurface(QStringLiteral("Advanced"), QStringLiteral("Advanced"), "common PageAdvanced", parent)
    , ui(std::make_unique<Ui::Advanced>())
    , PicturePath_(style::pictureFolder(QStringLiteral("Advanced")))
    , modes_(new QButtonGroup(this))
{
    ui->setupUi(this);
    modeBoxes_ = {ui->checkBox_3, ui->checkBox_4, ui->checkBox_5, ui->checkBox_6};
    buildHiddenTab();
    onFirstShow(this, [this] { applyStyle(); });
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

Advanced::~Advanced() = default;

void Advanced::buildHiddenTab()
{
    ui->StepSlider->hide();
    ui->StepSlider->setValue(1);
    HiddenTab_.reset(ui->tab_2);
    ui->tabWidget->removeTab(1);
    HiddenTab_->setParent(nullptr);
    ui->curveTabs->tabBar()->hide(); // the boxes choose
    for (CurvePlotWidget *curve : {ui->curve_0, ui->curve_1, ui->curve_2, ui->curve_3})
        curve->setEditable(false);
    modes_->setExclusive(true);
    for (int i = 0; i < int(modeBoxes_.size()); ++i) {
        modes_->addButton(modeBoxes_[std::size_t(i)], i);
        connect(modeBoxes_[std::size_t(i)], &QCheckBox::toggled, this, [this, i](bool on) {
            if (on)
                ui->curveTabs->setCurrentIndex(i);
        });
    }
}

void Advanced::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormReset()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataLightSensor(FlashDataMap)), this,
            SLOT(SlotUpDataSenSorUISensor(FlashDataMap)), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataSensorUIB(FlashDataMap)), this, SLOT(SlotUpDataSenSorUIB(FlashDataMap)));
    connect(hub, SIGNAL(SigForm()), this, SLOT(SlotForm()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormB()), this, SLOT(SlotFormB()));
    connect(hub, SIGNAL(SigLongRangeMode(bool)), this, SLOT(SlotLongRangeMode(bool)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(Sig20KOpen(bool)), this, SLOT(Slot20KOpen(bool)));
    connect(hub, SIGNAL(SigtVis(int)), this, SLOT(SetPos(int)));
}

void Advanced::applyStyle()
{
    const QString labelColor = style::color("LabelColor");
    const QString dimColor = style::color("LinEditColorSecond");
    for (QFrame *line : {ui->KFpsLine, ui->LongRangeLine, ui->AngleLine})
        line->setStyleSheet(style::hairline(labelColor, LineOpacity));
    for (QFrame *marker : {ui->SleepMarker, ui->KFpsMarker, ui->LongRangeMarker, ui->AngleMarker})
        marker->setStyleSheet(style::sectionTitle(PicturePath_, marker->objectName()));
    for (QLabel *caption : {ui->SleepCaption, ui->KFpsCaption, ui->LongRangeCaption, ui->AngleCaption})
        caption->setStyleSheet(style::heading());
    ui->AngleText->setStyleSheet(style::label(labelColor));
    for (QLabel *text : {ui->LongRangeText, ui->label_Min, ui->label_Zero, ui->label_Max})
        text->setStyleSheet(style::label(dimColor));
    for (QLabel *tips : {ui->SleepTips, ui->KFpsTips, ui->LongRangeTips, ui->AngleTips})
        styleTip(tips);
    ui->AnglePicture->setStyleSheet(style::labelPicture(PicturePath_, QStringLiteral("Angle.png")));
    ui->KFPS->setStyleSheet(style::switchButton(PicturePath_));
    switchSoftly(ui->KFPS, PicturePath_);
    for (QCheckBox *box : {ui->checkBox, ui->checkBox_2})
        box->setStyleSheet(style::checkBox(PicturePath_, labelColor));
    ui->AngleSet->setStyleSheet(style::centredSlider());
}

// ---- What a record shows ------------------------------------------------------------------------

void Advanced::paint(const FlashDataMap &map)
{
    ui->AngleSet->setEnabled(true);
    paintAngle(int8_t(map.AngleSet));
    ui->StopCloseTime->SetStopClose(sleepIndexOf(map.StopCloseTime));
    ui->KFPS->setChecked(map.KFps == 1);
    ShowKfps_ = showKfpsCaption_ = true;
    SetPos(0);
}

void Advanced::SlotLongRangeMode(bool selected)
{
    if (!offersLongRange())
        return;
    const QSignalBlocker silent(ui->checkBox);
    ui->checkBox->setChecked(selected);
    ShowLongRange_ = showLongRangeCaption_ = true;
    SetPos(0);
}

void Advanced::SlotForm()
{
    ShowLongRange_ = offersLongRange() && !SelectedDevice::info().Usb;
    showLongRangeCaption_ = true;
    SetPos(0);
}

// Hides the captions and leaves the rest of the groups, which marks the page as having no device.
void Advanced::SlotFormReset()
{
    const QSignalBlocker silent(ui->checkBox);
    ui->checkBox->setChecked(false);
    ui->StopCloseTime->SetStopClose(SleepAfterReset);
    ui->KFPS->setChecked(false);
    paintAngle(0);
    ShowKfps_ = ShowLongRange_ = true;
    showKfpsCaption_ = showLongRangeCaption_ = false;
    SetPos(0);
}

// ---- Edits --------------------------------------------------------------------------------------

void Advanced::showAngle(int degrees)
{
    ui->AngleMouse->SetAngle(degrees);
    ui->AngleText->setText(degreesText(degrees));
}

void Advanced::paintAngle(int degrees)
{
    const QSignalBlocker silent(ui->AngleSet);
    ui->AngleSet->setValue(degrees);
    showAngle(degrees);
    Angle_ = degrees;
}

void Advanced::on_AngleSet_sliderMoved(int position) { showAngle(position); }

void Advanced::on_AngleSet_valueChanged(int value)
{
    showAngle(value);
    const auto giveBack = [this] {
        ui->AngleSet->giveBack(Angle_);
        showAngle(Angle_);
    };
    if (!ui->AngleSet->isEnabled())
        giveBack();
    else if (edit(
                 SensorPageBusy, ui->AngleSet, [value] { return SetAngleSet(uint8_t(value)); }, giveBack) ==
             EditResult::Written)
        Angle_ = value;
}

// Written whether or not the pages take input.
void Advanced::on_KFPS_clicked(bool checked)
{
    if (!SetKFps(checked ? 1 : 0))
        ui->KFPS->setChecked(!checked);
}

void Advanced::on_checkBox_toggled(bool checked)
{
    edit(
        ui->checkBox, [checked] { return writeLongRange(checked); },
        [this, checked] { ui->checkBox->setChecked(!checked); });
}

void Advanced::on_checkBox_2_toggled(bool checked)
{
    const QString sheet =
        style::checkBox(PicturePath_, style::color(checked ? "LabelColor" : "LinEditColorSecond"));
    for (QCheckBox *box : modeBoxes_) {
        box->setEnabled(checked);
        box->setStyleSheet(sheet);
    }
}

// ---- Layout and language ------------------------------------------------------------------------

void Advanced::place(std::initializer_list<Placed> group, int top)
{
    for (const Placed &placed : group) {
        placed.widget->move(placed.x, top + placed.below);
        placed.widget->setVisible(top > 0);
    }
}

void Advanced::SetPos(int index)
{
    const LayoutRow &row = layoutRow(ShowKfps_, ShowLongRange_, index);
    const int tip = tipColumn(languageIndex_);
    place({{ui->KFpsLine, 40, -19},
           {ui->KFpsMarker, 40, 7},
           {ui->KFpsCaption, CaptionColumn, 0},
           {ui->KFpsTips, tip, 3},
           {ui->KFPS, CaptionColumn, 35}},
          row.kfps);
    place({{ui->LongRangeLine, 40, -19},
           {ui->LongRangeMarker, 40, 7},
           {ui->LongRangeCaption, CaptionColumn, 0},
           {ui->LongRangeTips, tip, 3},
           {ui->checkBox, CaptionColumn, 35},
           {ui->LongRangeText, 90, 32}},
          row.longRange);
    place({{ui->AngleLine, 40, -19},
           {ui->AngleMarker, 40, 7},
           {ui->AngleCaption, CaptionColumn, 0},
           {ui->AngleTips, tip, 5},
           {ui->AngleFrame, 158, 31}},
          row.angle);
    for (QLabel *caption : {ui->SleepCaption, ui->KFpsCaption, ui->LongRangeCaption, ui->AngleCaption})
        caption->resize(tip - CaptionColumn - CaptionRoom, caption->height());
    ui->SleepTips->move(tip, ui->SleepTips->y());
    ui->KFpsCaption->setVisible(row.kfps > 0 && showKfpsCaption_);
    ui->LongRangeCaption->setVisible(row.longRange > 0 && showLongRangeCaption_);
    ui->AngleMouse->SetImage(PicturePath_ +
                             QStringLiteral("mouse%1.png").arg(pictureNumber(SelectedDevice::info().Mid)));
}

void Advanced::SlotAllLanguage(int index)
{
    const struct {
        QLabel *caption;
        QLabel *tips;
        QWidget *control;
        const char *captionKey;
        const char *tipsKey;
    } groups[] = {
        {ui->SleepCaption, ui->SleepTips, ui->StopCloseTime->box(), "SleepTime", "SleepTimeTips"},
        {ui->KFpsCaption, ui->KFpsTips, ui->KFPS, "scanningTitle", "scanningTips"},
        {ui->LongRangeCaption, ui->LongRangeTips, ui->checkBox, "LongDistance", "LongDistanceTips"},
        {ui->AngleCaption, ui->AngleTips, ui->AngleSet, "AngularMode", "AngularModeTips"},
    };
    for (const auto &group : groups) {
        setTextOf(group.caption, advancedText(group.captionKey, index));
        nameControl(group.control, group.caption->text());
        setTip(group.tips, group.control, advancedText(group.tipsKey, index));
    }
    setTextOf(ui->LongRangeText, advancedText("LongDistanceTips", index));
    for (int i = 0; i < SleepItems; ++i)
        ui->StopCloseTime->setItemText(
            i, language::choice("LightOffTimeOptions", QString::number(SleepCodes[std::size_t(i)]), index));
    setHiddenTexts(index);
    languageIndex_ = index;
    SetPos(0);
}

void Advanced::setHiddenTexts(int index)
{
    setTextOf(ui->SensitivityCaption, advancedText("dpiSensitivityTitle", index));
    ui->checkBox_2->setAccessibleName(ui->SensitivityCaption->text());
    setTextOf(ui->SensitivityText,
              advancedText("dpiSensitivityTips", index).replace(QLatin1Char('\n'), QLatin1String("<br>")));
    setTextOf(ui->ModeCaption, advancedText("dpiModeTitle", index));
    setTextOf(ui->AxisXText, advancedText("dpiModeTipsX", index));
    setTextOf(ui->AxisYText, advancedText("dpiModeTipsY", index));
    for (int i = 0; i < int(modeBoxes_.size()); ++i) {
        const QString text = language::choice("dpiModeOptions", QString::number(i), index);
        if (!text.isEmpty())
            modeBoxes_[std::size_t(i)]->setText(text);
    }
}
