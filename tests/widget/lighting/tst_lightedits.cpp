// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the page of the lights writes: the receiver's records, byte by byte, with and without the mouse, what
// a refusal leaves of them, and colours that are set in one act. The mouse's controls one by one are in the
// contract of edits.
#include "tests/support/TestMain.h"
#include "tests/widget/lighting/LightPage.h"

namespace
{

const LightCase &Mouse = LightCases[MouseGroup];
const LightCase &Receiver = LightCases[ReceiverGroup];

} // namespace

class tst_LightEdits : public QObject
{
    Q_OBJECT

private:
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
    QColor colorOf(int index) const
    {
        if (index == ReceiverGroup)
            return {page->bar().Red, page->bar().Green, page->bar().Blue};
        const FlashDataMap map = DeviceRecord::copy();
        return {map.LedBarRed, map.LedBarGreen, map.LedBarBlue};
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
    int checkedScheme() const
    {
        for (int scheme = 1; scheme <= 3; ++scheme)
            if (page->choice(scheme)->isChecked())
                return scheme;
        return 0;
    }

    // One edit of the receiver's light bar: what it does, and what it makes of SomeBar.
    struct BarEdit {
        const char *name;
        std::function<void(const LightPage &)> act;
        DongleRgbBar wanted;
    };
    static std::vector<BarEdit> barEdits()
    {
        std::vector<BarEdit> all;
        for (const int mode : {0, 1, 3, 4, 5, 6})
            all.push_back({"mode",
                           [mode](const LightPage &page) { page.mode(Receiver)->setCurrentIndex(mode); },
                           {uint8_t(mode), 46, 166, 223, 4, 7, uint8_t(mode > 0)}});
        // The byte is the slider's value, one above what a read shows there.
        for (int value = 1; value <= 10; ++value) {
            if (value != 8)
                all.push_back({"brightness",
                               [value](const LightPage &page) { drag(page.brightness(Receiver), value); },
                               {2, 46, 166, 223, 4, uint8_t(value), 1}});
            if (value != 5)
                all.push_back({"speed",
                               [value](const LightPage &page) { drag(page.speed(Receiver), value); },
                               {2, 46, 166, 223, uint8_t(value), 7, 1}});
        }
        all.push_back(
            {"brightness key",
             [](const LightPage &page) { QTest::keyClick(page.brightness(Receiver), Qt::Key_Right); },
             {2, 46, 166, 223, 4, 9, 1}});
        const uint8_t color[] = {46, 166, 223};
        const char *const add[] = {"AddR_2", "AddG_2", "AddB_2"};
        const char *const reduce[] = {"ReduceR_2", "ReduceG_2", "ReduceB_2"};
        for (int i = 0; i < 3; ++i) {
            const auto with = [&color, i](int value) {
                uint8_t parts[] = {color[0], color[1], color[2]};
                parts[i] = uint8_t(value);
                return DongleRgbBar{2, parts[0], parts[1], parts[2], 4, 7, 1};
            };
            all.push_back(
                {"box", [i](const LightPage &page) { page.channel(Receiver, i)->setValue(99); }, with(99)});
            all.push_back({"add",
                           [name = add[i]](const LightPage &page) {
                               QTest::mouseClick(page.find(QLatin1String(name)), Qt::LeftButton);
                           },
                           with(color[i] + 1)});
            all.push_back({"reduce",
                           [name = reduce[i]](const LightPage &page) {
                               QTest::mouseClick(page.find(QLatin1String(name)), Qt::LeftButton);
                           },
                           with(color[i] - 1)});
        }
        return all;
    }
    const std::vector<BarEdit> edits = barEdits();

    void eachBarEdit() const
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < edits.size(); ++i)
            QTest::addRow("%02d %s", int(i), edits[i].name) << int(i);
    }
    QStringList shown() const
    {
        QStringList all = {QString::number(page->mode(Receiver)->currentIndex()),
                           page->color(Receiver).name(), page->find<QLineEdit>("HexColor_2")->text(),
                           page->find<QLabel>("Preview_2")->styleSheet()};
        for (const QSlider *slider : {page->brightness(Receiver), page->speed(Receiver)})
            all << QString::number(slider->value()) + ' ' + QString::number(slider->isEnabled());
        for (const QSpinBox *box : {page->brightnessBox(Receiver), page->speedBox(Receiver)})
            all << QString::number(box->value());
        for (const QWidget *widget : page->mode(Receiver)->parentWidget()->findChildren<QWidget *>())
            all << widget->objectName() + ' ' + QString::number(widget->isHidden());
        return all;
    }

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void cleanup()
    {
        notice.reset();
        page.reset();
    }

    // ---- The receiver's light bar

    void theReceiverGetsItsBytesAlone_data() { eachBarEdit(); }
    void theReceiverGetsItsBytesAlone()
    {
        QFETCH(int, index);
        open();
        const FlashDataMap before = DeviceRecord::copy();
        edits[std::size_t(index)].act(*page);
        QCOMPARE(bytes(page->bar()), bytes(edits[std::size_t(index)].wanted));
        QCOMPARE(writes(ReceiverGroup), 1);
        QCOMPARE(int(fake.updates().size()), 1); // the mouse's record goes out behind it, unchanged
        QCOMPARE(memcmp(&fake.updates().front(), &before, sizeof before), 0);
        QCOMPARE(page->brightnessBox(Receiver)->value(), page->brightness(Receiver)->value());
        QCOMPARE(page->speedBox(Receiver)->value(), page->speed(Receiver)->value());
        QCOMPARE(notice->count(), 0);
    }

    void whatTheReceiverRefusesIsNotKept_data() { eachBarEdit(); }
    void whatTheReceiverRefusesIsNotKept()
    {
        QFETCH(int, index);
        open();
        const QStringList before = shown();
        page->refuse(true);
        edits[std::size_t(index)].act(*page);
        QCOMPARE(shown(), before);
        QCOMPARE(writes(ReceiverGroup), 1);
        QVERIFY(fake.updates().empty());
        QCOMPARE(notice->count(), 0);
        // The next edit sends nothing of it.
        page->refuse(false);
        page->channel(Receiver, 2)->setValue(7);
        QCOMPARE(bytes(page->bar()), bytes(DongleRgbBar{2, 46, 166, 7, 4, 7, 1}));
        edits[std::size_t(index)].act(*page); // and it works again
        QCOMPARE(writes(ReceiverGroup), 3);
    }

    // Bar and lamps are the receiver's, so they ask for no mouse. The colour steps do.
    void theReceiverNeedsNoMouse_data() { eachBarEdit(); }
    void theReceiverNeedsNoMouse()
    {
        QFETCH(int, index);
        open();
        const BarEdit &edit = edits[std::size_t(index)];
        const bool asks = qstrcmp(edit.name, "add") == 0 || qstrcmp(edit.name, "reduce") == 0;
        const QStringList before = shown();
        fake.setOnline("dev", false);
        edit.act(*page);
        QCOMPARE(notice->count(), int(asks));
        QCOMPARE(bytes(page->bar()), bytes(asks ? SomeBar : edit.wanted));
        if (asks)
            QCOMPARE(shown(), before);
        else
            QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLine"), 0);
        QCOMPARE(int(fake.updates().size()), int(!asks));
    }

    void unarmedOrBusyTheReceiverGetsNothing_data() { eachBarEdit(); }
    void unarmedOrBusyTheReceiverGetsNothing()
    {
        QFETCH(int, index);
        const BarEdit &edit = edits[std::size_t(index)];
        const bool asksForNoFlag = QByteArray("box add reduce").contains(edit.name);
        for (const bool armed : {false, true}) {
            open();
            UiArmed = armed;
            LightPageBusy = armed;
            SensorPageBusy = true; // which is not this page's
            edit.act(*page);
            UiArmed = true;
            LightPageBusy = SensorPageBusy = false;
            QCOMPARE(bytes(page->bar()), bytes(armed && asksForNoFlag ? edit.wanted : SomeBar));
            if (QByteArray(edit.name) == "mode") // the table of controls is applied all the same
                QCOMPARE(page->brightness(Receiver)->isHidden(), edit.wanted.Mode == 0);
        }
    }

    // Written one higher than it is read.
    void theReceiverIsWrittenOneAboveWhatIsRead()
    {
        open();
        QCOMPARE(page->brightness(Receiver)->value(), 8); // byte 7
        drag(page->brightness(Receiver), 3);
        QCOMPARE(int(page->bar().Brightness), 3);
        page->refuse(true);
        drag(page->brightness(Receiver), 9);
        QCOMPARE(page->brightness(Receiver)->value(), 3);
        QCOMPARE(page->brightnessBox(Receiver)->value(), 3);
        page->refuse(false);
        drag(page->speed(Receiver), 6);
        QCOMPARE(bytes(page->bar()), bytes(DongleRgbBar{2, 46, 166, 223, 6, 3, 1}));
        page->read(lightRecord(2));
        QCOMPARE(page->brightness(Receiver)->value(), 4);
        QCOMPARE(page->speed(Receiver)->value(), 7);
    }

    void aRefusalInTheMiddleOfADragEndsWhereItIsWritten()
    {
        open();
        QSlider *slider = page->brightness(Receiver);
        slider->setSliderDown(true);
        slider->setSliderPosition(6);
        page->refuse(true);
        slider->setSliderPosition(2);
        page->refuse(false);
        slider->setSliderDown(false);
        QCOMPARE(slider->value(), 6);
        QCOMPARE(slider->sliderPosition(), 6);
        QCOMPARE(page->brightnessBox(Receiver)->value(), 6);
        QCOMPARE(int(page->bar().Brightness), 6);
    }

    // ---- The lamps

    void eachLampWritesItsByte()
    {
        for (int lamp = 0; lamp < 3; ++lamp)
            for (int index = 0; index < 4; ++index) {
                const bool silent = index % 2; // the mouse
                open();
                fake.setOnline("dev", !silent);
                DongleIndicator wanted{{1, 2, 3}};
                const bool changes = wanted.Choice[lamp] != index;
                wanted.Choice[lamp] = uint8_t(index);
                page->lamp(lamp)->setCurrentIndex(index);
                QCOMPARE(bytes(fake.device("dev").indicator), bytes(wanted));
                QCOMPARE(fake.count("UsbFinderC_SetDongleIndicatorLed"), int(changes));
                QCOMPARE(int(fake.updates().size()), int(changes));
                QCOMPARE(notice->count(), 0);
                QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLine"), 0);
            }
    }

    void aRefusedLampGoesBack()
    {
        for (int lamp = 0; lamp < 3; ++lamp) {
            open();
            page->refuse(true);
            page->lamp(lamp)->setCurrentIndex(0);
            QCOMPARE(page->lamp(lamp)->currentIndex(), lamp + 1);
            QVERIFY(fake.updates().empty());
            page->refuse(false);
            page->lamp((lamp + 1) % 3)->setCurrentIndex(0);
            DongleIndicator wanted{{1, 2, 3}};
            wanted.Choice[(lamp + 1) % 3] = 0;
            QCOMPARE(bytes(fake.device("dev").indicator), bytes(wanted));
        }
    }

    void unarmedOrBusyNoLampIsWritten()
    {
        open();
        for (const bool armed : {false, true}) {
            UiArmed = armed;
            LightPageBusy = armed;
            page->lamp(0)->setCurrentIndex(3);
            page->lamp(0)->setCurrentIndex(1);
        }
        LightPageBusy = false;
        QVERIFY(fake.calls().empty());
        page->lamp(0)->setCurrentIndex(3);
        QCOMPARE(bytes(fake.device("dev").indicator), QByteArray("03 02 03"));
    }

    // After a reset the stored values are 0, whatever the boxes show.
    void afterAResetARefusedLampGoesBackToItsFirstItem()
    {
        open();
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        page->refuse(true);
        page->lamp(2)->setCurrentIndex(1);
        QCOMPARE(page->lamp(2)->currentIndex(), 0);
    }

    // ---- The scheme

    void eachSchemeIsWritten()
    {
        open();
        for (const int scheme : {2, 3, 1, 3, 2, 1}) {
            fake.clearCalls();
            QTest::mouseClick(page->choice(scheme), Qt::LeftButton);
            QCOMPARE(checkedScheme(), scheme);
            QCOMPARE(int(fake.device("dev").rgb.Scheme), scheme);
            QCOMPARE(int(fake.device("dev").rgb.Carried[8]), 9); // carried as it was read
            QCOMPARE(fake.count("UsbFinderC_Set4KDongleRGB"), 1);
            QCOMPARE(int(page->rgb.Scheme), scheme); // the one record, which a notice announces again
            QVERIFY(fake.updates().empty());
        }
        QTest::mouseClick(page->choice(1), Qt::LeftButton); // the one that is checked
        QCOMPARE(fake.count("UsbFinderC_Set4KDongleRGB"), 1);
    }

    void aSilentMouseTakesTheSchemeBack_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("read"); // since, without an announcement
        QTest::newRow("of another") << 1 << 1;
        QTest::newRow("of none") << 0 << 0;
        QTest::newRow("of what is shown") << 1 << 0;
    }
    void aSilentMouseTakesTheSchemeBack()
    {
        QFETCH(int, before);
        QFETCH(int, read);
        open();
        page->announceScheme(uint8_t(before));
        page->rgb.Scheme = uint8_t(read);
        fake.setOnline("dev", false);
        QSignalSpy first(page->choice(1), &QAbstractButton::toggled);
        QSignalSpy second(page->choice(2), &QAbstractButton::toggled);
        QTest::mouseClick(page->choice(2), Qt::LeftButton);
        QCOMPARE(checkedScheme(), before);
        QCOMPARE(notice->count(), 1);
        QCOMPARE(notice->first().first().toInt(), 0);
        QCOMPARE(fake.count("UsbFinderC_Set4KDongleRGB"), 0);
        QCOMPARE(first.count(), before); // by the click, and not on the way back
        QCOMPARE(second.count(), 1);
        fake.setOnline("dev", true);
        QTest::mouseClick(page->choice(2), Qt::LeftButton);
        QCOMPARE(checkedScheme(), 2);
        QCOMPARE(int(fake.device("dev").rgb.Scheme), 2);
        QCOMPARE(notice->count(), 1);
    }

    void unarmedNoSchemeIsWritten()
    {
        open();
        UiArmed = false;
        QTest::mouseClick(page->choice(2), Qt::LeftButton);
        QVERIFY(fake.calls().empty());
        UiArmed = true;
        QTest::mouseClick(page->choice(3), Qt::LeftButton);
        QCOMPARE(int(fake.device("dev").rgb.Scheme), 3);
    }

    // The receiver's own bytes are read before the first write, and not taken from the receiver before.
    void aSchemeThatWasNotReadIsReadBeforeItIsWritten_data()
    {
        QTest::addColumn<bool>("announced"); // of the receiver before
        QTest::newRow("no record yet") << false;
        QTest::newRow("one that is empty now") << true;
    }
    void aSchemeThatWasNotReadIsReadBeforeItIsWritten()
    {
        QFETCH(bool, announced);
        page = std::make_unique<LightPage>();
        if (announced) {
            page->announceScheme(1);
            QCOMPARE(checkedScheme(), 1);
            page->rgb = {};
        }
        const DongleRGB own{2, {9, 8, 7, 6, 5, 4, 3, 2, 1}};
        fake.edit("dev", [&own](FakeDevice &device) {
            device.rgb = own;
            device.answersColor = false;
        });
        page->read(lightRecord(2));
        QCOMPARE(checkedScheme(), 0);
        QTest::mouseClick(page->choice(3), Qt::LeftButton);
        QCOMPARE(checkedScheme(), 0);
        QCOMPARE(fake.count("UsbFinderC_Set4KDongleRGB"), 0);
        fake.edit("dev", [](FakeDevice &device) { device.answersColor = true; });
        QTest::mouseClick(page->choice(3), Qt::LeftButton);
        QCOMPARE(checkedScheme(), 3);
        QCOMPARE(int(fake.device("dev").rgb.Scheme), 3);
        QCOMPARE(memcmp(fake.device("dev").rgb.Carried, own.Carried, sizeof own.Carried), 0);
        page->read(lightRecord(2)); // and what the read has told is not asked for
        QTest::mouseClick(page->choice(1), Qt::LeftButton);
        QCOMPARE(fake.count("UsbFinderC_Get4KDongleRGBValue"), announced ? 0 : 1);
        QCOMPARE(int(fake.device("dev").rgb.Scheme), 1);
    }

    // ---- The mouse's light is put out

    void offClearsTheSwitchToo_data()
    {
        QTest::addColumn<int>("answers"); // of the on-line question, before the mouse is silent
        QTest::newRow("both taken") << 9;
        QTest::newRow("the second refused") << 1;
        QTest::newRow("both refused") << 0;
    }
    void offClearsTheSwitchToo()
    {
        QFETCH(int, answers);
        open();
        FlashDataMap map = lightRecord(3);
        map.LightRippeControl = 1;
        page->read(map);
        int asked = 0;
        fake.setHook([&](const std::string &name) {
            if (name == "UsbFinderC_GetDeviceOnLine")
                fake.setOnline("dev", asked++ < answers);
        });
        page->mode(Mouse)->setCurrentIndex(0);
        fake.setHook(nullptr);
        if (answers > 0) {
            map.LedBarEnable = 0;
            map.LightRippeControl = answers > 1 ? 0 : 1;
        }
        const FlashDataMap held = DeviceRecord::copy();
        QCOMPARE(memcmp(&held, &map, sizeof map), 0);
        QCOMPARE(page->mode(Mouse)->currentIndex(), answers > 0 ? 0 : 3);
        QCOMPARE(page->brightness(Mouse)->isHidden(), answers > 0);
        QCOMPARE(page->find<QToolButton>("RippeControl")->isChecked(), map.LightRippeControl == 1);
        QCOMPARE(notice->count(), answers > 1 ? 0 : 1);
    }

    // A mode from the record is the one that a refusal goes back to, and the next one is on again.
    void aModeWritesItsEnableByte()
    {
        open();
        page->mode(Mouse)->setCurrentIndex(0);
        QCOMPARE(int(DeviceRecord::copy().LedBarEnable), 0);
        QCOMPARE(int(DeviceRecord::copy().LedBarMode), 2);
        page->mode(Mouse)->setCurrentIndex(6);
        QCOMPARE(int(DeviceRecord::copy().LedBarEnable), 1);
        QCOMPARE(int(DeviceRecord::copy().LedBarMode), 6);
    }

    // ---- Colours in one act, of either light

    void aPresetWritesWhatChanges_data() { eachLight(); }
    void aPresetWritesWhatChanges()
    {
        QFETCH(int, index);
        open({2, 10, 20, 30, 4, 7, 1});
        QColor before(10, 20, 30);
        for (const Preset &preset : Presets) {
            const QColor wanted(preset.red, preset.green, preset.blue);
            const int changes = (before.red() != wanted.red()) + (before.green() != wanted.green()) +
                                (before.blue() != wanted.blue());
            const int writesBefore = writes(index);
            QTest::mouseClick(page->preset(LightCases[index], preset), Qt::LeftButton);
            QCOMPARE(colorOf(index), wanted);
            QCOMPARE(page->color(LightCases[index]), wanted);
            QCOMPARE(writes(index) - writesBefore, changes);
            QVERIFY(page->preset(LightCases[index], preset)->isChecked());
            before = wanted;
        }
        const int writesBefore = writes(index);
        QTest::mouseClick(page->preset(LightCases[index], Presets.back()), Qt::LeftButton);
        QCOMPARE(writes(index), writesBefore); // the present colour
        QCOMPARE(notice->count(), 0);
    }

    void aSilentMouseMovesNoBox_data() { eachLight(); }
    void aSilentMouseMovesNoBox()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        open();
        const QColor before = page->color(light);
        fake.setOnline("dev", false);
        int notices = 0;
        const auto check = [&] {
            QCOMPARE(page->color(light), before);
            QCOMPARE(notice->count(), ++notices);
            QCOMPARE(writes(index), 0);
        };
        for (const Preset &preset : Presets) {
            QTest::mouseClick(page->preset(light, preset), Qt::LeftButton);
            check();
            QCOMPARE(page->preset(light, preset)->isChecked(),
                     QColor(preset.red, preset.green, preset.blue) == before);
        }
        auto *hex = page->own<QLineEdit>("HexColor", light);
        hex->selectAll();
        QTest::keyClicks(hex, "123456");
        QTest::keyClick(hex, Qt::Key_Return);
        check();
        QCOMPARE(hex->text(), before.name().toUpper());
    }

    // Lost behind the question, the mouse takes no channel, and says so once.
    void aColorThatIsRefusedOnItsWayStops()
    {
        open();
        int asked = 0;
        fake.setHook([&](const std::string &name) {
            if (name == "UsbFinderC_GetDeviceOnLine")
                fake.setOnline("dev", asked++ < 2); // the check and the first channel
        });
        QTest::mouseClick(page->preset(Mouse, Presets[1]), Qt::LeftButton);
        fake.setHook(nullptr);
        QCOMPARE(page->color(Mouse), QColor(0, 20, 30));
        QCOMPARE(colorOf(MouseGroup), QColor(0, 20, 30));
        QCOMPARE(notice->count(), 1);
    }

    void unarmedTheBoxesMoveAndNothingIsWritten_data() { eachLight(); }
    void unarmedTheBoxesMoveAndNothingIsWritten()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        open();
        UiArmed = false;
        QTest::mouseClick(page->preset(light, Presets[1]), Qt::LeftButton);
        QCOMPARE(page->color(light), QColor(0, 255, 255));
        QTest::mouseClick(page->own<QToolButton>("AddR", light), Qt::LeftButton);
        QCOMPARE(page->color(light), QColor(1, 255, 255));
        QVERIFY(fake.calls().empty());
    }

    void aCodeIsTyped_data() { eachLight(); }
    void aCodeIsTyped()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        open();
        auto *hex = page->own<QLineEdit>("HexColor", light);
        for (const char *code : {"#0A141F", "ff5000"}) {
            hex->selectAll();
            QTest::keyClicks(hex, code);
            QTest::keyClick(hex, Qt::Key_Return);
            const QColor wanted = QByteArray(code).startsWith('#') ? QColor(10, 20, 31) : QColor(255, 80, 0);
            QCOMPARE(page->color(light), wanted);
            QCOMPARE(colorOf(index), wanted);
            QCOMPARE(hex->text(), wanted.name().toUpper());
        }
        const int before = writes(index);
        hex->selectAll();
        QTest::keyClicks(hex, "12");
        QTest::keyClick(hex, Qt::Key_Return); // not a colour
        QCOMPARE(colorOf(index), QColor(255, 80, 0));
        QCOMPARE(hex->text(), QString("#FF5000"));
        page->page->activateWindow();
        hex->setFocus();
        QTRY_VERIFY(hex->hasFocus());
        hex->selectAll();
        QTest::keyClicks(hex, "#77");
        page->channel(light, 0)->setFocus(); // the field is left
        QCOMPARE(hex->text(), QString("#FF5000"));
        QCOMPARE(colorOf(index), QColor(255, 80, 0));
        QCOMPARE(writes(index), before);
    }

    void aNumberThatIsTypedIsOneEdit_data() { eachLight(); }
    void aNumberThatIsTypedIsOneEdit()
    {
        QFETCH(int, index);
        open();
        QSpinBox *box = page->channel(LightCases[index], 1);
        box->selectAll();
        QTest::keyClicks(box, "123");
        QCOMPARE(writes(index), 0);
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(writes(index), 1);
        QCOMPARE(colorOf(index).green(), 123);
    }

    // A step begins at a number that is still being typed, which is an edit of its own.
    void aStepBehindATypedNumber_data() { eachLight(); }
    void aStepBehindATypedNumber()
    {
        QFETCH(int, index);
        const LightCase &light = LightCases[index];
        open({2, 10, 20, 30, 4, 7, 1});
        const char *const channels[] = {"R", "G", "B"};
        for (int i = 0; i < 3; ++i)
            for (const bool more : {true, false}) {
                QSpinBox *box = page->channel(light, i);
                const int before = writes(index);
                const QByteArray name = QByteArray(more ? "Add" : "Reduce") + channels[i];
                auto *button = page->own<QToolButton>(name.constData(), light);
                box->selectAll();
                QTest::keyClicks(box, more ? "123" : "45");
                QTest::mouseClick(button, Qt::LeftButton);
                QCOMPARE(box->text(), QString(more ? "124" : "44"));
                QCOMPARE(box->value(), more ? 124 : 44);
                QCOMPARE(writes(index) - before, 2);
            }
        QCOMPARE(colorOf(index), QColor(44, 44, 44));
        fake.setOnline("dev", false);
        QSpinBox *box = page->channel(light, 0);
        box->selectAll();
        QTest::keyClicks(box, "200");
        QTest::mouseClick(page->own<QToolButton>("AddR", light), Qt::LeftButton);
        QCOMPARE(notice->count(), 1);
        QCOMPARE(box->text(), QString("44"));
        QCOMPARE(colorOf(index), QColor(44, 44, 44));
    }

    void aStepBehindARefusedNumberIsNoEdit()
    {
        open({2, 10, 20, 30, 4, 7, 1});
        QSpinBox *box = page->channel(Receiver, 0);
        auto *button = page->own<QToolButton>("AddR", Receiver);
        page->refuse(true);
        box->selectAll();
        QTest::keyClicks(box, "123");
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(writes(ReceiverGroup), 1);
        QCOMPARE(box->text(), QString("10"));
        page->refuse(false);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(colorOf(ReceiverGroup), QColor(11, 20, 30));
    }

    // A press beside the fields to type in takes the focus off them.
    void aPressBesideTheBoxesTakesTheFocus_data() { eachLight(); }
    void aPressBesideTheBoxesTakesTheFocus()
    {
        QFETCH(int, index);
        open();
        page->page->activateWindow();
        QTRY_VERIFY(page->page->isActiveWindow());
        QWindow *const window = page->page->windowHandle();
        for (QWidget *box : std::initializer_list<QWidget *>{
                 page->channel(LightCases[index], 2), page->own<QLineEdit>("HexColor", LightCases[index])}) {
            box->setFocus();
            QTRY_VERIFY(box->hasFocus());
            QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(850, 30)); // on the card
            QVERIFY(page->page->hasFocus());
        }
    }

    // What of the other sleep list is left.
    void theSleepListOfThisPage()
    {
        open();
        const int codes[] = {1, 3, 6, 30, 60, 90, 120, 150, 180, 210, 240};
        for (int i = 0; i < 11; ++i) {
            page->page->on_StopCloseTime_activated(i);
            QCOMPARE(int(DeviceRecord::copy().StopCloseTime), codes[i]);
        }
        const std::size_t written = fake.updates().size();
        page->page->on_StopCloseTime_activated(11);
        page->page->on_StopCloseTime_activated(-1);
        UiArmed = false;
        page->page->on_StopCloseTime_activated(0);
        QCOMPARE(fake.updates().size(), written);
    }
};

TEST_CLASS(tst_LightEdits, fixture::ShippedLooks)

#include "tst_lightedits.moc"
