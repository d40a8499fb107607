// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The page of the lights on the scripted layer: its controls by their names, and the records on both sides.
#pragma once

#include "lighting/LampLight.h"
#include "lighting/LightTables.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

// The names of a group's controls where they are not the suffix behind a common name.
struct LightCase {
    const char *name;
    const char *suffix;
    const char *brightnessLine, *speedLine;
    const char *brightnessBox, *speedBox;
    const char *caption, *field;
};
constexpr LightCase LightCases[] = {
    {"mouse", "", "line", "line_2", "LightSpinBox_2", "SpeedSpinBox_2", "label_6", "label_7"},
    {"receiver", "_2", "line_3", "line_4", "LightSpinBox_3", "SpeedSpinBox_3", "label_8", "label_9"},
};
enum LightIndex { MouseGroup, ReceiverGroup };
inline void eachLight()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(LightCases)); ++i)
        QTest::newRow(LightCases[i].name) << i;
}

class LightPage
{
public:
    // Model 0 has a receiver with colour schemes, model 1 one without.
    explicit LightPage(uint16_t kind = Receiver8K, int model = 0)
    {
        fixture::beginWithDevice(model, kind);
        page = std::make_unique<LampLight>();
        page->show();
    }

    template <typename Widget = QWidget> Widget *find(const QString &name) const
    {
        auto *const found = page->findChild<Widget *>(name);
        if (!found)
            qFatal("no %s", qPrintable(name));
        return found;
    }
    template <typename Widget> Widget *own(const char *name, const LightCase &light) const
    {
        return find<Widget>(QLatin1String(name) + QLatin1String(light.suffix));
    }
    QComboBox *mode(const LightCase &light) const { return own<QComboBox>("LightMod", light); }
    QSlider *brightness(const LightCase &light) const { return own<QSlider>("horizontalLight", light); }
    QSlider *speed(const LightCase &light) const { return own<QSlider>("horizontalSpeed", light); }
    QSpinBox *brightnessBox(const LightCase &light) const
    {
        return find<QSpinBox>(QLatin1String(light.brightnessBox));
    }
    QSpinBox *speedBox(const LightCase &light) const { return find<QSpinBox>(QLatin1String(light.speedBox)); }
    QSpinBox *channel(const LightCase &light, int index) const
    {
        constexpr const char *names[] = {"RSpinBox", "GSpinBox", "BSpinBox"};
        return own<QSpinBox>(names[index], light);
    }
    QColor color(const LightCase &light) const
    {
        return {channel(light, 0)->value(), channel(light, 1)->value(), channel(light, 2)->value()};
    }
    // What the mouse or the receiver holds.
    QColor written(int index) const
    {
        const FlashDataMap map = DeviceRecord::copy();
        const DongleRgbBar lamps = bar();
        return index == MouseGroup ? QColor(map.LedBarRed, map.LedBarGreen, map.LedBarBlue)
                                   : QColor(lamps.Red, lamps.Green, lamps.Blue);
    }
    QToolButton *preset(const LightCase &light, const Preset &row) const
    {
        return own<QToolButton>((QByteArray("toolButtonColor") + row.letter).constData(), light);
    }
    QAbstractButton *choice(int scheme) const
    {
        return find<QAbstractButton>(scheme == 1 ? QStringLiteral("ReUntil")
                                                 : QStringLiteral("ReUntil_%1").arg(scheme));
    }
    QComboBox *lamp(int index) const { return find<QComboBox>(QStringLiteral("LightMod_%1").arg(index + 3)); }

    // A read of the mouse, with the receiver's own records as they are.
    void read(const FlashDataMap &map) const
    {
        DeviceRecord::edit([&map](FlashDataMap &record) { record = map; });
        page->SlotUpDataLightUILight(map);
        page->SlotForm();
        fake.clearCalls();
    }
    void setBar(const DongleRgbBar &bar) const
    {
        fake.edit("dev", [&bar](FakeDevice &device) { device.bar = bar; });
    }
    DongleRgbBar bar() const { return fake.device("dev").bar; }
    void refuse(bool refuses) const
    {
        fake.edit("dev", [refuses](FakeDevice &device) { device.takesLights = !refuses; });
    }
    void announceScheme(uint8_t scheme)
    {
        rgb = {scheme, {1, 2, 3, 4, 5, 6, 7, 8, 9}};
        page->SlotRGBValue(&rgb);
    }

    std::unique_ptr<LampLight> page;
    DongleRGB rgb{};
    FakeHidUsb &fake = FakeHidUsb::instance();
};

inline FlashDataMap lightRecord(int mode, int brightness = 3, int speed = 4, bool on = true)
{
    FlashDataMap map{};
    map.LedBarMode = uint8_t(mode);
    map.LedBarEnable = on;
    map.LedBarBrightness = uint8_t(brightness);
    map.LedBarSpeed = uint8_t(speed);
    map.LedBarRed = 10;
    map.LedBarGreen = 20;
    map.LedBarBlue = 30;
    map.DpiLedMode = 1;
    map.DpiLedEnable = 1;
    map.DpiLedBrightness = 128;
    map.DpiLedSpeed = 2;
    return map;
}

// A bar in mode 2, with values that lie apart.
constexpr DongleRgbBar SomeBar{2, 46, 166, 223, 4, 7, 1};

inline QByteArray bytes(const DongleRgbBar &bar)
{
    return QByteArray(reinterpret_cast<const char *>(&bar), sizeof bar).toHex(' ');
}
inline QByteArray bytes(const DongleIndicator &lamps)
{
    return QByteArray(reinterpret_cast<const char *>(&lamps), sizeof lamps).toHex(' ');
}
