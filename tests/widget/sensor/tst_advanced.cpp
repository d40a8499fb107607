// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The advanced page: what it shows of a record, what each control writes, and the way back when the mouse
// does not answer.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/AdvancedPage.h"

using namespace advanced;

class tst_Advanced : public QObject, private AdvancedPage
{
    Q_OBJECT

private slots:
    void init() { open(); }

    // ---- Painting

    void everyAngleByteIsPaintedAsASignedOne()
    {
        QSignalSpy changed(angle(), &QSlider::valueChanged);
        for (int byte = 0; byte <= 255; ++byte) {
            angle()->setEnabled(false);
            paint(recordWith(0, 6, byte));
            QVERIFY2(showsAngle(byte < 128 ? byte : byte - 256), qPrintable(QString::number(byte)));
            QVERIFY(angle()->isEnabled());
        }
        QCOMPARE(changed.count(), 0);
        QCOMPARE(updates(), std::size_t(0));
        paint(recordWith(0, 6, 0xE2));
        QVERIFY(showsAngle(-30));
        QCOMPARE(find<QLabel>("AngleText")->text(), QString::fromUtf8("-30°"));
    }

    void everySleepByte()
    {
        QSignalSpy chosen(sleep(), QOverload<int>::of(&QComboBox::currentIndexChanged));
        for (int byte = 0; byte <= 255; ++byte) {
            for (const int before : {0, 5}) {
                paint(recordWith(0, uint8_t(SleepBytes[before]), 0));
                paint(recordWith(0, uint8_t(byte), 0));
                const auto *row = std::find(std::begin(SleepBytes), std::end(SleepBytes), byte);
                const int wanted = row == std::end(SleepBytes) ? before : int(row - SleepBytes);
                QVERIFY2(sleep()->currentIndex() == wanted, qPrintable(QString::number(byte)));
            }
        }
        QCOMPARE(chosen.count(), 0); // silently
        QCOMPARE(updates(), std::size_t(0));
    }

    void everyFrameRateByte()
    {
        for (int byte = 0; byte <= 255; ++byte) {
            for (const bool before : {false, true}) {
                kfps()->setChecked(before);
                paint(recordWith(uint8_t(byte), 6, 0));
                QVERIFY2(kfps()->isChecked() == (byte == 1), qPrintable(QString::number(byte)));
            }
        }
        QCOMPARE(updates(), std::size_t(0));
    }

    void bothRecordSignalsPaintAlike()
    {
        fixture::emitOnOtherThread(
            [] { emit PostMsg::instance()->SigUpDataLightSensor(recordWith(1, 90, -7)); });
        QVERIFY(showsAngle(-7) && kfps()->isChecked());
        QCOMPARE(sleep()->currentIndex(), 7);
        emit PostMsg::instance()->SigUpDataSensorUIB(recordWith(0, 1, 7));
        QVERIFY(showsAngle(7) && !kfps()->isChecked());
        QCOMPARE(sleep()->currentIndex(), 0);
        QVERIFY(!SensorPageLoaded); // that is the other page's to say
    }

    void aPaintBringsTheFrameRateIntoUse()
    {
        page = std::make_unique<Advanced>();
        QVERIFY(allShown(KfpsGroup, false));
        paint(recordWith(0, 6, 0));
        QVERIFY(allShown(KfpsGroup, true));
    }

    // ---- Edits and the way back

    void eachAngleIsWritten()
    {
        for (int degrees = -30; degrees <= 30; ++degrees) {
            paint(recordWith(0, 6, degrees == 0 ? 1 : 0));
            DeviceRecord::edit([](FlashDataMap &map) { map.AngleSetValid = 0; });
            const std::size_t before = updates();
            angle()->setValue(degrees);
            QCOMPARE(updates(), before + 1);
            QCOMPARE(int(fake.updates().back().AngleSet), degrees & 0xff);
            QCOMPARE(int(fake.updates().back().AngleSetValid), 1);
            QVERIFY(showsAngle(degrees));
        }
    }

    void aMovedSliderAloneWritesNothing()
    {
        angle()->setTracking(false);
        angle()->setSliderDown(true);
        angle()->setSliderPosition(17);
        QCOMPARE(find<QLabel>("AngleText")->text(), QString::fromUtf8("17°"));
        QCOMPARE(find<RotatableWidget>("AngleMouse")->Angle(), 17);
        QCOMPARE(updates(), std::size_t(0));
        angle()->setSliderDown(false);
        QCOMPARE(updates(), std::size_t(1));
        QCOMPARE(int(DeviceRecord::copy().AngleSet), 17);
    }

    void aDragWritesTheLastPlace()
    {
        const QPoint start(angle()->width() / 2, angle()->height() / 2);
        QTest::mousePress(angle(), Qt::LeftButton, {}, start);
        for (int x = start.x(); x < angle()->width(); x += 3) {
            QMouseEvent moved(QEvent::MouseMove, QPointF(x, start.y()), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(angle(), &moved);
        }
        QTest::mouseRelease(angle(), Qt::LeftButton, {}, QPoint(angle()->width() - 1, start.y()));
        QCOMPARE(angle()->value(), 30);
        QVERIFY(updates() > 20); // the mouse follows while the slider is dragged
        QVERIFY(showsAngle(angle()->value()));
        QCOMPARE(int(DeviceRecord::copy().AngleSet), angle()->value());
    }

    void aSilentMouseTakesTheAngleBack()
    {
        paint(recordWith(0, 6, -12));
        DeviceRecord::edit([](FlashDataMap &map) { map = recordWith(0, 6, -12); });
        fake.setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        angle()->setValue(20);
        QVERIFY(showsAngle(-12) && !angle()->isEnabled());
        QCOMPARE(notice.count(), 1);
        QCOMPARE(notice[0][0].toInt(), 0);
        QCOMPARE(updates(), std::size_t(0));
        QCOMPARE(int(DeviceRecord::copy().AngleSet), 256 - 12);
        QCOMPARE(int(DeviceRecord::copy().AngleSetValid), 0);
        // A disabled one asks nobody and goes back again.
        const int asked = fake.count("UsbFinderC_GetDeviceOnLine");
        angle()->setValue(5);
        QVERIFY(showsAngle(-12));
        QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLine"), asked);
        QCOMPARE(notice.count(), 1);
        fake.setOnline("dev", true);
        angle()->setValue(6);
        QVERIFY(showsAngle(-12));
        QCOMPARE(updates(), std::size_t(0));
        // Until it is painted again.
        paint(recordWith(0, 6, 3));
        angle()->setValue(6);
        QCOMPARE(updates(), std::size_t(1));
        QVERIFY(showsAngle(6));
    }

    void theAngleGoesBackToTheLastOneThatWasTaken()
    {
        angle()->setValue(9);
        angle()->setValue(14);
        fake.setOnline("dev", false);
        angle()->setValue(-30);
        QVERIFY(showsAngle(14));
    }

    void theAngleNeedsTheOpenPage_data()
    {
        QTest::addColumn<bool>("armed");
        QTest::addColumn<bool>("busy");
        QTest::newRow("not armed") << false << false;
        QTest::newRow("busy") << true << true;
        QTest::newRow("both") << false << true;
    }
    void theAngleNeedsTheOpenPage()
    {
        QFETCH(bool, armed);
        QFETCH(bool, busy);
        UiArmed = armed;
        SensorPageBusy = busy;
        angle()->setValue(8);
        QVERIFY(showsAngle(8)); // shown, but no edit
        QCOMPARE(updates(), std::size_t(0));
        QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLine"), 0);
        angle()->setEnabled(false);
        angle()->setValue(9);
        QVERIFY(showsAngle(0)); // what was not taken is not kept
    }

    void theFrameRateIsWritten()
    {
        kfps()->click();
        QCOMPARE(int(DeviceRecord::copy().KFps), 1);
        kfps()->click();
        QCOMPARE(int(DeviceRecord::copy().KFps), 0);
        QCOMPARE(updates(), std::size_t(2));
    }

    void eachSleepTimeIsWritten()
    {
        for (int index = 0; index < 8; ++index) {
            chooseSleep(index);
            QCOMPARE(updates(), std::size_t(index + 1));
            QCOMPARE(int(DeviceRecord::copy().StopCloseTime), SleepBytes[index]);
        }
        auto *panel = page->findChild<StopCloseTime *>("StopCloseTime");
        const int beyond[] = {180, 210, 240};
        for (int index = 8; index < 11; ++index) {
            panel->on_StopClose_activated(index);
            QCOMPARE(int(DeviceRecord::copy().StopCloseTime), beyond[index - 8]);
        }
        for (const int index : {-1, 11, 1000})
            panel->on_StopClose_activated(index);
        QCOMPARE(updates(), std::size_t(11));
    }

    void theSleepBoxTakesAPersonsKeys()
    {
        sleep()->setFocus();
        QTest::keyClick(sleep(), Qt::Key_Down);
        QCOMPARE(sleep()->currentIndex(), 3);
        QCOMPARE(int(DeviceRecord::copy().StopCloseTime), 12);
    }

    void theSleepTimeGoesBackToTheLastOneThatWasTaken()
    {
        chooseSleep(4);
        fake.setOnline("dev", false);
        for (int index = 0; index < 8; ++index) {
            chooseSleep(index);
            QCOMPARE(sleep()->currentIndex(), 4);
        }
        paint(recordWith(0, 1, 0));
        chooseSleep(6);
        QCOMPARE(sleep()->currentIndex(), 0); // the painted one is what the mouse has
    }

    void theSilentSetterKeepsToItsItems()
    {
        auto *panel = page->findChild<StopCloseTime *>("StopCloseTime");
        panel->SetStopClose(5);
        for (const int index : {-1, 8, 10, 99})
            panel->SetStopClose(index);
        QCOMPARE(sleep()->currentIndex(), 5);
        QCOMPARE(sleep()->count(), 8);
    }

    // ---- Any sequence

    void twoThousandEditsLeavePageAndRecordInAgreement()
    {
        std::mt19937 random(20261121);
        const auto below = [&random](int limit) { return int(random() % uint32_t(limit)); };
        DeviceRecord::edit([](FlashDataMap &map) { map = recordWith(0, 6, 0); });
        bool mode = false;
        for (int step = 0; step < 2000; ++step) {
            switch (below(7)) {
            case 0:
            case 1:
                angle()->setValue(below(61) - 30);
                break;
            case 2:
                kfps()->click();
                break;
            case 3:
                chooseSleep(below(8));
                break;
            case 4:
                longRange()->click();
                break;
            case 5:
                fake.setOnline("dev", below(3) > 0);
                break;
            default:
                paint(DeviceRecord::copy());
            }
            const FlashDataMap record = DeviceRecord::copy();
            mode = fake.device("dev").longRange;
            QVERIFY2(showsAngle(int8_t(record.AngleSet)) && kfps()->isChecked() == (record.KFps == 1) &&
                         SleepBytes[sleep()->currentIndex()] == record.StopCloseTime &&
                         longRange()->isChecked() == mode,
                     qPrintable(QString::number(step)));
        }
        QVERIFY(updates() > 500);
    }
};

TEST_CLASS(tst_Advanced, AdvancedSetUp)
#include "tst_advanced.moc"
