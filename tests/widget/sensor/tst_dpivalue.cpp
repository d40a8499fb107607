// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The value of the current stage: the ranges of every model, the slider with its armed writes, the step
// buttons, and the way back when the mouse does not answer.
#include "sensor/DpiSteps.h"
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/DpiFixture.h"

#include <QButtonGroup>

namespace
{

DpiRanges rangesOf(const char *list)
{
    DpiRanges ranges;
    ranges.read(QString(list).split(','));
    return ranges;
}

int stored(int stage)
{
    const DpiStage entry = DeviceRecord::copy().DpiStages[stage];
    return SensorDpiDecode(entry.LevelX, entry.LevelFlags);
}

} // namespace

class tst_DpiValue : public QObject
{
    Q_OBJECT

private slots:
    void rangeRules_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<int>("rest");
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("above");
        QTest::addColumn<int>("below");
        const auto row = [](const char *list, int dpi, int rest, int step, int above, int below) {
            QTest::addRow("%s at %d", list, dpi) << list << dpi << rest << step << above << below;
        };
        const char *two = "50,10000,50,10100,26000,100,0x22";
        row(two, 50, 50, 50, 100, 0);
        row(two, 99, 50, 50, 149, 49);
        row(two, 9950, 9950, 50, 10000, 9900);
        row(two, 10000, 10000, 50, 10100, 9950);
        row(two, 10001, 10100, 100, 10100, 10100);
        row(two, 10050, 10100, 100, 10100, 10100);
        row(two, 10099, 10100, 100, 10100, 10100);
        row(two, 10100, 10100, 100, 10200, 10000);
        row(two, 10199, 10100, 100, 10299, 10099);
        row(two, 26000, 26000, 100, 26100, 25900);
        row(two, 26050, 26050, 0, 26050, 26050); // above the last range
        row(two, 49, 49, 0, 49, 49);             // below the first
        const char *four = "100,1000,100,2000,3000,200,4000,5000,250,6000,8000,500,0x33";
        row(four, 1000, 1000, 100, 2000, 900);
        row(four, 1500, 2000, 200, 2000, 2000);
        row(four, 3000, 3000, 200, 4000, 2800);
        row(four, 3500, 4000, 250, 4000, 4000);
        row(four, 4999, 4750, 250, 5249, 4749);
        row(four, 5001, 6000, 500, 6000, 6000);
        row(four, 8000, 8000, 500, 8500, 7500);
        row("400,800,100,0", 800, 800, 100, 900, 700);
        // A value between two that touch belongs to the lower one, but steps up as the upper one says.
        row("50,100,50,100,200,100,0", 100, 100, 50, 200, 50);
        // A list that is none leaves every value alone.
        row("0x22", 777, 777, 0, 777, 777);
    }
    void rangeRules()
    {
        QFETCH(QString, list);
        QFETCH(int, dpi);
        const DpiRanges ranges = rangesOf(qPrintable(list));
        QTEST(dpiRestAt(dpi, ranges).dpi, "rest");
        QTEST(dpiRestAt(dpi, ranges).step, "step");
        QTEST(dpiAbove(dpi, ranges), "above");
        QTEST(dpiBelow(dpi, ranges), "below");
    }

    void stepsOverEveryBoundary_data()
    {
        QTest::addColumn<int>("model");
        for (int model = 0; model < ModelCount; ++model)
            QTest::addRow("model %d", model) << model;
    }
    // From each end of each range one step in each direction, with what the mouse then holds.
    void stepsOverEveryBoundary()
    {
        QFETCH(int, model);
        DpiEditor editor(model, 1);
        const DpiRanges r = SensorRanges;
        const int last = r.DpiRangeCount - 1;
        const auto add = [&editor](int from, int to) {
            editor.spin()->setValue(from);
            editor.clickAdd();
            QCOMPARE(editor.spin()->value(), to);
            QCOMPARE(stored(1), to);
            QCOMPARE(editor.difference(), QString());
        };
        const auto reduce = [&editor](int from, int to) {
            editor.spin()->setValue(from);
            editor.clickReduce();
            QCOMPARE(editor.spin()->value(), to);
            QCOMPARE(stored(1), to);
            QCOMPARE(editor.difference(), QString());
        };
        for (int i = 0; i <= last; ++i) {
            const int min = r.DpiRangeMins[i], max = r.DpiRangeMaxs[i], step = r.DpiRangeSteps[i];
            add(min, min + step);
            add(max - step, max);
            add(max, i < last ? r.DpiRangeMins[i + 1] : max);
            reduce(max, max - step);
            reduce(min + step, min);
            if (i > 0)
                reduce(min, min - step > r.DpiRangeMaxs[i - 1] ? min : min - step);
        }
        reduce(r.DpiRangeMins[0], r.DpiRangeMins[0]);
    }

    void aValueInAGapGoesUpBothWays()
    {
        DpiEditor editor(FastModel, 1);
        SensorRanges.read(QString("50,10000,50,10100,26000,100,0x22").split(','));
        editor.spin()->setValue(10050);
        editor.clickReduce();
        QCOMPARE(editor.spin()->value(), 10100);
        editor.clickReduce();
        editor.spin()->setValue(10050);
        editor.clickAdd();
        QCOMPARE(editor.spin()->value(), 10100);
        QCOMPARE(editor.slider()->pageStep(), 100);
        QCOMPARE(stored(1), 10100);
    }

    // A slider at 10050, between 10000 and 10100, does not stay there: the rule of the gaps holds for every
    // value in one, also for the multiple of the lower range's step.
    void aSliderInAGapRestsAtTheRangeAbove_data()
    {
        QTest::addColumn<bool>("dragged");
        QTest::newRow("moved") << false;
        QTest::newRow("dragged") << true;
    }
    void aSliderInAGapRestsAtTheRangeAbove()
    {
        QFETCH(bool, dragged);
        DpiEditor editor(FastModel, 1);
        SensorRanges.read(QString("50,10000,50,10100,26000,100,0x22").split(','));
        editor.slider()->setSliderDown(dragged);
        editor.slider()->setSliderPosition(10050);
        editor.slider()->setSliderDown(false);
        QCOMPARE(editor.spin()->value(), 10100);
        QCOMPARE(editor.button(1)->text(), QString("10100"));
        QCOMPARE(editor.slider()->pageStep(), 100);
        QCOMPARE(stored(1), 10100);
    }

    void stepsOfASilentMouse()
    {
        DpiEditor editor(FastModel, 1);
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.clickAdd();
        editor.clickReduce();
        QCOMPARE(notice.count(), 2);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void thePaintedValueIsTheUsersToChange()
    {
        DpiEditor editor(FastModel, 1);
        editor.slider()->setValue(1630);
        QCOMPARE(stored(1), 1600);
        QCOMPARE(editor.difference(), QString());
    }

    // A slider that moves because its stage was selected is no edit.
    void aChangeThatIsNotArmedOnlyRepaints()
    {
        DpiEditor editor(FastModel, 1);
        editor.slider()->blockSignals(true);
        editor.bar(4)->setChecked(true);
        editor.bar(1)->setChecked(true); // its own move was swallowed
        editor.slider()->blockSignals(false);
        editor.fake().clearCalls();
        const FlashDataMap before = DeviceRecord::copy();
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddSensor);
        editor.slider()->setValue(1630);
        QCOMPARE(editor.button(1)->text(), QString("1600"));
        QCOMPARE(editor.spin()->value(), 1600);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(shown.count(), 0);
        const FlashDataMap still = DeviceRecord::copy();
        QVERIFY(!memcmp(&before, &still, sizeof still));
        editor.slider()->setValue(1650);
        QCOMPARE(int(editor.fake().updates().size()), 1);
        QCOMPARE(stored(1), 1650);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown[0][0].toInt(), 1650);
        QCOMPARE(editor.difference(), QString());
    }

    void noStageIsCheckedNoStageIsWritten()
    {
        DpiEditor editor(FastModel, 1);
        auto *group = editor.button(1)->group();
        group->setExclusive(false);
        editor.button(1)->setChecked(false);
        const FlashDataMap before = DeviceRecord::copy();
        editor.slider()->setValue(1650);
        editor.slider()->setValue(1700);
        QCOMPARE(editor.spin()->value(), 1700);
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &before, sizeof record));
        QVERIFY(editor.nothingWritten());
    }

    void aDragEndsInTheRecord_data() { stepsOverEveryBoundary_data(); }
    void aDragEndsInTheRecord()
    {
        QFETCH(int, model);
        DpiEditor editor(model, 2);
        QSlider *slider = editor.slider();
        QWindow *window = editor.panel.windowHandle();
        slider->setValue(slider->minimum());
        QPoint at = slider->geometry().center();
        at.setX(slider->x() + 8);
        QTest::mousePress(window, Qt::LeftButton, {}, at);
        while (at.x() < slider->geometry().right() - 20) {
            at.rx() += 3;
            QTest::mouseMove(window, at);
        }
        QTest::mouseRelease(window, Qt::LeftButton, {}, at);
        QVERIFY(stored(2) > SensorRanges.DpiSliderMax / 2);
        QCOMPARE(stored(2), dpiRestAt(slider->value(), SensorRanges).dpi);
        QCOMPARE(editor.difference(), QString());
    }

    void positionsOfASilentMouseAreTakenBackWithoutANotice()
    {
        DpiEditor editor(FastModel, 1);
        const int before = editor.spin()->value();
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.slider()->setSliderDown(true);
        editor.slider()->setSliderPosition(9000);
        QCOMPARE(notice.count(), 0);
        QVERIFY(!editor.slider()->isEnabled());
        QVERIFY(editor.slider()->signalsBlocked());
        QCOMPARE(editor.slider()->value(), before);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
        QVERIFY(AwaitingMouse && RestartWorker); // so that a load comes with the mouse
        // The next load lets it go.
        editor.slider()->setSliderDown(false);
        editor.goOffline(false);
        editor.paint();
        editor.slider()->setValue(3000);
        QVERIFY(editor.slider()->isEnabled());
        QCOMPARE(editor.spin()->value(), 3000);
    }

    void aValueOfASilentMouseIsTakenBackWithANotice()
    {
        DpiEditor editor(FastModel, 1);
        const int before = editor.spin()->value();
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.slider()->setValue(9000);
        QCOMPARE(notice.count(), 1);
        QCOMPARE(notice[0][0].toInt(), 0);
        QVERIFY(!editor.slider()->isEnabled());
        QVERIFY(editor.slider()->signalsBlocked());
        QCOMPARE(editor.slider()->value(), before);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void aMouseThatFallsSilentBeforeTheWrite()
    {
        DpiEditor editor(FastModel, 1);
        int asked = 0;
        editor.fake().setHook([&asked](const std::string &name) {
            if (name.rfind("UsbFinderC_GetDeviceOnLine", 0) == 0 && ++asked == 2)
                FakeHidUsb::instance().setOnline("dev", false);
        });
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddSensor);
        editor.slider()->setValue(9000);
        editor.fake().setHook({});
        QCOMPARE(asked, 2);
        QCOMPARE(notice.count(), 1);
        QCOMPARE(shown.count(), 0);
        QVERIFY(!editor.slider()->isEnabled());
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    // ---- A number that is typed

    void aTypedNumberCountsFromEnterOn_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("wanted");
        QTest::newRow("a value of the sensor") << "1850" << 1850;
        QTest::newRow("between two values") << "1874" << 1850;
        QTest::newRow("below the range") << "1" << -1;
        QTest::newRow("above the range") << "99999" << -2;
    }
    void aTypedNumberCountsFromEnterOn()
    {
        QFETCH(QString, typed);
        QFETCH(int, wanted);
        DpiEditor editor(FastModel, 1);
        if (wanted < 0)
            wanted = wanted == -1 ? editor.slider()->minimum() : editor.slider()->maximum();
        const int before = editor.spin()->value();
        editor.type(typed);
        QCOMPARE(editor.spin()->value(), before);
        QVERIFY(editor.nothingWritten());
        QTest::keyClick(editor.spin(), Qt::Key_Return);
        QCOMPARE(editor.spin()->value(), wanted);
        QVERIFY(!editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void aTypedNumberIsForgottenWithoutEnter_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Escape") << int(Qt::Key_Escape);
        QTest::newRow("Tab") << int(Qt::Key_Tab);
    }
    void aTypedNumberIsForgottenWithoutEnter()
    {
        QFETCH(int, key);
        DpiEditor editor(FastModel, 1);
        const QString before = editor.spin()->text();
        editor.type("1850");
        QTest::keyClick(editor.spin(), Qt::Key(key));
        QCOMPARE(editor.spin()->text(), before);
        QVERIFY(editor.nothingWritten());
        QTest::keyClick(editor.spin(), Qt::Key_Return); // the same number
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void theArrowKeysOfTheBoxStep()
    {
        DpiEditor editor(FastModel, 1);
        const int before = editor.spin()->value();
        QTest::keyClick(editor.spin(), Qt::Key_Up);
        QCOMPARE(editor.spin()->value(), before + 50);
        QTest::keyClick(editor.spin(), Qt::Key_Down);
        QCOMPARE(editor.spin()->value(), before);
        QCOMPARE(editor.difference(), QString());
    }

    void aSilentMouseTakesATypedNumberBack()
    {
        DpiEditor editor(FastModel, 1);
        editor.goOffline();
        editor.type("1850");
        QTest::keyClick(editor.spin(), Qt::Key_Return);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
        QCOMPARE(editor.spin()->text(), QString::number(editor.spin()->value()));
    }

    void aPageThatFillsItselfWritesNothing()
    {
        DpiEditor editor(FastModel, 1);
        editor.clickAdd(); // armed
        editor.fake().clearCalls();
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        {
            const PageFilling filling(SensorPageBusy);
            editor.slider()->setValue(2400);
            editor.slider()->setSliderDown(true);
            editor.slider()->setSliderPosition(2500);
            editor.slider()->setSliderDown(false);
        }
        QCOMPARE(notice.count(), 0);
        QVERIFY(editor.slider()->isEnabled());
        QCOMPARE(editor.spin()->value(), 2500);
        QVERIFY(editor.nothingWritten());
    }

    void unarmedOrBusyTheValueIsOnlyShown_data()
    {
        QTest::addColumn<bool>("armed");
        QTest::addColumn<bool>("importing");
        QTest::newRow("not armed") << false << false;
        QTest::newRow("while an image is imported") << true << true;
    }
    void unarmedOrBusyTheValueIsOnlyShown()
    {
        QFETCH(bool, armed);
        QFETCH(bool, importing);
        DpiEditor editor(FastModel, 1);
        editor.clickAdd();
        editor.fake().clearCalls();
        UiArmed = armed;
        SettingsBusy = importing;
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddSensor);
        editor.slider()->setValue(9000);
        QCOMPARE(editor.button(1)->text(), QString("9000"));
        QVERIFY(editor.nothingWritten());
        QCOMPARE(shown.count(), 0);
        SettingsBusy = false;
    }

    void keysMoveByTheStepOfTheRange()
    {
        DpiEditor editor(TableModel, 6); // 6000, the end of the first range
        editor.clickReduce();
        QTest::keyClick(editor.slider(), Qt::Key_Right);
        QCOMPARE(stored(6), 6000);
        QTest::keyClick(editor.slider(), Qt::Key_Right);
        QCOMPARE(stored(6), 6200);
        QCOMPARE(editor.difference(), QString());
    }

    void theFreeValueIsSilent()
    {
        DpiEditor editor(FastModel, 1);
        const QString before = editor.button(1)->text();
        editor.panel.on_pushButton_clicked();
        QCOMPARE(editor.slider()->value(), 5000);
        QCOMPARE(editor.button(1)->text(), before);
        QVERIFY(editor.nothingWritten());
    }
};

TEST_CLASS(tst_DpiValue, DpiSetUp)

#include "tst_dpivalue.moc"
