// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The marker under the stages, dragged with the pointer: every edge of every band, the limits, and a mouse
// that does not answer.
#include "tests/support/StillDesktop.h"
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/DpiFixture.h"

#include <QScopeGuard>

class tst_DpiMarker : public QObject
{
    Q_OBJECT

private:
    // Where the pointer is let go, and the stage that is then current.
    static void drop(const char *name, int from, int x, int to, int shown = DpiStageLimit)
    {
        QTest::addRow("%s, from %d to x %d", name, from + 1, x) << from << x << to << shown;
    }
    static int home(int stage) { return StagePoint[std::size_t(stage)].x(); }
    // A stage from which a shift stays within the row, in the given direction.
    static int start(int shift, bool right) { return right ? 0 : shift; }

private slots:
    void bands_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("to");
        QTest::addColumn<int>("shown");
        for (const MarkerBand &band : MarkerBands) {
            const int right = start(band.shift, true), left = start(band.shift, false);
            drop("first of the band", right, home(right) + band.rightFrom, band.shift);
            drop("last of the band", right, home(right) + band.rightTo, band.shift);
            drop("before the band", right, home(right) + band.rightFrom - 1, right);
            drop("behind the band", right, home(right) + band.rightTo + 1, right);
            // A band that reaches beyond the track is met from a stage farther right, where there is one.
            const int from = left + (home(left) + band.leftFrom < MarkerLeftLimit && left < 7 ? 1 : 0);
            drop("first of the band", from, home(from) + band.leftFrom, from - band.shift);
            drop("last of the band", from, home(from) + band.leftTo, from - band.shift);
            drop("before the band", from, home(from) + band.leftFrom - 1, from);
            drop("behind the band", from, home(from) + band.leftTo + 1, from);
        }
        drop("between the bands", 0, home(0) + 140, 0);
        drop("where it was", 3, home(3) + 14, 3);
    }
    void bands()
    {
        QFETCH(int, from);
        QFETCH(int, x);
        QFETCH(int, to);
        DpiEditor editor(FastModel, from);
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.CurrentDpiStage = uint8_t(to);
        QSignalSpy shown(PostMsg::instance(), &PostMsg::SigAddSensor);
        editor.drag({x, 168});
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(!memcmp(&record, &wanted, sizeof record));
        QCOMPARE(int(editor.fake().updates().size()), from == to ? 0 : 1);
        QCOMPARE(shown.count(), from == to ? 0 : 1);
        QCOMPARE(editor.difference(), QString());
    }

    void figures()
    {
        const int points[] = {27, 118, 209, 300, 391, 483, 573, 664};
        for (int i = 0; i < DpiStageLimit; ++i)
            QCOMPARE(StagePoint[std::size_t(i)], QPoint(points[i], 154));
        const int limits[] = {69, 160, 251, 342, 433, 524, 612};
        const int bands[][4] = {{78, 129, -102, -51},   {168, 214, -192, -144}, {264, 317, -284, -236},
                                {361, 389, -369, -327}, {443, 495, -465, -411}, {538, 591, -556, -504},
                                {623, 669, -646, -599}};
        for (std::size_t i = 0; i < MarkerBands.size(); ++i) {
            const MarkerBand &band = MarkerBands[i];
            QCOMPARE(RightLimits[i], limits[i]);
            QCOMPARE(band.shift, int(i) + 1);
            QCOMPARE(band.rightFrom, bands[i][0]);
            QCOMPARE(band.rightTo, bands[i][1]);
            QCOMPARE(band.leftFrom, bands[i][2]);
            QCOMPARE(band.leftTo, bands[i][3]);
        }
    }

    // The table itself, also where no drop on the track can reach.
    void everyDistance()
    {
        for (int distance = -800; distance <= 800; ++distance) {
            int wanted = 0;
            for (const MarkerBand &band : MarkerBands) {
                if (distance >= band.rightFrom && distance <= band.rightTo)
                    wanted = band.shift;
                if (distance >= band.leftFrom && distance <= band.leftTo)
                    wanted = -band.shift;
            }
            QCOMPARE(markerShift(distance).value_or(0), wanted);
        }
    }

    void endsOfTheTrack_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("to");
        QTest::addColumn<int>("shown");
        drop("left of the track", 1, 14, 1);
        drop("in the first band from the left", 1, 16, 0);
        drop("last of the track", 4, 706, 7);
        drop("right of the track", 4, 707, 4);
        drop("the edge of the panel", 4, 727, 4);
    }
    void endsOfTheTrack() { bands(); }

    void limitOfTheShownStages_data()
    {
        QTest::addColumn<int>("shown");
        for (int shown = 1; shown < DpiStageLimit; ++shown)
            QTest::addRow("%d stages", shown) << shown;
    }
    // One pixel behind the limit, the current stage is written once more.
    void limitOfTheShownStages()
    {
        QFETCH(int, shown);
        const int limit = RightLimits[std::size_t(shown - 1)];
        DpiEditor editor(FastModel, 0, shown);
        editor.drag({limit + 1, 168});
        QCOMPARE(int(editor.fake().updates().size()), 1);
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 0);
        QCOMPARE(editor.difference(), QString());
        editor.fake().clearCalls();
        editor.drag({limit, 168});
        const int d = limit - home(0);
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), markerShift(d).value_or(0));
        QCOMPARE(int(editor.fake().updates().size()), markerShift(d) ? 1 : 0);
        QCOMPARE(editor.difference(), QString());
    }

    void allStagesHaveNoLimit()
    {
        DpiEditor editor(FastModel, 0);
        editor.drag({home(7) + 14, 168});
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 7);
        QCOMPARE(editor.difference(), QString());
    }

    // Behind the edit, and it is where it belongs at once.
    void theMarkerFadesIntoItsPlace()
    {
        const QTemporaryDir config; // says nothing of motion
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        const auto restored = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"); });
        DpiEditor editor(FastModel, 1);
        const auto cover = [&editor] { return editor.panel.findChild<QWidget *>("MotionCover"); };
        QVERIFY(!cover());
        editor.button(4)->click();
        QVERIFY(cover() && cover()->isVisible());
        for (const int stage : {1, 4})
            QVERIFY(
                cover()->geometry().contains(QRect(StagePoint[std::size_t(stage)], editor.marker()->size())));
        QCOMPARE(editor.difference(), QString());
        editor.drag({home(2) + 14, 168}); // it can be taken meanwhile
        QCOMPARE(editor.difference(), QString());
        QCOMPARE(editor.panel.currentStage(), 2);
        QTRY_VERIFY(!cover());
        {
            const support::StillDesktop still;
            editor.button(0)->click();
            QVERIFY(!cover());
        }
        QCOMPARE(editor.marker()->pos(), StagePoint[0]);
    }

    void aPointerThatLeavesTheTrackLetsGo()
    {
        DpiEditor editor(FastModel, 2);
        QWindow *window = editor.panel.windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, editor.marker()->geometry().center());
        QTest::mouseMove(window, QPoint(home(3) + 14, 168));
        QCOMPARE(editor.marker()->x(), home(3) + 1);
        QTest::mouseMove(window, QPoint(home(3) + 14, 60));
        QCOMPARE(editor.marker()->pos(), StagePoint[2]);
        QTest::mouseMove(window, QPoint(home(5) + 14, 168)); // no longer dragged
        QCOMPARE(editor.marker()->pos(), StagePoint[2]);
        QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(home(5) + 14, 168));
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void theStageThatADropWouldSelectIsLit()
    {
        DpiEditor editor(FastModel, 2, 6);
        const auto lit = [&editor] {
            QList<int> found;
            for (int i = 0; i < DpiStageLimit; ++i)
                if (editor.button(i)->styleSheet().contains("Target"))
                    found << i;
            return found;
        };
        QWindow *window = editor.panel.windowHandle();
        const auto moveTo = [window](int x) { QTest::mouseMove(window, QPoint(x, 168)); };
        QCOMPARE(editor.marker()->cursor().shape(), Qt::PointingHandCursor);
        QTest::mousePress(window, Qt::LeftButton, {}, editor.marker()->geometry().center());
        QCOMPARE(lit(), QList<int>());
        moveTo(home(4) + 14);
        QCOMPARE(lit(), QList<int>{4});
        moveTo(home(0) + 14);
        QCOMPARE(lit(), QList<int>{0});
        moveTo(home(2) + 14); // where it was
        QCOMPARE(lit(), QList<int>());
        moveTo(home(7) + 14); // not shown
        QCOMPARE(lit(), QList<int>());
        moveTo(home(3) + 14);
        QCOMPARE(lit(), QList<int>{3});
        QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(home(3) + 14, 168));
        QCOMPARE(lit(), QList<int>());
        QCOMPARE(editor.panel.currentStage(), 3);
    }

    void aPressBesideTheMarkerDragsNothing()
    {
        DpiEditor editor(FastModel, 2);
        QWindow *window = editor.panel.windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, QPoint(home(4) + 14, 168));
        QTest::mouseMove(window, QPoint(home(5) + 14, 168));
        QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(home(5) + 14, 168));
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void aDragWhoseReleaseIsLostIsOver_data()
    {
        QTest::addColumn<QString>("lost");
        for (const char *lost : {"behind a modal window", "while hidden", "in another program"})
            QTest::newRow(lost) << lost;
    }
    void aDragWhoseReleaseIsLostIsOver()
    {
        QFETCH(QString, lost);
        DpiEditor editor(FastModel, 2);
        QWindow *window = editor.panel.windowHandle();
        const QPoint away(home(4) + 14, 168);
        QTest::mousePress(window, Qt::LeftButton, {}, editor.marker()->geometry().center());
        QTest::mouseMove(window, away);
        QCOMPARE(editor.marker()->x(), home(4) + 1);
        if (lost == "behind a modal window") {
            QDialog notice(&editor.panel);
            notice.open();
            QCOMPARE(editor.marker()->pos(), StagePoint[2]);
            QTest::mouseRelease(window, Qt::LeftButton, {}, away);
        } else if (lost == "while hidden") {
            editor.panel.hide();
            QCOMPARE(editor.marker()->pos(), StagePoint[2]);
            QTest::mouseRelease(window, Qt::LeftButton, {}, away);
            editor.panel.show();
        }
        QTest::mousePress(window, Qt::LeftButton, {}, QPoint(home(6) + 14, 168));
        QTest::mouseMove(window, away);
        QCOMPARE(editor.marker()->pos(), StagePoint[2]);
        QTest::mouseRelease(window, Qt::LeftButton, {}, away);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
        editor.drag(away); // and the next drag is one
        QCOMPARE(int(DeviceRecord::copy().CurrentDpiStage), 4);
        QCOMPARE(editor.difference(), QString());
    }

    void theMarkerOfASilentMouseStays()
    {
        DpiEditor editor(FastModel, 2);
        editor.goOffline();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        editor.drag({home(4) + 14, 168});
        QCOMPARE(notice.count(), 0);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void aMouseThatFallsSilentWhileDragged()
    {
        DpiEditor editor(FastModel, 2);
        QWindow *window = editor.panel.windowHandle();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        QTest::mousePress(window, Qt::LeftButton, {}, editor.marker()->geometry().center());
        QTest::mouseMove(window, QPoint(home(4) + 14, 168));
        editor.goOffline();
        QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(home(4) + 14, 168));
        QCOMPARE(notice.count(), 1);
        QVERIFY(editor.nothingWritten());
        QCOMPARE(editor.difference(), QString());
    }

    void unarmedOrBusyTheStageIsOnlyShown()
    {
        DpiEditor editor(FastModel, 2, 6);
        UiArmed = false;
        editor.drag({home(4) + 14, 168});
        QCOMPARE(editor.panel.currentStage(), 4);
        QCOMPARE(editor.checkedButton(), 4);
        QCOMPARE(editor.marker()->pos(), StagePoint[4]);
        editor.drag({RightLimits[5] + 1, 168});
        QCOMPARE(editor.marker()->pos(), StagePoint[4]);
        QVERIFY(editor.nothingWritten());
    }
};

TEST_CLASS(tst_DpiMarker, DpiSetUp)

#include "tst_dpimarker.moc"
