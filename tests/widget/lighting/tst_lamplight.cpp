// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The page of the lights: what a record shows, in both groups and on each link, and that showing writes
// nothing. What its controls write to the mouse is in the contract of edits.
#include "lighting/HueField.h"
#include "lighting/LightPreview.h"
#include "lighting/SensorEffect.h"
#include "tests/support/TestMain.h"
#include "tests/widget/lighting/LightPage.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QThread>

namespace
{

constexpr uint16_t Receivers[] = {Receiver1K, Receiver2K, Receiver4K, Receiver8K};
const char ReceiverNames[][3] = {"1k", "2k", "4k", "8k"};

// 10,000 when asked for.
int randomRecords()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("LIGHT_RECORDS", &given);
    return given ? count : 300;
}

} // namespace

class tst_LampLight : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();

    static QStringList wantedControls(int mode)
    {
        // line, line_2, colour, last preset, brightness, speed
        const char *const rows[] = {"110000", "000011", "001111", "011110", "000011", "000011", "010010"};
        QStringList shown;
        for (const char *each = rows[mode]; *each; ++each)
            shown << QString(QLatin1Char(*each));
        return shown;
    }
    static QStringList shownControls(const LightPage &page, const LightCase &light)
    {
        const auto shown = [](const QWidget *widget) { return QString::number(!widget->isHidden()); };
        QStringList controls = {shown(page.find(light.brightnessLine)), shown(page.find(light.speedLine))};
        QStringList color;
        for (const char *name : {"RSpinBox", "GSpinBox", "BSpinBox", "AddR", "AddG", "AddB", "ReduceR",
                                 "ReduceG", "ReduceB", "captionR", "captionG", "captionB", "Preview"})
            color << shown(page.own<QWidget>(name, light));
        color << shown(page.find(light.caption)) << shown(page.find(light.field));
        for (const Preset &preset : Presets)
            color << shown(page.preset(light, preset));
        color.removeDuplicates();
        controls << color.join('/') << shown(page.preset(light, Presets.back()));
        for (const QSlider *slider : {page.brightness(light), page.speed(light)})
            controls << shown(slider);
        if (page.brightnessBox(light)->isHidden() != page.brightness(light)->isHidden() ||
            page.speedBox(light)->isHidden() != page.speed(light)->isHidden())
            controls << "torn";
        return controls;
    }
    static QString swatch(const LightPage &page, const LightCase &light)
    {
        return page.own<QLabel>("Preview", light)->styleSheet();
    }
    static QString sheetOf(const QColor &color)
    {
        return QStringLiteral("QLabel{background-color: rgb(%1,%2,%3);border: 2px solid  rgb(220,220,220);}")
            .arg(color.red())
            .arg(color.green())
            .arg(color.blue());
    }
    static QSet<bool> receiverShown(const LightPage &page)
    {
        QSet<bool> shown;
        for (const char *name : {"LightMod_2", "LightMod_3", "LightMod_4", "LightMod_5", "AddR_2"})
            shown << page.find(QLatin1String(name))->parentWidget()->isVisible();
        return shown << page.find("receiverCard")->isVisible() << page.find("lampsCard")->isVisible();
    }
    static bool receiverIsShown(const LightPage &page) { return receiverShown(page) == QSet<bool>{true}; }
    static bool receiverIsHidden(const LightPage &page) { return receiverShown(page) == QSet<bool>{false}; }
    static bool schemeIsShown(const LightPage &page)
    {
        QSet<bool> shown;
        for (const char *name : {"ReUntil", "ReUntil_2", "ReUntil_3", "textEdit", "textEdit_2", "textEdit_3"})
            shown << page.find(QLatin1String(name))->isVisible();
        return shown == QSet<bool>{true};
    }
    static int checkedScheme(const LightPage &page)
    {
        int checked = 0;
        for (int scheme = 1; scheme <= 3; ++scheme)
            if (page.choice(scheme)->isChecked())
                checked = checked * 10 + scheme;
        return checked;
    }

private slots:
    void initTestCase() { LoadLanguageTables(); }

    // ---- What a record shows

    void eachModeHasItsControls_data() { eachLight(); }
    void eachModeHasItsControls()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        LightPage page;
        QCOMPARE(shownControls(page, light), wantedControls(0)); // before any record
        for (const int offset : {0, 3})                          // from another mode each time
            for (int i = 0; i < LightModeCount; ++i) {
                const int mode = (i * (offset + 1)) % LightModeCount;
                page.setBar({uint8_t(mode), 0, 0, 0, 0, 0, uint8_t(mode > 0)});
                page.read(lightRecord(mode, 3, 4, mode > 0));
                QCOMPARE(page.mode(light)->currentIndex(), mode);
                QCOMPARE(shownControls(page, light), wantedControls(mode));
            }
        QVERIFY(fake.updates().empty());
    }

    void aModeThatIsNoneOfTheListChangesNothing_data() { eachLight(); }
    void aModeThatIsNoneOfTheListChangesNothing()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        LightPage page;
        page.setBar({3, 1, 2, 3, 4, 5, 1});
        page.read(lightRecord(3));
        for (const int none : {7, 100, 254}) {
            page.setBar({uint8_t(none), 1, 2, 3, 4, 5, 1});
            page.read(lightRecord(none));
            QCOMPARE(page.mode(light)->currentIndex(), 3);
            QCOMPARE(shownControls(page, light), wantedControls(3));
        }
    }

    // Byte 94 zero with byte 88 of 3.
    void aLightThatIsOffKeepsItsMode()
    {
        LightPage page;
        const FlashDataMap map = lightRecord(3, 3, 4, false);
        page.read(map);
        QCOMPARE(page.mode(LightCases[MouseGroup])->currentIndex(), 0);
        QCOMPARE(page.color(LightCases[MouseGroup]), QColor(10, 20, 30));
        const FlashDataMap held = DeviceRecord::copy();
        QCOMPARE(memcmp(&held, &map, sizeof map), 0);
        // And the receiver's.
        page.setBar({3, 1, 2, 3, 4, 5, 0});
        page.read(map);
        QCOMPARE(page.mode(LightCases[ReceiverGroup])->currentIndex(), 0);
        QCOMPARE(page.color(LightCases[ReceiverGroup]), QColor(1, 2, 3));
    }

    void eachValueShowsInItsControls()
    {
        LightPage page;
        for (int value = 0; value < 256; value += value < 12 ? 1 : 61) {
            const auto byte = uint8_t(value);
            FlashDataMap map = lightRecord(2, value, 9 - value);
            map.LedBarRed = byte;
            map.LedBarGreen = uint8_t(255 - value);
            map.LightRippeControl = value % 2;
            page.setBar({2, uint8_t(255 - value), byte, 7, byte, uint8_t(9 - value), 1});
            page.read(map);
            const int up = qMin(value + 1, 10);
            const int down = qBound(1, int(uint8_t(9 - value)) + 1, 10);
            const int wanted[][2] = {{up, down}, {down, up}};
            const QColor colors[] = {QColor(value, 255 - value, 30), QColor(255 - value, value, 7)};
            for (int i = 0; i < 2; ++i) {
                const LightCase &light = LightCases[i];
                QCOMPARE(page.brightness(light)->value(), wanted[i][0]);
                QCOMPARE(page.brightnessBox(light)->value(), wanted[i][0]);
                QCOMPARE(page.speed(light)->value(), wanted[i][1]);
                QCOMPARE(page.speedBox(light)->value(), wanted[i][1]);
                QCOMPARE(page.color(light), colors[i]);
                QCOMPARE(swatch(page, light), sheetOf(colors[i]));
                QCOMPARE(page.own<QLineEdit>("HexColor", light)->text(), colors[i].name().toUpper());
                QCOMPARE(page.own<LightPreview>("lightPreview", light)->light().color, colors[i]);
            }
            QCOMPARE(page.find<QToolButton>("RippeControl")->isChecked(), value % 2 == 1);
        }
        QVERIFY(fake.updates().empty());
    }

    void theLampsShowTheirBytes()
    {
        LightPage page;
        for (int value = 0; value < 4; ++value) {
            const DongleIndicator lamps{{uint8_t(value), uint8_t((value + 1) % 4), uint8_t((value + 2) % 4)}};
            fake.edit("dev", [&](FakeDevice &device) { device.indicator = lamps; });
            page.read(lightRecord(1));
            for (int i = 0; i < 3; ++i)
                QCOMPARE(page.lamp(i)->currentIndex(), int(lamps.Choice[i]));
        }
        QVERIFY(fake.updates().empty());
    }

    // After an import the mouse's sliders wait for a read; the receiver's do not.
    void anImportDisablesTheMousesSliders()
    {
        LightPage page;
        page.read(lightRecord(2));
        QVERIFY(LightPageLoaded);
        page.page->SlotUpDataLightUIA(lightRecord(2, 6, 1));
        QVERIFY(!LightPageLoaded && !LightPageBusy); // the load before it counts no more
        for (const LightCase &light : LightCases)
            for (const QSlider *slider : {page.brightness(light), page.speed(light)})
                QCOMPARE(slider->isEnabled(), &light != LightCases);
        QCOMPARE(page.brightness(LightCases[MouseGroup])->value(), 7);
        // A reset and a notice of the stage light leave them so.
        page.page->SlotUpDataDPILed(lightRecord(2));
        page.page->SlotFormResetLight();
        QVERIFY(!page.brightness(LightCases[MouseGroup])->isEnabled());
        QVERIFY(!page.speed(LightCases[MouseGroup])->isEnabled());
        QVERIFY(page.find<QSlider>("LightH")->isEnabled());
        page.read(lightRecord(2));
        QVERIFY(LightPageLoaded && !LightPageBusy);
        QVERIFY(page.brightness(LightCases[MouseGroup])->isEnabled());
        QVERIFY(page.speed(LightCases[MouseGroup])->isEnabled());
        QVERIFY(fake.updates().empty());
    }

    // A read arrives with the emitting thread waiting, and while it is shown the page is busy and not loaded.
    void theFlagsOfAPaint()
    {
        LightPage page;
        QList<bool> busy, loaded;
        fake.setHook([&](const std::string &name) {
            if (name == "UsbFinderC_GetDongleRGBBarMode") {
                busy << LightPageBusy;
                loaded << LightPageLoaded;
            }
        });
        LightPageLoaded = true;
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigUpDataLightLight(lightRecord(2)); });
        QCOMPARE(busy, QList<bool>{true});
        QCOMPARE(loaded, QList<bool>{false});
        QVERIFY(LightPageLoaded && !LightPageBusy);
        fake.setHook(nullptr);
    }

    void shownRecordsWriteNothing()
    {
        LightPage page;
        page.page->hide(); // to be quick
        std::srand(7);
        const auto random = [] { return uint8_t(std::rand()); };
        for (int i = 0; i < randomRecords(); ++i) {
            FlashDataMap map{};
            auto *first = reinterpret_cast<uint8_t *>(&map);
            std::generate(first, first + offsetof(FlashDataMap, KeyBindings), random);
            const DongleRgbBar bar{random(), random(), random(), random(), random(), random(), random()};
            fake.edit("dev", [&](FakeDevice &device) {
                device.bar = bar;
                device.indicator = {{random(), random(), random()}};
                device.online = i % 2;
            });
            const bool import = i % 3 == 0;
            SensorPageBusy = i % 5 == 0; // whatever flag a panel looks at
            if (import)
                page.page->SlotUpDataLightUIA(map);
            else
                page.page->SlotUpDataLightUILight(map);
            page.announceScheme(random());
            page.page->SlotUpDataDPILed(map);
            SensorPageBusy = false;
        }
        QVERIFY(fake.updates().empty());
        for (const char *write : {"UsbFinderC_SetDongleRGBBarMode", "UsbFinderC_SetDongleIndicatorLed",
                                  "UsbFinderC_Set4KDongleRGB", "UsbFinderC_GetDeviceOnLine"})
            QCOMPARE(fake.count(write), 0);
        QVERIFY(fake.count("UsbFinderC_GetDongleRGBBarMode") > 0);
        fake.edit("dev", [](FakeDevice &device) { device.online = true; });
        page.read(lightRecord(2));
        page.page->show();
        QTest::mouseClick(page.find("AddR"), Qt::LeftButton); // and an edit does
        QCOMPARE(int(fake.updates().size()), 1);
    }

    // ---- The links

    void whatALinkHas_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("model");
        QTest::addColumn<bool>("receiver");
        QTest::addColumn<bool>("scheme");
        for (int i = 0; i < 4; ++i) {
            QTest::addRow("%s", ReceiverNames[i]) << int(Receivers[i]) << 0 << true << true;
            QTest::addRow("%s, no schemes", ReceiverNames[i]) << int(Receivers[i]) << 1 << true << false;
        }
        QTest::newRow("cable") << int(fixture::CableKind) << 0 << false << false;
        QTest::newRow("old cable") << 2 << 1 << false << false;
    }
    void whatALinkHas()
    {
        QFETCH(int, kind);
        QFETCH(int, model);
        QFETCH(bool, receiver);
        QFETCH(bool, scheme);
        LightPage page{uint16_t(kind), model};
        page.read(lightRecord(2));
        page.announceScheme(2);
        QCOMPARE(receiverShown(page), QSet<bool>{receiver});
        QCOMPARE(schemeIsShown(page), scheme);
        QCOMPARE(page.find<SensorEffect>("SensorEffect")->pos(), receiver ? QPoint(68, 280) : QPoint(68, 77));
        // The page scrolls only where there is more of it than there is room, and nothing of it stands below.
        const auto *bar = page.find<QScrollBar>("verticalScrollBar");
        QCOMPARE(bar->maximum() > 0, receiver);
        QTRY_COMPARE(bar->isVisible(), receiver);
        const auto *contents = page.find<QScrollArea>("scrollArea")->widget();
        int lowest = 0;
        for (const QWidget *child : contents->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            if (child->isVisible())
                lowest = qMax(lowest, child->geometry().bottom());
        QVERIFY(lowest < contents->height() && (!receiver || contents->height() - lowest < 20));
    }

    // Of the receiver, nothing.
    void onACableNothingIsAsked()
    {
        LightPage page(fixture::CableKind);
        page.page->SlotUpDataLightUILight(lightRecord(2));
        page.page->SlotUpDataLightUIA(lightRecord(3));
        page.page->SlotForm();
        QVERIFY(fake.calls().empty());
        QCOMPARE(page.mode(LightCases[MouseGroup])->currentIndex(), 3);
    }

    // What a cable or a reset hid comes back with a radio link, also where the receiver has said nothing.
    void whatWasHiddenComesBack()
    {
        LightPage page;
        page.read(lightRecord(2));
        QVERIFY(receiverIsShown(page) && schemeIsShown(page));
        const auto link = [&](uint16_t kind) {
            SelectedDevice::set(fixture::info("dev", kind));
            page.read(lightRecord(2));
        };
        for (int i = 0; i < 2; ++i) {
            SelectedDevice::set(fixture::info("dev", fixture::CableKind));
            page.announceScheme(2); // before the record of the cable's mouse
            QVERIFY(receiverIsHidden(page) && !schemeIsShown(page));
            link(fixture::CableKind);
            QVERIFY(receiverIsHidden(page) && !schemeIsShown(page));
            link(Receiver4K);
            QVERIFY(receiverIsShown(page) && schemeIsShown(page));
            fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
            QVERIFY(receiverIsHidden(page) && !schemeIsShown(page));
            link(Receiver8K);
            QVERIFY(receiverIsShown(page) && schemeIsShown(page));
        }
    }

    // One question at most, and what was read before stays.
    void aReceiverThatDoesNotAnswerIsAskedOnce()
    {
        LightPage page;
        page.setBar(SomeBar);
        fake.edit("dev", [](FakeDevice &device) { device.indicator = {{1, 2, 3}}; });
        page.read(lightRecord(2));
        fake.edit("dev", [](FakeDevice &device) {
            device.answersBar = device.answersLamps = false;
            device.bar = {};
            device.indicator = {};
        });
        fake.setHook([](const std::string &) { QThread::msleep(160); }); // longer than one try
        page.page->SlotUpDataLightUILight(lightRecord(4));
        QCOMPARE(int(fake.calls().size()), 1);
        fake.setHook(nullptr);
        QCOMPARE(page.mode(LightCases[MouseGroup])->currentIndex(), 4);
        QCOMPARE(page.color(LightCases[ReceiverGroup]), QColor(46, 166, 223));
        QCOMPARE(page.lamp(2)->currentIndex(), 3);
        fake.edit("dev", [](FakeDevice &device) { device.answersBar = device.answersLamps = true; });
        fake.clearCalls();
        page.page->SlotUpDataLightUILight(lightRecord(4));
        QCOMPARE(int(fake.calls().size()), 2);
        QCOMPARE(page.lamp(2)->currentIndex(), 0);
    }

    void theSchemeShowsTheReceiversRecord()
    {
        LightPage page;
        page.read(lightRecord(2));
        QCOMPARE(checkedScheme(page), 0);
        for (const int scheme : {2, 3, 1, 0, 2, 4, 255, 3}) {
            fixture::emitOnOtherThread([&] {
                page.rgb.Scheme = uint8_t(scheme);
                emit PostMsg::instance()->SigRGBValue(&page.rgb);
            });
            QCOMPARE(checkedScheme(page), scheme >= 1 && scheme <= 3 ? scheme : 0);
        }
        QVERIFY(fake.calls().empty());
    }

    void withoutDeviceAndImage_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("radio") << int(Receiver8K);
        QTest::newRow("cable") << int(fixture::CableKind);
    }
    void withoutDeviceAndImage()
    {
        QFETCH(int, kind);
        LightPage page{uint16_t(kind)};
        FlashDataMap map = lightRecord(3);
        map.LightRippeControl = 1;
        page.read(map);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        for (const LightCase &light : LightCases) {
            QCOMPARE(page.mode(light)->currentIndex(), 1);
            QCOMPARE(shownControls(page, light), wantedControls(1));
            QCOMPARE(page.brightness(light)->value(), 10);
            QCOMPARE(page.brightnessBox(light)->value(), 10);
            QCOMPARE(page.speed(light)->value(), 8);
            QCOMPARE(page.speedBox(light)->value(), 8);
        }
        QVERIFY(!page.find<QToolButton>("RippeControl")->isChecked());
        QCOMPARE(page.lamp(0)->currentIndex(), 2);
        QCOMPARE(page.lamp(1)->currentIndex(), 2);
        QCOMPARE(page.lamp(2)->currentIndex(), 3);
        QVERIFY(receiverIsHidden(page) && !schemeIsShown(page) && !LightPageBusy);
        QCOMPARE(page.find("SensorEffect")->pos(), kind == Receiver8K ? QPoint(68, 280) : QPoint(68, 77));
        QVERIFY(fake.updates().empty() && fake.calls().empty());
    }

    // ---- Notices of the device

    void theDevicesOwnChangesShow()
    {
        LightPage page;
        page.read(lightRecord(2));
        for (const bool visible : {true, false}) {
            page.page->setVisible(visible);
            FlashDataMap map = lightRecord(visible ? 5 : 2);
            fixture::emitOnOtherThread([map] { emit PostMsg::instance()->SigUpDataLightLight(map); });
            QCOMPARE(page.mode(LightCases[MouseGroup])->currentIndex(), int(map.LedBarMode));
            map.DpiLedMode = visible ? 2 : 1;
            fixture::emitOnOtherThread([map] { emit PostMsg::instance()->SigUpDataDPILed(map); });
            QCOMPARE(page.find<QComboBox>("Model")->currentIndex(), int(map.DpiLedMode));
        }
        QVERIFY(fake.updates().empty());
    }

    // The stage light keeps its mode where the record has none of the list.
    void anUnknownModeOfTheStageLightIsKept()
    {
        LightPage page;
        FlashDataMap map = lightRecord(2);
        map.DpiLedMode = 2;
        page.read(map);
        map.DpiLedMode = 5;
        page.read(map);
        QCOMPARE(page.find<QComboBox>("Model")->currentIndex(), 2);
        map.DpiLedEnable = 0;
        page.read(map);
        QCOMPARE(page.find<QComboBox>("Model")->currentIndex(), 0);
    }

    void aChangeInTheMiddleOfADrag_data() { eachLight(); }
    void aChangeInTheMiddleOfADrag()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        LightPage page;
        page.setBar(SomeBar);
        page.read(lightRecord(2));
        QSlider *slider = page.brightness(light);
        slider->setSliderDown(true);
        slider->setSliderPosition(2);
        page.setBar({2, 1, 1, 1, 3, 5, 1});
        const FlashDataMap map = lightRecord(2, 5);
        fixture::emitOnOtherThread([map] { emit PostMsg::instance()->SigUpDataLightLight(map); });
        QCOMPARE(slider->value(), 6);
        slider->setSliderPosition(9);
        slider->setSliderDown(false);
        QCOMPARE(slider->value(), 9);
        QCOMPARE(page.brightnessBox(light)->value(), 9);
        QCOMPARE(index == MouseGroup ? DeviceRecord::copy().LedBarBrightness : page.bar().Brightness,
                 index == MouseGroup ? 8 : 9);
    }

    // ---- Texts

    void texts()
    {
        LightPage page;
        page.read(lightRecord(2));
        const QStringList modes = {"Off",  "Color flow",      "Breathing", "Steady",
                                   "Neon", "Color breathing", "Color wave"};
        for (const LightCase &light : LightCases) {
            for (int i = 0; i < modes.size(); ++i)
                QCOMPARE(page.mode(light)->itemText(i), modes[i]);
            QCOMPARE(page.own<QLabel>("captionR", light)->text(), QString("R:"));
            QCOMPARE(page.own<QLabel>("captionG", light)->text(), QString("G:"));
            QCOMPARE(page.own<QLabel>("captionB", light)->text(), QString("B:"));
            QCOMPARE(page.own<QLabel>("brightnessCaption", light)->text(), QString("Brightness"));
            QCOMPARE(page.own<QLabel>("speedCaption", light)->text(), QString("Speed"));
            QCOMPARE(page.own<QLabel>("customCaption", light)->text(), QString("Custom color"));
            QCOMPARE(page.own<QLabel>("presetCaption", light)->text(), QString("Presets"));
            QCOMPARE(page.find<QLabel>(QLatin1String(light.caption))->text(), QString("Preview"));
        }
        QCOMPARE(page.find<QLabel>("lightTitle")->text(), QString("Effect"));
        QCOMPARE(page.find<QLabel>("lightTitle_2")->text(), QString("Receiver"));
        QCOMPARE(page.find<QLabel>("movingOffCaption")->text(), QString("Lights off while moving"));
        QCOMPARE(page.find<QLabel>("indicatorTitle")->text(), QString("Receiver indicator"));
        const QStringList lamps = {"Off", "Battery level", "Report rate", "Signal quality"};
        for (int lamp = 0; lamp < 3; ++lamp)
            for (int i = 0; i < lamps.size(); ++i)
                QCOMPARE(page.lamp(lamp)->itemText(i), lamps[i]);
        const QStringList legend = {"Excellent", "Fair", "Poor"};
        for (int i = 0; i < legend.size(); ++i)
            QCOMPARE(page.find<QLabel>(QStringLiteral("legend_%1").arg(i + 1))->text(), legend[i]);
        QCOMPARE(page.choice(1)->text(), QString("Signal quality"));
        QCOMPARE(page.choice(2)->text(), QString("Battery level (Default)")); // of this model
    }

    void aLanguageIsShownAtOnce()
    {
        LightPage page;
        page.setBar(SomeBar);
        page.read(lightRecord(2));
        const fixture::OtherLanguage other(R"({"mouse":{"light":{"LightMode":"Effekt","receiver":"Empfang",
            "MovingOffLight":"Aus","LightModeOptions":[{"value":2,"option":"Atmen"}],
            "receiverList":[{"value":3,"option":"Akku"}]}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(page.find<QLabel>("lightTitle")->text(), QString("Effekt"));
        QCOMPARE(page.find<QLabel>("lightTitle_2")->text(), QString("Empfang"));
        QCOMPARE(page.find<QLabel>("movingOffCaption")->text(), QString("Aus"));
        QCOMPARE(page.mode(LightCases[ReceiverGroup])->currentText(), QString("Atmen"));
        QCOMPARE(page.lamp(0)->itemText(1), QString("Akku"));
        QCOMPARE(page.mode(LightCases[MouseGroup])->itemText(1), QString("Color flow")); // it has none
        QVERIFY(fake.calls().empty());
    }

    void withoutTextsThoseOfTheFormShow()
    {
        const fixture::WithoutTexts none;
        LightPage page;
        QCOMPARE(page.mode(LightCases[MouseGroup])->itemText(3), QString::fromUtf8("混色常亮"));
        QCOMPARE(page.find<QLabel>("label_6")->text(), QString::fromUtf8("预览"));
        QCOMPARE(page.find<QLabel>("movingOffCaption")->text(), QString::fromUtf8("移动时关灯"));
        QCOMPARE(page.find<QLabel>("legend_1")->text(), QString::fromUtf8("优秀"));
        const auto words = [&](int scheme) {
            const QString name =
                scheme == 1 ? QStringLiteral("textEdit") : QStringLiteral("textEdit_%1").arg(scheme);
            const QString text = page.find<QTextEdit>(name)->toPlainText();
            return QString(text).remove(QChar(QChar::Nbsp)).remove(' ').split(QString::fromUtf8("·"));
        };
        QCOMPARE(words(1), QString::fromUtf8("优秀 正常 差").split(' '));
        QCOMPARE(words(2), QString("100% 50% 25%").split(' '));
        QCOMPARE(words(3), QString("8000HZ 4000HZ 2000HZ 1000HZ 500HZ 250HZ 125HZ").split(' '));
        QVERIFY(page.choice(2)->text().endsWith(QString::fromUtf8("(默认)"))); // of this model
        QVERIFY(!page.choice(1)->text().contains('('));
        for (const QLabel *label : page.page->findChildren<QLabel *>())
            QVERIFY2(!label->text().isEmpty() || !label->objectName().contains("Title"),
                     qPrintable(label->objectName()));
        for (const LightCase &light : LightCases) {
            QCOMPARE(page.own<QLabel>("captionG", light)->text(), QString("G:"));
            QCOMPARE(page.own<QLabel>("customCaption", light)->text(), QString::fromUtf8("自定义颜色"));
            QCOMPARE(page.own<QLabel>("presetCaption", light)->text(), QString::fromUtf8("预设"));
        }
        QVERIFY(!page.lamp(0)->itemText(1).contains('3')); // the key of the item
    }
};

TEST_CLASS(tst_LampLight, fixture::ShippedLooks)

#include "tst_lamplight.moc"
