// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What is drawn on the pictures of the skin: straight strokes on whole pixels, frames that hold their fill,
// mice that say nothing of their link, and grounds without steps.
#include "tests/support/TestMain.h"
#include "tests/unit/skin/SkinPictures.h"

#include <QPainter>
#include <QtTest>
#include <array>

namespace
{

bool isAlike(QRgb a, QRgb b, int tolerance)
{
    for (const int shift : {0, 8, 16, 24})
        if (std::abs(int(a >> shift & 255) - int(b >> shift & 255)) > tolerance)
            return false;
    return true;
}

QString pixelAt(int x, int y, QRgb pixel)
{
    return QStringLiteral("%1,%2 is %3").arg(x).arg(y).arg(pixel, 8, 16, QLatin1Char('0'));
}

// The first pixel that differs from the rectangle's top left one; empty if there is none.
QString notUniform(const QImage &image, const QRect &where, int tolerance = 0)
{
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x)
            if (!isAlike(image.pixel(x, y), image.pixel(where.topLeft()), tolerance))
                return pixelAt(x, y, image.pixel(x, y));
    return {};
}

using Mean = std::array<double, 3>;

Mean meanOf(const QImage &image, const QRect &where)
{
    Mean sum{};
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            sum[0] += qRed(pixel);
            sum[1] += qGreen(pixel);
            sum[2] += qBlue(pixel);
        }
    for (double &channel : sum)
        channel /= where.width() * where.height();
    return sum;
}

} // namespace

class tst_Drawings : public QObject
{
    Q_OBJECT

private slots:
    void straightStrokesFillWholePixels_data();
    void straightStrokesFillWholePixels();
    void swatchesAreFlatAndWithinTheirFrame_data();
    void swatchesAreFlatAndWithinTheirFrame();
    void nothingLeavesTheNose_data();
    void nothingLeavesTheNose();
    void outlineEndsAtTheKeys_data();
    void outlineEndsAtTheKeys();
    void groundHasNoSteps_data();
    void groundHasNoSteps();
};

// A stroke away from its ends: one colour, and the ground at once on both sides.
void tst_Drawings::straightStrokesFillWholePixels_data()
{
    QTest::addColumn<QRect>("stroke");
    QTest::newRow("Dialog/OnLineUsb stem") << QRect(11, 8, 2, 5);
    QTest::newRow("Dialog/OnLineUsb left arm") << QRect(5, 13, 2, 2);
    QTest::newRow("Dialog/OnLineUsb right arm") << QRect(16, 8, 4, 3);
    QTest::newRow("DialogChange/OnLineUsb stem") << QRect(15, 6, 2, 5);
    QTest::newRow("DialogChange/OnLineUsb left arm") << QRect(9, 11, 2, 2);
    QTest::newRow("Dialog/MacroButton short bar") << QRect(48, 19, 6, 2);
    QTest::newRow("Dialog/FormSetting left edge") << QRect(47, 17, 2, 6);
    QTest::newRow("Dialog/FormSetting right edge") << QRect(63, 17, 2, 6);
    QTest::newRow("Dialog/Battery pole") << QRect(51, 9, 3, 4);
    QTest::newRow("Sensor/RateButtonCheck mark") << QRect(39, 34, 18, 3);
    QTest::newRow("Buttoninterface/RowCheck mark") << QRect(5, 12, 3, 12);
    QTest::newRow("DialogChange/4KHz bar") << QRect(25, 21, 1, 2);
}

void tst_Drawings::straightStrokesFillWholePixels()
{
    QFETCH(QRect, stroke);
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(' '), 0, 0);
    const QImage image = picture(name + QStringLiteral(".png"));
    QVERIFY(image.rect().contains(stroke));
    QCOMPARE(notUniform(image, stroke), QString());
    QCOMPARE(qAlpha(image.pixel(stroke.topLeft())), 255);
    const bool isUpright = stroke.height() > stroke.width() || stroke.width() < 5;
    const bool isBar = name.endsWith(QLatin1String("KHz"));
    const QPoint across = isUpright && !isBar ? QPoint(1, 0) : QPoint(0, 1);
    const QRgb before = image.pixel(stroke.topLeft() - across);
    const QRgb behind = image.pixel(stroke.bottomRight() + across);
    QVERIFY(before != image.pixel(stroke.topLeft()));
    QVERIFY2(isAlike(before, behind, 0),
             qPrintable(QString::number(before, 16) + QLatin1Char(' ') + QString::number(behind, 16)));
    QVERIFY2(qAlpha(before) == 0 || isAlike(before, image.pixel(stroke.topLeft() - 2 * across), 0),
             qPrintable(QString::number(before, 16)));
}

void tst_Drawings::swatchesAreFlatAndWithinTheirFrame_data()
{
    QTest::addColumn<int>("zoom");
    for (const char *name : {"MinB", "MinBHover", "MaxB", "MaxBHover"}) {
        QTest::newRow(name) << 1;
        QTest::addRow("%s@2x", name) << 2;
    }
}

// The page draws the fill below the picture, with corners of 3.
void tst_Drawings::swatchesAreFlatAndWithinTheirFrame()
{
    QFETCH(int, zoom);
    QImage frame = picture(QStringLiteral("Sensor/%1.png").arg(QLatin1String(QTest::currentDataTag())));
    frame.setDevicePixelRatio(1);
    const int within = 4 * zoom;
    QCOMPARE(notUniform(frame, frame.rect().adjusted(within, within, -within, -within)), QString());
    QCOMPARE(qAlpha(frame.pixel(frame.rect().center())), 0);

    QImage swatch(frame.size(), QImage::Format_ARGB32_Premultiplied);
    swatch.fill(Qt::transparent);
    QPainter painter(&swatch);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 0, 0));
    painter.drawRoundedRect(swatch.rect(), 3 * zoom, 3 * zoom);
    painter.drawImage(0, 0, frame);
    painter.end();
    const QImage seen = swatch.convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(seen.pixel(seen.rect().center()), qRgb(255, 0, 0));
    for (int y = 0; y < seen.height(); ++y)
        for (int x = 0; x < seen.width(); ++x) {
            const bool isRim = x == 0 || y == 0 || x == seen.width() - 1 || y == seen.height() - 1;
            const QRgb pixel = swatch.pixel(x, y); // premultiplied: what it adds to the page
            const int red = qRed(pixel) - qMax(qGreen(pixel), qBlue(pixel));
            QVERIFY2(!isRim || red <= 20, qPrintable(pixelAt(x, y, pixel)));
        }
}

void tst_Drawings::nothingLeavesTheNose_data()
{
    QTest::addColumn<QString>("stem");
    for (const char *stem : {"OnLine", "DisOnlin"})
        for (int model = 0; model < 4; ++model)
            QTest::addRow("%s%d", stem, model) << QStringLiteral("%1%2").arg(QLatin1String(stem)).arg(model);
}

// The same model runs on its radio and on its cable. Between the badge's line and the nose is the bare card.
void tst_Drawings::nothingLeavesTheNose()
{
    QFETCH(QString, stem);
    const QImage tile = picture(QStringLiteral("DialogChange/%1.png").arg(stem));
    for (int y = 24; y < 78; ++y)
        for (int x = 60; x < 220; ++x)
            QVERIFY2(isAlike(tile.pixel(x, y), tile.pixel(x + 1, y), 2),
                     qPrintable(pixelAt(x, y, tile.pixel(x, y))));
    QVERIFY(!notUniform(tile, QRect(60, 78, 160, 40), 2).isEmpty());
}

void tst_Drawings::outlineEndsAtTheKeys_data()
{
    QTest::addColumn<QRect>("key");
    QTest::newRow("OnLine0 upper left") << QRect(84, 148, 10, 22);
    QTest::newRow("OnLine0 lower right") << QRect(190, 182, 9, 18);
    QTest::newRow("OnLine1 lower left") << QRect(81, 217, 15, 28);
    QTest::newRow("OnLine1 upper right") << QRect(193, 140, 7, 20);
    QTest::newRow("OnLine2 upper left") << QRect(86, 160, 7, 22);
    QTest::newRow("DisOnlin0 upper left") << QRect(84, 148, 10, 22);
}

void tst_Drawings::outlineEndsAtTheKeys()
{
    QFETCH(QRect, key);
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(' '), 0, 0);
    const QImage tile = picture(QStringLiteral("DialogChange/%1.png").arg(name));
    QCOMPARE(notUniform(tile, key, 2), QString());
    QVERIFY(!notUniform(tile, key.adjusted(-8, 0, 8, 0), 2).isEmpty());
}

void tst_Drawings::groundHasNoSteps_data()
{
    QTest::addColumn<QRect>("along"); // the means of squares are taken along it
    QTest::newRow("DialogChange/MainBack across") << QRect(8, 346, 1004, 8);
    QTest::newRow("DialogChange/MainBack down") << QRect(100, 60, 8, 440);
    QTest::newRow("Dialog/BackGround down") << QRect(600, 80, 8, 600);
    QTest::newRow("WarningDialog/BackGround down") << QRect(20, 76, 8, 112);
}

// A gradient that is rounded stands still and then moves by a whole value, half of it from one square to the
// next, which overlaps it by half. A dithered one moves in between.
void tst_Drawings::groundHasNoSteps()
{
    QFETCH(QRect, along);
    constexpr int Side = 8;
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(' '), 0, 0);
    const QImage ground = picture(name + QStringLiteral(".png"));
    const QPoint step = along.width() > along.height() ? QPoint(Side / 2, 0) : QPoint(0, Side / 2);
    int mixed = 0;
    int places = 0;
    QRect place(along.topLeft(), QSize(Side, Side));
    for (Mean before = meanOf(ground, place); along.contains(place); place.translate(step)) {
        const Mean mean = meanOf(ground, place);
        bool isMixed = false;
        for (int channel = 0; channel < 3; ++channel) {
            QVERIFY2(std::abs(mean[channel] - before[channel]) < 0.45,
                     qPrintable(QStringLiteral("%1,%2").arg(place.x()).arg(place.y())));
            isMixed |= std::abs(mean[channel] - std::round(mean[channel])) > 0.2;
        }
        mixed += isMixed ? 1 : 0;
        ++places;
        before = mean;
    }
    QVERIFY(places > 20);
    QVERIFY2(mixed * 10 >= places * 6, qPrintable(QStringLiteral("%1 of %2").arg(mixed).arg(places)));
}

TEST_CLASS(tst_Drawings, testmain::CoreApplication)
#include "tst_drawings.moc"
