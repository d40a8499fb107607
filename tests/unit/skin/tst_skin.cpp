// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rendered skin: every picture in both sizes, the sizes that the pages count on, states that a person
// who sees no colour can tell apart, and grounds on which the skin's text can be read.
#include "tests/support/Contrast.h"
#include "tests/support/TestMain.h"
#include "tests/unit/skin/SkinPictures.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QtTest>

#include <cmath>

namespace
{

const QColor Ground(QLatin1String("#" skin_ground));
const QColor Ink(QLatin1String("#" skin_ink));
const QColor DimInk(QLatin1String("#" skin_inkDim));
const QColor Surfaces[] = {Ground, QColor(QLatin1String("#" skin_surface1)),
                           QColor(QLatin1String("#" skin_surface2)),
                           QColor(QLatin1String("#" skin_surface3))};

QColor over(QRgb pixel, const QColor &under)
{
    const double a = qAlpha(pixel) / 255.0;
    const auto mix = [a](int top, int below) { return int(std::lround(top * a + below * (1 - a))); };
    return QColor(mix(qRed(pixel), under.red()), mix(qGreen(pixel), under.green()),
                  mix(qBlue(pixel), under.blue()));
}

using support::contrast;
using support::luminance;

// The worst contrast of a text colour with the pixels of a rectangle.
double worstContrast(const QImage &image, const QRect &where, const QColor &text)
{
    double worst = 21;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x)
            worst = std::min(worst, contrast(over(image.pixel(x, y), Ground), text));
    }
    return worst;
}

// How many pixels differ in brightness so that it shows, hue left aside.
int differingPixels(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const double first = luminance(over(a.pixel(x, y), Ground));
            const double second = luminance(over(b.pixel(x, y), Ground));
            count += (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05) >= 1.15 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class tst_skin : public QObject
{
    Q_OBJECT

private slots:
    void everyPictureHasItsDouble();
    void largePicturesAreQuickToDecode();
    void sizes_data();
    void sizes();
    void statesDifferByMoreThanHue_data();
    void statesDifferByMoreThanHue();
    void textCanBeRead_data();
    void textCanBeRead();
    void outlinesCanBeSeen();
    void framesAreWhole();
};

void tst_skin::everyPictureHasItsDouble()
{
    int singles = 0;
    int doubles = 0;
    QDirIterator files(Pictures, {QStringLiteral("*.png")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.endsWith(QLatin1String("@2x.png"))) {
            ++doubles;
            continue;
        }
        ++singles;
        const QImage twice(path.chopped(4) + QStringLiteral("@2x.png"));
        QVERIFY2(twice.size() == QImage(path).size() * 2, qPrintable(path));
    }
    QVERIFY(singles > 100);
    QCOMPARE(doubles, singles);
}

// A page's ground is most of what the program decodes.
void tst_skin::largePicturesAreQuickToDecode()
{
    constexpr int Large = 500 * 500;
    int grounds = 0;
    QDirIterator files(Pictures, {QStringLiteral("*.png")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QImage picture(files.next());
        if (files.fileName().contains(QLatin1String("@2x")) || picture.width() * picture.height() < Large)
            continue;
        ++grounds;
        QVERIFY2(picture.format() == QImage::Format_Indexed8, qPrintable(files.filePath()));
    }
    QVERIFY(grounds >= 6);
}

void tst_skin::sizes_data()
{
    QTest::addColumn<QSize>("size");
    const auto row = [](const char *name, int width, int height) {
        QTest::newRow(name) << QSize(width, height);
    };
    row("DialogChange/MainBack", 1020, 700);
    row("DialogChange/Unknow", 284, 360);
    for (int model = 0; model < 4; ++model) {
        row(qPrintable(QStringLiteral("DialogChange/OnLine%1").arg(model)), 284, 360);
        row(qPrintable(QStringLiteral("DialogChange/DisOnlin%1").arg(model)), 284, 360);
    }
    for (const char *rate : {"1KHz", "2KHz", "4KHz", "8KHz"})
        row(qPrintable(QStringLiteral("DialogChange/") + QLatin1String(rate)), 42, 26);
    for (const char *link : {"OnLineUsb", "OnLineWifi", "DisOnline"})
        row(qPrintable(QStringLiteral("DialogChange/") + QLatin1String(link)), 32, 32);
    for (const char *arrow : {"Left", "LeftClick", "Right", "RightClick"})
        row(qPrintable(QStringLiteral("DialogChange/") + QLatin1String(arrow)), 40, 64);
    row("Dialog/BackGround", 1020, 700);
    row("Dialog/Logo", 64, 64);
    row("Dialog/Charg", 16, 20);
    row("Sensor/BackGround", 883, 630);
    row("Sensor/MinA", 54, 56);
    row("Sensor/MaxA", 68, 70);
    row("Sensor/MinB", 50, 12);
    row("Sensor/MaxB", 66, 14);
    row("Sensor/Level", 28, 28);
    row("Sensor/Track", 91, 8);
    for (const char *state : {"Open", "OpenHover", "OpenClick", "Close", "CloseHover", "CloseClick"})
        row(qPrintable(QStringLiteral("Sensor/") + QLatin1String(state)), 44, 24);
    row("Light/Title", 24, 24);
    row("Advanced/Angle", 566, 216);
    for (int model = 0; model < 4; ++model)
        row(qPrintable(QStringLiteral("Advanced/mouse%1").arg(model)), 368, 368);
    row("WarningDialog/BackGround", 360, 200);
    row("WarningDialog/Confirm", 120, 36);
    for (int model = 0; model < 4; ++model)
        row(qPrintable(QStringLiteral("Buttoninterface/mouse%1").arg(model)), 424, 388);
    for (const char *page : {"Buttoninterface", "Light", "Macro", "FormSetting", "Advanced"})
        row(qPrintable(QLatin1String(page) + QStringLiteral("/BackGround")), 883, 630);
}

void tst_skin::sizes()
{
    QFETCH(QSize, size);
    QCOMPARE(picture(QLatin1String(QTest::currentDataTag()) + QStringLiteral(".png")).size(), size);
}

void tst_skin::statesDifferByMoreThanHue_data()
{
    QTest::addColumn<QStringList>("suffixes");
    const QStringList three{QString(), QStringLiteral("Hover"), QStringLiteral("Click")};
    const QStringList checked{QString(), QStringLiteral("Hover"), QStringLiteral("Checked")};
    for (const char *stem : {"Dialog/Close", "Dialog/Min", "Dialog/UpArrow", "DialogChange/Close",
                             "DialogChange/Min", "DialogChange/Confirm", "Sensor/Reduce", "Sensor/Add",
                             "Sensor/MinA", "Sensor/RateButton", "Sensor/Open", "Sensor/Close",
                             "WarningDialog/Close", "WarningDialog/Confirm", "WarningDialog/Cancel"})
        QTest::newRow(stem) << three;
    for (const char *stem :
         {"Dialog/NavButton", "Dialog/ButtonMain", "Dialog/SensorButton", "Dialog/MacroButton",
          "Dialog/LightsButton", "Dialog/Advanced", "Dialog/FormSetting"})
        QTest::newRow(stem) << checked;
    for (const char *icon :
         {"ButtonMain", "SensorButton", "MacroButton", "LightsButton", "Advanced", "FormSetting"})
        QTest::addRow("Dialog/%s locked", icon)
            << QStringList{QString(), QStringLiteral("Checked"), QStringLiteral("Off")};
    for (const char *stem : {"Buttoninterface/Row", "Buttoninterface/Choice", "Buttoninterface/Function",
                             "Buttoninterface/Detail", "Buttoninterface/Mark"})
        QTest::newRow(stem) << QStringList{QString(), QStringLiteral("Hover"), QStringLiteral("Click"),
                                           QStringLiteral("Check")};
    QTest::newRow("Buttoninterface/Button") << three;
    QTest::newRow("Buttoninterface/Back") << three;
    QTest::newRow("DialogChange/Left") << QStringList{QString(), QStringLiteral("Click")};
    QTest::newRow("DialogChange/Right") << QStringList{QString(), QStringLiteral("Click")};
    QTest::newRow("Sensor/RateButton checked")
        << QStringList{QString(), QStringLiteral("Hover"), QStringLiteral("Check"), QStringLiteral("Click")};
    for (const char *stem : {"Sensor/MinB", "Sensor/MaxB"})
        QTest::newRow(stem) << QStringList{QString(), QStringLiteral("Hover")};
    QTest::newRow("Sensor/ switches") << QStringList{QStringLiteral("Open"), QStringLiteral("Close")};
    for (const char *stem : {"DialogChange/CheckBox", "Sensor/CheckBox", "Advanced/CheckBox"})
        QTest::newRow(stem) << QStringList{QString(), QStringLiteral("Hover"), QStringLiteral("Check"),
                                           QStringLiteral("CheckHover")};
    for (const char *stem : {"DialogChange/Menu", "Sensor/Menu"})
        QTest::newRow(stem) << QStringList{QString(), QStringLiteral("Clicked")};
}

void tst_skin::statesDifferByMoreThanHue()
{
    QFETCH(QStringList, suffixes);
    const QString stem = QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(' '), 0, 0);
    for (int i = 0; i < suffixes.size(); ++i) {
        const QImage state = picture(stem + suffixes.at(i) + QStringLiteral(".png"));
        QVERIFY(!state.isNull());
        for (int j = 0; j < i; ++j) {
            const QImage other = picture(stem + suffixes.at(j) + QStringLiteral(".png"));
            const int differing = differingPixels(state, other);
            QVERIFY2(differing >= 20, qPrintable(QStringLiteral("%1 against %2: %3 pixels")
                                                     .arg(suffixes.at(i), suffixes.at(j))
                                                     .arg(differing)));
        }
    }
}

// The rectangles in which widgets draw text; on text buttons it is never the dim one.
void tst_skin::textCanBeRead_data()
{
    QTest::addColumn<QRect>("where");
    QTest::addColumn<bool>("dimToo");
    const QRect button(8, 8, 104, 20);
    for (const char *page : {"DialogChange", "WarningDialog"}) {
        for (const char *state : {"", "Hover", "Click"})
            QTest::addRow("%s/Confirm%s", page, state) << button << false;
    }
    for (const char *state : {"", "Hover", "Click"})
        QTest::addRow("WarningDialog/Cancel%s", state) << button << false;
    for (const char *state : {"", "Hover", "Checked"})
        QTest::addRow("Dialog/NavButton%s", state) << QRect(8, 32, 98, 20) << true;
    for (const char *state : {"", "Hover", "Click", "Check"})
        QTest::addRow("Sensor/RateButton%s", state) << QRect(6, 6, 84, 26) << true;
    for (int model = 0; model < 4; ++model) {
        QTest::addRow("DialogChange/OnLine%d", model) << QRect(12, 308, 260, 40) << true;
        QTest::addRow("DialogChange/DisOnlin%d", model) << QRect(12, 308, 260, 40) << true;
    }
    for (const char *state : {"", "Hover", "Click", "Check"}) {
        QTest::addRow("Buttoninterface/Row%s", state) << QRect(12, 4, 326, 28) << false;
        QTest::addRow("Buttoninterface/Choice%s", state) << QRect(12, 4, 172, 20) << false;
        QTest::addRow("Buttoninterface/Function%s", state) << QRect(12, 4, 172, 24) << false;
        QTest::addRow("Buttoninterface/Detail%s", state) << QRect(12, 4, 112, 24) << false;
    }
    for (const char *state : {"", "Hover", "Click"})
        QTest::addRow("Buttoninterface/Mark%s", state) << QRect(8, 8, 10, 10) << false;
    QTest::newRow("Buttoninterface/BackGround") << QRect(20, 20, 840, 590) << true;
    QTest::newRow("DialogChange/Unknow") << QRect(12, 308, 260, 40) << true;
    QTest::newRow("DialogChange/MainBack") << QRect(8, 52, 1004, 640) << true;
    QTest::newRow("Dialog/BackGround") << QRect(8, 8, 1004, 684) << true;
    QTest::newRow("DialogChange/ComboboxBack") << QRect(6, 4, 118, 22) << true;
    QTest::newRow("DialogChange/ComboboxTextBack") << QRect(6, 4, 118, 120) << true;
    for (const char *state : {"", "Hover", "Click"})
        QTest::addRow("Sensor/MinA%s", state) << QRect(4, 14, 46, 28) << true;
    QTest::newRow("Sensor/MaxA") << QRect(8, 16, 52, 38) << false;
    QTest::newRow("Sensor/BackGround") << QRect(20, 20, 840, 280) << true;
    QTest::newRow("Advanced/BackGround") << QRect(36, 40, 810, 560) << true;
    QTest::newRow("Advanced/Angle") << QRect(236, 32, 318, 88) << true;
    QTest::newRow("WarningDialog/BackGround") << QRect(8, 8, 344, 184) << true;
}

void tst_skin::textCanBeRead()
{
    QFETCH(QRect, where);
    QFETCH(bool, dimToo);
    const QImage ground = picture(QLatin1String(QTest::currentDataTag()) + QStringLiteral(".png"));
    QVERIFY(ground.rect().contains(where));
    const double ink = worstContrast(ground, where, Ink);
    QVERIFY2(ink >= 4.5, qPrintable(QStringLiteral("ink: %1 to 1").arg(ink)));
    const double dimInk = worstContrast(ground, where, DimInk);
    QVERIFY2(!dimToo || dimInk >= 4.5, qPrintable(QStringLiteral("dim ink: %1 to 1").arg(dimInk)));
}

// The outline of a control at the middle of its left side, on every surface that may lie around it.
void tst_skin::outlinesCanBeSeen()
{
    QStringList faint;
    for (const char *name : {"Sensor/ComboboxBack",     "Sensor/CountBack",
                             "Sensor/ComboboxTextBack", "Sensor/CheckBox",
                             "Sensor/CheckBoxHover",    "Sensor/Close",
                             "Sensor/CloseHover",       "Sensor/RateButton",
                             "Sensor/RateButtonHover",  "Sensor/MinA",
                             "Sensor/MinAHover",        "Sensor/MinB",
                             "Sensor/Reduce",           "Buttoninterface/Button",
                             "Buttoninterface/Row",     "Buttoninterface/Function",
                             "Buttoninterface/Detail",  "WarningDialog/Cancel",
                             "WarningDialog/Confirm",   "WarningDialog/CheckBox",
                             "Dialog/NavButtonChecked", "DialogChange/Copy"}) {
        const QImage control = picture(QLatin1String(name) + QStringLiteral("@2x.png"));
        QVERIFY2(!control.isNull(), name);
        const QRgb outline = control.pixel(1, control.height() / 2);
        for (const QColor &surface : Surfaces) {
            const double seen = contrast(over(outline, surface), surface);
            if (seen < 3)
                faint << QStringLiteral("%1 on %2: %3").arg(QLatin1String(name), surface.name()).arg(seen);
        }
    }
    QCOMPARE(faint.join(QLatin1Char('\n')), QString());
}

// A stroke that is too far out is cut off at the right and at the bottom.
void tst_skin::framesAreWhole()
{
    for (const char *name :
         {"MinA", "MinAHover", "MinAClick", "MinATarget", "MaxA", "RateButton", "RateButtonCheck"})
        for (const char *size : {".png", "@2x.png"}) {
            const QImage image = picture(QString("Sensor/") + name + size);
            const int right = image.width() - 1, middle = image.height() / 2;
            for (int depth = 0; depth < 4; ++depth)
                QVERIFY2(image.pixel(depth, middle) == image.pixel(right - depth, middle), name);
        }
}

TEST_CLASS(tst_skin, testmain::CoreApplication)
#include "tst_skin.moc"
