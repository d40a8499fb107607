// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the sensor page shows of a record: each step, each model, and every value that a byte can have. A
// refresh is no edit: nothing is asked and nothing is written.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/SensorFixture.h"

namespace
{

// One byte of the record, and whether the page shows its value as it ought to.
struct ByteRow {
    const char *name;
    uint8_t &(*field)(FlashDataMap &);
    QString (*wrong)(const SensorFixture &, int value); // the empty text when right
};

QString compare(int is, int wanted)
{
    return is == wanted ? QString() : QStringLiteral("%1, not %2").arg(is).arg(wanted);
}

QString compareSwitch(const QAbstractButton *button, int value)
{
    return compare(button->isChecked(), value != 0);
}

// Of a sensor with ten bits to a code.
int wideDpi(int code, int flags)
{
    const int counts = (code | (flags & 0xC0) * 4) + 1;
    return counts * (flags & 0x22 ? 100 : 50) * (flags & 0x11 ? 2 : 1);
}

QString compareDpi(const SensorFixture &page, int dpi)
{
    const QString text = compare(page.stage(1)->text().toInt(), dpi);
    const QString slider = compare(page.slider()->value(), qBound(50, dpi, 26000));
    return text + slider + compare(page.spin()->value(), qBound(50, dpi, 100000));
}

QString compareColor(const SensorFixture &page, const QString &wanted)
{
    const QString shown = page.bar(0)->accessibleDescription();
    return shown == wanted ? QString() : shown + QStringLiteral(", not ") + wanted;
}

const ByteRow ByteRows[] = {
    {"ReportRate", [](FlashDataMap &map) -> uint8_t & { return map.ReportRate; },
     [](const SensorFixture &page, int value) {
         const int index = rateIndexOf(value);
         return compare(page.checkedRate(), index < 0 ? Rate1000 : index);
     }},
    {"DpiStageCount", [](FlashDataMap &map) -> uint8_t & { return map.DpiStageCount; },
     [](const SensorFixture &page, int value) {
         return compare(page.shownStages(), qBound(1, value, 8)) +
                compare(page.choice()->currentIndex(), value > 6 ? -1 : value - 1);
     }},
    {"CurrentDpiStage", [](FlashDataMap &map) -> uint8_t & { return map.CurrentDpiStage; },
     [](const SensorFixture &page, int value) {
         const int stage = value < 8 ? value : 1;
         return compare(page.checkedStage(), stage) +
                compare(page.spin()->value(), qMax(50, page.stage(stage)->text().toInt()));
     }},
    {"LiftOffDistance", [](FlashDataMap &map) -> uint8_t & { return map.LiftOffDistance; },
     [](const SensorFixture &page, int value) {
         return compare(page.lod()->currentIndex(), value == 1 || value == 2 ? value - 1 : -1);
     }},
    {"MotionSync", [](FlashDataMap &map) -> uint8_t & { return map.MotionSync; },
     [](const SensorFixture &page, int value) { return compareSwitch(page.sync(), value); }},
    {"StraightLine", [](FlashDataMap &map) -> uint8_t & { return map.StraightLine; },
     [](const SensorFixture &page, int value) { return compareSwitch(page.snapping(), value); }},
    {"RippeControl", [](FlashDataMap &map) -> uint8_t & { return map.RippeControl; },
     [](const SensorFixture &page, int value) { return compareSwitch(page.ripple(), value); }},
    {"Performance", [](FlashDataMap &map) -> uint8_t & { return map.Performance; },
     [](const SensorFixture &page, int value) {
         return compareSwitch(page.performance(), value) + compare(page.time()->isEnabled(), value != 0);
     }},
    {"PerformanceOpen", [](FlashDataMap &map) -> uint8_t & { return map.PerformanceOpen; },
     [](const SensorFixture &page, int value) {
         const int listed = QVector<int>{1, 3, 6, 12, 18, 30, 60, 90}.indexOf(value);
         return compare(page.time()->currentIndex(), listed < 0 ? 2 : listed);
     }},
    {"ModelChoose", [](FlashDataMap &map) -> uint8_t & { return map.ModelChoose; },
     [](const SensorFixture &page, int value) {
         return compare(page.mode()->currentIndex(), value < 3 ? value : -1);
     }},
    {"LevelX", [](FlashDataMap &map) -> uint8_t & { return map.DpiStages[1].LevelX; },
     [](const SensorFixture &page, int value) { return compareDpi(page, wideDpi(value, 0)); }},
    {"LevelFlags", [](FlashDataMap &map) -> uint8_t & { return map.DpiStages[1].LevelFlags; },
     [](const SensorFixture &page, int value) { return compareDpi(page, wideDpi(15, value)); }},
    {"Red", [](FlashDataMap &map) -> uint8_t & { return map.DpiStages[0].Red; },
     [](const SensorFixture &page, int value) {
         return compareColor(page, QStringLiteral("%1,0,0").arg(value));
     }},
    {"Green", [](FlashDataMap &map) -> uint8_t & { return map.DpiStages[0].Green; },
     [](const SensorFixture &page, int value) {
         return compareColor(page, QStringLiteral("0,%1,0").arg(value));
     }},
    {"Blue", [](FlashDataMap &map) -> uint8_t & { return map.DpiStages[0].Blue; },
     [](const SensorFixture &page, int value) {
         return compareColor(page, QStringLiteral("0,0,%1").arg(value));
     }},
};

} // namespace

class tst_SensorPaint : public QObject
{
    Q_OBJECT

private:
    static bool nothingSaid() { return FakeHidUsb::instance().calls().empty() && !SensorPageBusy && UiArmed; }

private slots:
    void everyValueOfAByte_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < std::size(ByteRows); ++i)
            QTest::newRow(ByteRows[i].name) << int(i);
    }
    void everyValueOfAByte()
    {
        QFETCH(int, row);
        const ByteRow &byte = ByteRows[row];
        SensorFixture page;
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        for (int value = 0; value < 256; ++value) {
            page.show(sensorRecord());
            FlashDataMap map = sensorRecord();
            byte.field(map) = uint8_t(value);
            page.show(map);
            QVERIFY2(byte.wrong(page, value).isEmpty(),
                     qPrintable(QStringLiteral("%1: %2").arg(value).arg(byte.wrong(page, value))));
            QVERIFY(sameRecord(map));
        }
        QVERIFY(nothingSaid());
        QCOMPARE(notice.count(), 0);
    }
    static bool sameRecord(const FlashDataMap &map)
    {
        const FlashDataMap record = DeviceRecord::copy();
        return std::memcmp(&record, &map, sizeof map) == 0;
    }

    // The whole record of one value, for every model, on cable and off: nothing breaks.
    void everyValueEverywhere_data() { eachModel(); }
    void everyValueEverywhere()
    {
        QFETCH(int, model);
        SensorFixture page(model);
        for (const uint16_t kind : {uint16_t(Receiver8K), uint16_t(3)}) {
            SensorFixture::choose(model, kind);
            for (int value = 0; value < 256; ++value) {
                FlashDataMap map;
                std::memset(static_cast<void *>(&map), value, sizeof map);
                page.show(map);
                QCOMPARE(page.sync()->isChecked(), value != 0);
            }
        }
        QVERIFY(nothingSaid());
    }

    static void eachModel()
    {
        QTest::addColumn<int>("model");
        for (int i = 0; i <= MUnknown; ++i)
            QTest::addRow("%d %s", i, i < MUnknown ? TestModels[i].sensor : "unknown") << i;
    }

    void aSilentMouseIsPaintedAllTheSame()
    {
        SensorFixture page;
        SensorFixture::fake().setOnline("dev", false);
        FlashDataMap map = sensorRecord(3);
        map.ReportRate = 8;
        page.show(map);
        QCOMPARE(page.choice()->currentIndex(), 2);
        QCOMPARE(page.checkedRate(), 0);
        QVERIFY(SensorFixture::fake().calls().size() == 0);
    }

    // ---- The steps in their order

    void theLiftOffBoxHasTheSmallHeightForOneSensor()
    {
        SensorFixture page;
        for (const int model : {M3395, M3950, M3950, MPA42}) {
            SensorFixture::choose(model, Receiver8K);
            page.show(sensorRecord());
            QCOMPARE(page.lod()->count(), model == M3950 ? 3 : 2);
            QCOMPARE(page.lod()->currentText(), QString("1mm"));
        }
        SensorFixture::choose(M3950, Receiver8K);
        FlashDataMap map = sensorRecord();
        for (const auto &[byte, index] : {std::pair{1, 1}, {2, 2}, {3, 0}, {0, 0}, {4, 0}, {255, 0}}) {
            map.LiftOffDistance = uint8_t(byte);
            page.show(map);
            QCOMPARE(page.lod()->currentIndex(), index);
        }
    }

    void theModeIsGated_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("locked");
        for (const int kind : {0, 1, 2, 3, 4, 5, 8})
            for (const int code : {0, 1, 2, 3, 4, 8, 16, 32, 64, 255}) {
                const bool cable = kind == 2 || kind == 3 || kind == 8;
                const bool fast = (code == 16 || code == 32 || code == 64) && kind != 0;
                QTest::addRow("kind %d code %d", kind, code) << kind << code << (cable || fast);
            }
    }
    void theModeIsGated()
    {
        QFETCH(int, kind);
        QFETCH(int, code);
        QFETCH(bool, locked);
        SensorFixture page(M3950);
        SensorFixture::choose(M3950, uint16_t(kind));
        FlashDataMap map = sensorRecord();
        map.ReportRate = uint8_t(code);
        map.ModelChoose = 1;
        page.show(map);
        QCOMPARE(page.mode()->isEnabled(), !locked);
        QCOMPARE(page.mode()->currentIndex(), locked ? int(Corded) : 1);
        if (!locked)
            QVERIFY(page.cordedHidden());
        QVERIFY(nothingSaid());
    }

    void aSensorWithoutModesKeepsTheOldOne()
    {
        SensorFixture page;
        FlashDataMap map = sensorRecord(4);
        map.ModelChoose = 1;
        page.show(map);
        SensorFixture::choose(M3311, Receiver4K);
        map.ModelChoose = 0;
        page.show(map);
        QVERIFY(!page.mode()->isEnabled());
        QCOMPARE(page.mode()->currentIndex(), 1);
        QCOMPARE(page.choice()->currentIndex(), 3); // the true count, not the first entry
    }

    void theOthersAreToldOnce()
    {
        SensorFixture page;
        QSignalSpy open(PostMsg::instance(), &PostMsg::Sig20KOpen);
        QSignalSpy dpi(PostMsg::instance(), &PostMsg::SigAddSensor);
        QSignalSpy lod(PostMsg::instance(), &PostMsg::SigAddLOD);
        QSignalSpy rate(PostMsg::instance(), &PostMsg::SigAddReport);
        FlashDataMap map = sensorRecord();
        for (const bool on : {true, false}) {
            map.Performance = on ? 7 : 0;
            page.show(map);
            QCOMPARE(open.count(), 1);
            QCOMPARE(open.takeFirst()[0].toBool(), on);
        }
        QCOMPARE(dpi.count(), 2);
        QCOMPARE(dpi[0][0].toInt(), 800);
        QCOMPARE(lod.count(), 2);
        QCOMPARE(rate.count(), 2);
        QCOMPARE(rate[0][0].toInt(), 1000);
    }

    void theStagesAreThoseOfTheModel_data() { eachModel(); }
    void theStagesAreThoseOfTheModel()
    {
        QFETCH(int, model);
        SensorFixture page(model);
        const int stages = model == MUnknown ? 0 : qMin(8, TestModels[model].stages);
        QCOMPARE(page.choice()->count(), stages);
        for (int i = 0; i < stages; ++i)
            QCOMPARE(page.choice()->itemText(i), QString::number(i + 1));
        for (int i = 0; i < stages; ++i) {
            QCOMPARE(page.bar(i)->accessibleDescription(),
                     QString("%1,%2,%3").arg(10 * i).arg(20 * i).arg(30 * i));
            if (model != MPA42)
                QCOMPARE(page.stage(i)->text().toInt(), (sensorRecord().DpiStages[i].LevelX + 1) * 50);
        }
        if (model < MUnknown) {
            const QStringList range = QString(TestModels[model].range).split(',');
            QCOMPARE(page.slider()->minimum(), range.first().toInt());
            QCOMPARE(page.slider()->maximum(), range[range.size() - 3].toInt());
        }
    }

    // A code of the table and one that it lacks.
    void aSensorWithATableCountsByIt()
    {
        SensorFixture page(MPA42);
        FlashDataMap map = sensorRecord(5);
        map.DpiStages[0] = {0x0A, 0x0A, 0, 0, 0, 0};
        map.DpiStages[1] = {0x8F, 0x8F, 0x11, 0, 0, 0};
        map.DpiStages[2] = {0xFF, 0xFF, 0, 0, 0, 0};
        page.show(map);
        QCOMPARE(page.stage(0)->text(), QString("400"));
        QCOMPARE(page.stage(1)->text(), QString("12000"));
        QCOMPARE(page.stage(2)->text(), QString("0"));
        QCOMPARE(page.spin()->value(), 12000);
    }

    // What a sensor can do wins over what its model wants to hide.
    void settingsAreThereOrNot_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<QString>("shown"); // card, title, mode, lod, performance, time, ripple, line, sync
        QTest::addColumn<bool>("lodUsable");
        QTest::newRow("3395") << int(M3395) << "+++++++++" << true;
        QTest::newRow("3950") << int(M3950) << "+++++++++" << true;
        QTest::newRow("PA42") << int(MPA42) << "++++++-+-" << true;
        QTest::newRow("3311") << int(M3311) << "---------" << false;
        QTest::newRow("hidden, but able") << int(MHidden) << "+-----+++" << true;
        QTest::newRow("part of a name") << int(MPart) << "+++++++++" << true;
    }
    void settingsAreThereOrNot()
    {
        QFETCH(int, model);
        QFETCH(QString, shown);
        QFETCH(bool, lodUsable);
        SensorFixture page(model);
        for (const int before : {int(M3395), int(M3311)}) {
            SensorFixture::choose(before, Receiver8K);
            page.show(sensorRecord());
            SensorFixture::choose(model, Receiver8K);
            page.show(sensorRecord());
            QString seen;
            for (const char *name : {"settingsCard", "label_11", "ModelChoose", "SensorLOD", "Performance",
                                     "PerformanceOpen", "RippeControl", "StraightLine", "MotionSync"})
                seen += page.find<QWidget>(name)->isHidden() ? '-' : '+';
            QCOMPARE(seen, shown);
            QCOMPARE(page.find<QWidget>("TitleButton_4")->isHidden(), shown[1] == '-');
            QCOMPARE(page.lod()->isEnabled(), lodUsable);
            QVERIFY(!page.find<QWidget>("SensorDPI")->isHidden());
            QVERIFY(!page.find<QWidget>("SensorRate")->isHidden());
        }
    }

    void theSliderIsUsableAgain()
    {
        SensorFixture page;
        page.slider()->setEnabled(false);
        page.slider()->blockSignals(true);
        page.show(sensorRecord());
        QVERIFY(page.slider()->isEnabled());
        QVERIFY(!page.slider()->signalsBlocked() && !page.choice()->signalsBlocked());
        page.slider()->setValue(1000); // the first move after a load is an edit
        QCOMPARE(int(DeviceRecord::copy().DpiStages[1].LevelX), 19);
    }

    void onlyARefreshFromTheDeviceMarksThePageLoaded()
    {
        SensorFixture page;
        SensorPageLoaded = true;
        page.show(sensorRecord());
        QVERIFY(SensorPageLoaded);
        SensorPageLoaded = false;
        page.show(sensorRecord());
        QVERIFY(!SensorPageLoaded);
        const FlashDataMap map = sensorRecord(2);
        fixture::emitOnOtherThread([&map] { emit PostMsg::instance()->SigUpDataLightSensor(map); });
        QVERIFY(SensorPageLoaded && !SensorPageBusy);
        QCOMPARE(page.choice()->currentIndex(), 1);
    }
};

TEST_CLASS(tst_SensorPaint, SensorSetUp)

#include "tst_sensorpaint.moc"
