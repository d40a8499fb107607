// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's look: boxes tell their state by a tick and not by their colour alone, and profiles are counted
// as the program counts them.
#include "tests/support/Contrast.h"
#include "tests/widget/emulator/PanelFixture.h"

#include <cmath>

namespace
{

using support::contrast;

QImage indicatorOf(QCheckBox *box)
{
    QStyleOptionButton option;
    option.initFrom(box);
    const QRect where = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
    return box->grab(where).toImage().convertToFormat(QImage::Format_ARGB32);
}

// The pixels inside the frame that stand out from its ground, which the corner of the inside shows.
int marksWithin(const QImage &indicator)
{
    const QRect inside = indicator.rect().adjusted(3, 3, -3, -3);
    const QColor ground = indicator.pixelColor(inside.topLeft());
    int count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += contrast(indicator.pixelColor(x, y), ground) >= 2 ? 1 : 0;
    return count;
}

} // namespace

class tst_PanelLook : public PanelFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void checkedBoxHasATick_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("enabled") << true;
        QTest::newRow("off") << false;
    }
    void checkedBoxHasATick()
    {
        QFETCH(bool, enabled);
        open();
        QCheckBox box(window.get());
        box.setEnabled(enabled);
        box.show();
        QCOMPARE(marksWithin(indicatorOf(&box)), 0);
        box.setChecked(true);
        const int marks = marksWithin(indicatorOf(&box));
        QVERIFY2(marks >= 12 && marks <= 60, qPrintable(QString::number(marks)));
    }

    void boxesAndArrowsHaveTheirPictures_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"CheckBox", "CheckBoxHover", "CheckBoxOff", "CheckBoxCheck",
                                 "CheckBoxCheckHover", "CheckBoxCheckOff", "Menu", "MenuClicked", "MenuOff"})
            QTest::newRow(name) << QStringLiteral("/Picture/Panel/%1.png").arg(QLatin1String(name));
    }
    void boxesAndArrowsHaveTheirPictures()
    {
        QFETCH(QString, name);
        QVERIFY(qApp->styleSheet().contains(name));
        QVERIFY(!QImage(QStringLiteral(PRODUCT_FOLDER) + name).isNull());
    }

    void everyColourIsKnown() { QVERIFY2(!qApp->styleSheet().contains('%'), qPrintable(qApp->styleSheet())); }

    void profilesCountFromOne()
    {
        openOnEmulator();
        choose("air");
        auto *box = part<QComboBox>("profileBox");
        QCOMPARE(box->currentText(), QString("Profile 1"));
        emulated->order("profile air 3");
        QTRY_COMPARE(box->currentText(), QString("Profile 4"));
        const auto *model = part<QListView>("deviceList")->model();
        QVERIFY(model->index(1, 0).data(Qt::AccessibleTextRole).toString().contains("Profile 4, "));
    }
};

TEST_CLASS(tst_PanelLook, PanelSetUp)

#include "tst_panellook.moc"
