// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The colour that a press takes: from which screen, in a session in which no program may look at the screen,
// and what a press or a release leaves alone. The real pointer is in the test of the real pick.
#include "lighting/ScreenColor.h"
#include "tests/support/TestMain.h"
#include "tests/widget/lighting/PickPage.h"

namespace
{

constexpr const char *SessionVariables[] = {"XDG_SESSION_TYPE", "WAYLAND_DISPLAY"};

QImage filled(const QColor &color)
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class tst_ColorPick : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<PickPage> page;

    void open()
    {
        page = std::make_unique<PickPage>();
        QVERIFY(QTest::qWaitForWindowExposed(page->page.get()));
    }
    QWindow *window() const { return page->page->windowHandle(); }
    HueField *field(int index) const { return page->field(index); }
    QPoint at(int index, const QPoint &point) const { return field(index)->mapTo(page->page.get(), point); }
    int writes(int index) const
    {
        return index == ReceiverGroup ? fake.count("UsbFinderC_SetDongleRGBBarMode")
                                      : int(fake.updates().size());
    }

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void init() { qputenv("WAYLAND_DISPLAY", "wayland-0"); }
    void cleanup()
    {
        page.reset();
        for (const char *variable : SessionVariables)
            qunsetenv(variable);
    }

    // ---- The screens

    void thePointIsCountedFromItsOwnScreen()
    {
        const QVector<QRect> screens = {{1920, 0, 1280, 800}, {0, 100, 1920, 1080}};
        QVector<QPair<int, QPoint>> asked;
        const auto pick = [&](const QPoint &point, const QImage &picture) {
            return colorOnScreens(screens, point, [&](int screen, const QPoint &place) {
                asked << qMakePair(screen, place);
                return picture;
            });
        };
        QCOMPARE(pick({1920, 0}, filled(Qt::red)), QColor(Qt::red));
        QCOMPARE(pick({3199, 799}, filled(Qt::green)), QColor(Qt::green));
        QCOMPARE(pick({7, 105}, filled(Qt::blue)), QColor(Qt::blue));
        QCOMPARE(asked, (QVector<QPair<int, QPoint>>{{0, {0, 0}}, {0, {1279, 799}}, {1, {7, 5}}}));
        QVERIFY(!pick({7, 99}, filled(Qt::red)).isValid()); // above the second one
        QVERIFY(!pick({3200, 10}, filled(Qt::red)).isValid());
        QCOMPARE(asked.size(), 3);
        QCOMPARE(pick({7, 105}, QImage()), QColor(Qt::blue)); // what the last pick left
    }

    // ---- Where no program may look at the screen

    void inASessionOfWayland_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("display");
        QTest::addColumn<bool>("readable");
        QTest::newRow("by its type") << QByteArray("wayland") << QByteArray() << false;
        QTest::newRow("by its display") << QByteArray("tty") << QByteArray("wayland-0") << false;
        QTest::newRow("x11") << QByteArray("x11") << QByteArray() << true;
    }
    void inASessionOfWayland()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, display);
        QFETCH(bool, readable);
        qputenv("XDG_SESSION_TYPE", type);
        qputenv("WAYLAND_DISPLAY", display);
        QCOMPARE(screenCanBeRead(), readable);
        open();
        const QString tip =
            language::text(language::Section::light, readable ? "ColorPick" : "ColorPickHere", 0);
        QVERIFY(!tip.isEmpty());
        for (int index = 0; index < 2; ++index) {
            QCOMPARE(field(index)->accessibleDescription(), tip);
            QVERIFY(field(index)->toolTip().contains(tip.toHtmlEscaped()));
            for (const QPoint &point : {QPoint(20, 90), QPoint(101, 41), QPoint(0, 0), QPoint(175, 103)}) {
                if (readable)
                    break;
                QTest::mouseClick(window(), Qt::LeftButton, {}, at(index, point));
                QCOMPARE(page->color(LightCases[index]), field(index)->colorAt(point));
                QCOMPARE(page->written(index), field(index)->colorAt(point));
            }
        }
    }

    // ---- The place of the press

    // On a slow machine the pointer has moved on when the press is handled.
    void thePlaceIsThatOfThePress()
    {
        const int index = MouseGroup;
        qunsetenv("WAYLAND_DISPLAY");
        open();
        for (const QPoint &point : {QPoint(20, 90), QPoint(101, 41)}) {
            QCursor::setPos(field(index)->mapToGlobal({60, 60}));
            QTest::mouseClick(window(), Qt::LeftButton, {}, at(index, point));
            QCOMPARE(page->written(index), field(index)->colorAt(point));
        }
    }

    // ---- What a press and a release leave alone

    void aReleaseTakesAColorOfItsOwnOnlyElsewhere_data() { eachLight(); }
    void aReleaseTakesAColorOfItsOwnOnlyElsewhere()
    {
        QFETCH(int, index);
        open();
        const QPoint first(60, 40);
        const auto drag = [&](const QPoint &to) {
            QTest::mousePress(window(), Qt::LeftButton, {}, at(index, first));
            QCOMPARE(page->written(index), field(index)->colorAt(first));
            const int before = writes(index);
            QTest::mouseRelease(window(), Qt::LeftButton, {}, to);
            if (writes(index) == before)
                QCOMPARE(page->written(index), field(index)->colorAt(first));
        };
        drag(at(index, first + QPoint(2, 1))); // a hand that trembles
        QCOMPARE(page->written(index), field(index)->colorAt(first));
        drag(at(index, {170, 90}));
        QCOMPARE(page->written(index), field(index)->colorAt({170, 90}));
        drag({850, 30}); // outside the field
        QCOMPARE(page->written(index), field(index)->colorAt(first));
        const int before = writes(index);
        QTest::mouseClick(window(), Qt::LeftButton, {}, {850, 30});
        QCOMPARE(writes(index), before);
    }

    void anotherButtonTakesNothing_data() { eachLight(); }
    void anotherButtonTakesNothing()
    {
        QFETCH(int, index);
        open();
        QTest::mouseClick(window(), Qt::RightButton, {}, at(index, {60, 40}));
        QCOMPARE(writes(index), 0);
        QTest::mousePress(window(), Qt::LeftButton, {}, at(index, {60, 40}));
        const int before = writes(index);
        QTest::mouseClick(window(), Qt::RightButton, {}, at(index, {170, 90}));
        QCOMPARE(writes(index), before);
        QTest::mouseRelease(window(), Qt::LeftButton, {}, at(index, {170, 90})); // and the left one does
        QCOMPARE(page->written(index), field(index)->colorAt({170, 90}));
    }

    // What a press was refused, its release does not ask for again.
    void aRefusedPressIsOver_data() { eachLight(); }
    void aRefusedPressIsOver()
    {
        QFETCH(int, index);
        open();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        const QColor before = page->color(LightCases[index]);
        fake.setOnline("dev", false);
        QTest::mousePress(window(), Qt::LeftButton, {}, at(index, {60, 40}));
        QCOMPARE(notice.count(), 1);
        fake.setOnline("dev", true);
        QTest::mouseRelease(window(), Qt::LeftButton, {}, at(index, {170, 90}));
        QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLine"), 1);
        QCOMPARE(page->color(LightCases[index]), before);
        QTest::mouseClick(window(), Qt::LeftButton, {}, at(index, {60, 40})); // and the next one takes it
        QCOMPARE(page->written(index), field(index)->colorAt({60, 40}));
    }
};

TEST_CLASS(tst_ColorPick, fixture::ShippedLooks)

#include "tst_colorpick.moc"
