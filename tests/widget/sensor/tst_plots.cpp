// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The turned picture: the room that it asks for and where its parts go. The pie: the limits of its radius,
// and what it paints.
#include "sensor/plots/PieChartWidget.h"
#include "sensor/plots/RotatableWidget.h"
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/Drawn.h"

#include <QHBoxLayout>
#include <QTemporaryDir>

using namespace drawn;

class tst_Plots : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder;

    // Four quarters that differ, to tell where each of them has gone.
    QString quarters()
    {
        const QString path = folder.filePath("quarters.png");
        QImage image(80, 80, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.fillRect(0, 0, 40, 40, Qt::red);
        painter.fillRect(40, 0, 40, 40, Qt::green);
        painter.fillRect(0, 40, 40, 40, Qt::blue);
        painter.fillRect(40, 40, 40, 40, Qt::white);
        painter.end();
        image.save(path);
        return path;
    }

private slots:
    // ---- The turned picture

    void anglesComeBackIntoTheCircle_data()
    {
        QTest::addColumn<int>("given");
        QTest::addColumn<int>("kept");
        const int rows[][2] = {{0, 0},      {30, 30},   {359, 359},  {360, 0}, {361, 1},
                               {-30, 330},  {-360, 0},  {-390, 330}, {720, 0}, {-1, 359},
                               {-128, 232}, {127, 127}, {1000, 280}};
        for (const auto &row : rows)
            QTest::addRow("%d", row[0]) << row[0] << row[1];
    }
    void anglesComeBackIntoTheCircle()
    {
        QFETCH(int, given);
        RotatableWidget widget;
        widget.SetAngle(given);
        QTEST(widget.Angle(), "kept");
    }

    void asksForTheRoomOfItsTurnedContent_data()
    {
        QTest::addColumn<int>("angle");
        QTest::addColumn<QSize>("room");
        // Worked by hand for a content of 100 by 50.
        QTest::newRow("0") << 0 << QSize(100, 50);
        QTest::newRow("180") << 180 << QSize(100, 50);
        QTest::newRow("90") << 90 << QSize(50, 100);
        QTest::newRow("270") << 270 << QSize(50, 100);
        QTest::newRow("-90") << -90 << QSize(50, 100);
        QTest::newRow("30") << 30 << QSize(112, 93); // 111.60, 93.30
        QTest::newRow("-30") << -30 << QSize(112, 93);
        QTest::newRow("45") << 45 << QSize(106, 106); // 106.07
        QTest::newRow("60") << 60 << QSize(93, 112);
        QTest::newRow("150") << 150 << QSize(112, 93);
        QTest::newRow("1") << 1 << QSize(101, 52); // 100.86, 51.74
        QTest::newRow("89") << 89 << QSize(52, 101);
    }
    void asksForTheRoomOfItsTurnedContent()
    {
        QFETCH(int, angle);
        RotatableWidget widget;
        auto *layout = new QHBoxLayout(&widget);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *content = new QWidget;
        content->setFixedSize(100, 50);
        layout->addWidget(content);
        widget.SetAngle(angle);
        QTEST(widget.sizeHint(), "room");
        QTEST(widget.minimumSizeHint(), "room");
    }

    void everyRoomIsThatOfTheFormula()
    {
        RotatableWidget widget;
        auto *layout = new QHBoxLayout(&widget);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *content = new QWidget;
        content->setFixedSize(137, 61);
        layout->addWidget(content);
        for (int angle = 1; angle < 360; ++angle) {
            if (angle % 90 == 0)
                continue;
            const double turn = M_PI * angle / 180;
            widget.SetAngle(angle);
            QCOMPARE(widget.sizeHint().width(),
                     int(std::floor(137 * std::abs(std::cos(turn)) + 61 * std::abs(std::sin(turn)) + 0.5)));
            QCOMPARE(widget.sizeHint().height(),
                     int(std::floor(137 * std::abs(std::sin(turn)) + 61 * std::abs(std::cos(turn)) + 0.5)));
        }
    }

    void thirtyBackIsThreeHundredThirty()
    {
        RotatableWidget a, b;
        for (RotatableWidget *widget : {&a, &b}) {
            widget->resize(120, 120);
            widget->SetImage(quarters());
        }
        a.SetAngle(-30);
        b.SetAngle(330);
        const QImage first = painted(a);
        QVERIFY(first == painted(b));
        b.SetAngle(30);
        QVERIFY(first != painted(b));
        QVERIFY(countAround(first, {60, 30}, 2, [](QRgb p) { return qGreen(p) > 200 && qRed(p) < 50; }) > 20);
    }

    void turnsClockwise_data()
    {
        QTest::addColumn<int>("angle");
        QTest::addColumn<QVector<QRgb>>("corners"); // top left, top right, bottom left, bottom right
        const QRgb red = qRgb(255, 0, 0), green = qRgb(0, 255, 0), blue = qRgb(0, 0, 255),
                   white = qRgb(255, 255, 255);
        QTest::newRow("0") << 0 << QVector<QRgb>{red, green, blue, white};
        QTest::newRow("90") << 90 << QVector<QRgb>{blue, red, white, green};
        QTest::newRow("180") << 180 << QVector<QRgb>{white, blue, green, red};
        QTest::newRow("-90") << -90 << QVector<QRgb>{green, white, red, blue};
    }
    void turnsClockwise()
    {
        QFETCH(int, angle);
        QFETCH(QVector<QRgb>, corners);
        RotatableWidget widget;
        widget.resize(120, 120);
        widget.SetImage(quarters());
        widget.SetAngle(angle);
        const QImage image = painted(widget);
        const QPoint places[] = {{30, 30}, {90, 30}, {30, 90}, {90, 90}};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(image.pixel(places[i]), corners[i]);
    }

    void fillsTheWidgetWhateverItsShape()
    {
        RotatableWidget widget;
        widget.SetImage(quarters());
        for (const QSize &size : {QSize(200, 50), QSize(30, 160), QSize(200, 50)}) {
            widget.resize(size);
            const QImage image = painted(widget);
            QCOMPARE(image.pixel(2, 2), qRgb(255, 0, 0));
            QCOMPARE(image.pixel(size.width() - 3, size.height() - 3), qRgb(255, 255, 255));
        }
    }

    void aFileThatDoesNotLoadIsNoPicture()
    {
        RotatableWidget widget;
        widget.resize(60, 60);
        const QImage empty = painted(widget);
        for (const QString &path : {folder.filePath("none.png"), folder.path(), QString()}) {
            widget.SetImage(path);
            QVERIFY(painted(widget) == empty);
        }
        widget.SetImage(quarters());
        QVERIFY(painted(widget) != empty);
        widget.SetImage(QString());
        QVERIFY(painted(widget) == empty);
    }

    void childrenAreTurnedAlong()
    {
        RotatableWidget widget;
        widget.resize(120, 120);
        QWidget child(&widget);
        child.setGeometry(0, 50, 20, 20);
        child.setAutoFillBackground(true);
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::red);
        child.setPalette(palette);
        widget.SetAngle(90);
        // The child's own place shows it too; what the parent has drawn of it stands a quarter further.
        const auto shown = [&widget] {
            QImage image(widget.size(), QImage::Format_RGB32);
            image.fill(Qt::black);
            widget.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
            return image.pixel(60, 10);
        };
        widget.show();
        QCOMPARE(shown(), qRgb(255, 0, 0));
        child.hide();
        QVERIFY(shown() != qRgb(255, 0, 0));
    }

    // ---- The pie

    void thePieFollowsItsSize_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("radius");
        QTest::newRow("smallest") << QSize(300, 300) << 75.0;
        QTest::newRow("wide") << QSize(900, 400) << 100.0;
        QTest::newRow("high") << QSize(301, 900) << 75.25;
    }
    void thePieFollowsItsSize()
    {
        QFETCH(QSize, size);
        PieChartWidget pie;
        QCOMPARE(pie.minimumSize(), QSize(300, 300));
        pie.resize(size);
        pie.show();
        QTEST(pie.radius(), "radius");
        QCOMPARE(pie.middle(), QPointF(pie.rect().center()));
    }

    void aSmallPieKeepsItsSmallestRadius()
    {
        PieChartWidget pie;
        pie.setMinimumSize(1, 1);
        pie.resize(40, 60);
        pie.show();
        QCOMPARE(pie.radius(), 20.0);
    }

    void onlyTheRimIsGrabbed_data()
    {
        QTest::addColumn<double>("distance");
        QTest::addColumn<bool>("grabs");
        QTest::newRow("middle") << 0.0 << false;
        QTest::newRow("inside") << 70.0 << false;
        QTest::newRow("just inside") << 71.0 << true;
        QTest::newRow("rim") << 75.0 << true;
        QTest::newRow("just outside") << 79.0 << true;
        QTest::newRow("outside") << 80.0 << false;
    }
    void onlyTheRimIsGrabbed()
    {
        QFETCH(double, distance);
        QFETCH(bool, grabs);
        PieChartWidget pie;
        pie.resize(300, 300);
        pie.show();
        press(&pie, pie.middle() + QPointF(distance, 0));
        QCOMPARE(pie.isDragging(), grabs);
        QCOMPARE(pie.cursor().shape(), grabs ? Qt::SizeAllCursor : Qt::ArrowCursor);
        move(&pie, pie.middle() + QPointF(100, 0), Qt::LeftButton);
        QCOMPARE(pie.radius(), grabs ? 100.0 : 75.0);
        release(&pie, pie.middle() + QPointF(100, 0));
        QVERIFY(!pie.isDragging());
        QCOMPARE(pie.cursor().shape(), Qt::ArrowCursor);
        move(&pie, pie.middle() + QPointF(50, 0));
        QCOMPARE(pie.radius(), grabs ? 100.0 : 75.0);
    }

    void theRadiusStaysInItsLimits_data()
    {
        QTest::addColumn<QPointF>("to");
        QTest::addColumn<double>("radius");
        QTest::newRow("middle") << QPointF(0, 0) << 20.0;
        QTest::newRow("near") << QPointF(0, 19) << 20.0;
        QTest::newRow("anywhere") << QPointF(30, 40) << 50.0;
        QTest::newRow("border") << QPointF(146, 0) << 145.0;
        QTest::newRow("far") << QPointF(-4000, 4000) << 145.0;
    }
    void theRadiusStaysInItsLimits()
    {
        QFETCH(QPointF, to);
        PieChartWidget pie;
        pie.resize(400, 300);
        pie.show();
        press(&pie, pie.middle() + QPointF(0, 75));
        move(&pie, pie.middle() + to, Qt::LeftButton);
        QTEST(pie.radius(), "radius");
    }

    void paintsItsSlice()
    {
        PieChartWidget pie;
        pie.resize(300, 300);
        pie.show();
        const QImage image = painted(pie);
        const auto at = [&](double degrees, double distance) {
            const double turn = M_PI * degrees / 180;
            return image.pixel(
                (pie.middle() + distance * QPointF(std::cos(turn), -std::sin(turn))).toPoint());
        };
        QCOMPARE(at(60, 40), qRgb(50, 150, 255));
        QCOMPARE(at(10, 40), qRgb(50, 150, 255));
        QCOMPARE(at(110, 40), qRgb(50, 150, 255));
        for (const double empty : {140.0, 200.0, 300.0, 350.0})
            QVERIFY(at(empty, 40) != qRgb(50, 150, 255));
        QCOMPARE(at(120, 75), qRgb(0, 80, 200)); // the mark at the slice's end
        QVERIFY(qBlue(at(240, 75)) > 60);        // the rim
    }
};

TEST_CLASS(tst_Plots, testmain::WidgetApplication)
#include "tst_plots.moc"
