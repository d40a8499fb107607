// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the page of the lights writes to the receiver: its records, byte by byte, with and without the mouse,
// and what a refusal leaves of them.
#include "tests/widget/lighting/LightEdits.h"

class tst_ReceiverEdits : public LightEditTest
{
    Q_OBJECT

private:
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
    void cleanup() { close(); }

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
        fake.setOnline("dev", false); // the next one goes back to that
        QTest::mouseClick(page->choice(3), Qt::LeftButton);
        QCOMPARE(checkedScheme(), 2);
        QCOMPARE(notice->count(), 2);
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
};

TEST_CLASS(tst_ReceiverEdits, fixture::ShippedLooks)

#include "tst_receiveredits.moc"
