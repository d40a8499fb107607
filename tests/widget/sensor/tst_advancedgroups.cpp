// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The groups of the advanced page: which of them a model and its link show, where they stand, what they
// say, and the tab that is kept out of view.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/AdvancedPage.h"

using namespace advanced;

class tst_AdvancedGroups : public QObject, private AdvancedPage
{
    Q_OBJECT

private slots:
    void init() { open(); }

    // ---- Long range

    void theLongRangeModeGoesToTheReceiver()
    {
        longRange()->click();
        QCOMPARE(setCalls(), 1);
        QCOMPARE(int(fake.device("dev").longRange), 1);
        longRange()->click();
        QCOMPARE(int(fake.device("dev").longRange), 0);
        QCOMPARE(setCalls(), 2);
        QCOMPARE(updates(), std::size_t(0)); // no part of the record
    }

    void theLongRangeModeNeedsTheOpenPageAndTheMouse()
    {
        UiArmed = false;
        longRange()->click();
        QVERIFY(longRange()->isChecked());
        QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLine"), 0);
        UiArmed = true;
        SensorPageBusy = true; // does not keep this notice away
        fake.setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        longRange()->click();
        QVERIFY(longRange()->isChecked());
        QCOMPARE(notice.count(), 1);
        QCOMPARE(notice[0][0].toInt(), 0);
        QCOMPARE(setCalls(), 0);
    }

    void theReceiversModeIsShownAndNotWritten_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<bool>("offered");
        QTest::newRow("off at reset") << OffAtReset << true;
        QTest::newRow("on at reset") << OnAtReset << true;
        QTest::newRow("without the mode") << WithoutMode << false;
        QTest::newRow("empty entry") << EmptyEntry << true;
        QTest::newRow("no entry") << NoEntry << true;
        QTest::newRow("one item") << 5 << false;
        QTest::newRow("begins alike") << 6 << true;
        QTest::newRow("second item") << 7 << true;
        QTest::newRow("unknown device") << NoSection << true;
    }
    void theReceiversModeIsShownAndNotWritten()
    {
        QFETCH(int, model);
        QFETCH(bool, offered);
        selectModel(model);
        page = std::make_unique<Advanced>();
        QVERIFY(allShown(LongRangeGroup, false));
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigLongRangeMode(true); });
        QCOMPARE(longRange()->isChecked(), offered);
        QVERIFY(allShown(LongRangeGroup, offered));
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigLongRangeMode(false); });
        QVERIFY(!longRange()->isChecked());
        QVERIFY(allShown(LongRangeGroup, offered));
        QCOMPARE(setCalls(), 0);
    }

    void theModelDecidesAfterALoad_data() { theReceiversModeIsShownAndNotWritten_data(); }
    void theModelDecidesAfterALoad()
    {
        QFETCH(int, model);
        QFETCH(bool, offered);
        for (const bool cable : {false, true}) {
            for (const bool imported : {false, true}) {
                selectModel(model, cable ? fixture::CableKind : uint16_t(Receiver4K));
                page = std::make_unique<Advanced>();
                if (imported)
                    emit PostMsg::instance()->SigFormB();
                else
                    fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigForm(); });
                QVERIFY(allShown(LongRangeGroup, offered && !cable));
            }
        }
    }

    void theCableHidesWhatTheReceiverShowed()
    {
        page->SlotLongRangeMode(true);
        QVERIFY(allShown(LongRangeGroup, true));
        selectModel(OffAtReset, fixture::CableKind);
        page->SlotForm();
        QVERIFY(allShown(LongRangeGroup, false));
        selectModel(OffAtReset, Receiver1K);
        page->SlotForm();
        QVERIFY(allShown(LongRangeGroup, true));
    }

    // ---- Without device and image

    void theEmptyState()
    {
        paint(recordWith(1, 90, 25));
        page->SlotLongRangeMode(true);
        QSignalSpy toggled(longRange(), &QCheckBox::toggled);
        QSignalSpy changed(angle(), &QSlider::valueChanged);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        QVERIFY(!longRange()->isChecked() && !kfps()->isChecked());
        QVERIFY(showsAngle(0));
        QCOMPARE(sleep()->currentIndex(), 2);
        QCOMPARE(toggled.count() + changed.count(), 0);
        QCOMPARE(updates(), std::size_t(0));
        QCOMPARE(setCalls(), 0);
        // The captions alone are gone, also after the page is opened anew.
        for (int round = 0; round < 2; ++round) {
            QVERIFY(!shown("KFpsCaption") && !shown("LongRangeCaption"));
            for (const char *rest : {"KFpsMarker", "KFpsTips", "KFPS", "LongRangeMarker", "LongRangeTips",
                                     "checkBox", "LongRangeText"})
                QVERIFY2(shown(rest), rest);
            emit PostMsg::instance()->SigtVis(0);
        }
        paint(recordWith(0, 6, 0));
        page->SlotForm();
        QVERIFY(allShown(KfpsGroup, true) && allShown(LongRangeGroup, true));
    }

    void theEmptyStateIsWhatAFailureGoesBackTo()
    {
        paint(recordWith(0, 90, 25));
        page->SlotFormReset();
        fake.setOnline("dev", false);
        angle()->setValue(11);
        QVERIFY(showsAngle(0));
        chooseSleep(7);
        QCOMPARE(sleep()->currentIndex(), 2);
    }

    void theEmptyStateBringsBothGroupsIntoUse()
    {
        selectModel(WithoutMode);
        page = std::make_unique<Advanced>();
        page->SlotFormReset();
        QVERIFY(shown("KFPS") && shown("checkBox"));
        QCOMPARE(find("AngleFrame")->pos(), QPoint(158, 390));
    }

    // ---- Layout

    void groupsStandByWhatIsInUse_data()
    {
        QTest::addColumn<bool>("kfps");
        QTest::addColumn<bool>("longRange");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("row");
        const char *const withBoth[] = {"both", "kfps", "neither", "longRange"};
        for (int index = -1; index <= 5; ++index) {
            QTest::addRow("both %d", index)
                << true << true << index << QString(withBoth[index >= 1 && index <= 3 ? index : 0]);
            QTest::addRow("kfps %d", index) << true << false << index << "kfps";
            QTest::addRow("long range %d", index) << false << true << index << "longRange";
            QTest::addRow("neither %d", index) << false << false << index << "neither";
        }
    }
    void groupsStandByWhatIsInUse()
    {
        QFETCH(bool, kfps);
        QFETCH(bool, longRange);
        QFETCH(int, index);
        QFETCH(QString, row);
        page = std::make_unique<Advanced>();
        if (kfps)
            paint(recordWith(0, 6, 0));
        selectModel(longRange ? OffAtReset : WithoutMode);
        page->SlotForm();
        emit PostMsg::instance()->SigtVis(index);

        struct Place {
            const char *name;
            QHash<QString, QPoint> at; // by row; hidden where there is none
        };
        const Place places[] = {
            {"KFpsMarker", {{"both", {40, 160}}, {"kfps", {40, 160}}}},
            {"KFpsCaption", {{"both", {68, 153}}, {"kfps", {68, 153}}}},
            {"KFPS", {{"both", {68, 188}}, {"kfps", {68, 188}}}},
            {"LongRangeMarker", {{"both", {40, 263}}, {"longRange", {40, 160}}}},
            {"LongRangeCaption", {{"both", {68, 256}}, {"longRange", {68, 153}}}},
            {"checkBox", {{"both", {68, 291}}, {"longRange", {68, 188}}}},
            {"LongRangeText", {{"both", {90, 288}}, {"longRange", {90, 185}}}},
            {"AngleMarker",
             {{"both", {40, 366}}, {"longRange", {40, 263}}, {"kfps", {40, 263}}, {"neither", {40, 160}}}},
            {"AngleCaption",
             {{"both", {68, 359}}, {"longRange", {68, 256}}, {"kfps", {68, 256}}, {"neither", {68, 153}}}},
            {"AngleFrame",
             {{"both", {158, 390}},
              {"longRange", {158, 287}},
              {"kfps", {158, 287}},
              {"neither", {158, 184}}}},
        };
        for (const Place &place : places) {
            QVERIFY2(shown(place.name) == place.at.contains(row), place.name);
            if (place.at.contains(row))
                QVERIFY2(find(place.name)->pos() == place.at[row], place.name);
        }
        // What lies with a group comes and goes with it, in its height.
        const std::pair<const char *, const char *> together[] = {{"KFpsCaption", "KFpsTips"},
                                                                  {"KFpsCaption", "KFpsLine"},
                                                                  {"LongRangeCaption", "LongRangeTips"},
                                                                  {"LongRangeCaption", "LongRangeLine"},
                                                                  {"AngleCaption", "AngleTips"}};
        for (const auto &pair : together) {
            QCOMPARE(shown(pair.second), shown(pair.first));
            QVERIFY(!shown(pair.first) || qAbs(find(pair.first)->y() - find(pair.second)->y()) < 20);
        }
        QVERIFY(find("AngleFrame")->geometry().bottom() < 630);
    }

    void theTipsStandByTheLanguage_data()
    {
        QTest::addColumn<int>("language");
        QTest::addColumn<int>("x");
        const int columns[] = {300, 200, 200, 320, 300, 300, 300, 290};
        for (int language = 0; language < 8; ++language)
            QTest::addRow("%d", language) << language << columns[language];
        QTest::newRow("none such") << 8 << 300;
        QTest::newRow("negative") << -1 << 300;
    }
    void theTipsStandByTheLanguage()
    {
        QFETCH(int, language);
        QFETCH(int, x);
        emit PostMsg::instance()->SigAllLanguage(language);
        QCOMPARE(find("KFpsTips")->pos(), QPoint(x, 156));
        QCOMPARE(find("AngleTips")->pos(), QPoint(x, 364));
        for (const char *group : {"Sleep", "KFps", "LongRange", "Angle"}) {
            const QByteArray name(group);
            QCOMPARE(find((name + "Tips").constData())->x(), x);
            QVERIFY(find((name + "Caption").constData())->geometry().right() < x);
        }
    }

    void thePageOpensInItsFirstRow()
    {
        emit PostMsg::instance()->SigtVis(2);
        QVERIFY(allShown(KfpsGroup, false));
        find<QPushButton>("pushButton")->click();
        QVERIFY(allShown(KfpsGroup, true) && allShown(LongRangeGroup, true));
    }

    void eachModelHasItsPicture()
    {
        auto *mouse = find<RotatableWidget>("AngleMouse");
        QVector<QImage> pictures;
        for (int model = 0; model < 4; ++model) {
            selectModel(model);
            emit PostMsg::instance()->SigtVis(0);
            pictures << mouse->grab().toImage();
            for (int other = 0; other < model; ++other)
                QVERIFY(pictures[model] != pictures[other]);
        }
        selectModel(20); // without a picture of its own
        emit PostMsg::instance()->SigtVis(0);
        QVERIFY(mouse->grab().toImage() == pictures[0]);
    }

    void thePictureTurnsWithTheAngle()
    {
        auto *mouse = find<RotatableWidget>("AngleMouse");
        paint(recordWith(0, 6, -30));
        const QImage left = mouse->grab().toImage();
        paint(recordWith(0, 6, 30));
        QVERIFY(left != mouse->grab().toImage());
    }

    // ---- Texts

    void textsComeFromTheLanguage()
    {
        QCOMPARE(find<QLabel>("SleepCaption")->text(), QString("Sleep after"));
        QCOMPARE(find<QLabel>("KFpsCaption")->text(), QString("High frame rate"));
        QCOMPARE(find<QLabel>("LongRangeCaption")->text(), QString("Long-range mode"));
        QCOMPARE(find<QLabel>("AngleCaption")->text(), QString("Sensor angle"));
        using language::Section;
        QVERIFY(find("SleepTips")
                    ->toolTip()
                    .contains(language::text(Section::AdvancedSettings, "SleepTimeTips", 0)));
        QVERIFY(find("KFpsTips")
                    ->toolTip()
                    .contains(language::text(Section::AdvancedSettings, "scanningTips", 0)));
        QVERIFY(find("AngleTips")
                    ->toolTip()
                    .contains(language::text(Section::AdvancedSettings, "AngularModeTips", 0)));
        QCOMPARE(find<QLabel>("LongRangeText")->text(),
                 language::text(Section::AdvancedSettings, "LongDistanceTips", 0));
        const char *const times[] = {"10 seconds", "30 seconds", "1 minute",   "2 minutes",
                                     "3 minutes",  "5 minutes",  "10 minutes", "15 minutes"};
        for (int i = 0; i < 8; ++i)
            QCOMPARE(sleep()->itemText(i), QString(times[i]));
        QCOMPARE(find<QLabel>("label_Min")->text(), QString::fromUtf8("-30°"));
        QCOMPARE(find<QLabel>("label_Zero")->text(), QString::fromUtf8("0°"));
        QCOMPARE(find<QLabel>("label_Max")->text(), QString::fromUtf8("+30°"));
        for (QWidget *control : {static_cast<QWidget *>(sleep()), static_cast<QWidget *>(kfps()),
                                 static_cast<QWidget *>(longRange()), static_cast<QWidget *>(angle())})
            QVERIFY(!control->accessibleName().isEmpty() && !control->accessibleDescription().isEmpty());
    }

    void aLanguageWithoutTextsLeavesThem()
    {
        const fixture::WithoutTexts bare;
        emit PostMsg::instance()->SigAllLanguage(0);
        QVERIFY(find("AngleTips")->toolTip().isEmpty());
        QCOMPARE(find<QLabel>("AngleCaption")->text(), QString("Sensor angle"));
        QCOMPARE(sleep()->itemText(0), QString("10 seconds"));
    }

    void theKeyboardWalksAsTheEyeReads()
    {
        QVector<QWidget *> order;
        sleep()->setFocus();
        page->activateWindow();
        QApplication::setActiveWindow(page.get());
        for (int i = 0; i < 4; ++i) {
            order << QApplication::focusWidget();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order, (QVector<QWidget *>{sleep(), kfps(), longRange(), angle()}));
    }

    // ---- The tab that is kept out of view

    void theSecondTabIsBuiltAndOutOfView()
    {
        QCOMPARE(find<QTabWidget>("tabWidget")->count(), 1);
        QVERIFY(!page->findChild<QWidget *>("checkBox_2"));
        QWidget *hidden = hiddenTab();
        QVERIFY(hidden && !hidden->isVisible());
        const auto curves = hidden->findChildren<CurvePlotWidget *>();
        QCOMPARE(curves.size(), 4);
        for (const CurvePlotWidget *curve : curves)
            QVERIFY(!curve->isEditable());
        QVERIFY(hidden->findChild<QTabWidget *>("curveTabs")->tabBar()->isHidden());
        QVERIFY(!hidden->findChild<QCheckBox *>("checkBox_2")->accessibleName().isEmpty());
        QVERIFY(hidden->findChild<QSlider *>("StepSlider")->isHidden());
        QCOMPARE(hidden->findChild<QSlider *>("StepSlider")->value(), 1);
        QCOMPARE(hidden->findChild<QSlider *>("StepSlider")->maximum(), 2);
        QVERIFY(hidden->findChild<QLabel *>("SensitivityText")->text().contains("<br>"));
        QVERIFY(!hidden->findChild<QLabel *>("SensitivityText")->text().contains('\n'));
    }

    void theBoxesOfTheSecondTabChooseItsCurve()
    {
        QWidget *hidden = hiddenTab();
        auto *tabs = hidden->findChild<QTabWidget *>("curveTabs");
        auto *all = hidden->findChild<QCheckBox *>("checkBox_2");
        QVector<QCheckBox *> boxes;
        for (int i = 3; i <= 6; ++i)
            boxes << hidden->findChild<QCheckBox *>(QString("checkBox_%1").arg(i));
        for (const bool on : {true, false, true}) {
            const QString before = boxes[0]->styleSheet();
            all->setChecked(on);
            for (const QCheckBox *box : boxes)
                QCOMPARE(box->isEnabled(), on);
            QVERIFY(boxes[0]->styleSheet() != before);
        }
        for (const int i : {2, 0, 3, 1}) {
            boxes[i]->click();
            QCOMPARE(tabs->currentIndex(), i);
            for (int other = 0; other < 4; ++other)
                QCOMPARE(boxes[other]->isChecked(), other == i);
        }
        QCOMPARE(updates(), std::size_t(0));
        QCOMPARE(int(fake.calls().size()), 0);
    }

    void theHiddenTabEndsWithThePage()
    {
        const QPointer<QWidget> hidden = hiddenTab();
        page.reset();
        QVERIFY(!hidden);
    }

    void performanceOfTheOtherPageChangesNothing()
    {
        const QImage before = page->grab().toImage();
        emit PostMsg::instance()->Sig20KOpen(true);
        emit PostMsg::instance()->Sig20KOpen(false);
        QVERIFY(page->grab().toImage() == before);
        QCOMPARE(int(fake.calls().size()), 0);
    }
};

TEST_CLASS(tst_AdvancedGroups, AdvancedSetUp)
#include "tst_advancedgroups.moc"
