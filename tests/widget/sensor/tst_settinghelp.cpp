// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The card of the sensor page that explains the setting under the pointer or with the keyboard focus.
#include "tests/support/TestMain.h"
#include "tests/widget/sensor/SensorFixture.h"

namespace
{

struct HelpCase {
    const char *area;    // what is pointed at
    const char *control; // what gets the focus
    const char *title;
    const char *textKey;
};
constexpr HelpCase HelpCases[] = {
    {"SensorDPI", "horizontalSliderC", "DPI", "DPISettingTips"},
    {"SensorDPI", "BlueButton", "DPI", "DPISettingTips"},
    {"SensorRate", "Button500HZ", "Report rate", "ReportRateTips"},
    {"label_11", "ModelChoose", "Sensor mode", "SensorModeTips"},
    {"TitleButton_4", "ModelChoose", "Sensor mode", "SensorModeTips"},
    {"SensorLOD", "LOD", "LOD", "LODTips"},
    {"Performance", "Performance", "Full performance", "PerformanceTips"},
    {"performanceTip", "PerformanceOpen", "Full performance", "PerformanceTips"},
    {"RippeControl", "RippeControl_2", "Ripple control", "RippleTips"},
    {"StraightLine", "StraightLine_2", "Angle snapping", "AngleTips"},
    {"MotionSync", "MotionSync_2", "Motion sync", "MotionSyncTips"},
};

} // namespace

class tst_SettingHelp : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SensorFixture> page;

    QString title() const { return page->find<QLabel>("helpTitle")->text(); }
    QString text() const { return page->find<QLabel>("helpText")->text(); }
    static QString sensorText(const char *key) { return language::text(language::Section::sensor, key, 0); }
    static void send(QWidget *to, QEvent &&event) { QCoreApplication::sendEvent(to, &event); }
    static void eachCase()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(HelpCases); ++i)
            QTest::addRow("%s %s", HelpCases[i].area, HelpCases[i].control) << int(i);
    }

private slots:
    void init()
    {
        page = std::make_unique<SensorFixture>();
        page->show(editedRecord());
        QApplication::setActiveWindow(page->page.get());
        QTRY_VERIFY(page->page->isActiveWindow());
        page->page->setFocusPolicy(Qt::StrongFocus); // the page itself is no setting
        page->page->setFocus();
        QCOMPARE(title(), sensorText("HelpTitle"));
    }
    void cleanup() { page.reset(); }

    void theSettingUnderThePointer_data() { eachCase(); }
    void theSettingUnderThePointer()
    {
        QFETCH(int, index);
        const HelpCase &wanted = HelpCases[index];
        QVERIFY(!sensorText(wanted.textKey).isEmpty());
        auto *area = page->find<QWidget>(wanted.area);
        send(area, QEnterEvent({1, 1}, {1, 1}, {1, 1}));
        QCOMPARE(title(), QString(wanted.title));
        QCOMPARE(text(), sensorText(wanted.textKey));
        send(area, QEvent(QEvent::Leave));
        QCOMPARE(title(), sensorText("HelpTitle"));
        QCOMPARE(text(), sensorText("HelpHint"));
    }

    void theSettingWithTheFocus_data() { eachCase(); }
    void theSettingWithTheFocus()
    {
        QFETCH(int, index);
        const HelpCase &wanted = HelpCases[index];
        page->find<QWidget>(wanted.control)->setFocus(Qt::TabFocusReason);
        QCOMPARE(title(), QString(wanted.title));
        QCOMPARE(text(), sensorText(wanted.textKey));
    }

    // The pointer only passes; behind it the focus counts again.
    void thePointerComesFirst()
    {
        page->lod()->setFocus(Qt::TabFocusReason);
        auto *rates = page->find<QWidget>("SensorRate");
        send(rates, QEnterEvent({1, 1}, {1, 1}, {1, 1}));
        QCOMPARE(title(), QString("Report rate"));
        send(rates, QEvent(QEvent::Leave));
        QCOMPARE(title(), QString("LOD"));
        page->lod()->showPopup();
        QCOMPARE(title(), QString("LOD"));
        page->lod()->hidePopup();
    }

    void itFollowsTheLanguage()
    {
        page->lod()->setFocus(Qt::TabFocusReason);
        const fixture::OtherLanguage other(
            R"({"mouse": {"sensor": {"LOD": "Height", "LODTips": "How high."}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(title(), QString("Height"));
        QCOMPARE(text(), QString("How high."));
    }

    void itStandsBelowWhatThePageShows_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("y");
        QTest::newRow("with settings") << int(M3395) << 456;
        QTest::newRow("rates and stages alone") << int(M3311) << 316;
    }
    void itStandsBelowWhatThePageShows()
    {
        QFETCH(int, model);
        QFETCH(int, y);
        page = std::make_unique<SensorFixture>(model);
        auto *help = page->find<QWidget>("settingHelp");
        auto *card = page->find<QWidget>("settingsCard");
        QVERIFY(help->isVisible());
        QCOMPARE(help->y(), y);
        QCOMPARE(help->x(), card->x());
        QCOMPARE(help->width(), card->width());
        QVERIFY(page->page->rect().contains(help->geometry()));
        QVERIFY(card->isHidden() || !card->geometry().intersects(help->geometry()));
    }
};

TEST_CLASS(tst_SettingHelp, SensorSetUp)

#include "tst_settinghelp.moc"
