// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SensorEffect: the light that shows the DPI stage: its mode, and for a steady one its brightness, for a
// breathing one its speed. A slider whose value was refused goes back and stays disabled until the next
// record. Main thread.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "lighting/LightScale.h"

#include <QFrame>
#include <array>
#include <memory>

namespace Ui
{
class SensorEffect;
}

// FlashDataMap::DpiLedBrightness by the slider's value minus 1.
constexpr std::array<uint8_t, 10> BrightnessCurve = {16, 30, 60, 90, 128, 150, 180, 210, 230, 255};
// Value of the slider, 1 to 10; 1 for a byte that the curve lacks.
int brightnessOf(uint8_t code);

class SensorEffect : public QFrame
{
    Q_OBJECT

public:
    explicit SensorEffect(QWidget *parent = nullptr);
    ~SensorEffect() override;

    // Shows the four bytes of the light in the record. Like the setters, it writes nothing.
    void SetEffect(const FlashDataMap &map);
    void SetModel(int mode);  // 0 off, 1 steady, 2 breathing
    void SetSpeed(int value); // 1 to 5
    void SetLight(int value); // 1 to 10
    // The host's own slot of this name calls it.
    void SlotAllLanguage(int index);

public slots:
    void on_Model_currentIndexChanged(int index);
    void on_SpeedH_sliderMoved(int position);
    void on_LightH_sliderMoved(int position);
    void on_SpeedH_valueChanged(int value);
    void on_LightH_valueChanged(int value);

private:
    void applyStyle();
    void showMode(int mode);

    std::unique_ptr<Ui::SensorEffect> ui;
    LightScale speed_;
    LightScale light_;
    int lastMode_ = 0;
};
