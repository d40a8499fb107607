// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The colour under the pointer, with a real pointer on a real X server, at one and at two pixels for each of
// the toolkit's: taken by a press in either field, and from elsewhere by a release there.
#include "lighting/InputPic.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "tests/support/TestMain.h"
#include "tests/widget/lighting/PickPage.h"

#include <QCursor>
#include <QProcess>
#include <QScreen>

namespace
{

const QColor Elsewhere(18, 52, 86);

void xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start("xdotool", arguments);
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
}

// In the pixels of the server.
void moveTo(const QPoint &place)
{
    const double ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    xdotool({"mousemove", QString::number(int(place.x() * ratio)), QString::number(int(place.y() * ratio))});
    QTRY_COMPARE(QCursor::pos(), place);
}

struct Scaled {
    explicit Scaled(const char *factor)
    {
        qputenv("QT_SCALE_FACTOR", factor);
        qputenv("QT_FONT_DPI", QByteArray::number(96 * atoi(factor)));
    }
};
// With twice the dots to an inch, too.
struct Double : private Scaled, fixture::ShippedLooks {
    Double(int &argc, char **argv) : Scaled("2"), ShippedLooks(argc, argv) {}
};

} // namespace

class tst_RealPick : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<PickPage> page;
    QWidget other; // of another program, as it were

    HueField *field(int index) const { return page->field(index); }
    // At two pixels for one of the toolkit's, the field is that much finer.
    QColor colorIn(int index, const QPoint &point) const
    {
        const int pixels = qRound(field(index)->devicePixelRatioF());
        HueField fine;
        fine.resize(field(index)->size() * pixels);
        return fine.colorAt(point * pixels);
    }

private slots:
    void initTestCase()
    {
        qunsetenv("XDG_SESSION_TYPE"); // of the desktop from which the test is run
        qunsetenv("WAYLAND_DISPLAY");
        LoadLanguageTables();
    }
    void init()
    {
        page = std::make_unique<PickPage>();
        page->page->setWindowFlags(Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint);
        page->page->setGeometry(0, 0, 883, 630);
        page->page->show();
        QVERIFY(QTest::qWaitForWindowExposed(page->page.get()));
        QPalette palette;
        palette.setColor(QPalette::Window, Elsewhere);
        other.setPalette(palette);
        other.setWindowFlags(Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint);
        other.setGeometry(600, 20, 60, 30); // over an empty place of the page
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        other.raise();
        const auto seen = [this] {
            const QPoint middle = other.geometry().center();
            return QGuiApplication::primaryScreen()
                ->grabWindow(0, middle.x(), middle.y(), 1, 1)
                .toImage()
                .pixelColor(0, 0);
        };
        QTRY_COMPARE(seen(), Elsewhere); // an exposed window may not be painted yet
        fake.clearCalls();
    }
    void cleanup()
    {
        xdotool({"mouseup", "1"});
        other.hide();
        page.reset();
    }

    void aPressTakesTheColorOfTheField_data() { eachLight(); }
    void aPressTakesTheColorOfTheField()
    {
        QFETCH(int, index);
        HueField *const hues = field(index);
        for (const QPoint &point : {QPoint(20, 90), QPoint(101, 41), QPoint(0, 0), QPoint(102, 42)}) {
            moveTo(hues->mapToGlobal(point));
            QTRY_VERIFY(hues->underMouse());
            QCoreApplication::processEvents(); // the field without its marker
            xdotool({"click", "1"});
            const QColor wanted = colorIn(index, point);
            QTRY_COMPARE(page->color(LightCases[index]), wanted);
            QCOMPARE(page->written(index), wanted);
        }
        QCOMPARE(page->written(1 - index), index == MouseGroup ? QColor(1, 2, 3) : QColor(10, 20, 30));
    }

    void aReleaseElsewhereTakesTheColorThere_data() { eachLight(); }
    void aReleaseElsewhereTakesTheColorThere()
    {
        QFETCH(int, index);
        HueField *const hues = field(index);
        moveTo(hues->mapToGlobal(QPoint(30, 30)));
        QTRY_VERIFY(hues->underMouse());
        xdotool({"mousedown", "1"});
        QTRY_COMPARE(page->written(index), colorIn(index, {30, 30}));
        moveTo(other.mapToGlobal(QPoint(21, 11)));
        xdotool({"mouseup", "1"});
        QTRY_COMPARE(page->color(LightCases[index]), Elsewhere);
        QCOMPARE(page->written(index), Elsewhere);
        // The pointer lets go of the field with it.
        const int writes = int(fake.updates().size());
        moveTo(page->page->mapToGlobal(QPoint(560, 40)));
        xdotool({"click", "1"});
        QCoreApplication::processEvents();
        QCOMPARE(page->color(LightCases[index]), Elsewhere);
        QCOMPARE(int(fake.updates().size()), writes);
    }

    void aSilentMouseKeepsTheColor_data() { eachLight(); }
    void aSilentMouseKeepsTheColor()
    {
        QFETCH(int, index);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        const QColor before = page->color(LightCases[index]);
        fake.setOnline("dev", false);
        moveTo(field(index)->mapToGlobal(QPoint(50, 50)));
        xdotool({"click", "1"});
        QTRY_COMPARE(notice.count(), 1);
        QCOMPARE(page->color(LightCases[index]), before);
        QVERIFY(fake.updates().empty());
    }
};

class tst_RealPickDouble : public tst_RealPick
{
    Q_OBJECT

private slots:
    void theDialogsFontsAreScaledOnce()
    {
        const double dots = QGuiApplication::primaryScreen()->logicalDotsPerInchX();
        QVERIFY(dots > 150);
        const double points = QApplication::font().pointSizeF() * 96 / dots;
        const LedInfo info;
        const InputPicA first;
        const InputPicB second;
        const LightModeSet light;
        for (const QWidget *dialog : std::initializer_list<const QWidget *>{&info, &first, &second, &light}) {
            QCOMPARE(dialog->font().pointSizeF(), points);
            for (const QLabel *label : dialog->findChildren<QLabel *>())
                QCOMPARE(label->font().pointSizeF(), points);
        }
    }
};

TEST_CLASS(tst_RealPick, fixture::ShippedLooks)
TEST_CLASS(tst_RealPickDouble, Double)

#include "tst_realpick.moc"
