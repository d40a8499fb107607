// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The sensor page without a device, at its start, its texts and the places of its objects.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/SensorFixture.h"

#include <QDir>

class tst_SensorStart : public QObject
{
    Q_OBJECT

private:
    static std::vector<FlashDataMap> updates() { return FakeHidUsb::instance().updates(); }
    static int questions() { return FakeHidUsb::instance().count("UsbFinderC_GetDeviceOnLine"); }
    static bool same(const FlashDataMap &a, const FlashDataMap &b)
    {
        return std::memcmp(&a, &b, sizeof a) == 0;
    }

private slots:
    void theEmptyStateOfEveryKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("fast"); // 2000, 4000, 8000; as painted before when empty
        QTest::addColumn<int>("mode");
        QTest::newRow("1K") << 0 << "---" << 0;
        QTest::newRow("4K") << 1 << "++-" << 2;
        QTest::newRow("cable 2") << 2 << "---" << 2; // the cable decides
        QTest::newRow("cable 3") << 3 << "+++" << 2;
        QTest::newRow("2K") << 4 << "+--" << 2;
        QTest::newRow("8K") << 5 << "+++" << 2;
        QTest::newRow("other, on cable") << 9 << "" << 2;
        QTest::newRow("other, by radio") << 256 << "" << 1;
    }
    void theEmptyStateOfEveryKind()
    {
        QFETCH(int, kind);
        QFETCH(QString, fast);
        QFETCH(int, mode);
        SensorFixture page;
        FlashDataMap map = editedRecord();
        map.ReportRate = 8;
        map.ModelChoose = 1;
        map.RippeControl = map.StraightLine = 1;
        map.MotionSync = 0;
        map.LiftOffDistance = 2;
        page.show(map);
        SensorFixture::choose(M3395, uint16_t(kind));
        SelectedDevice::set([kind] {
            DeviceAllInfo info = SelectedDevice::info();
            info.Usb = kind == 2 || kind == 3 || kind == 9;
            return info;
        }());
        QSignalSpy dpi(PostMsg::instance(), &PostMsg::SigAddSensor);
        QSignalSpy open(PostMsg::instance(), &PostMsg::Sig20KOpen);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        checkEmptyState(page);
        QCOMPARE(page.checkedRate(), fast.isEmpty() ? 0 : int(Rate1000));
        for (int i = 0; i < fast.size(); ++i)
            QCOMPARE(page.rate(4 + i)->isHidden(), fast[i] == '-');
        QCOMPARE(page.mode()->currentIndex(), mode);
        QCOMPARE(dpi.count(), 1);
        QCOMPARE(dpi[0][0].toInt(), 800);
        QCOMPARE(open.last()[0].toBool(), false);
        QVERIFY(updates().empty());
        QCOMPARE(questions(), 0);
        QVERIFY(same(DeviceRecord::copy(), map));
    }
    static void checkEmptyState(const SensorFixture &page)
    {
        QCOMPARE(page.slider()->minimum(), 50);
        QCOMPARE(page.slider()->maximum(), 42000);
        QCOMPARE(page.slider()->value(), 2400);
        QCOMPARE(page.spin()->value(), 2400);
        QCOMPARE(page.choice()->count(), 6);
        QCOMPARE(page.choice()->currentIndex(), 5);
        QCOMPARE(page.shownStages(), 6);
        QCOMPARE(page.checkedStage(), 1);
        QCOMPARE(page.stage(0)->text(), QString("400"));
        QCOMPARE(page.stage(7)->text(), QString("12000"));
        QCOMPARE(page.bar(0)->accessibleDescription(), QString("1,2,3"));
        QCOMPARE(page.lod()->currentIndex(), 0);
        QVERIFY(page.performance()->isEnabled() && !page.performance()->isChecked());
        QVERIFY(!page.time()->isEnabled());
        QCOMPARE(page.time()->currentIndex(), 2);
        QVERIFY(page.sync()->isChecked() && !page.snapping()->isChecked() && !page.ripple()->isChecked());
        QVERIFY(!SensorPageBusy && UiArmed);
    }

    // It differs from the shown one on purpose, and only there.
    void theTimeOfTheEmptyStateFallsBackToAnother()
    {
        SensorFixture page;
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        FakeHidUsb::instance().setOnline("dev", false);
        page.time()->setCurrentIndex(4);
        QCOMPARE(page.time()->currentIndex(), 1);
    }

    // ---- Start and texts

    void theFolderAndTheStageCountAreThereFromTheStart()
    {
        QDir folder(dataRoot() + "/usersetting/SensorPage");
        QVERIFY(folder.removeRecursively());
        const Sensor page;
        QVERIFY(folder.exists());
        QCOMPARE(page.findChild<SensorDPI *>()->stageCount(), 1);
        QFile level(folder.filePath("Level.ini"));
        QVERIFY(level.open(QIODevice::WriteOnly) && level.write("5\n") == 2);
        level.close();
        const Sensor another;
        QCOMPARE(another.findChild<SensorDPI *>()->stageCount(), 5);
        QVERIFY(level.remove());
    }

    void theTextsAreThoseOfTheLanguage()
    {
        SensorFixture page;
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(page.find<QLabel>("label_10")->text(), QString("Sensor"));
        QCOMPARE(page.find<QLabel>("label_11")->text(), QString("Sensor mode"));
        QCOMPARE(page.performance()->text(), QString("Full performance"));
        QCOMPARE(page.time()->itemText(0), QString("10 seconds"));
        QCOMPARE(page.time()->itemText(7), QString("15 minutes"));
        QCOMPARE(page.mode()->itemText(0) + page.mode()->itemText(1) + page.mode()->itemText(2),
                 QString("LPHPCorded"));
        QVERIFY(page.find<QToolButton>("TitleButton_4")->toolTip().contains("low power"));
        QVERIFY(page.find<QLabel>("performanceTip")->toolTip().contains("full speed"));
        QVERIFY(!page.ripple()->accessibleDescription().isEmpty());
    }

    void theTipsStandWhereTheLanguageWantsThem_data()
    {
        QTest::addColumn<int>("language");
        QTest::addColumn<QVector<int>>("x"); // ripple, line, sync
        QTest::newRow("0") << 0 << QVector<int>{175, 170, 160};
        for (const int language : {1, 2})
            QTest::addRow("%d", language) << language << QVector<int>{120, 120, 150};
        QTest::newRow("3") << 3 << QVector<int>{100, 100, 100};
        for (const int language : {4, 5, 6, 7})
            QTest::addRow("%d", language) << language << QVector<int>{175, 175, 175};
    }
    void theTipsStandWhereTheLanguageWantsThem()
    {
        QFETCH(int, language);
        QFETCH(QVector<int>, x);
        SensorFixture page;
        emit PostMsg::instance()->SigAllLanguage(language);
        const char *const panels[] = {"RippeControl", "StraightLine", "MotionSync"};
        for (int i = 0; i < 3; ++i)
            QCOMPARE(page.find<QWidget>(panels[i])->findChild<QLabel *>("tip")->pos(), QPoint(x[i], 3));
        QCOMPARE(page.find<QWidget>("SensorLOD")->findChild<QLabel *>("tip")->pos(), QPoint(50, 1));
        QCOMPARE(page.find<QLabel>("label_11")->text(), QString("Sensor mode")); // one without a table
    }

    // The labels begin where the language wants them; their pictures stand under each other.
    void theTipsOfTheSwitchesMakeOneColumn_data()
    {
        QTest::addColumn<int>("language");
        for (int language = 0; language < 8; ++language)
            QTest::addRow("%d", language) << language;
    }
    void theTipsOfTheSwitchesMakeOneColumn()
    {
        QFETCH(int, language);
        SensorFixture page;
        emit PostMsg::instance()->SigAllLanguage(language);
        QSet<int> ends;
        for (const char *panel : {"RippeControl", "StraightLine", "MotionSync"}) {
            auto *tip = page.find<QWidget>(panel)->findChild<QLabel *>("tip");
            ends << tip->geometry().right();
            const QImage shot = tip->grab(QRect(tip->width() - 16, 1, 16, 16)).toImage();
            QVERIFY(shot.pixel(8, 9) != shot.pixel(0, 0)); // the foot of its sign
        }
        QCOMPARE(ends.size(), 1);
    }

    void theObjectsStandAtTheirPlaces()
    {
        SensorFixture page;
        const std::pair<const char *, QRect> places[] = {
            {"SensorDPI", {65, 26, 728, 194}},        {"SensorRate", {80, 208, 725, 82}},
            {"label_11", {80, 360, 171, 17}},         {"ModelChoose", {80, 390, 130, 30}},
            {"SensorLOD", {255, 360, 131, 61}},       {"Performance", {430, 352, 231, 31}},
            {"PerformanceOpen", {430, 390, 130, 30}}, {"RippeControl", {670, 340, 204, 31}},
            {"StraightLine", {670, 370, 204, 31}},    {"MotionSync", {670, 400, 204, 31}}};
        for (const auto &[name, place] : places)
            QCOMPARE(page.find<QWidget>(name)->geometry(), place);
        QCOMPARE(page.time()->maxVisibleItems(), 5);
        QCOMPARE(page.page->size(), QSize(883, 630));
    }
};

TEST_CLASS(tst_SensorStart, SensorSetUp)

#include "tst_sensorstart.moc"
