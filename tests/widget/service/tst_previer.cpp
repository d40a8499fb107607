// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The summary panel, which follows the hub alone.
#include "device/ImageCache.h"
#include "service/PreVier.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QLabel>

namespace
{

const char *const Rows[] = {"Dpi", "Report", "Lod", "Config", "Debunce", "Mouse", "Dongle"};

} // namespace

class tst_PreVier : public QObject
{
    Q_OBJECT

    std::unique_ptr<PreVier> panel;
    PostMsg *hub = PostMsg::instance();

    QLabel *label(const QString &name) const
    {
        auto *found = panel->findChild<QLabel *>(name);
        if (!found)
            qFatal("no %s", qPrintable(name));
        return found;
    }
    QStringList values() const
    {
        QStringList all;
        for (const char *row : Rows)
            all << label(QString(row) + "Value")->text();
        return all;
    }
    QString marks() const
    {
        return QString(label("MouseUp")->isHidden() ? "-" : "m") +
               (label("DongleUp")->isHidden() ? "-" : "d");
    }

private slots:
    void init()
    {
        fixture::clean();
        for (const char *absent : {"SigAddMotion(int)", "SigAddMouseVer(QString)", "SigAddDongleVer(QString)",
                                   "SigAddBatteryVis(bool)"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(
                                                   QString("No such signal PostMsg::%1").arg(absent))));
        QTest::ignoreMessage(QtWarningMsg, "QMetaObject::connectSlotsByName: No matching signal for "
                                           "on_UpArrow_clicked()"); // this release has no such button
        panel = std::make_unique<PreVier>();
    }
    void cleanup() { panel.reset(); }

    void itFollowsTheHub()
    {
        QCOMPARE(marks(), QString("--"));
        emit hub->SigAddSensor(12600);
        emit hub->SigAddReport(8000);
        emit hub->SigAddLOD("0.7mm");
        emit hub->SigAddConfig("Profile 2");
        emit hub->SigDebunce("4ms");
        emit hub->SigAddVer(0, "v1.0A");
        emit hub->SigAddVer(1, "v2.21");
        const QStringList told = {"12600", "8000Hz", "0.7mm", "Profile 2", "4ms", "v1.0A", "v2.21"};
        QCOMPARE(values(), told);
        emit hub->SigAddVer(2, "v9.99");
        QCOMPARE(values(), told);
        panel->SlotAddMotion(1);
        panel->SlotAddBatteryVis(true);
        QCOMPARE(values(), told);
        panel->SlotAddMouseVer("v3.00");
        panel->SlotAddDongleVer("v4.00");
        QCOMPARE(values().mid(5), (QStringList{"v3.00", "v4.00"}));
    }

    void theMarksTellOfFirmware()
    {
        emit hub->SigAddUpdate(1, true);
        QCOMPARE(marks(), QString("-d"));
        emit hub->SigAddUpdate(2, true);
        QCOMPARE(marks(), QString("-d"));
        emit hub->SigAddUpdate(0, true);
        QCOMPARE(marks(), QString("md"));
        emit hub->SigAddUpdate(1, false);
        QCOMPARE(marks(), QString("m-"));
        QVERIFY(label("MouseUp")->styleSheet().contains("/Picture/Buttoninterface/IsData.png"));
    }

    void theModelHasItsPicture()
    {
        for (int mid = 6; mid <= 9; ++mid) {
            emit hub->SigMouseIndex(mid);
            const QString wanted = QString("/Picture/Buttoninterface/mouse%1.png").arg(mid - 6);
            QVERIFY(label("widget")->styleSheet().contains(wanted));
        }
    }

    void theNamesFollowTheLanguage()
    {
        QCOMPARE(label("ReportName")->text(), QString("Report rate"));
        QCOMPARE(label("MotionName")->text(), QString("Debounce time"));
        QCOMPARE(label("ConfigName")->text(), QString("Profile"));
        QCOMPARE(label("MouseVer")->text(), QString("Mouse firmware"));
        QCOMPARE(label("DongleVer")->text(), QString("Receiver firmware"));
        const fixture::OtherLanguage other(R"({"mouse":{"sensor":{"ReportRate":"Rate"}}})");
        emit hub->SigAllLanguage(0);
        QCOMPARE(label("ReportName")->text(), QString("Rate"));
        QCOMPARE(label("DpiName")->text(), QString("DPI"));
        QCOMPARE(label("LodName")->text(), QString("LOD"));
    }

    void theArrowLetsTheDeviceGo()
    {
        SelectedDevice::setImageName("Device_CID12_MID06.bin");
        FlashDataMap record{};
        record.ReportRate = 4;
        DeviceRecord::edit([&record](FlashDataMap &map) { map = record; });
        QStringList told;
        QObject context;
        connect(hub, &PostMsg::SigChangeMainDialog, &context,
                [&told](int index) { told << QString("page %1").arg(index); });
        connect(hub, &PostMsg::SigSetMacroPage, &context, [&told] { told << "macros"; });
        panel->on_UpArrow_clicked();
        QCOMPARE(told, (QStringList{"page 0", "macros"}));
        QCOMPARE(FakeHidUsb::instance().calls(),
                 (std::vector<std::string>{"UsbServer_SetPCDriverStatus 0", "UsbServer_Exit"}));
        FlashDataMap cached{};
        QVERIFY(ImageCacheRead("Device_CID12_MID06.bin", &cached));
        QCOMPARE(int(cached.ReportRate), 4);
    }
};

TEST_CLASS(tst_PreVier, fixture::ShippedLooks)

#include "tst_previer.moc"
