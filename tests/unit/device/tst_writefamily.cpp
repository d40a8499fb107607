// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every write operation: the exact bytes it changes, and what it leaves alone when the mouse is away.
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/TestMain.h"

#include <QSignalSpy>
#include <QtTest>
#include <cstring>

namespace
{

struct ByteChange {
    int offset;
    uint8_t value;
};

using Operation = std::function<bool()>;

struct Row {
    const char *name;
    Operation operation;
    std::vector<ByteChange> changes;
};

constexpr uint8_t Before = 0xA5; // what every byte holds at first

KeySequence sequenceOf(uint8_t byte)
{
    KeySequence sequence;
    memset(&sequence, byte, sizeof sequence);
    return sequence;
}

MacroBlock macroOf(uint8_t byte)
{
    MacroBlock macro;
    memset(&macro, byte, sizeof macro);
    return macro;
}

std::vector<ByteChange> span(std::vector<ByteChange> changes, int offset, int size, uint8_t value)
{
    for (int i = 0; i < size; ++i)
        changes.push_back({offset + i, value});
    return changes;
}

std::vector<Row> rows()
{
    return {
        {"SetReportRate", [] { return SetReportRate(1); }, {{0, 1}}},
        {"SetDpiStageCount", [] { return SetDpiStageCount(3); }, {{1, 3}}},
        {"SetCurrentDpiStage", [] { return SetCurrentDpiStage(2); }, {{2, 2}}},
        {"SetSpareByte3", [] { return SetSpareByte3(9); }, {{3, 9}}},
        {"SetKFps", [] { return SetKFps(1); }, {{4, 1}}},
        {"SetLiftOffDistance", [] { return SetLiftOffDistance(3); }, {{5, 3}}},
        {"SetDebounceTime", [] { return SetDebounceTime(15); }, {{6, 15}}},
        {"SetMotionSync", [] { return SetMotionSync(1); }, {{7, 1}}},
        {"SetStopCloseTime", [] { return SetStopCloseTime(240); }, {{8, 240}}},
        {"SetStraightLine", [] { return SetStraightLine(1); }, {{9, 1}}},
        {"SetRippeControl", [] { return SetRippeControl(1); }, {{10, 1}}},
        {"SetLightRippeControl", [] { return SetLightRippeControl(1); }, {{11, 1}}},
        {"SetPerformance", [] { return SetPerformance(1); }, {{12, 1}}},
        {"SetPerformanceOpen", [] { return SetPerformanceOpen(90); }, {{13, 90}}},
        {"SetModelChoose", [] { return SetModelChoose(1); }, {{14, 1}}},
        {"SetAngleSet", [] { return SetAngleSet(0xF6); }, {{15, 0xF6}, {16, 1}}},
        {"SetDpiLevel first", [] { return SetDpiLevel(0, 15, 16, 0x22); }, {{36, 15}, {37, 16}, {38, 0x22}}},
        {"SetDpiLevel last", [] { return SetDpiLevel(7, 1, 2, 3); }, {{78, 1}, {79, 2}, {80, 3}}},
        {"SetDpiColor first", [] { return SetDpiColor(0, 1, 2, 3); }, {{39, 1}, {40, 2}, {41, 3}}},
        {"SetDpiColor last", [] { return SetDpiColor(7, 1, 2, 3); }, {{81, 1}, {82, 2}, {83, 3}}},
        {"SetDpiStages",
         [] {
             return SetDpiStages({1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, 4, 3, 3);
         },
         {{1, 4},
          {2, 3},
          {54, 7},
          {55, 8},
          {56, 9},
          {57, 10},
          {58, 11},
          {59, 12},
          {60, 1},
          {61, 2},
          {62, 3},
          {63, 4},
          {64, 5},
          {65, 6}}},
        {"SetDpiLedMode on", [] { return SetDpiLedMode(2); }, {{84, 2}, {87, 1}}},
        {"SetDpiLedMode off", [] { return SetDpiLedMode(0); }, {{87, 0}}},
        {"SetDpiLedBrightness", [] { return SetDpiLedBrightness(255); }, {{85, 255}}},
        {"SetDpiLedSpeed", [] { return SetDpiLedSpeed(5); }, {{86, 5}}},
        {"SetLedBarMode on", [] { return SetLedBarMode(6); }, {{88, 6}, {94, 1}}},
        {"SetLedBarMode off", [] { return SetLedBarMode(0); }, {{94, 0}}},
        {"SetLedBarColor", [] { return SetLedBarColor(1, 2, 3); }, {{89, 1}, {90, 2}, {91, 3}}},
        {"SetLedBarSpeed", [] { return SetLedBarSpeed(9); }, {{92, 9}}},
        {"SetLedBarBrightness", [] { return SetLedBarBrightness(8); }, {{93, 8}}},
        {"SetBinding first",
         [] {
             return SetBinding(0, {1, 2, 0});
         },
         {{95, 1}, {96, 2}, {97, 0}}},
        {"SetBinding last",
         [] {
             return SetBinding(15, {1, 2, 3});
         },
         {{140, 1}, {141, 2}, {142, 3}}},
        {"SetKeySequence",
         [] {
             return SetKeySequence(1, {5, 0, 0}, sequenceOf(7));
         },
         span({{98, 5}, {99, 0}, {100, 0}}, 144 + 52, 52, 7)},
        {"SetMacroBinding",
         [] {
             return SetMacroBinding(15, {6, 15, 1}, macroOf(8));
         },
         span({{140, 6}, {141, 15}, {142, 1}}, 976 + 15 * 592, 592, 8)},
        {"CheckOnline", [] { return CheckOnline(); }, {}},
    };
}

} // namespace

class tst_writefamily : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &layer = FakeHidUsb::instance();

    static FlashDataMap filled()
    {
        FlashDataMap record;
        memset(&record, Before, sizeof record);
        return record;
    }
    static void addRows()
    {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const Row &row : rows())
            QTest::newRow(row.name) << index++;
    }

private slots:
    void init()
    {
        layer.reset();
        resetDeviceState();
        FakeDevice mouse;
        mouse.path = "mouse";
        layer.setDevices({mouse});
        pointCurrentDeviceAt(QStringLiteral("mouse"));
        DeviceRecord::edit([](FlashDataMap &record) { record = filled(); });
    }

    void onLineChangesExactlyTheseBytes_data() { addRows(); }
    void onLineChangesExactlyTheseBytes()
    {
        QFETCH(int, index);
        const Row row = rows()[size_t(index)];
        FlashDataMap expected = filled();
        for (const ByteChange &change : row.changes)
            reinterpret_cast<uint8_t *>(&expected)[change.offset] = change.value;
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));

        QVERIFY(row.operation());
        const FlashDataMap record = DeviceRecord::copy();
        QCOMPARE(memcmp(&record, &expected, sizeof expected), 0);
        QCOMPARE(notice.count(), 0);
        if (row.changes.empty()) {
            QCOMPARE(layer.calls(), std::vector<std::string>{"UsbFinderC_GetDeviceOnLine mouse"});
            return;
        }
        QCOMPARE(layer.calls().size(), size_t(2)); // the question first, then the hand-over
        QCOMPARE(layer.calls()[0], std::string("UsbFinderC_GetDeviceOnLine mouse"));
        QCOMPARE(memcmp(&layer.updates().back(), &expected, sizeof expected), 0);
    }

    void offLineChangesNothing_data() { addRows(); }
    void offLineChangesNothing()
    {
        QFETCH(int, index);
        layer.setOnline("mouse", false);
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        QVERIFY(!rows()[size_t(index)].operation());
        const FlashDataMap record = DeviceRecord::copy();
        const FlashDataMap expected = filled();
        QCOMPARE(memcmp(&record, &expected, sizeof expected), 0);
        QVERIFY(layer.updates().empty());
        QCOMPARE(notice.count(), 1);
        QCOMPARE(notice.first().first().toInt(), 0);
    }

    void aPageThatFillsItselfRaisesNoNotice()
    {
        layer.setOnline("mouse", false);
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        for (std::atomic<bool> *busy : {&SensorPageBusy, &LightPageBusy, &ButtonPageBusy}) {
            *busy = true;
            QVERIFY(!SetReportRate(1));
            *busy = false;
        }
        QCOMPARE(notice.count(), 0);
        QVERIFY(!SetReportRate(1));
        QCOMPARE(notice.count(), 1);
    }

    void indicesOutsideTheRecordAreRefused()
    {
        for (int index : {-1, 8, 1000}) {
            QVERIFY(!SetDpiLevel(index, 1, 1, 1));
            QVERIFY(!SetDpiColor(index, 1, 1, 1));
            QVERIFY(!SetDpiStages({}, {}, index, 0, 0));
            QVERIFY(!SetDpiStages({}, {}, 0, index, 0));
        }
        for (int key : {-1, 16, 1000}) {
            QVERIFY(!SetBinding(key, {}));
            QVERIFY(!SetKeySequence(key, {}, {}));
            QVERIFY(!SetMacroBinding(key, {}, {}));
        }
        QVERIFY(layer.updates().empty());
    }

    void pushGoesOutWithoutTheQuestion()
    {
        layer.setOnline("mouse", false);
        PushRecord();
        QCOMPARE(layer.count("UsbFinderC_GetDeviceOnLine"), 0);
        QCOMPARE(layer.updates().size(), size_t(1));
    }

    void stagesThenCountFollowTheCurrentStage()
    {
        QVERIFY(SetDpiStages({}, {}, 0, 1, 3));
        QCOMPARE(int(DeviceRecord::copy().DpiStageCount), 4);
    }

    void theDummyPathIsNeverOnLine()
    {
        pointCurrentDeviceAtNothing();
        QCOMPARE(std::string(CurrentDevicePath()), std::string("a"));
        QVERIFY(!CheckOnline());
    }
};

TEST_CLASS(tst_writefamily, testmain::CoreApplication)
#include "tst_writefamily.moc"
