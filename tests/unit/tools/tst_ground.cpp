// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Grounds for the pictures of the skin: what lies between two values is kept in the mean of four pixels.
#include "tests/support/TestMain.h"
#include "tools/pack/Ground.h"

#include <QtTest>

namespace
{

const QSize Size(8, 6);

QImage filled(QRgb colour)
{
    QImage picture(Size, QImage::Format_ARGB32);
    picture.fill(colour);
    return picture;
}

const QImage Nothing = filled(qRgba(0, 0, 0, 0));

} // namespace

class tst_Ground : public QObject
{
    Q_OBJECT

private slots:
    void meanIsTheFinerValue_data()
    {
        QTest::addColumn<int>("bright");
        for (const int bright : {0, 1, 2, 3, 4, 40, 41, 42, 43, 252})
            QTest::addRow("%d", bright) << bright;
    }
    void meanIsTheFinerValue()
    {
        QFETCH(int, bright);
        const QImage whole = onGround(Nothing, filled(qRgb(bright, 100, 255 - bright)));
        QCOMPARE(whole.size(), Size);
        for (int y = 0; y + 1 < Size.height(); ++y)
            for (int x = 0; x + 1 < Size.width(); ++x) {
                int sum = 0;
                for (const QPoint at : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
                    const QRgb pixel = whole.pixel(QPoint(x, y) + at);
                    QVERIFY(std::abs(qRed(pixel) * GroundLight - bright) < GroundLight);
                    QCOMPARE(qGreen(pixel), 100 / GroundLight);
                    QCOMPARE(qAlpha(pixel), 255);
                    sum += qRed(pixel);
                }
                QCOMPARE(sum, bright);
            }
    }

    void pictureLiesOnTheGround()
    {
        QImage picture = Nothing;
        picture.setPixel(3, 2, qRgb(250, 9, 90));
        picture.setPixel(4, 2, qRgba(200, 0, 0, 51));
        const QImage whole = onGround(picture, filled(qRgb(80, 80, 80)));
        QCOMPARE(whole.pixel(3, 2), qRgb(250, 9, 90));
        QCOMPARE(whole.pixel(4, 2), qRgb(56, 16, 16));
        QCOMPARE(whole.pixel(5, 2), qRgb(20, 20, 20));
    }

    // The corners of a window.
    void groundMayEnd()
    {
        QImage ground = filled(qRgb(80, 80, 80));
        ground.setPixel(0, 0, qRgba(0, 0, 0, 0));
        ground.setPixel(1, 0, qRgba(80, 80, 80, 128));
        const QImage whole = onGround(Nothing, ground);
        QCOMPARE(qAlpha(whole.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(whole.pixel(1, 0)), 128);
        QCOMPARE(qAlpha(whole.pixel(2, 0)), 255);
    }
};

TEST_CLASS(tst_Ground, testmain::NoApplication)
#include "tst_ground.moc"
