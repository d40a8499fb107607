// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Palettes for the pictures of the skin: nothing changes where 256 colours do, little where they nearly do.
#include "tests/support/TestMain.h"
#include "tools/pack/Palette.h"

#include <QtTest>
#include <algorithm>

namespace
{

// One pixel of each colour, and many of the first.
QImage pictureOf(const QVector<QRgb> &colours)
{
    QImage picture(colours.size(), 3, QImage::Format_ARGB32);
    picture.fill(colours.first());
    for (int x = 0; x < colours.size(); ++x)
        picture.setPixel(x, 1, colours.at(x));
    return picture;
}

// Columns of near shades, all of them as frequent as the others.
QImage groundOf(int shades)
{
    QImage picture(shades, 200, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < shades; ++x)
            picture.setPixel(x, y, qRgba(x / 4, x % 4 * 2, 40, 255));
    return picture;
}

// Colours of which none is near another.
QVector<QRgb> farApart(int count)
{
    QVector<QRgb> colours;
    for (int i = 0; i < count; ++i)
        colours << qRgba(i % 8 * 30, i / 8 % 8 * 30, i / 64 * 30, 255 - i % 3 * 60);
    return colours;
}

int largestStep(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb first = a.pixel(x, y), second = b.pixel(x, y);
            for (const int shift : {0, 8, 16, 24})
                largest = std::max(largest, std::abs(int(first >> shift & 255) - int(second >> shift & 255)));
        }
    return largest;
}

} // namespace

class tst_Palette : public QObject
{
    Q_OBJECT

private slots:
    void fewColoursStayAsTheyAre_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {1, 2, 17, 255, 256})
            QTest::addRow("%d", count) << count;
    }
    void fewColoursStayAsTheyAre()
    {
        QFETCH(int, count);
        const QImage picture = pictureOf(farApart(count));
        const QImage packed = withPalette(picture);
        QCOMPARE(packed.format(), QImage::Format_Indexed8);
        QCOMPARE(packed.colorCount(), count);
        QCOMPARE(packed.convertToFormat(QImage::Format_ARGB32), picture);
    }

    void aLargePictureFillsItsTable()
    {
        QImage picture(200, 100, QImage::Format_ARGB32);
        picture.fill(qRgba(255, 0, 0, 255));
        picture.setPixel(7, 7, qRgba(0, 255, 153, 128));
        const QImage packed = withPalette(picture);
        QCOMPARE(packed.colorCount(), 256);
        QCOMPARE(packed.convertToFormat(QImage::Format_ARGB32), picture);
    }

    void manyFarColoursAreLeftAlone() { QVERIFY(withPalette(pictureOf(farApart(257))).isNull()); }

    // An edge of 200 shades between two colours, on a ground of 192 that fill the picture.
    void rareColoursMoveALittle()
    {
        QImage picture = groundOf(192);
        for (int x = 0; x < 200; ++x)
            picture.setPixel(x % picture.width(), picture.height() - 1 - x / picture.width(),
                             qRgba(255, 20 + x, 0, 255));
        const QImage packed = withPalette(picture);
        QVERIFY(!packed.isNull());
        QCOMPARE(packed.colorCount(), 256);
        QVERIFY(largestStep(packed, picture) > 0);
        QVERIFY(largestStep(packed, picture) <= PaletteTolerance);
        for (int x = 0; x < picture.width(); ++x)
            QCOMPARE(packed.pixel(x, 0), picture.pixel(x, 0));
    }

    // A shade that moved would be seen as a step, so all of them are mixed from their neighbours.
    void manyNearColoursAreDithered()
    {
        const QImage picture = groundOf(300);
        const QImage packed = withPalette(picture);
        QCOMPARE(packed.format(), QImage::Format_Indexed8);
        QCOMPARE(packed.colorCount(), 256);
        QVERIFY(largestStep(packed, picture) > 0);
        QVERIFY(largestStep(packed, picture) <= 2 * DitherTolerance);
        double redAway = 0, greenAway = 0;
        int mixed = 0;
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb whole = picture.pixel(x, 0);
            QSet<QRgb> colours;
            for (int y = 0; y < picture.height(); ++y) {
                const QRgb pixel = packed.pixel(x, y);
                redAway += qRed(pixel) - qRed(whole);
                greenAway += qGreen(pixel) - qGreen(whole);
                colours.insert(pixel);
            }
            mixed += colours.size() > 1 ? 1 : 0;
            if (packed.colorTable().contains(whole))
                QCOMPARE(colours, QSet<QRgb>{whole});
        }
        QVERIFY(mixed > 0);
        const double pixels = picture.width() * picture.height();
        QVERIFY(std::abs(redAway / pixels) < 0.05);
        QVERIFY(std::abs(greenAway / pixels) < 0.05);
    }

    void transparencyIsAColourToo()
    {
        const QImage picture =
            pictureOf({qRgba(0, 0, 0, 0), qRgba(0, 255, 153, 128), qRgba(0, 255, 153, 255)});
        QCOMPARE(withPalette(picture).convertToFormat(QImage::Format_ARGB32), picture);
    }
};

TEST_CLASS(tst_Palette, testmain::NoApplication)
#include "tst_palette.moc"
