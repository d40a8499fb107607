// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LightDevice.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "device/hidusb/HIDUsb.h"

// ---- The mouse ----------------------------------------------------------------------------------

LightState MouseLight::stateOf(const FlashDataMap &map)
{
    return {map.LedBarEnable ? map.LedBarMode : 0, QColor(map.LedBarRed, map.LedBarGreen, map.LedBarBlue),
            map.LedBarSpeed, map.LedBarBrightness};
}

bool MouseLight::writeMode(int mode) { return SetLedBarMode(uint8_t(mode)); }
bool MouseLight::writeBrightness(int value) { return SetLedBarBrightness(uint8_t(value - 1)); }
bool MouseLight::writeSpeed(int value) { return SetLedBarSpeed(uint8_t(value - 1)); }

bool MouseLight::writeColor(const QColor &color)
{
    return SetLedBarColor(uint8_t(color.red()), uint8_t(color.green()), uint8_t(color.blue()));
}

// ---- The receiver -------------------------------------------------------------------------------

bool ReceiverLight::read()
{
    DongleRgbBar bar{};
    bar.Mode = NoLightAnswer;
    UsbFinderC_GetDongleRGBBarMode(CurrentDevicePath(), &bar);
    known_ = bar.Mode != NoLightAnswer;
    if (known_)
        DongleRgbBar_ = bar;
    return known_;
}

LightState ReceiverLight::state() const
{
    const DongleRgbBar &bar = DongleRgbBar_;
    return {bar.Enabled ? bar.Mode : 0, QColor(bar.Red, bar.Green, bar.Blue), bar.Speed, bar.Brightness};
}

bool ReceiverLight::write(const DongleRgbBar &bar)
{
    if (!UsbFinderC_SetDongleRGBBarMode(CurrentDevicePath(), &bar))
        return false;
    DongleRgbBar_ = bar;
    PushRecord();
    return true;
}

bool ReceiverLight::writeMode(int mode)
{
    DongleRgbBar bar = DongleRgbBar_;
    bar.Mode = uint8_t(mode);
    bar.Enabled = mode != 0;
    return write(bar);
}

bool ReceiverLight::writeBrightness(int value)
{
    DongleRgbBar bar = DongleRgbBar_;
    bar.Brightness = uint8_t(value);
    return write(bar);
}

bool ReceiverLight::writeSpeed(int value)
{
    DongleRgbBar bar = DongleRgbBar_;
    bar.Speed = uint8_t(value);
    return write(bar);
}

bool ReceiverLight::writeColor(const QColor &color)
{
    DongleRgbBar bar = DongleRgbBar_;
    bar.Red = uint8_t(color.red());
    bar.Green = uint8_t(color.green());
    bar.Blue = uint8_t(color.blue());
    return write(bar);
}
