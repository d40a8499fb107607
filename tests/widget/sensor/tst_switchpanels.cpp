// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The three panels with one switch each: what a click writes, texts and tips.
#include "presentation/language/LanguageTables.h"
#include "sensor/MotionSync.h"
#include "sensor/RippeControl.h"
#include "sensor/StraightLine.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QLabel>
#include <QToolButton>

namespace
{

template <typename Panel> std::unique_ptr<SwitchPanel> make() { return std::make_unique<Panel>(); }

struct PanelCase {
    const char *name;
    std::unique_ptr<SwitchPanel> (*make)();
    uint8_t FlashDataMap::*field;
    const char *buttonName;
    const char *defaultCaption;
    const char *caption;
    int tipX[8]; // by language
};
const PanelCase Cases[] = {
    {"RippeControl",
     make<RippeControl>,
     &FlashDataMap::RippeControl,
     "RippeControl_2",
     "波纹控制",
     "Ripple control",
     {175, 120, 120, 100, 175, 175, 175, 175}},
    {"StraightLine",
     make<StraightLine>,
     &FlashDataMap::StraightLine,
     "StraightLine_2",
     "直线修正",
     "Angle snapping",
     {170, 120, 120, 100, 175, 175, 175, 175}},
    {"MotionSync",
     make<MotionSync>,
     &FlashDataMap::MotionSync,
     "MotionSync_2",
     "motion sync",
     "Motion sync",
     {160, 150, 150, 100, 175, 175, 175, 175}},
};

void eachPanel()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < std::size(Cases); ++i)
        QTest::newRow(Cases[i].name) << int(i);
}

} // namespace

class tst_SwitchPanels : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SwitchPanel> panel;
    FakeHidUsb &fake = FakeHidUsb::instance();

    const PanelCase &show(int index)
    {
        panel = Cases[index].make();
        panel->show();
        return Cases[index];
    }
    QLabel *label(const char *name) const { return panel->findChild<QLabel *>(name); }
    void click() const { QTest::mouseClick(panel->button(), Qt::LeftButton); }

private slots:
    void initTestCase() { LoadLanguageTables(); }
    void init() { fixture::beginWithDevice(); }

    void clickWritesTheByteAlone_data() { eachPanel(); }
    void clickWritesTheByteAlone()
    {
        QFETCH(int, index);
        const PanelCase &wanted = show(index);
        FlashDataMap record{};
        for (const uint8_t value : {1, 0, 1}) {
            record.*wanted.field = value;
            click();
            const FlashDataMap written = DeviceRecord::copy();
            QCOMPARE(memcmp(&written, &record, sizeof record), 0);
            QCOMPARE(panel->button()->isChecked(), value == 1);
        }
        QCOMPARE(int(fake.updates().size()), 3);
        QTest::keyClick(panel->button(), Qt::Key_Space);
        QCOMPARE(int(DeviceRecord::copy().*wanted.field), 0);
    }

    void settingItIsNoEdit_data() { eachPanel(); }
    void settingItIsNoEdit()
    {
        QFETCH(int, index);
        show(index);
        QSignalSpy toggled(panel->button(), &QToolButton::toggled);
        for (int byte = 0; byte < 256; ++byte) {
            panel->SetChecked(byte != 0);
            QCOMPARE(panel->button()->isChecked(), byte != 0);
        }
        QCOMPARE(toggled.count(), 0);
        QVERIFY(fake.calls().empty());
    }

    void namesAndTexts_data() { eachPanel(); }
    void namesAndTexts()
    {
        QFETCH(int, index);
        const PanelCase &wanted = show(index);
        QCOMPARE(panel->button()->objectName(), QString(wanted.buttonName));
        QCOMPARE(QString::fromLatin1(panel->metaObject()->className()), QString(wanted.name));
        QCOMPARE(label("caption")->text(), QString::fromUtf8(wanted.defaultCaption));
        QCOMPARE(panel->button()->accessibleName(), QString::fromUtf8(wanted.defaultCaption));
        panel->SlotAllLanguage(0);
        QCOMPARE(label("caption")->text(), QString(wanted.caption));
        QCOMPARE(panel->button()->accessibleName(), QString(wanted.caption));
        QVERIFY(label("tip")->toolTip().startsWith("<p>"));
        QVERIFY(label("tip")->toolTip().contains(panel->button()->accessibleDescription()));
        QVERIFY(!panel->button()->accessibleDescription().isEmpty());
        const fixture::WithoutTexts bare;
        panel->SlotAllLanguage(0);
        QCOMPARE(label("caption")->text(), QString(wanted.caption));
        QCOMPARE(label("tip")->toolTip(), QString());
    }

    void tipStandsByTheLanguage_data() { eachPanel(); }
    void tipStandsByTheLanguage()
    {
        QFETCH(int, index);
        const PanelCase &wanted = show(index);
        for (int language = 0; language < 8; ++language) {
            panel->SlotAllLanguage(language);
            QCOMPARE(label("tip")->pos(), QPoint(wanted.tipX[language], 3));
            QVERIFY(!label("tip")->geometry().intersects(label("caption")->geometry()));
            QVERIFY(panel->rect().contains(label("tip")->geometry()));
        }
        for (const int language : {-1, 8, 1000}) {
            panel->SlotAllLanguage(language);
            QCOMPARE(label("tip")->pos(), QPoint(175, 3));
        }
    }

    void onAndOffLookDifferent_data() { eachPanel(); }
    void onAndOffLookDifferent()
    {
        QFETCH(int, index);
        show(index);
        panel->SetChecked(false);
        const QImage off = panel->button()->grab().toImage();
        panel->SetChecked(true);
        const QImage on = panel->button()->grab().toImage();
        QVERIFY(on != off);
        QCOMPARE(panel->size(), QSize(204, 31));
    }
};

TEST_CLASS(tst_SwitchPanels, fixture::ShippedLooks)

#include "tst_switchpanels.moc"
