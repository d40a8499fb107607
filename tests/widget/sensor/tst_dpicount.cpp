// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The number of DPI stages, the exchange when the current one would vanish, and a long mixed run of edits.
#include "sensor/DpiSteps.h"
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/DpiFixture.h"

#include <QAbstractItemView>
#include <QRandomGenerator>

class tst_DpiCount : public QObject
{
    Q_OBJECT

private slots:
    void everyCountFromEveryStage_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        for (int from = 1; from <= DpiStageLimit; ++from)
            for (int to = 1; to <= DpiStageLimit; ++to)
                for (int current = 0; current < from; ++current)
                    if (from != to)
                        QTest::addRow("%d to %d at %d", from, to, current + 1) << current << from << to;
    }
    void everyCountFromEveryStage()
    {
        QFETCH(int, current);
        QFETCH(int, from);
        QFETCH(int, to);
        DpiEditor editor(FastModel, current, from);
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.DpiStageCount = uint8_t(to);
        if (current >= to) {
            std::swap(wanted.DpiStages[current], wanted.DpiStages[to - 1]);
            wanted.CurrentDpiStage = uint8_t(to - 1);
        }
        editor.choice()->setCurrentIndex(to - 1);
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &wanted, sizeof record));
        QCOMPARE(int(editor.fake().updates().size()), 1);
        QCOMPARE(editor.difference(), QString());
        // The stage that survived is the one to go back to.
        editor.goOffline();
        QTest::mouseClick(editor.button(0), Qt::LeftButton);
        QCOMPARE(editor.difference(), QString());
    }

    void fiveOfSixInThree()
    {
        DpiEditor editor(FastModel, 4, 6);
        const FlashDataMap before = DeviceRecord::copy();
        editor.choice()->setCurrentIndex(2);
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record.DpiStages[2], &before.DpiStages[4], sizeof(DpiStage)));
        QVERIFY(!memcmp(&record.DpiStages[4], &before.DpiStages[2], sizeof(DpiStage)));
        QCOMPARE(int(record.CurrentDpiStage), 2);
        QCOMPARE(int(record.DpiStageCount), 3);
        QVERIFY(editor.button(2)->styleSheet().contains("MaxA.png"));
        QCOMPARE(editor.difference(), QString());
    }

    void theCountOfASilentMouse()
    {
        DpiEditor editor(FastModel, 4, 6);
        editor.goOffline();
        for (const int index : {2, 7}) {
            editor.choice()->setCurrentIndex(index);
            QVERIFY(editor.nothingWritten());
            QCOMPARE(editor.difference(), QString());
        }
        editor.goOffline(false);
        editor.choice()->setCurrentIndex(4);
        editor.goOffline();
        editor.choice()->setCurrentIndex(0);
        QCOMPARE(editor.choice()->currentIndex(), 4); // the last one that was taken
    }

    // Between the question and the write.
    void aMouseThatFallsSilentMeanwhile_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("with an exchange") << 2;
        QTest::newRow("without") << 7;
    }
    void aMouseThatFallsSilentMeanwhile()
    {
        QFETCH(int, index);
        DpiEditor editor(FastModel, 4, 6);
        int asked = 0;
        editor.fake().setHook([&asked](const std::string &name) {
            if (name.rfind("UsbFinderC_GetDeviceOnLine", 0) == 0 && ++asked == 2)
                FakeHidUsb::instance().setOnline("dev", false);
        });
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.choice()->setCurrentIndex(index);
        editor.fake().setHook({});
        QCOMPARE(asked, 2);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
        QCOMPARE(notice.count(), 1);
    }

    void aPageThatFillsItselfWritesNothing()
    {
        DpiEditor editor(FastModel, 4, 6);
        {
            const PageFilling filling(SensorPageBusy);
            editor.choice()->setCurrentIndex(2);
            editor.choice()->clear();
        }
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.panel.currentStage(), 4);
        editor.paint();
        QCOMPARE(editor.difference(), QString());
        editor.choice()->clear(); // an empty box says nothing about the stages
        QVERIFY(editor.nothingWritten());
    }

    void unarmedOrBusyTheStagesChangePlacesOnThePage()
    {
        DpiEditor editor(FastModel, 4, 6);
        const FlashDataMap before = DeviceRecord::copy();
        UiArmed = false;
        const QString fifth = editor.button(4)->text();
        editor.choice()->setCurrentIndex(2);
        QCOMPARE(editor.button(2)->text(), fifth);
        QCOMPARE(editor.bar(2)->accessibleDescription(), colorText(before.DpiStages[4]));
        QCOMPARE(editor.panel.currentStage(), 2);
        QVERIFY(editor.button(3)->isHidden());
        QVERIFY(editor.nothingWritten());
    }

    void theListShowsFiveRows()
    {
        DpiEditor editor(FastModel, 0);
        editor.choice()->showPopup();
        const QAbstractItemView *list = editor.choice()->view();
        const int row = list->visualRect(list->model()->index(0, 0)).height();
        QVERIFY(row > 0);
        QCOMPARE(list->viewport()->height() / row, 5);
        editor.choice()->hidePopup();
    }

    void onlyShownStagesAreThere()
    {
        DpiEditor editor(FastModel, 0);
        for (int last = -1; last <= DpiStageLimit; ++last) {
            editor.panel.ShowStages(last);
            for (int i = 0; i < DpiStageLimit; ++i) {
                QCOMPARE(editor.button(i)->isHidden(), i > qMax(last, 0));
                QCOMPARE(editor.bar(i)->isHidden(), i > qMax(last, 0));
            }
        }
    }

    void stagesOutsideTheRowAreNone()
    {
        DpiEditor editor(FastModel, 3);
        for (const int stage : {-1, DpiStageLimit, 255}) {
            editor.panel.SetStageText(stage, "1");
            editor.panel.SetStageColor(stage, "#000000");
            editor.panel.SelectStage(stage);
        }
        QCOMPARE(editor.difference(), QString());
    }

    // A page that was told of a stage outside the row still takes edits.
    void aCurrentStageOutsideTheRow()
    {
        DpiEditor editor(FastModel, 3);
        editor.panel.SetCurrentStage(200);
        editor.drag({400, 168});
        editor.choice()->setCurrentIndex(4);
        QTest::mouseClick(editor.button(1), Qt::LeftButton);
        QCOMPARE(editor.difference(), QString());
    }

    void twoThousandEdits_data()
    {
        QTest::addColumn<int>("model");
        for (int model = 0; model < ModelCount; ++model)
            QTest::addRow("model %d", model) << model;
    }
    void twoThousandEdits()
    {
        QFETCH(int, model);
        DpiEditor editor(model, 0, 5);
        editor.clickAdd(); // arms the slider
        QRandomGenerator random(quint32(20261 + model));
        for (int i = 0; i < 500; ++i) {
            const int action = int(random.bounded(8));
            act(editor, action, random);
            QVERIFY2(
                editor.difference().isEmpty(),
                qPrintable(QString("edit %1, action %2: %3").arg(i).arg(action).arg(editor.difference())));
            QVERIFY(editor.panel.currentStage() < editor.panel.stageCount());
        }
    }

private:
    static void act(DpiEditor &editor, int action, QRandomGenerator &random)
    {
        const int shown = editor.panel.stageCount();
        const int stage = int(random.bounded(quint32(shown)));
        switch (action) {
        case 0:
            return QTest::mouseClick(editor.button(stage), Qt::LeftButton);
        case 1:
            return editor.clickBar(stage);
        case 2:
            return editor.slider()->setValue(
                random.bounded(SensorRanges.DpiSliderMin, SensorRanges.DpiSliderMax));
        case 3:
            return random.bounded(2) ? editor.clickAdd() : editor.clickReduce();
        case 4:
            return editor.choice()->setCurrentIndex(random.bounded(DpiStageLimit));
        case 5:
            return editor.panel.SetColor(QColor::fromRgb(random.generate()));
        case 6:
            return editor.drag({random.bounded(728), 160 + random.bounded(16)});
        default:
            return edgeOfSilence(editor, random);
        }
    }
    // The same with a mouse that is away for the time; a slider that failed waits for the next load.
    static void edgeOfSilence(DpiEditor &editor, QRandomGenerator &random)
    {
        editor.goOffline();
        act(editor, int(random.bounded(7)), random);
        editor.goOffline(false);
        if (!editor.slider()->isEnabled())
            editor.paint();
    }
};

TEST_CLASS(tst_DpiCount, DpiSetUp)

#include "tst_dpicount.moc"
