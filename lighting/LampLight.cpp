// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LampLight.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "device/hidusb/wire/ReplyTimeout.h"
#include "hub/PostMsg.h"
#include "lighting/HueField.h"
#include "lighting/IndicatorLamps.h"
#include "lighting/LightGroup.h"
#include "lighting/LightTables.h"
#include "lighting/SchemeChoice.h"
#include "lighting/ScreenColor.h"
#include "lighting/SensorEffect.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/Motion.h"
#include "presentation/ScrollFades.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <utility>

namespace
{

enum Channel { Red, Green, Blue };

// Below the mouse's light on a radio link, above it on a cable.
constexpr QPoint MarkOnCable{40, 84};
constexpr QPoint EffectOnCable{68, 77};
constexpr QPoint MarkOnRadio{40, 287};
constexpr QPoint EffectOnRadio{68, 280};
constexpr QSize MarkSize{24, 24};
constexpr QPoint MouseOnCable{40, 168};
constexpr QPoint MouseOnRadio{40, 62};

constexpr QRect SwitchPlace{68, 28, 44, 24};
constexpr QRect SwitchCaptionPlace{122, 24, 400, 32};
constexpr int CardX = 16;
constexpr int CardTop = 12;
constexpr int CardGap = 12;
constexpr int CardPadding = 6; // above what a card holds
constexpr QSize MouseCardSize{851, 376};
constexpr QSize ReceiverCardSize{851, 226};
constexpr QSize LampsCardSize{851, 148};
constexpr QSize SchemeCardSize{851, 164};

constexpr char NoScheme[] = "-1";

constexpr int ResetSpeed = 7; // as records hold them
constexpr int ResetBrightness = 9;
constexpr int ResetEffectSpeed = 3;
constexpr int ResetEffectBrightness = 5;

// Of a list of sleep times that this page has lost.
constexpr uint8_t SleepCodes[] = {1, 3, 6, 30, 60, 90, 120, 150, 180, 210, 240};

bool modelHasScheme()
{
    const int model = SelectedDevice::info().DriveIndex;
    return DeviceCatalogue().list(model, "Adveanced").value(1) != QLatin1String(NoScheme);
}

// Puts the group's controls behind `last` on Tab's road, in the order that they have. Returns the last of
// them.
QWidget *tabThrough(const QWidget *group, QWidget *last)
{
    QVector<QWidget *> controls;
    for (QWidget *each = group->nextInFocusChain(); each != group; each = each->nextInFocusChain())
        if (group->isAncestorOf(each) && each->focusPolicy() & Qt::TabFocus && !each->focusProxy())
            controls << each;
    for (QWidget *each : qAsConst(controls)) {
        QWidget::setTabOrder(last, each);
        last = each;
    }
    return last;
}

} // namespace

LampLight::LampLight(QWidget *parent)
    : PageSurface(QStringLiteral("LampLight"), QStringLiteral("Light"), "common PageLighting", parent)
    , PicturePath_(style::pictureFolder(QStringLiteral("Light")))
    , area_(new QScrollArea(this))
    , contents_(new QWidget)
    , mouseCard_(addCard("mouseCard"))
    , receiverCard_(addCard("receiverCard"))
    , lampsCard_(addCard("lampsCard"))
    , schemeCard_(addCard("schemeCard"))
    , movingOff_(new QToolButton(contents_))
    , movingOffCaption_(new QLabel(QStringLiteral("移动时关灯"), contents_))
    , mouse_(new LightGroup(MouseLightNames, mouseLight_, contents_))
    , effectMark_(new QLabel(contents_))
    , effect_(new SensorEffect(contents_))
    , receiver_(new LightGroup(ReceiverLightNames, receiverLight_, contents_))
    , lamps_(new IndicatorLamps(contents_))
    , scheme_(new SchemeChoice(contents_))
{
    buildContents();
    QMetaObject::connectSlotsByName(this);
    onFirstShow(this, [this] { applyStyle(); });
    connectSignals();
    SlotAllLanguage(LanguageIndex);
    arrange();
}

QFrame *LampLight::addCard(const char *name)
{
    auto *card = new QFrame(contents_);
    card->setObjectName(QLatin1String(name));
    return card;
}

void LampLight::buildContents()
{
    area_->setObjectName(QStringLiteral("scrollArea"));
    area_->setGeometry(rect());
    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus); // a press beside the controls is the page's
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->verticalScrollBar()->setObjectName(QStringLiteral("verticalScrollBar"));
    area_->setWidget(contents_);
    // The ground shows through without a sheet on the area, which would style all that the area holds anew.
    area_->viewport()->setAutoFillBackground(false);
    contents_->setAutoFillBackground(false);
    new ScrollFades(area_, QStringLiteral("Light"));
    mouseCard_->resize(MouseCardSize);
    receiverCard_->resize(ReceiverCardSize);
    lampsCard_->resize(LampsCardSize);
    schemeCard_->resize(SchemeCardSize);
    effectMark_->resize(MarkSize);
    movingOff_->setObjectName(QStringLiteral("RippeControl"));
    movingOff_->setGeometry(SwitchPlace);
    movingOff_->setCheckable(true);
    movingOff_->setProperty("nameKey", QStringLiteral("light MovingOffLight"));
    movingOff_->setFocusPolicy(Qt::StrongFocus);
    movingOffCaption_->setObjectName(QStringLiteral("movingOffCaption"));
    movingOffCaption_->setGeometry(SwitchCaptionPlace);
}

void LampLight::connectSignals()
{
    lampsLater_.setSingleShot(true);
    connect(&lampsLater_, &QTimer::timeout, this, &LampLight::readLamps);
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigUpDataLightLight(FlashDataMap)), this, SLOT(SlotUpDataLightUILight(FlashDataMap)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataLightUIA(FlashDataMap)), this, SLOT(SlotUpDataLightUIA(FlashDataMap)));
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormResetLight()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataDPILed(FlashDataMap)), this, SLOT(SlotUpDataDPILed(FlashDataMap)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigForm()), this, SLOT(SlotForm()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormB()), this, SLOT(SlotFormB()));
    connect(hub, SIGNAL(SigRGBValue(DongleRGB *)), this, SLOT(SlotRGBValue(DongleRGB *)),
            Qt::BlockingQueuedConnection);
}

void LampLight::applyStyle()
{
    const QString sensorPictures = style::pictureFolder(QStringLiteral("Sensor"));
    area_->verticalScrollBar()->setStyleSheet(style::scrollArea());
    const auto card = [this](QFrame *frame, const QString &name) {
        frame->setStyleSheet(style::areaPicture(PicturePath_, frame->objectName(), name));
    };
    card(mouseCard_, QStringLiteral("MouseCard.png"));
    card(receiverCard_, QStringLiteral("ReceiverCard.png"));
    card(lampsCard_, QStringLiteral("LampsCard.png"));
    card(schemeCard_, QStringLiteral("SchemeCard.png"));
    effectMark_->setStyleSheet(style::labelPicture(PicturePath_, QStringLiteral("Title.png")));
    movingOff_->setStyleSheet(style::switchButton(sensorPictures));
    switchSoftly(movingOff_, sensorPictures);
    movingOffCaption_->setStyleSheet(style::label(style::color("LabelColor")));
    mouse_->applyStyle();
    receiver_->applyStyle();
    lamps_->applyStyle();
    scheme_->applyStyle();
}

// ---- What a record shows ------------------------------------------------------------------------

void LampLight::SlotUpDataLightUILight(FlashDataMap DataMap)
{
    paint(DataMap, Paint::Read);
    LightPageLoaded = true;
}

void LampLight::SlotUpDataLightUIA(FlashDataMap DataMap) { paint(DataMap, Paint::Import); }

void LampLight::paint(const FlashDataMap &map, Paint kind)
{
    const PageFilling filling(LightPageBusy);
    LightPageLoaded = false;
    receiverShown_ = !SelectedDevice::info().Usb;
    arrange();
    mouse_->enableSliders(kind == Paint::Read);
    readReceiver();
    effect_->SetEffect(map);
    mouse_->setState(MouseLight::stateOf(map));
    movingOff_->setChecked(map.LightRippeControl == 1);
}

// The thread that reads the mouse stands meanwhile, so the two questions together may take no longer than one
// that stays open. A receiver that needed more than one try for the first is asked the second when that
// thread goes on, and one that stayed silent when one of its lamps is changed. One that refuses the first
// answers at once and may know the second.
void LampLight::readReceiver()
{
    lampsLater_.stop();
    if (!receiverShown_)
        return;
    forgetOther();
    QElapsedTimer asked;
    asked.start();
    const bool answers = receiverLight_.read();
    if (asked.elapsed() < hidusb::ReplyTimeout.count()) {
        lamps_->read();
    } else {
        lamps_->notRead();
        if (answers)
            lampsLater_.start();
    }
    receiver_->setState(receiverLight_.state());
}

// Whether the records were those of another receiver.
bool LampLight::forgetOther()
{
    const QByteArray path = CurrentDevicePath();
    if (path == receiverPath_)
        return false;
    receiverLight_.forget();
    lamps_->forget();
    receiverPath_ = path;
    return true;
}

// A mouse that drops off while its device is opened brings no record, and nothing would be painted.
void LampLight::showEvent(QShowEvent *event)
{
    const PageFilling filling(LightPageBusy);
    if (forgetOther()) {
        receiver_->setState(receiverLight_.state());
        scheme_->dropUnread();
    }
    PageSurface::showEvent(event);
}

// The page may have been left or another device chosen meanwhile, and a change of a lamp may have asked
// already.
void LampLight::readLamps()
{
    if (OnDevicePage == 1 && receiverShown_ && !SelectedDevice::info().Usb &&
        CurrentDevicePath() == receiverPath_ && !lamps_->isKnown())
        lamps_->read();
}

void LampLight::SlotUpDataDPILed(FlashDataMap DataMap) { effect_->SetEffect(DataMap); }

void LampLight::SlotFormResetLight()
{
    const PageFilling filling(LightPageBusy);
    for (LightGroup *group : {mouse_, receiver_})
        group->setState({ColorFlow, group->color(), ResetSpeed, ResetBrightness});
    movingOff_->setChecked(false);
    effect_->SetModel(0);
    effect_->SetSpeed(ResetEffectSpeed);
    effect_->SetLight(ResetEffectBrightness);
    lampsLater_.stop();
    receiverLight_.forget();
    lamps_->reset();
    receiverShown_ = schemeShown_ = false;
    arrange();
}

void LampLight::SlotForm()
{
    schemeShown_ = modelHasScheme() && !SelectedDevice::info().Usb;
    scheme_->dropUnread();
    scheme_->setTexts(languageIndex_); // it names the scheme that the model comes with
    arrange();
}

void LampLight::SlotRGBValue(DongleRGB *rgb)
{
    scheme_->setRecord(rgb);
    SlotForm();
}

// ---- Layout -------------------------------------------------------------------------------------

void LampLight::arrange()
{
    const bool wired = SelectedDevice::info().Usb;
    effectMark_->move(wired ? MarkOnCable : MarkOnRadio);
    effect_->move(wired ? EffectOnCable : EffectOnRadio);
    mouse_->move(wired ? MouseOnCable : MouseOnRadio);
    QWidget *const upper = wired ? static_cast<QWidget *>(effect_) : mouse_;
    QWidget *const lower = wired ? static_cast<QWidget *>(mouse_) : effect_;
    tabThrough(lower, tabThrough(upper, movingOff_));
    int top = CardTop;
    const auto place = [&top](QFrame *card, QWidget *group, bool shown) {
        card->setVisible(shown);
        card->move(CardX, top);
        if (group) {
            group->setVisible(shown);
            group->move(MarkOnCable.x(), top + CardPadding);
        }
        top += shown ? card->height() + CardGap : 0;
    };
    place(mouseCard_, nullptr, true);
    place(receiverCard_, receiver_, receiverShown_ && !wired);
    place(lampsCard_, lamps_, receiverShown_ && !wired);
    place(schemeCard_, scheme_, schemeShown_ && !wired);
    contents_->resize(width(), qMax(top, height()));
}

// The area has moved the contents already when its bar calls this.
void LampLight::on_verticalScrollBar_valueChanged(int value) { contents_->move(0, -value); }

void LampLight::SlotAllLanguage(int index)
{
    languageIndex_ = index;
    const QString caption = language::text(language::Section::light, "MovingOffLight", index);
    if (!caption.isEmpty())
        movingOffCaption_->setText(caption);
    mouse_->setTexts(index);
    receiver_->setTexts(index);
    lamps_->setTexts(index);
    scheme_->setTexts(index);
    effect_->SlotAllLanguage(index);
    const char *const pickKey = screenCanBeRead() ? "ColorPick" : "ColorPickHere";
    const QString tip = language::text(language::Section::light, pickKey, index);
    for (LightGroup *group : {mouse_, receiver_}) {
        group->field()->setToolTip(
            QStringLiteral("<p>%1</p>").arg(tip.toHtmlEscaped())); // only this is wrapped
        group->field()->setAccessibleDescription(tip);
    }
}

// ---- The mouse's light --------------------------------------------------------------------------

void LampLight::on_LightMod_currentIndexChanged(int index)
{
    if (mouse_->chooseMode(index) && index == LightOff)
        setMovingOff(false);
}

// Without a light there is nothing to put out.
void LampLight::setMovingOff(bool on)
{
    const bool before = movingOff_->isChecked();
    movingOff_->setChecked(on);
    edit(
        LightPageBusy, movingOff_, [on] { return SetLightRippeControl(on ? 1 : 0); },
        [this, before] { movingOff_->setChecked(before); });
}

void LampLight::on_RippeControl_clicked(bool checked)
{
    edit(
        LightPageBusy, movingOff_, [checked] { return SetLightRippeControl(checked ? 1 : 0); },
        [this, checked] { movingOff_->setChecked(!checked); });
}

void LampLight::on_StopCloseTime_activated(int index)
{
    if (UiArmed && index >= 0 && index < int(std::size(SleepCodes)))
        SetStopCloseTime(SleepCodes[index]);
}

void LampLight::on_horizontalLight_valueChanged(int value) { mouse_->changeBrightness(value); }
void LampLight::on_horizontalLight_sliderMoved(int position) { mouse_->moveBrightness(position); }
void LampLight::on_horizontalSpeed_valueChanged(int value) { mouse_->changeSpeed(value); }
void LampLight::on_horizontalSpeed_sliderMoved(int position) { mouse_->moveSpeed(position); }
void LampLight::on_RSpinBox_valueChanged(int) { mouse_->changeColor(Red); }
void LampLight::on_GSpinBox_valueChanged(int) { mouse_->changeColor(Green); }
void LampLight::on_BSpinBox_valueChanged(int) { mouse_->changeColor(Blue); }
void LampLight::on_AddR_clicked() { mouse_->step(Red, 1); }
void LampLight::on_AddG_clicked() { mouse_->step(Green, 1); }
void LampLight::on_AddB_clicked() { mouse_->step(Blue, 1); }
void LampLight::on_ReduceR_clicked() { mouse_->step(Red, -1); }
void LampLight::on_ReduceG_clicked() { mouse_->step(Green, -1); }
void LampLight::on_ReduceB_clicked() { mouse_->step(Blue, -1); }

// ---- The receiver's lights ----------------------------------------------------------------------

void LampLight::on_LightMod_2_currentIndexChanged(int index) { receiver_->chooseMode(index); }
void LampLight::on_horizontalLight_2_valueChanged(int value) { receiver_->changeBrightness(value); }
void LampLight::on_horizontalLight_2_sliderMoved(int position) { receiver_->moveBrightness(position); }
void LampLight::on_horizontalSpeed_2_valueChanged(int value) { receiver_->changeSpeed(value); }
void LampLight::on_horizontalSpeed_2_sliderMoved(int position) { receiver_->moveSpeed(position); }
void LampLight::on_RSpinBox_2_valueChanged(int) { receiver_->changeColor(Red); }
void LampLight::on_GSpinBox_2_valueChanged(int) { receiver_->changeColor(Green); }
void LampLight::on_BSpinBox_2_valueChanged(int) { receiver_->changeColor(Blue); }
void LampLight::on_AddR_2_clicked() { receiver_->step(Red, 1); }
void LampLight::on_AddG_2_clicked() { receiver_->step(Green, 1); }
void LampLight::on_AddB_2_clicked() { receiver_->step(Blue, 1); }
void LampLight::on_ReduceR_2_clicked() { receiver_->step(Red, -1); }
void LampLight::on_ReduceG_2_clicked() { receiver_->step(Green, -1); }
void LampLight::on_ReduceB_2_clicked() { receiver_->step(Blue, -1); }
void LampLight::on_LightMod_3_currentIndexChanged(int index) { lamps_->change(0, index); }
void LampLight::on_LightMod_4_currentIndexChanged(int index) { lamps_->change(1, index); }
void LampLight::on_LightMod_5_currentIndexChanged(int index) { lamps_->change(2, index); }
void LampLight::on_ReUntil_toggled(bool checked) { scheme_->change(1, checked); }
void LampLight::on_ReUntil_2_toggled(bool checked) { scheme_->change(2, checked); }
void LampLight::on_ReUntil_3_toggled(bool checked) { scheme_->change(3, checked); }

// ---- The colour under the pointer ----------------------------------------------------------------

LightGroup *LampLight::groupAt(const QPoint &screenPlace) const
{
    for (LightGroup *group : {mouse_, receiver_}) {
        const HueField *field = group->field();
        if (field->isVisible() && field->visibleRegion().contains(field->mapFromGlobal(screenPlace)))
            return group;
    }
    return nullptr;
}

// Whether the group has taken the colour there, where the pointer was at the event: by now it may be
// elsewhere.
bool LampLight::pick(LightGroup *group, const QPoint &screenPlace)
{
    if (!LightGroup::mayChange())
        return false;
    const HueField *field = group->field();
    const QColor color =
        screenCanBeRead() ? colorOnScreen(screenPlace) : field->colorAt(field->mapFromGlobal(screenPlace));
    return color.isValid() && group->setColor(color);
}

// Reached by presses that no control takes: a press outside the fields to type in takes the focus off them.
void LampLight::mousePressEvent(QMouseEvent *event)
{
    const QWidget *focus = window()->focusWidget();
    if (mouse_->holdsTyping(focus) || receiver_->holdsTyping(focus))
        setFocus();
    if (event->button() == Qt::LeftButton) {
        picking_ = nullptr;
        pressedAt_ = event->globalPos();
        if (LightGroup *group = groupAt(pressedAt_)) {
            picking_ = pick(group, pressedAt_) ? group : nullptr;
            return;
        }
    }
    PageSurface::mousePressEvent(event);
}

// Released elsewhere, the button takes the colour there; the hand that only trembles has moved nowhere.
void LampLight::mouseReleaseEvent(QMouseEvent *event)
{
    if (!picking_ || event->button() != Qt::LeftButton) {
        PageSurface::mouseReleaseEvent(event);
        return;
    }
    LightGroup *group = std::exchange(picking_, nullptr);
    const QPoint place = event->globalPos();
    if ((place - pressedAt_).manhattanLength() >= QApplication::startDragDistance() ||
        groupAt(place) != group)
        pick(group, place);
}
