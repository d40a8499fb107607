// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The light of the DPI stage, on its page: what its controls write, what a record shows, and what is
// restored.
#include "lighting/LampLight.h"
#include "lighting/SensorEffect.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QRegularExpression>
#include <QSlider>
#include <QSpinBox>

namespace
{

struct SliderCase {
    const char *slider;
    const char *spinBox;
    const char *placeholder;
    int mode; // that shows it
    int most;
    uint8_t FlashDataMap::*field;
};
constexpr SliderCase Sliders[] = {
    {"SpeedH", "SpeedSpinBox", "SpeedPlaceholder", 2, 5, &FlashDataMap::DpiLedSpeed},
    {"LightH", "LightSpinBox", "LightPlaceholder", 1, 10, &FlashDataMap::DpiLedBrightness},
};
constexpr int Curve[] = {16, 30, 60, 90, 128, 150, 180, 210, 230, 255};

int storedValue(const SliderCase &wanted, int value) { return wanted.most == 10 ? Curve[value - 1] : value; }

// The values that docs/protocol.md gives for a field.
QString documented(const char *field)
{
    QFile document(QStringLiteral(SOURCE_FOLDER "/docs/protocol.md"));
    if (!document.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(document.readAll());
    const QRegularExpression row("\\| `" + QString::fromLatin1(field) + "` \\| (.*) \\|\n");
    return row.match(text).captured(1);
}

FlashDataMap recordWith(int mode, int brightness, int speed, int enable)
{
    FlashDataMap map{};
    map.DpiLedMode = uint8_t(mode);
    map.DpiLedBrightness = uint8_t(brightness);
    map.DpiLedSpeed = uint8_t(speed);
    map.DpiLedEnable = uint8_t(enable);
    return map;
}

void eachSliderValue()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("value");
    for (int i = 0; i < int(std::size(Sliders)); ++i)
        for (int value = 1; value <= Sliders[i].most; ++value)
            QTest::addRow("%s %d", Sliders[i].slider, value) << i << value;
}

void eachSlider()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(Sliders)); ++i)
        QTest::newRow(Sliders[i].slider) << i;
}

} // namespace

class tst_SensorEffect : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LampLight> page;
    FakeHidUsb &fake = FakeHidUsb::instance();

    SensorEffect *panel() const { return page->findChild<SensorEffect *>(); }
    QComboBox *model() const { return panel()->findChild<QComboBox *>("Model"); }
    QSlider *slider(const SliderCase &wanted) const { return panel()->findChild<QSlider *>(wanted.slider); }
    QSpinBox *spinBox(const SliderCase &wanted) const
    {
        return panel()->findChild<QSpinBox *>(wanted.spinBox);
    }
    void paint(const FlashDataMap &map) const { page->SlotUpDataLightUIA(map); }
    // "Off", "LightH" or "SpeedH": what can be set, with the rest in its place.
    QString shownMode() const
    {
        QString shown;
        for (const SliderCase &each : Sliders) {
            const bool visible = !slider(each)->isHidden();
            if (visible)
                shown += each.slider;
            if (spinBox(each)->isHidden() == visible ||
                panel()->findChild<QLabel *>(each.placeholder)->isHidden() != visible)
                return "torn";
        }
        return shown.isEmpty() ? QString("Off") : shown;
    }
    static QString wantedMode(int mode) { return mode == 0 ? "Off" : mode == 1 ? "LightH" : "SpeedH"; }
    void choose(int index) const
    {
        const int neighbour = index == 0 ? 1 : index - 1;
        panel()->SetModel(neighbour);
        QTest::keyClick(model(), index < neighbour ? Qt::Key_Up : Qt::Key_Down);
    }
    // As a drag does it.
    static void drag(QSlider *slider, int position)
    {
        slider->setSliderDown(true);
        slider->setSliderPosition(position);
        slider->setSliderDown(false);
    }

private slots:
    // Firmware is written against these.
    void theDocumentHasTheValues()
    {
        page = std::make_unique<LampLight>();
        const QSlider *speed = slider(Sliders[0]);
        QCOMPARE(documented("DpiLedSpeed"),
                 QStringLiteral("%1 to %2, slowest first").arg(speed->minimum()).arg(speed->maximum()));
        QStringList curve;
        for (const int value : Curve)
            curve << QString::number(value);
        const QString last = curve.takeLast();
        QCOMPARE(documented("DpiLedBrightness"), curve.join(QStringLiteral(", ")) + " or " + last);
    }

    void initTestCase() { LoadLanguageTables(); }
    void init()
    {
        fixture::beginWithDevice();
        page = std::make_unique<LampLight>();
        page->show();
    }

    // ---- Mode -----------------------------------------------------------------------------------

    void modes_data()
    {
        QTest::addColumn<int>("mode");
        for (const int mode : {0, 1, 2})
            QTest::addRow("%d", mode) << mode;
    }
    void modes()
    {
        QFETCH(int, mode);
        DeviceRecord::edit([](FlashDataMap &map) { map.DpiLedMode = 7; });
        FlashDataMap wanted = DeviceRecord::copy();
        choose(mode);
        wanted.DpiLedEnable = mode == 0 ? 0 : 1;
        wanted.DpiLedMode = mode == 0 ? 7 : uint8_t(mode);
        const FlashDataMap written = DeviceRecord::copy();
        QCOMPARE(memcmp(&written, &wanted, sizeof wanted), 0);
        QCOMPARE(int(fake.updates().size()), 1);
        QCOMPARE(model()->currentIndex(), mode);
        QCOMPARE(shownMode(), wantedMode(mode));
        // It is the one to go back to.
        fake.setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        model()->setCurrentIndex((mode + 1) % 3);
        QCOMPARE(model()->currentIndex(), mode);
        QCOMPARE(shownMode(), wantedMode(mode));
        QCOMPARE(notice.count(), 1);
        QCOMPARE(int(fake.updates().size()), 1);
    }

    void notArmedOrBusyTheModeIsShownAllTheSame()
    {
        for (const bool busy : {false, true}) {
            UiArmed = busy;
            SensorPageBusy = busy;
            for (const int mode : {1, 2, 0}) {
                model()->setCurrentIndex(mode);
                QCOMPARE(shownMode(), wantedMode(mode));
            }
            SensorPageBusy = false;
        }
        QVERIFY(fake.calls().empty());
    }

    // ---- Sliders --------------------------------------------------------------------------------

    void sliderWritesTheByteAlone_data() { eachSliderValue(); }
    void sliderWritesTheByteAlone()
    {
        QFETCH(int, index);
        QFETCH(int, value);
        const SliderCase &wanted = Sliders[index];
        paint(recordWith(wanted.mode, Curve[value == 1 ? 1 : 0], value == 1 ? 2 : 1, 1));
        drag(slider(wanted), value);
        FlashDataMap record{};
        record.*wanted.field = uint8_t(storedValue(wanted, value));
        const FlashDataMap written = DeviceRecord::copy();
        QCOMPARE(memcmp(&written, &record, sizeof record), 0);
        QCOMPARE(int(fake.updates().size()), 1);
        QCOMPARE(slider(wanted)->value(), value);
        QCOMPARE(spinBox(wanted)->value(), value);
        QVERIFY(slider(wanted)->isEnabled());
    }

    void keysAndPressesWrite_data() { eachSlider(); }
    void keysAndPressesWrite()
    {
        QFETCH(int, index);
        const SliderCase &wanted = Sliders[index];
        paint(recordWith(wanted.mode, 16, 1, 1));
        QTest::keyClick(slider(wanted), Qt::Key_Right);
        QCOMPARE(int(DeviceRecord::copy().*wanted.field), storedValue(wanted, 2));
        QTest::mouseClick(slider(wanted), Qt::LeftButton, {}, QPoint(slider(wanted)->width() - 1, 12));
        QCOMPARE(int(DeviceRecord::copy().*wanted.field), storedValue(wanted, slider(wanted)->value()));
        QVERIFY(slider(wanted)->value() >= wanted.most - 1);
        QCOMPARE(spinBox(wanted)->value(), slider(wanted)->value());
    }

    // A slider that is moved takes no further step before the mouse has answered.
    void aMovedSliderIsDisabledWhileTheMouseIsAsked_data() { eachSlider(); }
    void aMovedSliderIsDisabledWhileTheMouseIsAsked()
    {
        QFETCH(int, index);
        const SliderCase &wanted = Sliders[index];
        paint(recordWith(wanted.mode, 16, 1, 1));
        page->activateWindow();
        QTRY_VERIFY(page->isActiveWindow());
        QSlider *const moved = slider(wanted);
        moved->setFocus();
        QWindow *const window = page->windowHandle();
        const auto at = [&](int x) { return moved->mapTo(page.get(), QPoint(x, moved->height() / 2)); };
        QList<bool> enabled;
        fake.setHook([&](const std::string &) { enabled << moved->isEnabled(); });
        QTest::mousePress(window, Qt::LeftButton, {}, at(1));
        for (const int x : {moved->width() / 2, moved->width()}) {
            enabled.clear();
            QTest::mouseMove(window, at(x));
            QVERIFY(enabled.size() > 1);
            QVERIFY(!enabled.first());
            QVERIFY(enabled.last()); // the write, which asks again
            QVERIFY(moved->isEnabled() && moved->isSliderDown() && moved->hasFocus());
        }
        fake.setHook(nullptr);
        QTest::mouseRelease(window, Qt::LeftButton, {}, at(moved->width()));
        QCOMPARE(int(DeviceRecord::copy().*wanted.field), storedValue(wanted, wanted.most));
    }

    // ---- What a record shows --------------------------------------------------------------------

    // On a cable, where a record is all that is shown; on a radio link the receiver is asked for its own.
    void showsEveryMode()
    {
        SelectedDevice::set(fixture::info("dev", fixture::CableKind));
        for (int enable = 0; enable < 256; ++enable)
            for (int mode = 0; mode < 256; mode += enable < 2 ? 1 : 51) {
                panel()->SetModel(1);
                paint(recordWith(mode, 255, 5, enable));
                const int wanted = enable == 0 ? 0 : mode == 2 ? 2 : 1; // others keep what is shown
                QCOMPARE(model()->currentIndex(), wanted);
                QCOMPARE(shownMode(), wantedMode(wanted));
            }
        QVERIFY(fake.calls().empty());
    }

    void showsEveryBrightnessAndSpeed()
    {
        SelectedDevice::set(fixture::info("dev", fixture::CableKind));
        for (int byte = 0; byte < 256; ++byte) {
            paint(recordWith(1, byte, byte, 1));
            const int *found = std::find(std::begin(Curve), std::end(Curve), byte);
            const int light = found == std::end(Curve) ? 1 : int(found - Curve) + 1;
            QCOMPARE(slider(Sliders[1])->value(), light);
            QCOMPARE(spinBox(Sliders[1])->value(), light);
            QCOMPARE(slider(Sliders[0])->value(), qBound(1, byte, 5));
            QCOMPARE(spinBox(Sliders[0])->value(), qBound(1, byte, 5));
        }
        QVERIFY(fake.calls().empty());
    }

    void theDevicesOwnChangeIsShown()
    {
        panel()->setEnabled(false);
        LightPageLoaded = false;
        fixture::emitOnOtherThread(
            [] { emit PostMsg::instance()->SigUpDataDPILed(recordWith(2, 128, 4, 1)); });
        QVERIFY(panel()->isEnabled());
        QCOMPARE(model()->currentIndex(), 2);
        QCOMPARE(slider(Sliders[0])->value(), 4);
        QCOMPARE(slider(Sliders[1])->value(), 5);
        QVERIFY(!LightPageLoaded);
        fixture::emitOnOtherThread(
            [] { emit PostMsg::instance()->SigUpDataLightLight(recordWith(1, 255, 1, 1)); });
        QCOMPARE(model()->currentIndex(), 1);
        QVERIFY(LightPageLoaded && !LightPageBusy);
        QVERIFY(fake.updates().empty());
    }

    void withoutDeviceAndImage()
    {
        paint(recordWith(2, 255, 5, 1));
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        QCOMPARE(shownMode(), QString("Off"));
        QCOMPARE(model()->currentIndex(), 0);
        QCOMPARE(slider(Sliders[0])->value(), 3);
        QCOMPARE(slider(Sliders[1])->value(), 5);
        QVERIFY(fake.updates().empty());
    }

    void placeDependsOnTheLink()
    {
        for (const bool wired : {false, true, false}) {
            SelectedDevice::set(fixture::info("dev", wired ? fixture::CableKind : uint16_t(Receiver8K)));
            paint({});
            QCOMPARE(panel()->pos(), wired ? QPoint(68, 77) : QPoint(68, 280));
            QVERIFY(page->rect().contains(panel()->geometry()));
        }
        SelectedDevice::set(fixture::info("dev", fixture::CableKind));
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        QCOMPARE(panel()->pos(), QPoint(68, 77));
    }

    void texts()
    {
        SensorEffect fresh;
        QCOMPARE(fresh.findChild<QLabel *>("title")->text(), QString::fromUtf8("DPI灯效"));
        auto *modes = fresh.findChild<QComboBox *>("Model");
        QCOMPARE(modes->itemText(0), QString::fromUtf8("关闭"));
        QCOMPARE(modes->itemText(1), QString::fromUtf8("常亮"));
        QCOMPARE(modes->itemText(2), QString::fromUtf8("呼吸"));
        QCOMPARE(modes->count(), 3);
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(panel()->findChild<QLabel *>("title")->text(), QString("DPI light"));
        QCOMPARE(model()->itemText(1), QString("Steady"));
        for (const SliderCase &each : Sliders)
            QVERIFY(!slider(each)->accessibleName().isEmpty());
        QVERIFY(!model()->accessibleName().isEmpty());
    }
};

TEST_CLASS(tst_SensorEffect, fixture::ShippedLooks)

#include "tst_sensoreffect.moc"
