// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DPI values and the bytes of a stage: single values, every value of every model that ships, and what the
// write makes of it. The layer is the scripted one.
#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DpiCodes.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "environment/DataRoot.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <limits>
#include <random>

namespace
{

constexpr uint8_t PresentFlags[] = {0x00, 0x22, 0x11, 0x33, 0xFF};

SensorCodes noTable(const char *sensor) { return {{"SENSOR_OTHER_DPI_400"}, {7}, sensor}; }

SensorCodes table()
{
    return {{"SENSOR_T_DPI_400", "VERSION", "SENSOR_T_DPI_800", "SENSOR_T_DPI_400", "MY_SENSOR_T_DPI_1600"},
            {10, 20, 20, 30, 40},
            "T"};
}

DpiRanges rangesOf(const char *list)
{
    DpiRanges ranges;
    ranges.read(QString(list).split(','));
    return ranges;
}

int readBack(int dpi, uint8_t present, const SensorCodes &codes, const DpiRanges &ranges)
{
    const DpiStageCode stage = encodeDpi(dpi, present, codes, ranges);
    return decodeDpi(uint8_t(stage.code), stage.flags, codes);
}

// What a slider that is moved to `dpi` takes.
int snapped(int dpi, const DpiRanges &ranges)
{
    for (int i = 0; i < ranges.DpiRangeMins.size(); ++i) {
        if (dpi < ranges.DpiRangeMins[i])
            return i == 0 ? dpi : ranges.DpiRangeMins[i];
        if (dpi <= ranges.DpiRangeMaxs[i])
            return dpi - dpi % ranges.DpiRangeSteps[i];
    }
    return dpi;
}

// What the two buttons beside the slider make of it.
QVector<int> steps(int dpi, const DpiRanges &ranges)
{
    QVector<int> values;
    const int last = int(ranges.DpiRangeMins.size()) - 1;
    for (int i = 0; i <= last; ++i) {
        if (dpi < ranges.DpiRangeMins[i] || dpi > ranges.DpiRangeMaxs[i])
            continue;
        const int step = ranges.DpiRangeSteps[i];
        values << (i < last && dpi == ranges.DpiRangeMaxs[i] ? ranges.DpiRangeMins[i + 1] : dpi + step);
        values << dpi - step;
    }
    for (int &value : values)
        value = snapped(qBound(ranges.DpiSliderMin, value, ranges.DpiSliderMax), ranges);
    return values;
}

} // namespace

class tst_SensorDpi : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationFolder(PRODUCT_FOLDER);
        SensorDefineNames.clear();
        SensorDefineValues.clear();
        ReadSensorDefines();
    }
    void init()
    {
        FakeHidUsb::instance().reset();
        resetDeviceState();
        DeviceRecord::edit([](FlashDataMap &map) { map = FlashDataMap{}; });
        SensorName.clear();
        SensorRanges = DpiRanges();
    }

    // ---- Single values --------------------------------------------------------------------------

    void encodes_data()
    {
        QTest::addColumn<QString>("sensor");
        QTest::addColumn<QString>("range");
        QTest::addColumn<int>("dpi");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("flags");
        const auto row = [](const char *sensor, const char *range, int dpi, int code, int flags) {
            QTest::addRow("%s %s %d", sensor, range, dpi) << sensor << range << dpi << code << flags;
        };
        row("3311", "50,26000,50,0x00", 800, 15, 0);
        row("3311", "50,26000,50,0x00", 50, 0, 0);
        row("3395", "50,26000,50,0x00", 26000, 0x207, 0x88);
        row("3950", "50,26000,50,0x00", 26000, 0x207, 0x88);
        row("33950", "50,26000,50,0x00", 26000, 0x207, 0x00);
        row("3395", "50,26000,50,0x00", 12800, 255, 0x00);
        row("3395", "50,26000,50,0x00", 12850, 256, 0x44);
        row("3395", "50,60000,50,0x00", 51200, 1023, 0xCC);
        row("3950", "50,26000,50,26100,42000,100,0x22", 42000, 419, 0x66);
        constexpr char Doubling[] = "50,10000,50,10100,26000,100,0x22";
        row("3311", Doubling, 10000, 199, 0);
        row("3311", Doubling, 10100, 100, 0x22);
        row("3311", Doubling, 10001, 99, 0x22); // the gap belongs to what comes behind it
        constexpr char Twice[] = "50,10000,50,10100,26000,100,0x11";
        row("3311", Twice, 10000, 199, 0);
        row("3311", Twice, 10100, 100, 0x11);
        constexpr char Four[] = "50,1000,50,1100,2000,100,2100,4000,100,4200,8000,200,0x33";
        row("3311", Four, 40, -1, 0);
        row("3311", Four, 1000, 19, 0);
        row("3311", Four, 1099, 20, 0); // here a gap belongs to what comes before it
        row("3311", Four, 1100, 10, 0x22);
        row("3311", Four, 2100, 20, 0x11);
        row("3311", Four, 4199, 40, 0x11);
        row("3311", Four, 4200, 20, 0x33);
        row("3311", Four, 99999, 498, 0x33);
        row("3395", Four, 8000, 39, 0x33);
        row("3311", "50,1000,50,1100,2000,100,0x44", 2000, 39, 0); // a flag that means nothing
        row("3311", "0x22", 2000, 39, 0);                          // no range at all
        row("3311", "0x33", 2000, 39, 0);
    }
    void encodes()
    {
        QFETCH(QString, sensor);
        QFETCH(QString, range);
        QFETCH(int, dpi);
        QFETCH(int, code);
        QFETCH(int, flags);
        const DpiRanges ranges = rangesOf(range.toLatin1().constData());
        for (const uint8_t present : PresentFlags) {
            const DpiStageCode stage =
                encodeDpi(dpi, present, noTable(sensor.toLatin1().constData()), ranges);
            QCOMPARE(stage.code, code);
            QCOMPARE(int(stage.flags), flags);
        }
    }

    void encodesByTheTable_data()
    {
        QTest::addColumn<int>("dpi");
        QTest::addColumn<int>("present");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("flags");
        QTest::newRow("first of two") << 400 << 0 << 10 << 0;
        QTest::newRow("named") << 800 << 0x22 << 20 << 0;
        QTest::newRow("half of it is named") << 1600 << 0 << 20 << 0x11;
        QTest::newRow("not named") << 850 << 0 << 17 << 0;
        QTest::newRow("not named, by the old step") << 850 << 0x22 << 8 << 0;
        QTest::newRow("not named, by one bit of the old step") << 850 << 0x20 << 8 << 0;
        QTest::newRow("not named, above the range") << 2000 << 0 << 40 << 0x11;
        QTest::newRow("not named, above the range, by the old step") << 2000 << 0x33 << 20 << 0x11;
        QTest::newRow("only a longer name has it") << 3200 << 0 << 64 << 0x11;
    }
    void encodesByTheTable()
    {
        QFETCH(int, dpi);
        QFETCH(int, present);
        QFETCH(int, code);
        QFETCH(int, flags);
        const DpiRanges ranges = rangesOf("100,1000,50,1100,4000,100,0x11");
        const DpiStageCode stage = encodeDpi(dpi, uint8_t(present), table(), ranges);
        QCOMPARE(stage.code, code);
        QCOMPARE(int(stage.flags), flags);
    }

    // High bits are no part of a table's codes, also for the sensors whose codes have them.
    void wideSensorWithATableHasNoHighBits()
    {
        SensorCodes codes{{"SENSOR_3395_DPI_26000"}, {0x207}, "3395"};
        const DpiStageCode stage = encodeDpi(26000, 0, codes, rangesOf("50,26000,50,0x00"));
        QCOMPARE(stage.code, 0x207);
        QCOMPARE(int(stage.flags), 0);
    }

    void decodes_data()
    {
        QTest::addColumn<QString>("sensor");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("dpi");
        const auto row = [](const char *sensor, int code, int flags, int dpi) {
            QTest::addRow("%s %d 0x%02x", sensor, code, flags) << sensor << code << flags << dpi;
        };
        row("3311", 15, 0x00, 800);
        row("3311", 15, 0x22, 1600);
        row("3311", 15, 0x02, 1600);
        row("3311", 15, 0x11, 1600);
        row("3311", 15, 0x10, 1600);
        row("3311", 15, 0x33, 3200);
        row("3311", 15, 0xCC, 800);
        row("3311", 255, 0x00, 12800);
        row("3395", 0x07, 0x88, 26000);
        row("3950", 0x07, 0x88, 26000);
        row("3395", 0x07, 0x08, 400); // the bits of the other axis count for nothing
        row("3395", 0xFF, 0xFF, 204800);
    }
    void decodes()
    {
        QFETCH(QString, sensor);
        QFETCH(int, code);
        QFETCH(int, flags);
        QFETCH(int, dpi);
        const SensorCodes codes = noTable(sensor.toLatin1().constData());
        QCOMPARE(decodeDpi(uint8_t(code), uint8_t(flags), codes), dpi);
    }

    void decodesByTheTable()
    {
        QCOMPARE(decodeDpi(10, 0, table()), 400);
        QCOMPARE(decodeDpi(30, 0, table()), 400);
        QCOMPARE(decodeDpi(20, 0, table()), 800); // the other macro of this value is none of the table
        QCOMPARE(decodeDpi(40, 0, table()), 1600);
        QCOMPARE(decodeDpi(20, 0x22, table()), 1600);
        QCOMPARE(decodeDpi(20, 0x11, table()), 1600);
        QCOMPARE(decodeDpi(20, 0x33, table()), 3200);
        for (const uint8_t flags : PresentFlags)
            QCOMPARE(decodeDpi(99, flags, table()), 0);
    }

    // A sensor with a capital I: the number is looked for behind that letter.
    void sensorNameWithAnI()
    {
        SensorCodes codes{{"SENSOR_PIX_DPI_400"}, {8}, "PIX"};
        QCOMPARE(encodeDpi(400, 0, codes, DpiRanges()).code, 8);
        QCOMPARE(decodeDpi(8, 0, codes), 0);
    }

    void tableOfHostileNumbers()
    {
        SensorCodes codes{{"SENSOR_T_DPI_2147483647", "SENSOR_T_DPI_-2147483648", "SENSOR_T_DPI_9999999999"},
                          {1, 2, 3},
                          "T"};
        QCOMPARE(decodeDpi(1, 0x33, codes), std::numeric_limits<int>::max());
        QCOMPARE(decodeDpi(2, 0x33, codes), std::numeric_limits<int>::min());
        QCOMPARE(decodeDpi(3, 0x33, codes), 0);
        codes.values.clear(); // a name without a value
        QCOMPARE(decodeDpi(1, 0, codes), 0);
        QCOMPARE(encodeDpi(2147483647, 0, codes, DpiRanges()).code, 2147483647 / 50);
    }

    void anyInputIsTaken()
    {
        std::mt19937 random(7);
        const SensorCodes all[] = {noTable("3311"), noTable("3395"), noTable(""), table()};
        for (int i = 0; i < 20000; ++i) {
            DpiRanges ranges;
            QStringList list;
            for (unsigned n = random() % 16; n > 0; --n)
                list << QString::number(int(random()));
            list << QString::number(random() % 4 * 0x11, 16);
            ranges.read(list);
            for (const SensorCodes &codes : all) {
                encodeDpi(int(random()), uint8_t(random()), codes, ranges);
                const int dpi = decodeDpi(uint8_t(random()), uint8_t(random()), codes);
                QVERIFY(dpi >= 0 && dpi <= 204800);
            }
        }
    }

    // ---- Every value that the editor can produce ------------------------------------------------

    void everyValueOfEveryModel_data()
    {
        QTest::addColumn<int>("index");
        const DeviceCatalogue catalogue;
        QVERIFY(catalogue.total() > 0);
        for (int i = 0; i < catalogue.total(); ++i)
            QTest::newRow(qPrintable(catalogue.text(i, "Sensor"))) << i;
    }
    void everyValueOfEveryModel()
    {
        QFETCH(int, index);
        const DeviceCatalogue catalogue;
        const SensorCodes codes{SensorDefineNames, SensorDefineValues, catalogue.text(index, "Sensor")};
        ReadDpiRange(index);
        const DpiRanges ranges = SensorRanges;
        QVERIFY(ranges.DpiRangeCount >= 1 && ranges.DpiRangeCount <= DpiRangeLimit);
        QSet<int> reachable;
        for (int dpi = ranges.DpiSliderMin; dpi <= ranges.DpiSliderMax; ++dpi)
            reachable.insert(snapped(dpi, ranges));
        for (const int value : QSet<int>(reachable))
            for (const int next : steps(value, ranges))
                reachable.insert(next);
        QStringList wrong;
        for (const int value : reachable)
            for (const uint8_t present : PresentFlags)
                if (const int back = readBack(value, present, codes, ranges); back != value)
                    wrong << QString("%1 reads %2").arg(value).arg(back);
        QCOMPARE(wrong.join(", "), QString());
        QVERIFY(reachable.size() > (ranges.DpiSliderMax - ranges.DpiSliderMin) / 250);
    }

    // A plain sensor's code is one byte, so a range without a multiplier ends at 12800.
    void plainSensorEndsAtOneByte()
    {
        const DpiRanges ranges = rangesOf("50,26000,50,0x00");
        for (int dpi = 50; dpi <= 26000; dpi += 50)
            QCOMPARE(readBack(dpi, 0, noTable("3311"), ranges), (dpi / 50 - 1) % 256 * 50 + 50);
    }

    void fourRangesReadBack()
    {
        const DpiRanges ranges = rangesOf("50,10000,50,10100,20000,100,20100,25000,100,25200,50000,200,0x33");
        for (const SensorCodes &codes : {noTable("3311"), noTable("3395")})
            for (int dpi = 50; dpi <= 50000; ++dpi)
                if (snapped(dpi, ranges) == dpi)
                    QCOMPARE(readBack(dpi, 0, codes, ranges), dpi);
    }

    // ---- The write ------------------------------------------------------------------------------

    void writesTheStage_data()
    {
        QTest::addColumn<int>("stage");
        for (int stage = 0; stage < DpiStageLimit; ++stage)
            QTest::addRow("%d", stage) << stage;
    }
    void writesTheStage()
    {
        QFETCH(int, stage);
        SensorName = "3395";
        SensorRanges.read({"50", "26000", "50", "0x00"});
        FakeDevice device;
        device.path = "dev";
        FakeHidUsb::instance().addDevice(device);
        pointCurrentDeviceAt("dev");
        DeviceRecord::edit([stage](FlashDataMap &map) { map.DpiStages[stage] = {1, 2, 3, 4, 5, 6}; });
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.DpiStages[stage] = {0x07, 0x07, 0x88, 4, 5, 6};
        QVERIFY(SensorDpiEncode(stage, 26000));
        const FlashDataMap written = DeviceRecord::copy();
        QCOMPARE(memcmp(&written, &wanted, sizeof wanted), 0);
        QCOMPARE(int(FakeHidUsb::instance().updates().size()), 1);
        QCOMPARE(SensorDpiDecode(0x07, 0x88), 26000);
        // Away: the record stays.
        FakeHidUsb::instance().setOnline("dev", false);
        QVERIFY(!SensorDpiEncode(stage, 800));
        const FlashDataMap kept = DeviceRecord::copy();
        QCOMPARE(memcmp(&kept, &wanted, sizeof wanted), 0);
    }

    void stageOutsideTheRecordIsNoQuestion()
    {
        for (const int stage : {-1, -2, 8, 1000})
            QVERIFY(!SensorDpiEncode(stage, 800));
        QVERIFY(FakeHidUsb::instance().calls().empty());
    }

    void theStagesOldStepCountsForTheFallback()
    {
        SensorName = "PA42";
        SensorRanges.read({"100", "6000", "50", "0x00"});
        FakeDevice device;
        device.path = "dev";
        FakeHidUsb::instance().addDevice(device);
        pointCurrentDeviceAt("dev");
        DeviceRecord::edit([](FlashDataMap &map) { map.DpiStages[2].LevelFlags = 0x22; });
        QVERIFY(SensorDpiEncode(2, 850));
        QCOMPARE(int(DeviceRecord::copy().DpiStages[2].LevelX), 8);
        QVERIFY(SensorDpiEncode(2, 850)); // now the stage has no such flag
        QCOMPARE(int(DeviceRecord::copy().DpiStages[2].LevelX), 17);
        QCOMPARE(SensorDpiDecode(0x0A, 0), 400);
        QCOMPARE(SensorDpiDecode(0x0B, 0), 0);
    }

    // ---- The short forms ------------------------------------------------------------------------

    void shortForms()
    {
        QCOMPARE(DpiToCodeSimple(400, table()), 10);
        QCOMPARE(DpiToCodeSimple(850, table()), 17);
        QCOMPARE(DpiToCodeSimple(800, noTable("3395")), 15);
        QCOMPARE(DpiToCodeSimple(26000, noTable("3395")), 519);
        QCOMPARE(CodeToDpiSimple(30, table()), 400);
        QCOMPARE(CodeToDpiSimple(99, table()), 0);
        QCOMPARE(CodeToDpiSimple(15, noTable("3395")), 800);
        QCOMPARE(CodeToDpiSimple(255, noTable("3395")), 12800);
        QCOMPARE(CodeToDpiSimple(0, noTable("")), 50);
    }
};

TEST_CLASS(tst_SensorDpi, testmain::CoreApplication)
#include "tst_sensordpi.moc"
