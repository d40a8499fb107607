// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LampLight: the page of the lights. Main thread; the slots of records from a read are reached with the
// emitting thread waiting.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "presentation/PageSurface.h"

class QLabel;
class SensorEffect;

class LampLight : public PageSurface
{
    Q_OBJECT

public:
    explicit LampLight(QWidget *parent = nullptr);

public slots:
    void SlotUpDataLightUILight(FlashDataMap DataMap);
    void SlotUpDataLightUIA(FlashDataMap DataMap);
    void SlotUpDataDPILed(FlashDataMap DataMap);
    void SlotFormResetLight();
    void SlotAllLanguage(int index);

private:
    void connectSignals();
    void paint(const FlashDataMap &map);
    void placeEffect();

    QLabel *effectMark_; // in front of the panel's title
    SensorEffect *effect_;
};
