// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A screen with two pixels for each: what the sheets show there are the double pictures, pixel by pixel.
#include "environment/DataRoot.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QLabel>

namespace
{

constexpr int Rounding = 2; // of a colour that was mixed on the way

bool alike(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) <= Rounding && qAbs(qGreen(a) - qGreen(b)) <= Rounding &&
           qAbs(qBlue(a) - qBlue(b)) <= Rounding;
}

// The opaque pixels of the picture stand together somewhere in the shot.
bool showsAt(const QImage &shot, const QImage &picture, const QPoint &at)
{
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, y)) == 255 &&
                !alike(picture.pixel(x, y), shot.pixel(at.x() + x, at.y() + y)))
                return false;
    return true;
}

bool shows(const QImage &shot, const QImage &picture)
{
    for (int y = 0; y + picture.height() <= shot.height(); ++y)
        for (int x = 0; x + picture.width() <= shot.width(); ++x)
            if (showsAt(shot, picture, {x, y}))
                return true;
    return false;
}

struct TwoPixels {
    TwoPixels() { qputenv("QT_SCALE_FACTOR", "2"); }
};
struct DenseScreen : private TwoPixels, fixture::ShippedLooks {
    using ShippedLooks::ShippedLooks;
};

} // namespace

class tst_Dense : public QObject
{
    Q_OBJECT

    static void check(QWidget *widget, const QString &folder, const char *name)
    {
        widget->show();
        const QImage shot = widget->grab().toImage().convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(shot.size(), widget->size() * 2);
        const QImage picture(folder + QLatin1String(name) + QStringLiteral("@2x.png"));
        QVERIFY(!picture.isNull());
        QVERIFY2(shows(shot, picture.convertToFormat(QImage::Format_ARGB32)), name);
    }

private slots:
    void theWaysOfTheColumn()
    {
        const QString folder = style::pictureFolder(QStringLiteral("Dialog"));
        for (const char *icon :
             {"ButtonMain", "SensorButton", "MacroButton", "LightsButton", "Advanced", "FormSetting"}) {
            QToolButton button;
            button.setCheckable(true);
            button.setFixedSize(112, 56);
            button.setStyleSheet(style::navigationButton(folder, QLatin1String(icon)));
            check(&button, folder, icon);
            button.setChecked(true);
            check(&button, folder, qPrintable(QLatin1String(icon) + QStringLiteral("Checked")));
        }
    }

    void theArrowOfAList()
    {
        const QString folder = style::pictureFolder(QStringLiteral("DialogChange"));
        MyConmboBox box;
        box.addItem("English");
        box.setFixedSize(130, 30);
        styleComboBox(&box, folder);
        check(&box, folder, "Menu");
    }

    void theFrameOfAList()
    {
        QWidget page;
        page.resize(300, 300);
        page.show();
        MyConmboBox box(&page);
        box.addItems({"1", "2", "3"});
        box.setGeometry(60, 60, 130, 30);
        const QString folder = style::pictureFolder(QStringLiteral("Sensor"));
        styleComboBox(&box, folder);
        box.show();
        box.showPopup();
        const QImage list = box.view()->window()->grab().toImage().convertToFormat(QImage::Format_ARGB32);
        const QImage picture(folder + QStringLiteral("ComboboxTextBack@2x.png"));
        const QImage corner =
            picture.convertToFormat(QImage::Format_ARGB32).copy(0, 0, 10, 10); // short of the first row
        QVERIFY(!corner.isNull());
        QVERIFY(showsAt(list, corner, {0, 0}));
        box.hidePopup();
    }

    void theMarkOfACheckBox()
    {
        const QString folder = style::pictureFolder(QStringLiteral("DialogChange"));
        QCheckBox box;
        box.setFixedSize(100, 24);
        box.setStyleSheet(style::checkBox(folder, "255,255,255"));
        check(&box, folder, "CheckBox");
    }

    void titleButtonAndPictures()
    {
        const QString folder = style::pictureFolder(QStringLiteral("WarningDialog"));
        QToolButton close;
        close.setFixedSize(32, 32);
        close.setStyleSheet(style::titleButton(folder, QStringLiteral("Close")));
        check(&close, folder, "Close");
        QLabel sign;
        sign.setFixedSize(48, 48);
        sign.setStyleSheet(style::labelPicture(folder, QStringLiteral("Warn.png")));
        check(&sign, folder, "Warn");
    }
};

TEST_CLASS(tst_Dense, DenseScreen)

#include "tst_dense.moc"
