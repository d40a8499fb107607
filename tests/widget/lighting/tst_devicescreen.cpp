// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialogs of receivers' lights and of mice with a screen, which nothing opens, and the clock of such a
// screen, which nothing sets.
#include "lighting/InputPic.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "lighting/LightPreview.h"
#include "lighting/LightTables.h"
#include "lighting/ScreenClock.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

namespace
{

const QDateTime Noon(QDate(2026, 11, 22), QTime(12, 34, 56)); // a Sunday

QByteArray hex(const ScreenPacket &packet)
{
    return QByteArray(reinterpret_cast<const char *>(packet.data()), int(packet.size())).toHex();
}

// Without a zero, so that all of it is sent.
ScreenPacket fullPacket()
{
    ScreenPacket packet;
    packet.fill(3);
    packet[0] = 7;
    return packet;
}

} // namespace

class tst_DeviceScreen : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();

    template <typename Widget = QWidget> static Widget *in(const QWidget &dialog, const char *name)
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    void tick(InputPicA &dialog, int times)
    {
        for (int i = 0; i < times; ++i)
            dialog.onEraseChipTimeTimer();
    }
    // Attaches one screen and finds it.
    void plugScreen()
    {
        FakeDevice screen = fixture::device("screen", 6, fixture::CableKind);
        screen.vid = "77";
        fake.addDevice(screen);
        screens::setVendor("77");
        QCOMPARE(screens::RefreshScreenPaths(), 1);
        fake.clearCalls();
    }

private slots:
    void init()
    {
        fixture::clean();
        screens::setVendor({});
        screens::RefreshScreenPaths();
        fake.clearCalls();
    }
    void cleanup() { QTRY_VERIFY(fake.idle()); }

    // ---- The packet

    void thePacketOfATime()
    {
        QCOMPARE(hex(clockPacket(Noon)), QByteArray("0a001007ea0b160c223807") + QByteArray(58, '0'));
        const QDateTime monday(QDate(1999, 1, 4), QTime(0, 0, 0));
        QCOMPARE(hex(clockPacket(monday)), QByteArray("0a001007cf010400000001") + QByteArray(58, '0'));
    }

    void onlyTheChecksumOfAClockPacketIsSent()
    {
        ScreenPacket packet = clockPacket(Noon);
        std::array<uint8_t, ScreenPacketSize> reply{};
        QVERIFY(!SendScreenPacket(packet, reply.data()));
        QCOMPARE(int(packet[0]), 0x55);
        QCOMPARE(hex(packet).mid(2), hex(clockPacket(Noon)).mid(2));
        QCOMPARE(fake.calls(), std::vector<std::string>(5, "UsbFinderC_ReadWriteDeviceData 1 85"));
    }

    void aZeroEndsThePacketWhereverItStands()
    {
        ScreenPacket packet = fullPacket();
        packet[9] = 0;
        QVERIFY(!SendScreenPacket(packet, nullptr));
        QCOMPARE(int(packet[8]), (0x55 - (7 + 7 * 3)) & 0xFF);
        QCOMPARE(fake.calls(),
                 std::vector<std::string>(5, "UsbFinderC_ReadWriteDeviceData 9 7 3 3 3 3 3 3 3 57"));
        fake.clearCalls();
        packet[0] = 0;
        QVERIFY(!SendScreenPacket(packet, nullptr)); // not even a checksum
        QVERIFY(fake.calls().empty());
    }

    void aReplyIsAccepted_data()
    {
        QTest::addColumn<int>("changed"); // byte of the reply; -1 for none
        QTest::addColumn<int>("attempts");
        QTest::newRow("as it should be") << -1 << 1;
        QTest::newRow("of another packet") << 6 << 5;
        QTest::newRow("with a wrong checksum") << 20 << 5;
        QTest::newRow("that is empty") << 0 << 5;
    }
    void aReplyIsAccepted()
    {
        QFETCH(int, changed);
        QFETCH(int, attempts);
        ScreenPacket packet = fullPacket();
        std::array<uint8_t, ScreenPacketSize> reply{};
        fake.setHook([&](const std::string &) {
            std::copy(packet.begin(), packet.end(), reply.begin());
            if (changed >= 0)
                reply[std::size_t(changed)] = changed == 0 ? 0 : 9;
            if (changed == 6)
                reply[7] = uint8_t(3 - 6); // its checksum holds
        });
        QCOMPARE(SendScreenPacket(packet, reply.data()) == reply.data(), attempts == 1);
        fake.setHook(nullptr);
        QCOMPARE(fake.count("UsbFinderC_ReadWriteDeviceData"), attempts);
    }

    // ---- The screens

    void theScreensAreThoseOfAllProducts()
    {
        FakeDevice screen = fixture::device("a", 6, fixture::CableKind);
        screen.vid = "77";
        screens::setVendor("77");
        QCOMPARE(screens::RefreshScreenPaths(), 0);
        fake.addDevice(screen);
        QCOMPARE(screens::RefreshScreenPaths(), 1);
        screen.path = "b";
        screen.pid = fixture::pidOf(Receiver8K);
        fake.addDevice(screen);
        fake.clearCalls();
        QCOMPARE(screens::RefreshScreenPaths(), 2);
        QCOMPARE(screens::paths(), QStringList({"a", "b"}));
        QCOMPARE(screens::pathIndex(), 0);
        QCOMPARE(fake.calls().front(), std::string("UsbFinderC_FindHidDevicesByDeviceId 77 0001 1 8"));
        screens::setVendor({});
        QCOMPARE(screens::RefreshScreenPaths(), 0);
        QCOMPARE(screens::paths(), QStringList());
    }

    // ---- The timer

    void aPacketIsSentEachFiftiethTick()
    {
        plugScreen();
        InputPicA dialog;
        tick(dialog, 49);
        QVERIFY(fake.calls().empty());
        tick(dialog, 1);
        std::vector<std::string> wanted(5, "UsbFinderC_ReadWriteDeviceData 1 85");
        wanted.insert(wanted.begin(), "UsbFinderC_OpenDevice screen");
        QCOMPARE(fake.calls(), wanted);
        tick(dialog, 50);
        QCOMPARE(fake.count("UsbFinderC_OpenDevice"), 2);
    }

    void whileItIsBusyTheCountBeginsAnew()
    {
        plugScreen();
        InputPicA dialog;
        tick(dialog, 49);
        dialog.setBusy(true);
        tick(dialog, 1);
        dialog.setBusy(false);
        tick(dialog, 49);
        QVERIFY(fake.calls().empty());
        tick(dialog, 1);
        QCOMPARE(fake.count("UsbFinderC_OpenDevice"), 1);
    }

    void withoutAScreenNothingIsOpened()
    {
        InputPicA dialog;
        tick(dialog, 50);
        QVERIFY(fake.calls().empty());
        plugScreen();
        fake.setDevices({});
        tick(dialog, 50); // the one of the last search does not open
        QCOMPARE(fake.count("UsbFinderC_OpenDevice"), 1);
        QCOMPARE(fake.count("UsbFinderC_ReadWriteDeviceData"), 0);
    }

    void startingBeginsTheTimerAndTheSearch()
    {
        InputPicA dialog;
        const QTimer &timer = dialog.eraseTimer();
        QVERIFY(!timer.isActive());
        QCOMPARE(timer.interval(), 200);
        dialog.StartScreenClock(false);
        QVERIFY(!timer.isActive());
        QCOMPARE(fake.count("StartUsbChanged"), 0);
        dialog.StartScreenClock(true);
        QVERIFY(timer.isActive() && !timer.isSingleShot());
        const std::vector<std::string> calls = fake.calls();
        QCOMPARE(int(std::count(calls.begin(), calls.end(), "StartUsbChanged 600")), 1);
        QTRY_VERIFY(fake.count("UsbFinderC_FindHidDevicesByDeviceId") > 0);
        StopUsbChanged();
    }

    // ---- The dialogs

    void closingTellsTheSettingsPage()
    {
        LedInfo info;
        InputPicA first;
        InputPicB second;
        LightModeSet light;
        QSignalSpy closed(PostMsg::instance(), &PostMsg::SigButtonCheck);
        for (QDialog *dialog : std::initializer_list<QDialog *>{&info, &first, &second, &light}) {
            dialog->show();
            in<QToolButton>(*dialog, "CloseButton")->click();
            QVERIFY(!dialog->isVisible());
        }
        QCOMPARE(closed.count(), 4);
        QVERIFY(fake.calls().empty());
    }

    void thePicturesForm()
    {
        InputPicB dialog;
        QCOMPARE(dialog.size(), QSize(638, 318));
        QCOMPARE(in<QLabel>(dialog, "label")->text(), QString("图片预览(1080x1920"));
        auto *brightness = in<QSlider>(dialog, "horizontalSlider");
        QCOMPARE(brightness->geometry(), QRect(50, 90, 281, 25));
        QCOMPARE(QVector<int>({brightness->minimum(), brightness->maximum(), brightness->pageStep()}),
                 QVector<int>({1, 5, 1}));
        dialog.show();
        const QPair<const char *, const char *> tiles[] = {{"toolButton", "mark"},
                                                           {"toolButton_2", "mark_2"},
                                                           {"toolButton_3", "mark_3"},
                                                           {"toolButton_4", "mark_4"}};
        for (int chosen = 3; chosen >= 0; --chosen) {
            in<QToolButton>(dialog, tiles[chosen].first)->click();
            for (int i = 0; i < 4; ++i) {
                QCOMPARE(in(dialog, tiles[i].first)->geometry(), QRect(50 + 100 * i, 160, 74, 100));
                QCOMPARE(in(dialog, tiles[i].second)->isVisible(), i == chosen);
                QCOMPARE(in(dialog, tiles[i].second)->y(), 265);
            }
        }
        QCOMPARE(in(dialog, "Input")->geometry(), QRect(460, 180, 96, 26));
        QCOMPARE(in(dialog, "Output")->geometry(), QRect(460, 220, 96, 26));
    }

    void theLightsModesShowTheirControls()
    {
        LightModeSet dialog;
        dialog.show();
        auto *mode = in<QComboBox>(dialog, "LightMod");
        QCOMPARE(mode->count(), 6);
        QCOMPARE(mode->itemText(1), language::choice("LightModeOptions", "1", 0));
        for (int i = 0; i < mode->count(); ++i) {
            mode->setCurrentIndex(i);
            const ModeControls &shown = ModeRows[std::size_t(i)];
            QCOMPARE(in(dialog, "horizontalLight")->isVisible(), shown.brightness);
            QCOMPARE(in(dialog, "line")->isVisible(), !shown.brightness);
            QCOMPARE(in(dialog, "horizontalSpeed")->isVisible(), shown.speed);
            QCOMPARE(in(dialog, "line_2")->isVisible(), !shown.speed);
            for (const char *name : {"label_6", "label_7", "RSpinBox", "AddG", "ReduceB", "preview",
                                     "toolButtonColorA", "toolButtonColorN"})
                QCOMPARE(in(dialog, name)->isVisible(), shown.color);
        }
        dialog.on_LightMod_currentIndexChanged(9);
        QVERIFY(in(dialog, "horizontalLight")->isVisible()); // as mode 5 has it
    }

    void theLightsControlsOnlyChangeThePreview()
    {
        fake.addDevice(fixture::device("dev", 6, Receiver8K, false));
        fixture::select(fixture::info("dev", Receiver8K));
        const QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        LightModeSet dialog;
        dialog.show();
        const auto shown = [&] { return in<LightPreview>(dialog, "lightPreview")->light(); };
        in<QComboBox>(dialog, "LightMod")->setCurrentIndex(Breathing);
        in<QToolButton>(dialog, "toolButtonColorF")->click();
        QCOMPARE(shown().color, QColor(255, 80, 0));
        QVERIFY(in(dialog, "preview")->styleSheet().startsWith("QLabel{background-color: rgb(255,80,0);"));
        in<QToolButton>(dialog, "AddR")->click(); // is at its end
        in<QToolButton>(dialog, "AddG")->click();
        in<QToolButton>(dialog, "ReduceB")->click();
        in<QToolButton>(dialog, "ReduceR")->click();
        in<QToolButton>(dialog, "AddB")->click();
        in<QToolButton>(dialog, "ReduceG")->click();
        QCOMPARE(shown().color, QColor(254, 80, 1));
        in<QSpinBox>(dialog, "GSpinBox")->setValue(99);
        in<QSlider>(dialog, "horizontalLight")->setValue(7);
        in<QSlider>(dialog, "horizontalSpeed")->setValue(4);
        QCOMPARE(shown().color, QColor(254, 99, 1));
        QCOMPARE(QVector<int>({shown().mode, shown().brightness, shown().speed}),
                 QVector<int>({Breathing, 7, 4}));
        QCOMPARE(in<QSpinBox>(dialog, "LightSpinBox_2")->value(), 7);
        QCOMPARE(in<QSpinBox>(dialog, "SpeedSpinBox_2")->value(), 4);
        QVERIFY(fake.calls().empty());
        QCOMPARE(offLine.count(), 0);
    }

    void theSchemesShowWhereAReceiverHasLights_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("shown");
        QTest::newRow("receiver with lights") << 0 << int(Receiver8K) << true;
        QTest::newRow("without lights") << 1 << int(Receiver8K) << false;
        QTest::newRow("cable") << 0 << int(fixture::CableKind) << false;
    }
    void theSchemesShowWhereAReceiverHasLights()
    {
        QFETCH(int, model);
        QFETCH(int, kind);
        QFETCH(bool, shown);
        static DongleRGB record; // the dialog keeps it
        record = DongleRGB{2, {}};
        fixture::beginWithDevice(model, uint16_t(kind));
        LedInfo dialog;
        dialog.show();
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigRGBValue(&record); });
        QCOMPARE(in(dialog, "ReUntil_2")->isVisible(), shown);
        QCOMPARE(in<QAbstractButton>(dialog, "ReUntil_2")->isChecked(), shown);
        if (!shown)
            return;
        in<QAbstractButton>(dialog, "ReUntil_3")->click();
        QCOMPARE(int(fake.device("dev").rgb.Scheme), 3);
        fake.setOnline("dev", false);
        in<QAbstractButton>(dialog, "ReUntil")->click();
        QVERIFY(in<QAbstractButton>(dialog, "ReUntil_3")->isChecked());
        QCOMPARE(int(fake.device("dev").rgb.Scheme), 3);
    }

    void theLanguageReachesThem()
    {
        LedInfo info;
        LightModeSet light;
        InputPicA pictures;
        const fixture::OtherLanguage other(R"({"mouse": {"light": {"Brightness": "Helligkeit",
            "receiverStatusList": [{"info": "signal", "option": "Signal"}],
            "LightModeOptions": [{"value": 1, "option": "Fluss"}]}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(in<QLabel>(light, "brightnessCaption")->text(), QString("Helligkeit"));
        QCOMPARE(in<QComboBox>(light, "LightMod")->itemText(1), QString("Fluss"));
        QVERIFY(in<QAbstractButton>(info, "ReUntil")->text().startsWith("Signal"));
        QCOMPARE(in<QLabel>(pictures, "label_2")->text(), QString("屏幕亮度"));
    }
};

TEST_CLASS(tst_DeviceScreen, fixture::ShippedLooks)

#include "tst_devicescreen.moc"
