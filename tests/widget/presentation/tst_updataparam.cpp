// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The end of the wait over a load, branch by branch.
#include "device/ImageCache.h"
#include "device/ImageFile.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QDataStream>
#include <QLabel>

Q_DECLARE_METATYPE(FlashDataMap)

class tst_UpDataParam : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QSignalSpy> notices, formB, light, sensor, button;

    static void setLoaded(bool loaded) { LightPageLoaded = SensorPageLoaded = ButtonPageLoaded = loaded; }
    static QString cachePath(const QString &name) { return dataRoot() + "/Device_Info/" + name; }
    int fed() const { return light->count() + sensor->count() + button->count() + formB->count(); }

    static QString imageFile(const QByteArray &marker, const QByteArray &sensorName, uint8_t stages)
    {
        const QString path = dataRoot() + "/image.bin";
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return {};
        FlashDataMap map{};
        map.ReportRate = 32;
        map.DpiStageCount = stages;
        QDataStream out(&file);
        const QByteArray first = marker.leftJustified(12, '\0');
        const QByteArray second = sensorName.leftJustified(12, '\0');
        out.writeBytes(first.constData(), 12);
        out.writeBytes(second.constData(), 12);
        out.writeBytes(reinterpret_cast<const char *>(&map), sizeof map);
        return path;
    }

private slots:
    void init()
    {
        fixture::clean();
        QDir(dataRoot() + "/Device_Info").removeRecursively();
        makeDataFolders();
        fixture::select(fixture::info("dev", Receiver8K));
        SelectedDevice::setImageName("Device_CID12_MID06.bin");
        PostMsg *hub = PostMsg::instance();
        notices = std::make_unique<QSignalSpy>(hub, SIGNAL(SigMouseOffLineo(int)));
        formB = std::make_unique<QSignalSpy>(hub, SIGNAL(SigFormB()));
        qRegisterMetaType<FlashDataMap>("FlashDataMap");
        light = std::make_unique<QSignalSpy>(hub, SIGNAL(SigUpDataLightUIA(FlashDataMap)));
        sensor = std::make_unique<QSignalSpy>(hub, SIGNAL(SigUpDataSensorUIB(FlashDataMap)));
        button = std::make_unique<QSignalSpy>(hub, SIGNAL(SigUpDataButtonUIC(FlashDataMap)));
    }

    void theTimerEndsTheWait()
    {
        DataLoaded = true;
        setLoaded(true);
        UpDataParam wait;
        wait.startTimer();
        wait.exec();
        QVERIFY(!wait.isVisible());
        QCOMPARE(notices->count(), 0);
    }

    void loadedPagesCloseItAndTheFirstImageIsKept()
    {
        DataLoaded = true;
        MouseOnline = true;
        setLoaded(true);
        DeviceRecord::edit([](FlashDataMap &map) { map.ReportRate = 64; });
        UpDataParam wait;
        wait.show();
        wait.onTimeupDestroy();
        QVERIFY(!wait.isVisible());
        QVERIFY(!LightPageLoaded && !SensorPageLoaded && !ButtonPageLoaded);
        QCOMPARE(notices->count(), 0);
        FlashDataMap kept{};
        QVERIFY(ImageCacheRead("Device_CID12_MID06.bin", &kept));
        QCOMPARE(int(kept.ReportRate), 64);
    }

    void anImageThatExistsStays()
    {
        FlashDataMap old{};
        old.ReportRate = 4;
        ImageCacheWrite("Device_CID12_MID06.bin", old);
        DataLoaded = true;
        MouseOnline = true;
        setLoaded(true);
        UpDataParam().onTimeupDestroy();
        FlashDataMap kept{};
        QVERIFY(ImageCacheRead("Device_CID12_MID06.bin", &kept));
        QCOMPARE(int(kept.ReportRate), 4);
    }

    void aMouseThatWentKeepsNoImage()
    {
        DataLoaded = true;
        MouseOnline = false;
        setLoaded(true);
        UpDataParam().onTimeupDestroy();
        QVERIFY(!QFile::exists(cachePath("Device_CID12_MID06.bin")));
    }

    void pagesThatLoadLateAreWaitedFor()
    {
        DataLoaded = true;
        setLoaded(false);
        QTimer::singleShot(700, [] { setLoaded(true); });
        UpDataParam wait;
        wait.show();
        wait.onTimeupDestroy();
        QVERIFY(!wait.isVisible());
        QCOMPARE(notices->count(), 0);
    }

    void pagesThatNeverLoadBringTheTimeOutNotice()
    {
        DataLoaded = true;
        setLoaded(false);
        SensorPageLoaded = true;
        UpDataParam wait;
        wait.show();
        wait.onTimeupDestroy();
        QVERIFY(!wait.isVisible());
        QCOMPARE(notices->count(), 1);
        QCOMPARE(notices->at(0).at(0).toInt(), 1);
        QVERIFY(SensorPageLoaded);
    }

    void aLossShowsTheKeptImage()
    {
        FlashDataMap old{};
        old.ReportRate = 4;
        ImageCacheWrite("Device_CID12_MID06.bin", old);
        UpDataParam wait;
        wait.show();
        wait.onTimeupDestroy();
        QCOMPARE(fed(), 4);
        QCOMPARE(int(sensor->at(0).at(0).value<FlashDataMap>().ReportRate), 4);
        QCOMPARE(notices->count(), 1);
        QCOMPARE(notices->at(0).at(0).toInt(), 0);
        QVERIFY(!wait.isVisible());
    }

    void aLossWithoutImageSaysSoAlone()
    {
        UpDataParam().onTimeupDestroy();
        QCOMPARE(fed(), 0);
        QCOMPARE(notices->count(), 1);
        QCOMPARE(notices->at(0).at(0).toInt(), 0);
    }

    void aRefreshStaysARefresh()
    {
        UpDataParam wait;
        wait.setRefreshing();
        for (int use = 0; use < 2; ++use) {
            setLoaded(true);
            wait.show();
            wait.onTimeupDestroy();
            QVERIFY(!wait.isVisible());
            QVERIFY(SensorPageLoaded); // the other branch would have cleared it
        }
        QCOMPARE(notices->count(), 0);
    }

    void aRefreshThatFailsSaysOffLine()
    {
        setLoaded(false);
        UpDataParam wait;
        wait.setRefreshing();
        wait.show();
        wait.onTimeupDestroy();
        QVERIFY(!wait.isVisible());
        QCOMPARE(notices->count(), 1);
        QCOMPARE(notices->at(0).at(0).toInt(), 0);
        QCOMPARE(fed(), 0);
    }

    // In the language that ships, then in one without a text for an import.
    void theWaitTellsAnImportFromAnUpdate()
    {
        const auto said = [](const UpDataParam &wait) { return wait.findChild<QLabel *>("label")->text(); };
        const auto text = [](const char *key) { return language::text(language::Section::infoTips, key, 0); };
        const UpDataParam update;
        UpDataParam import;
        import.setImport("image.bin");
        QVERIFY(!text("DialogImporting").isEmpty() && text("DialogImporting") != text("DialogUpdating"));
        QCOMPARE(said(update), text("DialogUpdating"));
        QCOMPARE(said(import), text("DialogImporting"));
        const fixture::OtherLanguage other(R"({"mouse": {"infoTips": {"DialogUpdating": "One moment"}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(said(update), QString("One moment"));
        QCOMPARE(said(import), QString("One moment"));
    }

    void anImportReachesDeviceAndPages()
    {
        UpDataParam wait;
        wait.setImport(imageFile("Taigri", "3395", 6));
        wait.show();
        wait.onTimeupDestroy();
        QCOMPARE(int(ImportResult), int(ImageAccepted));
        QCOMPARE(int(DeviceRecord::copy().ReportRate), 32);
        QCOMPARE(int(FakeHidUsb::instance().updates().size()), 1);
        QCOMPARE(int(FakeHidUsb::instance().updates().front().ReportRate), 32);
        QCOMPARE(fed(), 4);
        QVERIFY(!wait.isVisible());
    }

    void anImportThatDoesNotFitChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("marker");
        QTest::addColumn<QByteArray>("sensorName");
        QTest::addColumn<int>("stages");
        QTest::addColumn<int>("result");
        QTest::newRow("no image file")
            << QByteArray("Other") << QByteArray("3395") << 6 << int(ImageUnreadable);
        QTest::newRow("other sensor")
            << QByteArray("Taigri") << QByteArray("3950") << 6 << int(ImageMismatch);
        QTest::newRow("more stages") << QByteArray("Taigri") << QByteArray("3395") << 7 << int(ImageMismatch);
    }
    void anImportThatDoesNotFitChangesNothing()
    {
        QFETCH(QByteArray, marker);
        QFETCH(QByteArray, sensorName);
        QFETCH(int, stages);
        QFETCH(int, result);
        const notice::NextAnswer<InportFail> confirmed(true);
        UpDataParam wait;
        wait.setImport(imageFile(marker, sensorName, uint8_t(stages)));
        wait.show();
        wait.onTimeupDestroy();
        QVERIFY(confirmed.isTaken());
        QCOMPARE(int(ImportResult), result);
        QCOMPARE(int(DeviceRecord::copy().ReportRate), 0);
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QCOMPARE(fed(), 0);
        QVERIFY(!wait.isVisible());
    }
};

TEST_CLASS(tst_UpDataParam, fixture::ShippedLooks)

#include "tst_updataparam.moc"
