// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The stages of the DPI editor: how they look, what selecting one does, their colours and their keys.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/DpiFixture.h"

class tst_DpiStages : public QObject
{
    Q_OBJECT

private:
    static void eachStage()
    {
        QTest::addColumn<int>("stage");
        for (int i = 0; i < DpiStageLimit; ++i)
            QTest::addRow("stage %d", i + 1) << i;
    }
    // A stage that is not the one under test.
    static int otherThan(int stage) { return stage == 2 ? 5 : 2; }
    static QRect plainButton(int i) { return {StagePoint[std::size_t(i)].x() - 13, 68, 54, 56}; }
    static QRect plainBar(int i) { return {StagePoint[std::size_t(i)].x() - 11, 128, 50, 12}; }
    static void looksSelected(const DpiEditor &editor, int selected)
    {
        for (int i = 0; i < DpiStageLimit; ++i) {
            const QRect big = plainButton(i), low = plainBar(i);
            const bool is = i == selected;
            QCOMPARE(editor.button(i)->geometry(), is ? QRect(big.x() - 7, big.y() - 7, 68, 70) : big);
            QCOMPARE(editor.bar(i)->geometry(), is ? QRect(low.x() - 8, low.y() + 6, 66, 14) : low);
            QVERIFY(editor.button(i)->styleSheet().contains(is ? "MaxA.png" : "MinA.png"));
            QVERIFY(editor.bar(i)->styleSheet().contains(is ? "MaxB.png" : "MinB.png"));
        }
    }

private slots:
    void selectedAndPlainLooks_data() { eachStage(); }
    void selectedAndPlainLooks()
    {
        QFETCH(int, stage);
        DpiEditor editor(FastModel, stage);
        looksSelected(editor, stage);
        const QString sheet = editor.button(stage)->styleSheet();
        for (const char *part : {"border:0px", "border-radius:3px", "background-position:center",
                                 "background-repeat:no-repeat", "color: rgb(236,241,239;)"})
            QVERIFY2(sheet.contains(part), part);
        const QString color = colorText(DeviceRecord::copy().DpiStages[stage]);
        QVERIFY(editor.bar(stage)->styleSheet().contains("background-color: rgb(" + color + ";)"));
        QVERIFY(editor.bar(stage)->styleSheet().contains("border-radius:3px"));
    }

    void clickTakesTheStage_data() { eachStage(); }
    void clickTakesTheStage()
    {
        QFETCH(int, stage);
        DpiEditor editor(FastModel, otherThan(stage));
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.CurrentDpiStage = uint8_t(stage);
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddSensor);
        QTest::mouseClick(editor.button(stage), Qt::LeftButton);
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &wanted, sizeof record));
        QCOMPARE(int(editor.fake().updates().size()), 1);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown[0][0].toInt(), editor.button(stage)->text().toInt());
        QCOMPARE(editor.slider()->value(), editor.button(stage)->text().toInt());
        QCOMPARE(editor.difference(), QString());
        looksSelected(editor, stage);
    }

    void silentMouseTakesTheStageBack_data() { eachStage(); }
    void silentMouseTakesTheStageBack()
    {
        QFETCH(int, stage);
        DpiEditor editor(FastModel, otherThan(stage));
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        QTest::mouseClick(editor.button(stage), Qt::LeftButton);
        QCOMPARE(notice.count(), 1);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
        looksSelected(editor, otherThan(stage));
        QVERIFY(editor.slider()->isEnabled());
    }

    void barSelectsWithoutWritingAValue_data() { eachStage(); }
    void barSelectsWithoutWritingAValue()
    {
        QFETCH(int, stage);
        DpiEditor editor(FastModel, otherThan(stage));
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.CurrentDpiStage = uint8_t(stage);
        QTest::mouseClick(editor.bar(stage), Qt::LeftButton);
        QVERIFY(editor.picker()->isVisible());
        QCOMPARE(editor.picker()->windowTitle(),
                 language::text(language::Section::sensor, "StageColor", 0).arg(stage + 1));
        QCOMPARE(
            editor.picker()->currentColor(),
            QColor(wanted.DpiStages[stage].Red, wanted.DpiStages[stage].Green, wanted.DpiStages[stage].Blue));
        editor.picker()->reject();
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &wanted, sizeof record));
        QCOMPARE(editor.difference(), QString());
        looksSelected(editor, stage);
        // The value is free again for the next edit.
        const int before = editor.spin()->value();
        editor.slider()->setValue(before > 50 ? before - 50 : before + 50);
        QVERIFY(editor.spin()->value() != before);
        QCOMPARE(editor.difference(), QString());
    }

    void barOfAStageWithTheSameValue()
    {
        DpiEditor editor(FastModel, 0);
        DeviceRecord::edit([](FlashDataMap &map) { map.DpiStages[3] = map.DpiStages[0]; });
        editor.paint();
        editor.clickBar(3);
        editor.slider()->setValue(2000);
        QCOMPARE(editor.button(3)->text(), QString("2000"));
        QCOMPARE(editor.difference(), QString());
    }

    void silentMouseTakesTheBarBack_data() { eachStage(); }
    void silentMouseTakesTheBarBack()
    {
        QFETCH(int, stage);
        DpiEditor editor(FastModel, otherThan(stage));
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.clickBar(stage);
        QCOMPARE(notice.count(), 1);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
        looksSelected(editor, otherThan(stage));
    }

    void unarmedOrBusyAStageOnlyLooksSelected_data()
    {
        QTest::addColumn<bool>("armed");
        QTest::addColumn<bool>("busy");
        QTest::newRow("not armed") << false << false;
        QTest::newRow("busy") << true << true;
    }
    void unarmedOrBusyAStageOnlyLooksSelected()
    {
        QFETCH(bool, armed);
        QFETCH(bool, busy);
        DpiEditor editor(FastModel, 1);
        UiArmed = armed;
        SensorPageBusy = busy;
        editor.button(4)->setChecked(true);
        QVERIFY(editor.button(4)->styleSheet().contains("MaxA.png"));
        QVERIFY(editor.button(1)->styleSheet().contains("MinA.png"));
        QCOMPARE(editor.panel.currentStage(), 1);
        QCOMPARE(editor.checkedBar(), 1);
        QCOMPARE(editor.marker()->pos(), StagePoint[1]);
        QVERIFY(editor.nothingWritten());
        SensorPageBusy = false;
    }

    void aColorGoesToTheCheckedBar_data() { eachStage(); }
    void aColorGoesToTheCheckedBar()
    {
        QFETCH(int, stage);
        DpiEditor editor(FastModel, stage);
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.DpiStages[stage].Red = 1;
        wanted.DpiStages[stage].Green = 0;
        wanted.DpiStages[stage].Blue = 254;
        QTest::mouseClick(editor.bar(stage), Qt::LeftButton);
        editor.picker()->setCurrentColor(QColor(1, 0, 254));
        editor.picker()->accept();
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &wanted, sizeof record));
        QVERIFY(editor.bar(stage)->styleSheet().contains("background-color: rgb(1,0,254;)"));
        QCOMPARE(editor.difference(), QString());
    }

    // Between the click on a bar and the end of the question another stage may be checked.
    void aColorGoesToTheBarThatWasClicked_data()
    {
        QTest::addColumn<QString>("meanwhile");
        for (const char *meanwhile : {"the mouse is back", "it is read again", "its own button is pressed"})
            QTest::newRow(meanwhile) << meanwhile;
    }
    void aColorGoesToTheBarThatWasClicked()
    {
        QFETCH(QString, meanwhile);
        DpiEditor editor(FastModel, 1);
        FlashDataMap wanted = DeviceRecord::copy();
        const bool lost = meanwhile != "its own button is pressed";
        editor.goOffline(lost);
        QTest::mouseClick(editor.bar(4), Qt::LeftButton);
        QCOMPARE(editor.checkedBar(), lost ? 1 : 4); // a stage that the mouse did not take
        editor.goOffline(false);
        if (meanwhile == "it is read again")
            editor.paint();
        if (!lost) {
            DeviceRecord::edit([](FlashDataMap &map) { map.CurrentDpiStage = 2; });
            editor.panel.SelectStage(2);
        }
        wanted.CurrentDpiStage = lost ? 1 : 2;
        wanted.DpiStages[4].Red = 1;
        wanted.DpiStages[4].Green = 0;
        wanted.DpiStages[4].Blue = 254;
        editor.picker()->setCurrentColor(QColor(1, 0, 254));
        editor.picker()->accept();
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &wanted, sizeof record));
        QVERIFY(editor.bar(4)->styleSheet().contains("background-color: rgb(1,0,254;)"));
        if (meanwhile != "the mouse is back") // its slider waits for the read
            QCOMPARE(editor.difference(), QString());
    }

    void thePickerClosesWithItsStage_data()
    {
        QTest::addColumn<QString>("meanwhile");
        for (const char *meanwhile : {"fewer stages", "another profile", "a profile with the same stages",
                                      "no device", "the panel is hidden"})
            QTest::newRow(meanwhile) << meanwhile;
    }
    void thePickerClosesWithItsStage()
    {
        QFETCH(QString, meanwhile);
        DpiEditor editor(FastModel, 6);
        emit PostMsg::instance()->SigAddConfig("Profile 1");
        QTest::mouseClick(editor.bar(6), Qt::LeftButton);
        editor.paint();
        emit PostMsg::instance()->SigAddConfig("Profile 1");
        QVERIFY(editor.picker()->isVisible());
        if (meanwhile == "fewer stages") {
            DeviceRecord::edit([](FlashDataMap &map) { map.DpiStageCount = 3, map.CurrentDpiStage = 1; });
            editor.paint();
        } else if (meanwhile == "another profile") {
            DeviceRecord::edit([](FlashDataMap &map) { map.DpiStages[6] = map.DpiStages[5]; });
            editor.paint();
        } else if (meanwhile == "a profile with the same stages") {
            emit PostMsg::instance()->SigAddConfig("Profile 2");
        } else if (meanwhile == "no device") {
            editor.panel.reset();
        } else {
            editor.panel.hide();
            editor.panel.show();
        }
        QVERIFY(!editor.picker()->isVisible());
        QVERIFY(editor.nothingWritten());
        const int stage = editor.panel.currentStage(); // and the next question is answered
        QTest::mouseClick(editor.bar(stage), Qt::LeftButton);
        editor.picker()->setCurrentColor(QColor(1, 0, 254));
        editor.picker()->accept();
        QCOMPARE(colorText(DeviceRecord::copy().DpiStages[stage]), QString("1,0,254"));
    }

    void aColorForASilentMouseIsDropped()
    {
        DpiEditor editor(FastModel, 3);
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.panel.SetColor(QColor(9, 9, 9));
        QCOMPARE(notice.count(), 0);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void unarmedOrBusyAColorIsOnlyShown_data() { unarmedOrBusyAStageOnlyLooksSelected_data(); }
    void unarmedOrBusyAColorIsOnlyShown()
    {
        QFETCH(bool, armed);
        QFETCH(bool, busy);
        DpiEditor editor(FastModel, 3);
        UiArmed = armed;
        SensorPageBusy = busy;
        editor.panel.SetColor(QColor(9, 9, 9));
        QCOMPARE(editor.bar(3)->accessibleDescription(), QString("9,9,9"));
        QVERIFY(editor.nothingWritten());
        SensorPageBusy = false;
    }

    void thePickerHasTheSkin()
    {
        DpiEditor editor(FastModel);
        editor.clickBar(0);
        editor.clickBar(1);
        QCOMPARE(editor.panel.findChildren<QColorDialog *>().size(), 1);
        QCOMPARE(editor.picker()->parent(), &editor.panel);
        QVERIFY(editor.picker()->testOption(QColorDialog::DontUseNativeDialog));
        QCOMPARE(editor.picker()->palette().window(), QApplication::palette().window());
        for (const QAbstractButton *button : editor.picker()->findChildren<QAbstractButton *>())
            QVERIFY(button->icon().isNull());
    }

    void theDefaultsOfTheModel_data()
    {
        QTest::addColumn<int>("model");
        for (int model = 0; model < ModelCount; ++model)
            QTest::addRow("model %d", model) << model;
    }
    void theDefaultsOfTheModel()
    {
        QFETCH(int, model);
        DpiEditor editor(model);
        const FlashDataMap wanted = DeviceRecord::copy();
        const QStringList texts = DeviceCatalogue().list(model, "DPIGrade");
        for (int i = 0; i < DpiStageLimit; ++i) {
            editor.panel.SetStageText(i, "1");
            editor.panel.SetStageColor(i, "#010203");
        }
        editor.panel.ResetDefaults();
        for (int i = 0; i < DpiStageLimit; ++i) {
            QCOMPARE(editor.button(i)->text(), texts[i]);
            QCOMPARE(editor.bar(i)->accessibleDescription(), colorText(wanted.DpiStages[i]));
            QVERIFY(editor.button(i)->styleSheet().contains("MinA.png"));
        }
        QVERIFY(editor.nothingWritten());
    }

    void aModelOutsideTheCatalogueHasNoDefaults()
    {
        DpiEditor editor(FastModel);
        const QString before = editor.difference();
        SelectedDevice::set(fixture::info("dev", Receiver8K, 77));
        editor.panel.ResetDefaults();
        QCOMPARE(editor.difference(), before);
        looksSelected(editor, 0);
    }

    void arrowsMoveAlongTheStages()
    {
        DpiEditor editor(FastModel, 3, 6);
        QApplication::setActiveWindow(&editor.panel);
        editor.button(3)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(editor.button(3), Qt::Key_Right);
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 4);
        QTest::keyClick(editor.button(4), Qt::Key_Left);
        QTest::keyClick(editor.button(3), Qt::Key_Left);
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 2);
        QCOMPARE(editor.difference(), QString());
    }

    void arrowsMoveAlongTheBarsWithoutAskingForAColor()
    {
        DpiEditor editor(FastModel, 3, 5);
        QApplication::setActiveWindow(&editor.panel);
        editor.bar(3)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(editor.bar(3), Qt::Key_Right);
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 4);
        QVERIFY(editor.bar(4)->hasFocus());
        QTest::keyClick(editor.bar(4), Qt::Key_Right); // the last one that shows
        QTest::keyClick(editor.bar(4), Qt::Key_Left);
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 3);
        QVERIFY(!editor.picker());
        QTest::keyClick(editor.bar(3), Qt::Key_Space);
        QVERIFY(editor.picker()->isVisible());
        editor.picker()->reject();
        QCOMPARE(editor.difference(), QString());
    }

    void everyControlIsReachedAsTheEyeReads()
    {
        DpiEditor editor(FastModel, 2);
        QStringList order;
        for (QWidget *w = editor.panel.nextInFocusChain(); w != &editor.panel; w = w->nextInFocusChain())
            if (w->window() == &editor.panel && (w->focusPolicy() & Qt::TabFocus) &&
                w->parent() == &editor.panel)
                order << w->objectName();
        QCOMPARE(order, QStringList({"ChooseEvent", "ReduceLevelA", "horizontalSliderC", "AddLevelA",
                                     "spinBoxA", "RedButton", "RedButtonA"}));
    }

    void namesAndTextsAreWhole()
    {
        DpiEditor editor(FastModel, 7);
        for (int i = 0; i < DpiStageLimit; ++i) {
            QCOMPARE(editor.button(i)->accessibleName(), QString("DPI stage %1").arg(i + 1));
            QCOMPARE(editor.bar(i)->accessibleName(), QString("Color of DPI stage %1").arg(i + 1));
            editor.panel.SetStageText(i, "42000");
            QVERIFY(editor.button(i)->fontMetrics().horizontalAdvance("42000") + 8 <=
                    editor.button(i)->width());
        }
        for (const char *name : {"ChooseEvent", "ReduceLevelA", "AddLevelA", "horizontalSliderC", "spinBoxA"})
            QVERIFY(!editor.child<QWidget>(name)->accessibleName().isEmpty());
    }
};

TEST_CLASS(tst_DpiStages, DpiSetUp)

#include "tst_dpistages.moc"
