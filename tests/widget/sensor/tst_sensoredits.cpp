// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the sensor page does beyond the rule of an edit: its times, its modes, and what a rate or a report of
// the device changes.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/SensorFixture.h"

namespace
{

template <typename Button> void click(const Button *button)
{
    QTest::mouseClick(const_cast<Button *>(button), Qt::LeftButton, {}, QPoint(9, button->height() / 2));
}

} // namespace

class tst_SensorEdits : public QObject
{
    Q_OBJECT

private:
    static std::vector<FlashDataMap> updates() { return FakeHidUsb::instance().updates(); }
    static int questions() { return FakeHidUsb::instance().count("UsbFinderC_GetDeviceOnLine"); }

private slots:
    // ---- Edits

    void everyTimeHasItsByte()
    {
        SensorFixture page;
        const int bytes[] = {1, 3, 6, 12, 18, 30, 60, 90};
        page.show(editedRecord());
        QCOMPARE(page.time()->count(), 8);
        for (const int index : {0, 1, 2, 3, 4, 5, 6, 7}) {
            page.time()->setCurrentIndex(index);
            QCOMPARE(int(DeviceRecord::copy().PerformanceOpen), bytes[index]);
            QCOMPARE(performanceIndexOf(bytes[index]), index);
        }
        QCOMPARE(int(PerformanceTimes[8]), 210);
        QCOMPARE(int(PerformanceTimes[9]), 240);
        QCOMPARE(performanceIndexOf(210), -1);
    }

    // The way back leads to what was painted last, not to what was accepted last.
    void theTimeFallsBackToThePaintedOne()
    {
        SensorFixture page;
        page.show(editedRecord());
        page.time()->setCurrentIndex(5);
        FakeHidUsb::instance().setOnline("dev", false);
        page.time()->setCurrentIndex(6);
        QCOMPARE(page.time()->currentIndex(), 2);
        QCOMPARE(int(DeviceRecord::copy().PerformanceOpen), 30);
    }

    void performanceOpensTheTimeAndTellsTheOthers()
    {
        SensorFixture page;
        QSignalSpy open(PostMsg::instance(), &PostMsg::Sig20KOpen);
        QVERIFY(!page.time()->isEnabled());
        click(page.performance());
        QVERIFY(page.time()->isEnabled());
        click(page.performance());
        QVERIFY(!page.time()->isEnabled());
        QCOMPARE(open.count(), 2);
        QCOMPARE(open[0][0].toBool(), true);
        QCOMPARE(open[1][0].toBool(), false);
        FakeHidUsb::instance().setOnline("dev", false);
        click(page.performance());
        QVERIFY(!page.performance()->isChecked() && !page.time()->isEnabled());
        QCOMPARE(open.count(), 2);
    }

    void theCordedModeIsNeitherChosenNorWritten()
    {
        SensorFixture page;
        QTest::keyClick(page.mode(), Qt::Key_Down);
        QCOMPARE(int(DeviceRecord::copy().ModelChoose), 1);
        QTest::keyClick(page.mode(), Qt::Key_Down);
        QCOMPARE(page.mode()->currentIndex(), 1);
        QTest::keyClick(page.mode(), Qt::Key_End);
        QCOMPARE(page.mode()->currentIndex(), 1);
        QCOMPARE(int(updates().size()), 1);
        page.mode()->setCurrentIndex(Corded);
        QCOMPARE(int(updates().size()), 1);
        QCOMPARE(int(DeviceRecord::copy().ModelChoose), 1);
    }

    void theSlotsWithoutAControlWriteTheirByte()
    {
        SensorFixture page;
        page.page->on_RippeControl_clicked(true);
        page.page->on_StraightLine_clicked(true);
        page.page->on_MotionSync_clicked(false);
        const FlashDataMap map = DeviceRecord::copy();
        QCOMPARE(int(map.RippeControl), 1);
        QCOMPARE(int(map.StraightLine), 1);
        QCOMPARE(int(map.MotionSync), 0);
        page.page->on_pushButton_clicked();
        QCOMPARE(page.lod()->itemText(0), QString("0.7mm"));
        page.page->on_pushButton_2_clicked();
        QCOMPARE(page.lod()->count(), 2);
    }

    // ---- What the rates and the device change

    void aRateFixesTheMode_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("kind");
        for (const int model : {int(M3395), int(MPA42), int(M3311), int(MPart)})
            for (const int kind : {0, 1, 2, 3, 4, 5})
                QTest::addRow("%s on kind %d", TestModels[model].sensor, kind) << model << kind;
    }
    void aRateFixesTheMode()
    {
        QFETCH(int, model);
        QFETCH(int, kind);
        SensorFixture page(model);
        FlashDataMap map = sensorRecord();
        map.ModelChoose = 1;
        page.show(map);
        SensorFixture::choose(model, uint16_t(kind));
        const bool able = model == M3395 || model == MPart;
        const bool fast = kind == 1 || kind == 4 || kind == 5;
        const int before = page.mode()->currentIndex();
        emit PostMsg::instance()->SigHideModel(1);
        QCOMPARE(page.mode()->currentIndex(), able && fast ? int(Corded) : before);
        QCOMPARE(page.mode()->isEnabled(), able && !fast);
        emit PostMsg::instance()->SigHideModel(7); // no state at all
        QCOMPARE(page.mode()->isEnabled(), able && !fast);
        const bool wired = kind == 2 || kind == 3;
        emit PostMsg::instance()->SigHideModel(0);
        QCOMPARE(page.mode()->isEnabled(), able);
        QCOMPARE(page.mode()->currentIndex(), able && !wired ? 1 : before);
        QVERIFY(updates().empty());
        QCOMPARE(questions(), 0);
    }

    void everyRateThatTheDeviceReports_data()
    {
        QTest::addColumn<int>("kind");
        for (const int kind : {0, 1, 3, 4, 5})
            QTest::addRow("kind %d", kind) << kind;
    }
    void everyRateThatTheDeviceReports()
    {
        QFETCH(int, kind);
        SensorFixture page;
        page.show(sensorRecord());
        SensorFixture::choose(M3395, uint16_t(kind));
        int shown = Rate1000;
        bool locked = false;
        for (int code = -1; code <= 256; ++code) {
            page.page->SlotUpDataReportRate(code);
            const int index = rateIndexOf(code);
            if (index >= 0) {
                shown = index;
                locked = kind != 3 && (code == 16 || code == 32 || code == 64);
            }
            QCOMPARE(page.checkedRate(), shown);
            QCOMPARE(page.mode()->isEnabled(), !locked);
            QCOMPARE(page.mode()->currentIndex(), locked ? int(Corded) : 0);
            QCOMPARE(page.cordedHidden(), !locked);
        }
        QVERIFY(updates().empty());
        QCOMPARE(questions(), 0);
    }

    void everyStageThatTheDeviceReports()
    {
        SensorFixture page;
        page.show(sensorRecord(8));
        int shown = 1;
        for (int stage = -1; stage <= 256; ++stage) {
            fixture::emitOnOtherThread([stage] { emit PostMsg::instance()->SigUpDataDPI(stage); });
            QVERIFY(UiArmed);
            if (stage >= 0 && stage < 8)
                shown = stage;
            QCOMPARE(page.checkedStage(), shown);
            QCOMPARE(page.page->findChild<SensorDPI *>()->currentStage(), shown);
            const int dpi = shown < 6 ? page.stage(shown)->text().toInt() : 0;
            QCOMPARE(page.spin()->value(), qMax(50, dpi));
            QCOMPARE(page.slider()->value(), qMax(50, dpi));
        }
        QVERIFY(updates().empty());
        QCOMPARE(questions(), 0);
    }
};

TEST_CLASS(tst_SensorEdits, SensorSetUp)

#include "tst_sensoredits.moc"
