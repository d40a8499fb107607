// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LampLight.h"

#include "device/DeviceState.h"
#include "hub/PostMsg.h"
#include "lighting/SensorEffect.h"
#include "presentation/FirstShow.h"
#include "presentation/StyleSheets.h"

#include <QLabel>

namespace
{

// On its cable a mouse has no receiver whose lights would stand above.
constexpr QPoint MarkOnCable{40, 84};
constexpr QPoint EffectOnCable{68, 77};
constexpr QPoint MarkOnRadio{40, 287};
constexpr QPoint EffectOnRadio{68, 280};
constexpr QSize MarkSize{24, 24};

constexpr int ResetSpeed = 3;
constexpr int ResetBrightness = 5;

} // namespace

LampLight::LampLight(QWidget *parent)
    : PageSurface(QStringLiteral("LampLight"), QStringLiteral("Light"), parent)
    , effectMark_(new QLabel(this))
    , effect_(new SensorEffect(this))
{
    effectMark_->resize(MarkSize);
    placeEffect();
    onFirstShow(this, [this] {
        effectMark_->setStyleSheet(
            style::labelPicture(style::pictureFolder(QStringLiteral("Light")), QStringLiteral("Title.png")));
    });
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

void LampLight::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigUpDataLightLight(FlashDataMap)), this, SLOT(SlotUpDataLightUILight(FlashDataMap)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataLightUIA(FlashDataMap)), this, SLOT(SlotUpDataLightUIA(FlashDataMap)));
    connect(hub, SIGNAL(SigUpDataDPILed(FlashDataMap)), this, SLOT(SlotUpDataDPILed(FlashDataMap)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormResetLight()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
}

void LampLight::SlotUpDataLightUILight(FlashDataMap DataMap)
{
    LightPageLoaded = false;
    paint(DataMap);
    LightPageLoaded = true;
}

void LampLight::SlotUpDataLightUIA(FlashDataMap DataMap) { paint(DataMap); }

void LampLight::paint(const FlashDataMap &map)
{
    const PageFilling filling(LightPageBusy);
    placeEffect();
    effect_->SetEffect(map);
}

void LampLight::placeEffect()
{
    const bool wired = SelectedDevice::info().Usb;
    effectMark_->move(wired ? MarkOnCable : MarkOnRadio);
    effect_->move(wired ? EffectOnCable : EffectOnRadio);
}

void LampLight::SlotUpDataDPILed(FlashDataMap DataMap) { effect_->SetEffect(DataMap); }

void LampLight::SlotFormResetLight()
{
    const PageFilling filling(LightPageBusy);
    effect_->SetModel(0);
    effect_->SetSpeed(ResetSpeed);
    effect_->SetLight(ResetBrightness);
    placeEffect();
}

void LampLight::SlotAllLanguage(int index) { effect_->SlotAllLanguage(index); }
