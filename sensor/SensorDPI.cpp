// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/SensorDPI.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DpiCodes.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "presentation/ColorDialog.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/Motion.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/DpiSteps.h"
#include "sensor/MarkerTrack.h"
#include "ui_SensorDPI.h"

#include <QButtonGroup>
#include <QColorDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <cstring>

namespace
{

constexpr int FreeSlider = 5000;
constexpr int StopRadius = 4; // of the track's stops, each at the middle of a stage

// Without a device.
constexpr int ResetMinimum = 50;
constexpr int ResetMaximum = 42000;
constexpr int ResetStages = 6;
constexpr int ResetStage = 1;
constexpr int ResetDpi = 2400;
constexpr int ResetOverviewDpi = 800; // differs from the slider: the overview shows a new mouse's value

// Asks without a notice, for what a pointer does many times in a second.
bool mouseAnswers() { return UsbFinderC_GetDeviceOnLine(CurrentDevicePath()) != 0; }

QString nameOf(const DpiStage &stage) { return QColor(stage.Red, stage.Green, stage.Blue).name(); }

QColor colorOf(const QString &color)
{
    const QStringList parts = color.split(QLatin1Char(','));
    return parts.size() == 3 ? QColor(parts[0].toInt(), parts[1].toInt(), parts[2].toInt()) : QColor();
}

} // namespace

SensorDPI::SensorDPI(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::SensorDPI>())
{
    ui->setupUi(this);
    row_ = std::make_unique<StageRow>(
        StageRow::Widgets{ui->BlueButton, ui->BrightRedButton, ui->RedButton, ui->YellowButton,
                          ui->GreenButton, ui->PurpleButton, ui->LightBlueButton, ui->LightYellowButton},
        StageRow::Widgets{ui->BlueButtonA, ui->BrightRedButtonA, ui->RedButtonA, ui->YellowButtonA,
                          ui->GreenButtonA, ui->PurpleButtonA, ui->LightBlueButtonA, ui->LightYellowButtonA});
    MarkerArea_ = ui->markerTrack->geometry();
    makeGroups();
    connect(PostMsg::instance(), SIGNAL(SigAddConfig(QString)), this, SLOT(followProfile(QString)));
    connect(ui->spinBoxA, &DpiBox::entered, this, &SensorDPI::enter);
    connect(ui->spinBoxA, &DpiBox::stepped, this, [this](bool up) {
        if (up)
            on_AddLevelA_clicked();
        else
            on_ReduceLevelA_clicked();
    });
    onFirstShow(this, [this] { applyStyle(); });
}

SensorDPI::~SensorDPI() = default;

void SensorDPI::makeGroups()
{
    auto *buttons = new QButtonGroup(this);
    auto *bars = new QButtonGroup(this);
    for (int stage = 0; stage < DpiStageLimit; ++stage) {
        buttons->addButton(row_->button(stage), stage);
        bars->addButton(row_->bar(stage), stage);
        row_->bar(stage)->installEventFilter(this);
    }
}

void SensorDPI::applyStyle()
{
    PicturePath_ = style::pictureFolder(QStringLiteral("Sensor"));
    row_->applyStyle();
    ui->label->setStyleSheet(style::heading());
    ui->ReduceLevelA->setStyleSheet(style::titleButton(PicturePath_, QStringLiteral("Reduce")));
    ui->AddLevelA->setStyleSheet(style::titleButton(PicturePath_, QStringLiteral("Add")));
    ui->label_8->setStyleSheet(style::labelPicture(PicturePath_, QStringLiteral("Level.png")) +
                               style::hoverPicture(PicturePath_, QStringLiteral("LevelHover.png")));
    ui->groove->setStyleSheet(style::tiledPicture(PicturePath_, QStringLiteral("Track.png")));
    ui->horizontalSliderC->setStyleSheet(style::slider());
    ui->spinBoxA->setStyleSheet(style::numberBox());
    styleComboBox(ui->ChooseEvent, PicturePath_);
    ui->ChooseEvent->setStyleSheet(ui->ChooseEvent->styleSheet() +
                                   style::comboBoxBack(PicturePath_, QStringLiteral("CountBack.png")));
}

// ---- What the page shows

// An edit that was refused left the slider blocked and disabled; the paint makes it usable again.
void SensorDPI::paintSilently(const std::function<void()> &paint)
{
    const auto quiet = row_->silence();
    const QSignalBlocker quietChoice(ui->ChooseEvent);
    ui->horizontalSliderC->blockSignals(true);
    paint();
    ui->horizontalSliderC->setEnabled(true);
    ui->horizontalSliderC->blockSignals(false);
}

void SensorDPI::paint(const FlashDataMap &map, int offered)
{
    if (std::memcmp(&map.DpiStages[pickedStage_], &picked_, sizeof picked_) != 0)
        closePicker(); // its answer would change a stage that the user was not asked about
    paintSilently([&] {
        SetStageCount(map.DpiStageCount);
        if (isStage(map.CurrentDpiStage))
            SetCurrentStage(map.CurrentDpiStage);
        for (int i = 0; i < offered; ++i)
            SetStageColor(i, nameOf(map.DpiStages[i]));
        offerChoices(offered);
        row_->selectOnly(CurrentStage_);
        showRange(SensorRanges.DpiSliderMin, SensorRanges.DpiSliderMax);
        for (int i = 0; i < offered; ++i) {
            const DpiStage &stage = map.DpiStages[i];
            const int dpi = SensorDpiDecode(stage.LevelX, stage.LevelFlags);
            SetStageText(i, QString::number(dpi));
            if (i == map.CurrentDpiStage) {
                emit PostMsg::instance()->SigAddSensor(dpi);
                showDpi(dpi);
            }
        }
        ShowStages(map.DpiStageCount - 1);
        SetChoice(map.DpiStageCount - 1);
        SelectStage(map.CurrentDpiStage);
    });
}

void SensorDPI::reset()
{
    paintSilently([this] {
        showRange(ResetMinimum, ResetMaximum);
        ResetDefaults();
        offerChoices(ResetStages);
        ShowStages(ResetStages - 1);
        SetChoice(ResetStages - 1);
        SelectStage(ResetStage);
        emit PostMsg::instance()->SigAddSensor(ResetOverviewDpi);
        showDpi(ResetDpi);
    });
}

void SensorDPI::showRange(int minimum, int maximum)
{
    ui->horizontalSliderC->setMaximum(maximum);
    ui->horizontalSliderC->setMinimum(minimum);
}

void SensorDPI::offerChoices(int count)
{
    ui->ChooseEvent->clear();
    for (int i = 0; i < count; ++i)
        ui->ChooseEvent->insertItem(i, QString::number(i + 1));
}

void SensorDPI::showDpi(int dpi)
{
    ui->horizontalSliderC->setValue(dpi);
    ui->spinBoxA->setValue(dpi);
}

void SensorDPI::setTitle(const QString &title) { ui->label->setText(title); }

void SensorDPI::SetStageText(int stage, const QString &text)
{
    if (isStage(stage))
        row_->setText(stage, text);
}

void SensorDPI::SetStageColor(int stage, const QString &color)
{
    if (isStage(stage))
        row_->setColor(stage, listedColor(QColor(color)));
}

void SensorDPI::ShowStages(int lastIndex)
{
    const int last = qBound(0, lastIndex, DpiStageLimit - 1);
    row_->show(last);
    if (pickedStage_ > last)
        closePicker();
    ui->groove->resize(MarkerPitch * last + 2 * StopRadius, ui->groove->height());
}

void SensorDPI::SelectStage(int stage)
{
    if (!isStage(stage))
        return;
    CurrentStage_ = LastStage_ = stage;
    showStage(stage);
    ArmWrite_ = true; // showStage() blocked the slider, so its next change is the user's
}

void SensorDPI::ResetDefaults()
{
    const DeviceCatalogue catalogue;
    const int model = SelectedDevice::info().DriveIndex;
    const QStringList colors = catalogue.list(model, "DPIColor");
    for (int stage = 0; stage < DpiStageLimit && 3 * stage + 2 < colors.size(); ++stage)
        row_->setColor(stage, QStringList(colors.mid(3 * stage, 3)).join(QLatin1Char(',')));
    const QStringList texts = catalogue.list(model, "DPIGrade");
    if (texts.size() < DpiStageLimit)
        return;
    for (int stage = 0; stage < DpiStageLimit; ++stage) {
        row_->selectButton(stage, false);
        row_->setText(stage, texts[stage]);
    }
}

void SensorDPI::SetChoice(int index)
{
    const QSignalBlocker quiet(ui->ChooseEvent);
    ui->ChooseEvent->setCurrentIndex(index);
    ChooseIndex_ = ui->ChooseEvent->currentIndex();
}

// ---- Selecting a stage

void SensorDPI::stageToggled(int stage, bool checked)
{
    row_->selectButton(stage, checked);
    if (checked)
        takeStage(stage);
}

void SensorDPI::takeStage(int stage)
{
    const auto write = [this, stage] {
        LastStage_ = CurrentStage_;
        CurrentStage_ = stage;
        return SetCurrentDpiStage(uint8_t(stage));
    };
    const auto restore = [this] {
        CurrentStage_ = LastStage_;
        showStage(LastStage_);
    };
    if (edit(SensorPageBusy, row_->button(stage), write, restore) != EditResult::Written)
        return;
    for (int other = 0; other < DpiStageLimit; ++other)
        if (other != stage)
            row_->selectButton(other, false);
    row_->bar(stage)->setChecked(true);
    LastStage_ = stage;
    row_->stopTabAt(stage);
    placeMarker(stage);
    emit PostMsg::instance()->SigAddSensor(row_->number(stage));
}

void SensorDPI::showStage(int stage)
{
    if (!isStage(stage))
        return;
    const auto quiet = row_->silence();
    const QSignalBlocker quietSlider(ui->horizontalSliderC);
    ui->horizontalSliderC->setValue(row_->number(stage));
    ui->spinBoxA->setValue(row_->number(stage));
    row_->button(stage)->setChecked(true);
    row_->bar(stage)->setChecked(true);
    row_->selectOnly(stage);
    row_->stopTabAt(stage);
    placeMarker(stage);
}

void SensorDPI::barToggled(int stage, bool checked)
{
    row_->selectBar(stage, checked);
    if (!checked)
        return;
    row_->button(stage)->setChecked(true);
    if (row_->checkedButton() != stage)
        return; // the mouse did not take the stage
    // A slider with that value already emits no change that would set ArmWrite_ again.
    const int dpi = row_->number(stage);
    ArmWrite_ = ui->horizontalSliderC->value() == dpi;
    ui->horizontalSliderC->setValue(dpi);
}

// Created at its first use, since it takes longer to build than the whole panel.
void SensorDPI::makePicker()
{
    ColorPicker_ = makeColorDialog(this);
    connect(ColorPicker_, &QColorDialog::colorSelected, this,
            [this](const QColor &color) { recolor(pickedStage_, color); });
}

void SensorDPI::barClicked(int stage)
{
    if (!ColorPicker_)
        makePicker();
    pickedStage_ = stage;
    picked_ = DeviceRecord::copy().DpiStages[stage];
    ColorPicker_->setWindowTitle(
        language::text(language::Section::sensor, "StageColor", LanguageIndex).arg(stage + 1));
    ColorPicker_->setCurrentColor(colorOf(row_->color(stage)));
    ColorPicker_->open();
}

void SensorDPI::closePicker()
{
    if (ColorPicker_)
        ColorPicker_->reject();
}

// The record is read before the profile's name, and two profiles may hold the same stages.
void SensorDPI::followProfile(const QString &name)
{
    if (name != profile_)
        closePicker();
    profile_ = name;
}

// The arrow keys of a group click what they reach, and a click on a bar asks for a colour.
bool SensorDPI::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Left && key != Qt::Key_Right && key != Qt::Key_Up && key != Qt::Key_Down)
        return false;
    const int stage = row_->checkedBar() + (key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1);
    if (isStage(stage) && !row_->bar(stage)->isHidden()) {
        row_->bar(stage)->setFocus(Qt::TabFocusReason);
        row_->bar(stage)->setChecked(true);
    }
    return true;
}

void SensorDPI::SetColor(const QColor &color) { recolor(row_->checkedBar(), color); }

void SensorDPI::recolor(int stage, const QColor &color)
{
    if (!mouseAnswers() || stage < 0)
        return;
    const auto write = [stage, color] {
        return SetDpiColor(stage, uint8_t(color.red()), uint8_t(color.green()), uint8_t(color.blue()));
    };
    if (edit(SensorPageBusy, row_->bar(stage), write, [] {}) != EditResult::Refused)
        row_->setColor(stage, listedColor(color));
}

// ---- The value of the current stage

int SensorDPI::rest(int dpi)
{
    const DpiRest found = dpiRestAt(dpi, SensorRanges);
    if (found.step > 0) {
        ui->horizontalSliderC->setPageStep(found.step);
        ui->horizontalSliderC->setSingleStep(found.step);
    }
    return found.dpi;
}

// Stays blocked until the page is filled again, so that a stage selected meanwhile moves it silently.
void SensorDPI::returnSlider()
{
    ui->horizontalSliderC->blockSignals(true);
    ui->horizontalSliderC->giveBack(ui->spinBoxA->value());
}

void SensorDPI::showValue(int stage, int dpi)
{
    if (stage >= 0)
        row_->setText(stage, QString::number(dpi));
    ui->spinBoxA->setValue(dpi);
}

void SensorDPI::on_horizontalSliderC_sliderMoved(int position)
{
    const int dpi = rest(position);
    if (SensorPageBusy || mouseAnswers()) {
        ui->spinBoxA->setValue(dpi);
        return;
    }
    returnSlider();
    awaitMouse(); // a drag raises no notice, which would do it
}

void SensorDPI::on_horizontalSliderC_valueChanged(int value)
{
    if (UiArmed && !SensorPageBusy && !mouseAnswers()) {
        returnSlider();
        emit PostMsg::instance()->SigMouseOffLineo(0);
        return;
    }
    const int dpi = rest(value);
    const int stage = row_->checkedButton();
    const int before = stage >= 0 ? row_->number(stage) : dpi;
    showValue(stage, dpi);
    if (!ArmWrite_) {
        ArmWrite_ = true;
        return;
    }
    if (SettingsBusy)
        return;
    const EditResult result = edit(
        SensorPageBusy, ui->horizontalSliderC, [=] { return stage < 0 || SensorDpiEncode(stage, dpi); },
        [=] { showValue(stage, before); });
    if (result == EditResult::Refused)
        returnSlider();
    if (result == EditResult::Written)
        emit PostMsg::instance()->SigAddSensor(dpi);
}

void SensorDPI::stepTo(int dpi)
{
    if (!CheckOnline())
        return;
    ArmWrite_ = true;
    ui->horizontalSliderC->setValue(dpi);
}

// A number outside of the model's range becomes the nearest end of it.
void SensorDPI::enter(int dpi)
{
    const int most = ui->horizontalSliderC->maximum();
    stepTo(dpiRestAt(qBound(ui->horizontalSliderC->minimum(), dpi, most), SensorRanges).dpi);
}

void SensorDPI::on_AddLevelA_clicked()
{
    stepTo(qMin(dpiAbove(ui->spinBoxA->value(), SensorRanges), ui->horizontalSliderC->maximum()));
}

void SensorDPI::on_ReduceLevelA_clicked() { stepTo(dpiBelow(ui->spinBoxA->value(), SensorRanges)); }

void SensorDPI::on_pushButton_clicked()
{
    const QSignalBlocker quiet(ui->horizontalSliderC);
    ui->horizontalSliderC->setValue(FreeSlider);
}

// ---- The number of stages

void SensorDPI::on_ChooseEvent_currentIndexChanged(int index)
{
    if (index < 0)
        return; // the box is being emptied
    if (!SensorPageBusy && !mouseAnswers()) {
        SetChoice(ChooseIndex_);
        return;
    }
    if (SensorPageBusy) {
        ChooseIndex_ = index;
        return;
    }
    const bool vanishes = isStage(CurrentStage_) && CurrentStage_ > index;
    const EditResult result = edit(
        ui->ChooseEvent,
        [=] { return vanishes ? writeExchange(index) : SetDpiStageCount(uint8_t(index + 1)); },
        [this] { SetChoice(ChooseIndex_); });
    if (result == EditResult::Refused)
        return;
    if (vanishes)
        exchangeWith(index);
    ChooseIndex_ = index;
    StageCount_ = index + 1;
    ShowStages(index);
}

// The current stage takes the last place that stays, so that nothing of either is lost.
bool SensorDPI::writeExchange(int index) const
{
    const FlashDataMap record = DeviceRecord::copy();
    return SetDpiStages(record.DpiStages[index], record.DpiStages[CurrentStage_], CurrentStage_, index,
                        uint8_t(index));
}

void SensorDPI::exchangeWith(int index)
{
    row_->swap(index, CurrentStage_);
    CurrentStage_ = LastStage_ = index;
    showStage(index);
}

// ---- The marker

// A panel that is hidden or blocked by a modal window gets no release; with the drag kept, the release of a
// later press would select a stage.
bool SensorDPI::event(QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide)
        abandonDrag();
    if (event->type() == QEvent::Hide && !event->spontaneous())
        closePicker(); // another page may show another device; a minimized window shows the same again
    return QFrame::event(event);
}

void SensorDPI::mousePressEvent(QMouseEvent *event)
{
    abandonDrag(); // whose release was lost
    if (event->buttons() == Qt::NoButton || !ui->label_8->geometry().contains(event->pos()) ||
        !mouseAnswers())
        return;
    Dragging_ = true;
    DragOffset_ = event->pos() - ui->label_8->pos();
}

void SensorDPI::mouseMoveEvent(QMouseEvent *event)
{
    if (!Dragging_)
        return;
    if (!MarkerArea_.contains(event->pos())) {
        mouseReleaseEvent(event);
        return;
    }
    ui->label_8->move(event->pos() - DragOffset_);
    row_->setTarget(targetAt(event->pos()).value_or(StageRow::NoTarget));
}

void SensorDPI::mouseReleaseEvent(QMouseEvent *event)
{
    if (!Dragging_)
        return;
    Dragging_ = false;
    row_->setTarget(StageRow::NoTarget);
    drop(event->pos());
}

void SensorDPI::placeMarker(int stage)
{
    const QPoint place = StagePoint[std::size_t(stage)];
    if (place == ui->label_8->pos())
        return;
    const SoftChange moves(this, MarkerArea_);
    ui->label_8->move(place);
}

void SensorDPI::returnMarker()
{
    if (isStage(CurrentStage_))
        ui->label_8->move(StagePoint[std::size_t(CurrentStage_)]);
}

void SensorDPI::abandonDrag()
{
    if (!Dragging_)
        return;
    Dragging_ = false;
    row_->setTarget(StageRow::NoTarget);
    returnMarker();
}

// The stage that a drop there selects.
std::optional<int> SensorDPI::targetAt(const QPoint &pointer) const
{
    if (!isStage(CurrentStage_) || isBesideTrack(pointer.x()) ||
        isBehindLastStage(pointer.x(), ui->ChooseEvent->currentIndex()))
        return std::nullopt;
    const std::optional<int> shift = markerShift(pointer.x() - StagePoint[std::size_t(CurrentStage_)].x());
    return shift && isStage(CurrentStage_ + *shift) ? std::optional(CurrentStage_ + *shift) : std::nullopt;
}

void SensorDPI::drop(const QPoint &pointer)
{
    const bool onMarker = ui->label_8->geometry().contains(pointer);
    returnMarker();
    if (!onMarker || isBesideTrack(pointer.x()))
        return;
    if (isBehindLastStage(pointer.x(), ui->ChooseEvent->currentIndex())) {
        if (UiArmed)
            SetCurrentDpiStage(uint8_t(CurrentStage_));
        return;
    }
    if (const std::optional<int> stage = targetAt(pointer))
        dropOn(*stage);
}

void SensorDPI::dropOn(int stage)
{
    if (!CheckOnline())
        return;
    if (!UiArmed)
        CurrentStage_ = stage;
    row_->button(stage)->setChecked(true);
    returnMarker();
}
