// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The lamps of the preview: their colours in each mode, and that they move only while their light does and
// they can be seen. And the field of hues with the colours that are taken from it.
#include "lighting/HueField.h"
#include "lighting/LightPreview.h"
#include "tests/support/StillDesktop.h"
#include "tests/support/TestMain.h"
#include "tests/widget/lighting/LightPage.h"

#include <QDir>
#include <QScrollArea>
#include <QScrollBar>

namespace
{

const QColor Own(200, 100, 50);
constexpr int TurnMs = 6000; // at speed 1

QColor lamp(int mode, double place, qint64 ms, int speed = 1, int brightness = 10)
{
    const ShownLight light{mode, Own, brightness, speed};
    return lampColor(light, place, turnsIn(light, ms));
}

} // namespace

class tst_LightPreview : public QObject
{
    Q_OBJECT

private:
    static int frames(LightPreview &preview, int count)
    {
        struct Frames : QObject {
            int seen = 0;
            bool eventFilter(QObject *, QEvent *event) override
            {
                seen += event->type() == QEvent::Timer;
                return false;
            }
        } counter;
        preview.installEventFilter(&counter);
        return QTest::qWaitFor([&] { return counter.seen >= count; }) ? counter.seen : 0;
    }

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void init() { fixture::clean(); }

    // ---- Colours

    void offIsDark()
    {
        for (const int mode : {0, -1, 7, 255})
            for (const qint64 ms : {0, 1000, 5000})
                QCOMPARE(lamp(mode, 0.5, ms), QColor(Qt::black));
        QVERIFY(!moves({0, Own, 5, 5}) && !moves({7, Own, 5, 5}));
    }

    void steadyIsTheColorAtItsBrightness()
    {
        QVERIFY(!moves({Steady, Own, 5, 5}));
        QCOMPARE(lamp(Steady, 0, 0), Own);
        QCOMPARE(lamp(Steady, 0.7, 12345), Own);
        QCOMPARE(lamp(Steady, 0, 0, 1, 5), QColor(100, 50, 25));
    }

    void breathingBreathesInTheColor()
    {
        QCOMPARE(lamp(Breathing, 0, 0), Own);
        int last = 256;
        for (int ms = 0; ms <= TurnMs / 2; ms += TurnMs / 20) {
            const int value = lamp(Breathing, 0, ms).value();
            QVERIFY(value < last);
            last = value;
            QCOMPARE(lamp(Breathing, 0.9, ms).value(), value); // all lamps together
        }
        QVERIFY(last > 0 && last < 20);
        QCOMPARE(lamp(Breathing, 0, TurnMs), Own);
        QCOMPARE(lamp(Breathing, 0, 1500, 10), Own); // the fastest takes a quarter of the time
    }

    void flowFlows()
    {
        for (int ms = 0; ms < TurnMs; ms += 500) {
            QVERIFY(lamp(ColorFlow, 0.2, ms) != lamp(ColorFlow, 0.6, ms));
            // What a lamp shows, its neighbour shows later.
            const double later = 0.25;
            QVERIFY(qAbs(lamp(ColorFlow, 0.2, ms).hue() -
                         lamp(ColorFlow, 0.2 + later, ms + qint64(TurnMs * later)).hue()) <= 1);
        }
    }

    void neonSteps()
    {
        QSet<QRgb> colors;
        for (int ms = 0; ms < TurnMs; ms += 10) {
            QCOMPARE(lamp(Neon, 0.1, ms), lamp(Neon, 0.9, ms));
            colors << lamp(Neon, 0, ms).rgb();
        }
        QCOMPARE(colors.size(), 7);
    }

    void eachColorBreathHasItsColor()
    {
        int last = -360;
        for (int breath = 0; breath < 12; ++breath) {
            const QColor now = lamp(ColorBreathing, 0, qint64(TurnMs) * breath);
            QCOMPARE(now.value(), 255);
            QVERIFY(qAbs(now.hue() - last) > 60);
            last = now.hue();
        }
        QVERIFY(lamp(ColorBreathing, 0, TurnMs / 2).value() < 20);
    }

    void theWaveGoesAlongTheLamps()
    {
        QCOMPARE(lamp(ColorWave, 0.3, 777, 1), lamp(ColorWave, 0.3, 777, 10)); // it has no speed
        QSet<int> values, hues;
        for (int i = 0; i < 10; ++i) {
            values << lamp(ColorWave, i / 10.0, 0).value();
            hues << lamp(ColorWave, i / 10.0, 0).hue();
        }
        QVERIFY(values.size() > 3 && hues.size() > 8);
    }

    // ---- Motion

    void itMovesWhileItsLightDoes()
    {
        LightPreview preview;
        preview.resize(200, 100);
        preview.show();
        QVERIFY(QTest::qWaitForWindowExposed(&preview));
        for (int mode = 0; mode < LightModeCount; ++mode) {
            preview.setLight({mode, Own, 10, 5});
            QCOMPARE(preview.isMoving(), mode != 0 && mode != Steady);
        }
        QVERIFY(frames(preview, 3) >= 3);
        QVERIFY(LightPreview::FrameMs >= 34); // no more than 30 a second
    }

    // The speed changes from then on: the lamps do not jump to where they would be by now.
    void aChangeOfTheSpeedGoesOnFromThere()
    {
        LightPreview preview;
        preview.resize(200, 100);
        preview.show();
        QVERIFY(QTest::qWaitForWindowExposed(&preview));
        preview.setLight({Breathing, Own, 10, 1});
        QVERIFY(frames(preview, 3) >= 3);
        const double before = preview.turns();
        QVERIFY(before > 0);
        const QImage seen = preview.grab().toImage();
        preview.setLight({Breathing, Own, 10, 10});
        QCOMPARE(preview.turns(), before);
        QCOMPARE(preview.grab().toImage(), seen);
        QVERIFY(frames(preview, 3) >= 3);
        QVERIFY(preview.turns() > before);
        preview.setLight({Neon, Own, 10, 10});
        QCOMPARE(preview.turns(), 0.0); // another mode begins at its beginning
    }

    void itRestsWhileItIsNotSeen()
    {
        LightPage page;
        page.setBar({1, 0, 0, 0, 4, 4, 1});
        page.read(lightRecord(1));
        auto *mouse = page.find<LightPreview>("lightPreview");
        auto *receiver = page.find<LightPreview>("lightPreview_2");
        auto *bar = page.find<QScrollBar>("verticalScrollBar");
        QTRY_VERIFY(mouse->isMoving() && receiver->isMoving());
        bar->setValue(bar->maximum());
        QTRY_VERIFY(!mouse->isMoving() && receiver->isMoving());
        bar->setValue(0);
        QTRY_VERIFY(mouse->isMoving());
        page.page->hide();
        QVERIFY(!mouse->isMoving() && !receiver->isMoving());
        page.read(lightRecord(4)); // and a record wakes nothing
        QVERIFY(!mouse->isMoving());
        page.page->show();
        QTRY_VERIFY(mouse->isMoving() && receiver->isMoving());
        page.page->showMinimized();
        QTRY_VERIFY(!mouse->isMoving() && !receiver->isMoving());
    }

    void itFollowsTheControls()
    {
        LightPage page;
        page.setBar(SomeBar);
        page.read(lightRecord(2));
        for (const LightCase &light : LightCases) {
            auto *preview = page.own<LightPreview>("lightPreview", light);
            page.brightness(light)->setValue(9);
            page.speed(light)->setValue(2);
            page.channel(light, 0)->setValue(201);
            QCOMPARE(preview->light().brightness, 9);
            QCOMPARE(preview->light().speed, 2);
            QCOMPARE(preview->light().color, page.color(light));
            const int narrow = preview->width();
            page.mode(light)->setCurrentIndex(4);
            QCOMPARE(preview->light().mode, 4);
            QVERIFY(preview->isVisible() && preview->width() > 2 * narrow); // no hole beside it
        }
    }

    // Where the desktop asks for none, a moment stands still.
    void withoutMotionItStandsStill()
    {
        LightPreview moved; // until the desktop asks for none
        moved.resize(300, 100);
        moved.setLight({Breathing, Own, 10, 5});
        moved.show();
        QVERIFY(QTest::qWaitForWindowExposed(&moved));
        QVERIFY(frames(moved, 3) >= 3);
        QVERIFY(moved.turns() > 0);
        moved.hide();
        const support::StillDesktop still;
        LightPreview preview;
        preview.resize(300, 100);
        preview.setLight({Breathing, Own, 10, 5});
        preview.show();
        QVERIFY(QTest::qWaitForWindowExposed(&preview));
        const QImage shot = preview.grab().toImage();
        QVERIFY(!preview.isMoving());
        bool lit = false;
        for (int x = 0; x < shot.width(); ++x)
            lit = lit || shot.pixelColor(x, shot.height() / 2).value() >= Own.value();
        QVERIFY(lit);
        moved.show();
        QVERIFY(QTest::qWaitForWindowExposed(&moved));
        QCOMPARE(moved.grab().toImage(), shot);
        QCOMPARE(moved.turns(), 0.0);
    }

    // ---- The field of hues

    void eachPointOfTheFieldHasItsColor()
    {
        HueField field;
        field.resize(176, 104);
        const QImage shot = field.grab().toImage();
        for (int y = 0; y < field.height(); y += 7)
            for (int x = 0; x < field.width(); x += 7)
                QCOMPARE(field.colorAt({x, y}), shot.pixelColor(x, y));
        QCOMPARE(field.colorAt({0, 0}), QColor(255, 0, 0));
        QCOMPARE(field.colorAt({88, 103}), QColor(255, 255, 255));
        QVERIFY(!field.colorAt({-1, 0}).isValid());
        QVERIFY(!field.colorAt({0, 104}).isValid());
    }

    void theMarkerStandsAtTheColor()
    {
        HueField field;
        field.resize(176, 104);
        const QImage bare = field.grab().toImage();
        for (const QColor &color : {QColor(46, 166, 223), QColor(139, 178, 36), QColor(255, 155, 51)}) {
            field.setColor(color);
            const QPoint place = field.placeOf(color);
            QVERIFY(qAbs(field.colorAt(place).hue() - color.hue()) <= 3);
            QVERIFY(qAbs(field.colorAt(place).saturation() - color.saturation()) <= 4);
            const QImage marked = field.grab().toImage();
            QCOMPARE(marked.pixelColor(place), color);
            QVERIFY(marked != bare);
            // Under the pointer the field shows its own colours.
            field.setAttribute(Qt::WA_UnderMouse);
            QCOMPARE(field.grab().toImage(), bare);
            field.setAttribute(Qt::WA_UnderMouse, false);
        }
        field.setColor(Qt::red); // at a corner the whole marker is seen
        QVERIFY(field.grab().toImage() != bare);
    }
};

TEST_CLASS(tst_LightPreview, fixture::ShippedLooks)

#include "tst_lightpreview.moc"
