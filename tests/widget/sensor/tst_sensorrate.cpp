// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The report rates: what a click writes and what the panel shows of a record.
#include "sensor/Sensor.h"
#include "sensor/SensorRate.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QLabel>
#include <QToolButton>

class tst_SensorRate : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sensor> page;
    SensorRate *panel() const { return page->findChild<SensorRate *>(); }
    int checkedIndex() const
    {
        int found = -1;
        for (int i = 0; i < int(RateRows.size()); ++i)
            if (panel()->button(i)->isChecked())
                found = found == -1 ? i : -2;
        return found;
    }
    static FlashDataMap recordWith(uint8_t code)
    {
        FlashDataMap map{};
        map.ReportRate = code;
        return map;
    }
    static void eachRate()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(RateRows.size()); ++i)
            QTest::newRow(qPrintable(QString::number(RateRows[std::size_t(i)].hertz))) << i;
    }

private slots:
    void init()
    {
        fixture::beginWithDevice();
        page = std::make_unique<Sensor>();
        page->SlotUpDataSenSorUIB(recordWith(2));
        page->show();
    }

    void clickWritesTheRate_data() { eachRate(); }
    void clickWritesTheRate()
    {
        QFETCH(int, index);
        const RateRow &row = RateRows[std::size_t(index)];
        page->SlotUpDataSenSorUIB(recordWith(row.code == 2 ? 4 : 2));
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddReport);
        QSignalSpy model(PostMsg::instance(), &PostMsg::SigHideModel);
        QTest::mouseClick(panel()->button(index), Qt::LeftButton);
        QCOMPARE(int(DeviceRecord::copy().ReportRate), int(row.code));
        QCOMPARE(int(FakeHidUsb::instance().updates().size()), 1);
        QCOMPARE(checkedIndex(), index);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown[0][0].toInt(), row.hertz);
        QCOMPARE(model.count(), 1);
        QCOMPARE(model[0][0].toInt(), row.hertz > 1000 ? 1 : 0);
    }

    void refreshIsNoEdit()
    {
        for (const RateRow &row : RateRows)
            page->SlotUpDataSenSorUIB(recordWith(row.code));
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QVERIFY(!SensorPageBusy);
    }

    void showsTheCode_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("wired");
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(RateRows.size()); ++i) {
            const int code = RateRows[std::size_t(i)].code;
            QTest::addRow("radio %d", code) << code << false << i;
            QTest::addRow("cable %d", code) << code << true << (code == 16 || code == 32 ? Rate1000 : i);
        }
        QTest::newRow("none of them") << 3 << false << 2;
        QTest::newRow("zero") << 0 << false << 2;
    }
    void showsTheCode()
    {
        QFETCH(int, code);
        QFETCH(bool, wired);
        QFETCH(int, index);
        SelectedDevice::set(fixture::info("dev", wired ? fixture::CableKind : uint16_t(Receiver8K)));
        page->SlotUpDataSenSorUIB(recordWith(uint8_t(code)));
        QCOMPARE(checkedIndex(), index);
    }

    void kindDecidesTheFastRates_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("shown"); // of 2000, 4000, 8000
        QTest::newRow("1K") << 0 << "---";
        QTest::newRow("cable 2") << 2 << "---";
        QTest::newRow("4K") << 1 << "++-";
        QTest::newRow("2K") << 4 << "+--";
        QTest::newRow("cable 3") << 3 << "+++";
        QTest::newRow("8K") << 5 << "+++";
    }
    void kindDecidesTheFastRates()
    {
        QFETCH(int, kind);
        QFETCH(QString, shown);
        SelectedDevice::set(fixture::info("dev", uint16_t(kind)));
        page->SlotUpDataSenSorUIB(recordWith(1));
        QString seen;
        for (int i = 4; i < 7; ++i)
            seen += panel()->button(i)->isHidden() ? '-' : '+';
        QCOMPARE(seen, shown);
        // A kind outside the table leaves the panel as it was.
        SelectedDevice::set(fixture::info("dev", 9));
        page->SlotUpDataSenSorUIB(recordWith(1));
        QCOMPARE(panel()->button(4)->isHidden(), shown[0] == '-');
    }

    void theDevicesOwnChangeMovesTheButton_data() { eachRate(); }
    void theDevicesOwnChangeMovesTheButton()
    {
        QFETCH(int, index);
        const int code = RateRows[std::size_t(index)].code;
        fixture::emitOnOtherThread([code] { emit PostMsg::instance()->SigUpDataReportRate(code); });
        QCOMPARE(checkedIndex(), index);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void aReadFromTheDeviceMarksThePageLoaded()
    {
        SensorPageLoaded = false;
        page->SlotUpDataSenSorUIB(recordWith(1));
        QVERIFY(!SensorPageLoaded);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigUpDataLightSensor(recordWith(1)); });
        QVERIFY(SensorPageLoaded);
        QVERIFY(!SensorPageBusy);
        QCOMPARE(checkedIndex(), Rate1000);
    }

    void titleOfALanguageThatLacksIt()
    {
        auto *title = panel()->findChild<QLabel *>("label");
        panel()->setTitle("Report rate");
        panel()->setTitle(QString());
        QCOMPARE(title->text(), QString("Report rate"));
    }

    void withoutDeviceAndImageItShows1000()
    {
        page->SlotUpDataSenSorUIB(recordWith(8));
        SelectedDevice::set(fixture::info("dev", Receiver2K));
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        QCOMPARE(checkedIndex(), Rate1000);
        QVERIFY(!panel()->button(4)->isHidden());
        QVERIFY(panel()->button(5)->isHidden());
    }
};

TEST_CLASS(tst_SensorRate, fixture::ShippedLooks)

#include "tst_sensorrate.moc"
