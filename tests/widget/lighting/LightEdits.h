// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A test of edits on the page of the lights: a mouse and a receiver with known records, and what reached
// each.
#pragma once

#include "tests/support/TestMain.h"
#include "tests/widget/lighting/LightPage.h"

inline const LightCase &Receiver = LightCases[ReceiverGroup];

class LightEditTest : public QObject
{
protected:
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<LightPage> page;
    std::unique_ptr<QSignalSpy> notice;

    void open(const DongleRgbBar &bar = SomeBar, const DongleIndicator &lamps = {{1, 2, 3}}, int mode = 2)
    {
        page = std::make_unique<LightPage>();
        fake.edit("dev", [&](FakeDevice &device) {
            device.bar = bar;
            device.indicator = lamps;
        });
        page->read(lightRecord(mode));
        page->announceScheme(1);
        notice = std::make_unique<QSignalSpy>(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
    }
    int writes(int index) const
    {
        return index == ReceiverGroup ? fake.count("UsbFinderC_SetDongleRGBBarMode")
                                      : int(fake.updates().size());
    }
    static void drag(QSlider *slider, int position)
    {
        slider->setSliderDown(true);
        slider->setSliderPosition(position);
        slider->setSliderDown(false);
    }
    void close()
    {
        notice.reset();
        page.reset();
    }
};
