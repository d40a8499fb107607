// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LightDevice: where the settings of a light go: bytes of the mouse's record, or the receiver's own record.
// Each write tells whether the device took the value; one that it did not take is not kept. Main thread.
#pragma once

#include "device/hidusb/DeviceRecords.h"
#include "device/hidusb/FlashDataMap.h"
#include "lighting/LightScale.h"

#include <QColor>

// Preset in a record of the receiver's that is asked for: no mode, no lamp and no scheme has this value.
constexpr uint8_t NoLightAnswer = 0xFF;

// As the records hold it: speed and brightness are a slider's value minus 1.
struct LightState {
    int mode = 0; // 0: off
    QColor color = Qt::black;
    int speed = 0;
    int brightness = 0;
};

class LightDevice
{
public:
    virtual ~LightDevice() = default;
    virtual LightScale::Owner owner() const = 0;
    // False while the last read has not got the record that holds the settings: a write would carry nothing
    // of the device, or what another had, for those that it does not change.
    virtual bool isKnown() const { return true; }
    // False when the device does not answer; what is known of it stays as it was.
    virtual bool read() { return true; }
    virtual LightState state() const { return {}; }
    virtual bool writeMode(int mode) = 0;
    // The slider's value.
    virtual bool writeBrightness(int value) = 0;
    virtual bool writeSpeed(int value) = 0;
    virtual bool writeColor(const QColor &color) = 0;
};

class MouseLight final : public LightDevice
{
public:
    static LightState stateOf(const FlashDataMap &map);

    LightScale::Owner owner() const override { return LightScale::Owner::Mouse; }
    bool writeMode(int mode) override;
    bool writeBrightness(int value) override;
    bool writeSpeed(int value) override;
    bool writeColor(const QColor &color) override;
};

// Works without the mouse. Brightness and speed are written as the slider's value, one higher than they are
// read: so the receivers keep them.
class ReceiverLight final : public LightDevice
{
public:
    void forget() { *this = ReceiverLight(); } // the record is that of another receiver

    LightScale::Owner owner() const override { return LightScale::Owner::Receiver; }
    bool isKnown() const override { return known_; }
    bool read() override;
    LightState state() const override;
    bool writeMode(int mode) override;
    bool writeBrightness(int value) override;
    bool writeSpeed(int value) override;
    bool writeColor(const QColor &color) override;

private:
    bool write(const DongleRgbBar &bar);

    DongleRgbBar DongleRgbBar_{}; // shown also while it is not known
    bool known_ = false;
};
