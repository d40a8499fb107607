// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the page of the lights writes for either light: colours that are set in one act or typed, and the
// switch that goes with the mouse's mode. The mouse's controls one by one are in the contract of edits.
#include "tests/widget/lighting/LightEdits.h"

namespace
{

const LightCase &Mouse = LightCases[MouseGroup];

} // namespace

class tst_LightEdits : public LightEditTest
{
    Q_OBJECT

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void cleanup() { close(); }

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
            QCOMPARE(page->written(index), wanted);
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
        QCOMPARE(page->written(MouseGroup), QColor(0, 20, 30));
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
            QCOMPARE(page->written(index), wanted);
            QCOMPARE(hex->text(), wanted.name().toUpper());
        }
        // As a screen reader sets it, which types nothing.
        for (const char *code : {"12", "#0A141F", "ff5000"})
            hex->setText(code);
        QCOMPARE(page->written(index), QColor(255, 80, 0));
        hex->setText("#0A141F");
        QCOMPARE(page->written(index), QColor(10, 20, 31));
        hex->setText("ff5000");
        const int before = writes(index);
        hex->selectAll();
        QTest::keyClicks(hex, "12");
        QTest::keyClick(hex, Qt::Key_Return); // not a colour
        QCOMPARE(page->written(index), QColor(255, 80, 0));
        QCOMPARE(hex->text(), QString("#FF5000"));
        page->page->activateWindow();
        hex->setFocus();
        QTRY_VERIFY(hex->hasFocus());
        hex->selectAll();
        QTest::keyClicks(hex, "#77");
        page->channel(light, 0)->setFocus(); // the field is left
        QCOMPARE(hex->text(), QString("#FF5000"));
        QCOMPARE(page->written(index), QColor(255, 80, 0));
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
        QCOMPARE(page->written(index).green(), 123);
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
        QCOMPARE(page->written(index), QColor(44, 44, 44));
        fake.setOnline("dev", false);
        QSpinBox *box = page->channel(light, 0);
        box->selectAll();
        QTest::keyClicks(box, "200");
        QTest::mouseClick(page->own<QToolButton>("AddR", light), Qt::LeftButton);
        QCOMPARE(notice->count(), 1);
        QCOMPARE(box->text(), QString("44"));
        QCOMPARE(page->written(index), QColor(44, 44, 44));
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
        QCOMPARE(page->written(ReceiverGroup), QColor(11, 20, 30));
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
