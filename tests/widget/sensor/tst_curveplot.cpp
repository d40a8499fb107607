// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The curve: its coordinates, its spline, the pointer on it, and what covers what.
#include "sensor/plots/CurvePlotWidget.h"
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/Drawn.h"

using namespace drawn;

namespace
{

const QVector<QPointF> Row = {{0, 10},    {1000, 30}, {2000, 20}, {3000, 50},
                              {4000, 40}, {5000, 60}, {6000, 15}, {7000, 35}};

// Where the plot stands in a widget of 860 by 560: 700 by 400 pixels, so 0.1 pixel for a unit of x.
constexpr QSize PlotSize(860, 560);

bool near(const QPointF &a, const QPointF &b) { return std::hypot(a.x() - b.x(), a.y() - b.y()) < 1e-6; }

bool isYellow(QRgb pixel) { return qRed(pixel) > 200 && qGreen(pixel) > 200 && qBlue(pixel) < 80; }
bool isGreen(QRgb pixel) { return qRed(pixel) < 80 && qGreen(pixel) > 150 && qBlue(pixel) > 60; }
int brightness(QRgb pixel) { return qGray(pixel); }

} // namespace

class tst_CurvePlot : public QObject
{
    Q_OBJECT

private:
    static std::unique_ptr<CurvePlotWidget> curve(bool editable)
    {
        auto made = std::make_unique<CurvePlotWidget>();
        made->resize(PlotSize);
        made->setPoints(Row);
        made->setEditable(editable);
        return made;
    }

private slots:
    void beginsWithEightPointsOverTheWholeWidth()
    {
        const CurvePlotWidget plot;
        QVERIFY(!plot.isEditable());
        QVERIFY(plot.testAttribute(Qt::WA_TranslucentBackground) && plot.hasMouseTracking());
        QCOMPARE(plot.points().size(), 8);
        for (int i = 0; i < 8; ++i) {
            const QPointF point = plot.points().at(i);
            QCOMPARE(point.x(), i * 1000.0);
            QVERIFY(point.y() >= 10 && point.y() <= 59 && point.y() == std::floor(point.y()));
        }
        QCOMPARE(plot.dragIndex(), -1);
        QCOMPARE(plot.hoverIndex(), -1);
    }

    void coordinatesGoBothWays_data()
    {
        QTest::addColumn<QPointF>("data");
        QTest::addColumn<QPointF>("pixel");
        QTest::newRow("origin") << QPointF(0, 0) << QPointF(80, 480);
        QTest::newRow("top right") << QPointF(7000, 70) << QPointF(780, 80);
        QTest::newRow("middle") << QPointF(3500, 35) << QPointF(430, 280);
        QTest::newRow("anywhere") << QPointF(1230, 14) << QPointF(203, 400);
        QTest::newRow("outside") << QPointF(-800, -14) << QPointF(0, 560);
    }
    void coordinatesGoBothWays()
    {
        QFETCH(QPointF, data);
        QFETCH(QPointF, pixel);
        const auto plot = curve(false);
        QVERIFY(near(plot->toPixel(data), pixel));
        QVERIFY(near(plot->toData(pixel), data));
    }

    void aWidgetSmallerThanItsMarginsPaints()
    {
        CurvePlotWidget plot;
        for (const QSize &size : {QSize(0, 0), QSize(100, 100), QSize(160, 160), QSize(161, 30)}) {
            plot.resize(size);
            QVERIFY(std::isfinite(plot.toData({50, 50}).x()) && std::isfinite(plot.toData({50, 50}).y()));
            plot.setEditable(true);
            press(&plot, {5, 5});
            move(&plot, {9, 9}, Qt::LeftButton);
            release(&plot, {9, 9});
            if (!size.isEmpty())
                painted(plot);
        }
    }

    // Each segment against the cubic that passes through its ends with the slopes of a Catmull-Rom spline.
    void theSplineIsThatOfItsPoints()
    {
        const auto plot = curve(false);
        const QPainterPath path = plot->path();
        QCOMPARE(path.elementCount(), 1 + 7 * 3);
        const auto at = [&](int i) {
            const QPointF p = Row[qBound(0, i, 7)];
            return QPointF(80 + p.x() / 10, 480 - p.y() * 400 / 70);
        };
        QVERIFY(near(path.elementAt(0), at(0)));
        for (int i = 0; i < 7; ++i) {
            // Tangents in the form of Hermite: m = (next - previous) / 2, control = end +- m / 3.
            const QPointF leaving = (at(i + 1) - at(i - 1)) / 2, arriving = (at(i + 2) - at(i)) / 2;
            QVERIFY(near(path.elementAt(1 + 3 * i), at(i) + leaving / 3));
            QVERIFY(near(path.elementAt(2 + 3 * i), at(i + 1) - arriving / 3));
            QVERIFY(near(path.elementAt(3 + 3 * i), at(i + 1)));
        }
    }

    void fewPointsMakeNoCurve()
    {
        const auto plot = curve(false);
        plot->setPoints({});
        QVERIFY(plot->path().isEmpty());
        painted(*plot);
        plot->setPoints({{1000, 10}});
        QVERIFY(plot->path().isEmpty());
        painted(*plot);
        plot->setPoints({{0, 0}, {7000, 70}});
        QCOMPARE(plot->path().elementCount(), 4);
        const QPointF a(80, 480), b(780, 80); // both neighbours are the ends themselves
        QVERIFY(near(plot->path().elementAt(1), a + (b - a) / 6));
        QVERIFY(near(plot->path().elementAt(2), b - (b - a) / 6));
    }

    void dragMovesThePoint()
    {
        const auto plot = curve(true);
        press(plot.get(), plot->toPixel(Row[3]));
        QCOMPARE(plot->dragIndex(), 3);
        QCOMPARE(plot->cursor().shape(), Qt::ClosedHandCursor);
        move(plot.get(), plot->toPixel({3210, 42}), Qt::LeftButton);
        QVERIFY(near(plot->points()[3], {3210, 42}));
        release(plot.get(), plot->toPixel({3210, 42}));
        QCOMPARE(plot->dragIndex(), -1);
        QCOMPARE(plot->cursor().shape(), Qt::ArrowCursor);
        move(plot.get(), plot->toPixel({3000, 10}));
        QVERIFY(near(plot->points()[3], {3210, 42}));
        for (int i = 0; i < 8; ++i)
            QVERIFY(i == 3 || plot->points()[i] == Row[i]);
    }

    void aPointStaysOnTheBorderOfThePlot_data()
    {
        QTest::addColumn<QPointF>("pixel");
        QTest::addColumn<QPointF>("kept");
        QTest::newRow("left above") << QPointF(-50, -50) << QPointF(0, 70);
        QTest::newRow("right below") << QPointF(2000, 2000) << QPointF(7000, 0);
        QTest::newRow("above") << QPointF(430, 0) << QPointF(3500, 70);
        QTest::newRow("below") << QPointF(430, 481) << QPointF(3500, 0);
        QTest::newRow("right") << QPointF(781, 280) << QPointF(7000, 35);
    }
    void aPointStaysOnTheBorderOfThePlot()
    {
        QFETCH(QPointF, pixel);
        QFETCH(QPointF, kept);
        const auto plot = curve(true);
        press(plot.get(), plot->toPixel(Row[2]));
        move(plot.get(), pixel, Qt::LeftButton);
        QVERIFY(near(plot->points()[2], kept));
    }

    // In data units: below 50 of x, which is 5 pixels, and the whole height of the plot beside that.
    void thePointerGrabsWithinALongEllipse_data()
    {
        QTest::addColumn<QPointF>("from"); // the point, in data units
        QTest::addColumn<int>("grabs");
        QTest::addColumn<int>("hovers");
        QTest::newRow("on it") << QPointF(0, 0) << 4 << 4;
        QTest::newRow("right") << QPointF(49.9, 0) << 4 << 4;
        QTest::newRow("at the radius") << QPointF(50.001, 0) << -1 << 4;
        QTest::newRow("at the outer radius") << QPointF(60.001, 0) << -1 << -1;
        QTest::newRow("left") << QPointF(-59.9, 0) << -1 << 4;
        QTest::newRow("far below") << QPointF(0, -40) << 4 << 4;
        QTest::newRow("far above and aside") << QPointF(45, 30) << -1 << 4;
    }
    void thePointerGrabsWithinALongEllipse()
    {
        QFETCH(QPointF, from);
        const auto plot = curve(true);
        move(plot.get(), plot->toPixel(Row[4] + from));
        QTEST(plot->hoverIndex(), "hovers");
        press(plot.get(), plot->toPixel(Row[4] + from));
        QTEST(plot->dragIndex(), "grabs");
    }

    void theFirstOfTwoPointsIsTaken()
    {
        const auto plot = curve(true);
        plot->setPoints({{0, 0}, {3030, 30}, {3000, 30}});
        move(plot.get(), plot->toPixel({3000, 30}));
        QCOMPARE(plot->hoverIndex(), 1);
        press(plot.get(), plot->toPixel({3000, 30}));
        QCOMPARE(plot->dragIndex(), 1);
    }

    void aMissEndsTheHover()
    {
        const auto plot = curve(true);
        move(plot.get(), plot->toPixel(Row[6]));
        QCOMPARE(plot->hoverIndex(), 6);
        const QImage hovered = painted(*plot);
        move(plot.get(), plot->toPixel({6500, 30}));
        QCOMPARE(plot->hoverIndex(), -1);
        QVERIFY(painted(*plot) != hovered);
        press(plot.get(), plot->toPixel({6500, 30}));
        QCOMPARE(plot->dragIndex(), -1);
    }

    void otherButtonsGrabNothing()
    {
        const auto plot = curve(true);
        press(plot.get(), plot->toPixel(Row[1]), Qt::RightButton);
        QCOMPARE(plot->dragIndex(), -1);
    }

    void withoutEditingThePointerOnlyHovers()
    {
        const auto plot = curve(false);
        press(plot.get(), plot->toPixel(Row[5]));
        QCOMPARE(plot->dragIndex(), -1);
        move(plot.get(), plot->toPixel(Row[5] + QPointF(30, 0)), Qt::LeftButton);
        QCOMPARE(plot->points(), Row);
        QCOMPARE(plot->hoverIndex(), 5);
        release(plot.get(), plot->toPixel(Row[5]));
        QCOMPARE(plot->points(), Row);
    }

    void editingThatEndsLetsGo()
    {
        const auto plot = curve(true);
        press(plot.get(), plot->toPixel(Row[5]));
        plot->setEditable(false);
        move(plot.get(), plot->toPixel({5000, 20}), Qt::LeftButton);
        QCOMPARE(plot->points(), Row);
    }

    // Points cover the curve, the curve covers the grid, and the box covers them all.
    void paintsInItsOrder()
    {
        const auto plot = curve(true);
        plot->setPoints({{0, 20}, {2000, 20}, {3000, 20}, {4000, 20}, {7000, 20}});
        const QImage plain = painted(*plot);
        const QPointF point = plot->toPixel({3000, 20}), between = plot->toPixel({3500, 20});
        QVERIFY(isYellow(plain.pixel(point.toPoint())));
        QCOMPARE(countAround(plain, point, 4, isYellow), 81);
        QVERIFY(countAround(plain, between, 2, isGreen) >= 5); // on the grid line of y = 20
        const QPointF grid = plot->toPixel({2000, 40});
        QVERIFY(countAround(plain, grid, 6, [](QRgb p) { return brightness(p) > 60; }) > 4);
        QVERIFY(countAround(plain, {80, 300}, 1, [](QRgb p) { return brightness(p) > 120; }) >= 3); // an axis
        // At (700, 60) above the top of the plot there is nothing.
        QCOMPARE(countAround(plain, {700, 60}, 10, [](QRgb p) { return brightness(p) > 0; }), 0);

        // The box of this point covers the one above it on the screen.
        plot->setPoints({{0, 20}, {3000, 20}, {3050, 32}, {7000, 20}});
        const QPointF covered = plot->toPixel({3050, 32});
        QVERIFY(isYellow(painted(*plot).pixel(covered.toPoint())));
        press(plot.get(), plot->toPixel({3000, 20}));
        QCOMPARE(plot->dragIndex(), 1);
        const QImage dragged = painted(*plot);
        QVERIFY(!isYellow(dragged.pixel(covered.toPoint())));
        QVERIFY(brightness(dragged.pixel(covered.toPoint())) > 20); // it shines through
    }

    void theDraggedPointHasAPenOfItsOwn()
    {
        const auto plot = curve(true);
        const QImage before = painted(*plot);
        press(plot.get(), plot->toPixel(Row[1]));
        const QImage after = painted(*plot);
        const auto isWhite = [](QRgb p) { return qRed(p) > 200 && qBlue(p) > 200; };
        QVERIFY(countAround(after, plot->toPixel(Row[1]), 10, isWhite) >
                countAround(before, plot->toPixel(Row[1]), 10, isWhite) + 20);
    }

    // 160 by 90 around the place of the text, which stands (60, 80) before the point.
    void theBoxStandsAboveItsPoint()
    {
        const auto plot = curve(false);
        const QImage before = painted(*plot);
        move(plot.get(), plot->toPixel(Row[2]));
        const QImage after = painted(*plot);
        QRect changed;
        for (int y = 0; y < after.height(); ++y)
            for (int x = 0; x < after.width(); ++x)
                if (after.pixel(x, y) != before.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
        const QPoint at = plot->toPixel(Row[2]).toPoint();
        QFont font = plot->font();
        font.setPointSize(10);
        const QPoint text = QFontMetrics(font).boundingRect("aaaaaaaaaaaaaa").topLeft();
        const QRect wanted(at + text + QPoint(-80, -100), QSize(160, 90));
        QVERIFY2(qAbs(changed.left() - wanted.left()) <= 1 && qAbs(changed.top() - wanted.top()) <= 1 &&
                     qAbs(changed.right() - wanted.right()) <= 1 &&
                     qAbs(changed.bottom() - wanted.bottom()) <= 1,
                 qPrintable(QString("%1 %2 %3 %4")
                                .arg(changed.x())
                                .arg(changed.y())
                                .arg(changed.right())
                                .arg(changed.bottom())));
    }
};

TEST_CLASS(tst_CurvePlot, testmain::WidgetApplication)
#include "tst_curveplot.moc"
