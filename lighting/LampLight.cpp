// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LampLight.h"

#include "app/hub/PostMsg.h"
#include "device/DeviceState.h"

LampLight::LampLight(QWidget *parent)
    : PageSurface(QStringLiteral("LampLight"), QStringLiteral("Light"), parent)
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigUpDataLightLight(FlashDataMap)), this, SLOT(SlotUpDataLightUILight(FlashDataMap)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataLightUIA(FlashDataMap)), this, SLOT(SlotUpDataLightUIA(FlashDataMap)));
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormResetLight()), Qt::BlockingQueuedConnection);
}

void LampLight::SlotUpDataLightUILight(FlashDataMap DataMap)
{
    LightPageLoaded = false;
    paint(DataMap);
    LightPageLoaded = true;
}

void LampLight::SlotUpDataLightUIA(FlashDataMap DataMap) { paint(DataMap); }

void LampLight::paint(const FlashDataMap &) { const PageFilling filling(LightPageBusy); }

void LampLight::SlotFormResetLight() { const PageFilling filling(LightPageBusy); }
