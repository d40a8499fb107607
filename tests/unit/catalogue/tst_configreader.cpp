// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "catalogue/CatalogueKeys.h"
#include "catalogue/ConfigReader.h"
#include "catalogue/DeviceCatalogue.h"
#include "environment/DataRoot.h"
#include "tests/support/TestMain.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <thread>

class tst_ConfigReader : public QObject
{
    Q_OBJECT

private slots:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }

    void decodesTheThirteenKeys_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("encoded");
        const char *const encoded[] = {
            "MM",  "DM",      "D2M",          "D4M",           "D8M",           "Sensor",       "CID",
            "VID", "USB_PID", "Wireless_PID", "Wireless2_PID", "Wireless4_PID", "Wireless8_PID"};
        const char *const plain[] = {"MID", "DeviceTotal",   "DPIRange", "KeyParam1",
                                     "cid", "Wireless1_PID", ""};
        for (const char *key : encoded)
            QTest::newRow(key) << QString(key) << true;
        for (const char *key : plain)
            QTest::newRow(key) << QString(key) << false;
        QCOMPARE(std::count_if(CatalogueKeys.begin(), CatalogueKeys.end(),
                               [](const CatalogueKey &key) { return key.isEncoded; }),
                 std::ptrdiff_t(std::size(encoded)));
    }
    void decodesTheThirteenKeys()
    {
        QFETCH(QString, key);
        QFETCH(bool, encoded);
        for (const char *section : {"Option", "Drive2", "Elsewhere"}) {
            if (key.isEmpty())
                continue;
            ConfigReader reader(write("[" + QByteArray(section) + "]\n" + key.toUtf8() + "=MTI=\n"));
            QCOMPARE(reader.ReadConfig(section, key), encoded ? QString("12") : QString("MTI="));
            QCOMPARE(reader.ReadConfigList(section, key), QStringList(encoded ? "12" : "MTI="));
        }
    }

    void stripsLineFeedsAndBlanks()
    {
        const QByteArray coded = QByteArray("12\n").toBase64();
        const QByteArray text = QByteArray("\n a b\n c \t€").toBase64();
        ConfigReader reader(write("[Option]\nCID=" + coded + "\nSensor=" + text + "\nMID=12\nXIn1= a b \n"));
        QCOMPARE(reader.ReadConfig("Option", "CID"), QString("12"));
        QCOMPARE(reader.ReadConfig("Option", "Sensor"), QString("abc\t€"));
        QCOMPARE(reader.ReadConfig("Option", "MID"), QString("12"));
        QCOMPARE(reader.ReadConfig("Option", "XIn1"), QString("a b"));
    }

    void leavesAnEncodedMidAsItIs()
    {
        ConfigReader reader(write("[Drive1]\nMID=MTI=\n"));
        QCOMPARE(reader.ReadConfig("Drive1", "MID"), QString("MTI="));
        QCOMPARE(DeviceCatalogue(reader).number(0, "MID"), 0);
    }

    void decodesListsItemByItem()
    {
        ConfigReader reader(write("[Option]\nVID=QQ==,Qg==\nDPIRange=50, 100 ,50,0x22\n"));
        QCOMPARE(reader.ReadConfigList("Option", "VID"), QStringList({"A", "B"}));
        QCOMPARE(reader.ReadConfigList("Option", "DPIRange"), QStringList({"50", "100", "50", "0x22"}));
        QCOMPARE(reader.ReadConfigList("Option", "none"), QStringList());
        QCOMPARE(reader.ReadConfig("Option", "none"), QString());
        QCOMPARE(reader.ReadConfig("none", "VID"), QString());
    }

    void takesWhatItCanOfBadBase64()
    {
        ConfigReader reader(write("[Option]\nVID=!!!,M*TI=,M,\nCID=@Variant(\\0)\n"));
        QCOMPARE(reader.ReadConfigList("Option", "VID"), QStringList({"", "12", "", ""}));
        QCOMPARE(reader.ReadConfig("Option", "CID"), QString());
    }

    void readsTheSectionOfAModel()
    {
        ConfigReader reader(write("[Option]\nDeviceTotal=3\nCID=MTI=\n[Drive1]\nMID=5\n[Drive2]\nMID=7\n"
                                  "[Drive3]\nMID=7\nDPIGrade=1,2\nSensor=MzM5NQ==\n"));
        const DeviceCatalogue catalogue(reader);
        QCOMPARE(DeviceCatalogue::section(2), QString("Drive3"));
        QCOMPARE(catalogue.number(2, "MID"), 7);
        QCOMPARE(catalogue.text(2, "Sensor"), QString("3395"));
        QCOMPARE(catalogue.list(2, "DPIGrade"), QStringList({"1", "2"}));
        QCOMPARE(catalogue.total(), 3);
        QCOMPARE(catalogue.find(12, 7), 1); // the first of two
        QCOMPARE(catalogue.find(12, 5), 0);
        QCOMPARE(catalogue.find(12, 6), 3);
        QCOMPARE(catalogue.find(13, 5), 3);
    }

    void boundsTheNumberOfModels_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<int>("total");
        QTest::newRow("missing") << QByteArray() << 0;
        QTest::newRow("nonsense") << QByteArray("DeviceTotal=four") << 0;
        QTest::newRow("hexadecimal") << QByteArray("DeviceTotal=0x4") << 0;
        QTest::newRow("negative") << QByteArray("DeviceTotal=-1") << -1;
        QTest::newRow("too large") << QByteArray("DeviceTotal=2000000000") << 255;
        QTest::newRow("beyond numbers") << QByteArray("DeviceTotal=99999999999") << 0;
    }
    void boundsTheNumberOfModels()
    {
        QFETCH(QByteArray, stored);
        QFETCH(int, total);
        ConfigReader reader(write("[Option]\n" + stored + "\n"));
        QCOMPARE(DeviceCatalogue(reader).total(), total);
        QCOMPARE(DeviceCatalogue(reader).find(1, 1), total);
    }

    void givesColoursForStyleSheets_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QString>("colour");
        QTest::newRow("three") << QByteArray("255,0,0") << "255,0,0";
        QTest::newRow("blanks") << QByteArray("1, 2 , 3") << "1,2,3";
        QTest::newRow("four") << QByteArray("1,2,3,4") << "1,2,3";
        QTest::newRow("two") << QByteArray("1,2") << "224,224,224";
        QTest::newRow("empty") << QByteArray("") << "224,224,224";
        QTest::newRow("too large") << QByteArray("1,2,256") << "224,224,224";
        QTest::newRow("negative") << QByteArray("1,-2,3") << "224,224,224";
        QTest::newRow("style") << QByteArray("1,2,\"3);}*{image:url(x)\"") << "224,224,224";
    }
    void givesColoursForStyleSheets()
    {
        QFETCH(QByteArray, stored);
        QFETCH(QString, colour);
        ConfigReader reader(write("[Option]\nLabelColor=" + stored + "\n"));
        QCOMPARE(DeviceCatalogue(reader).colour("LabelColor"), colour);
        QCOMPARE(DeviceCatalogue(reader).colour("ButtonColor"), QString("224,224,224"));
    }

    void isEmptyForBadFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("nonsense") << QByteArray("this is no catalogue\n= = =\n[[[\n");
        QTest::newRow("zeros") << QByteArray(5000, '\0');
        QTest::newRow("larger than allowed")
            << QByteArray("[Option]\nDeviceTotal=4\n") + QByteArray(int(IniSizeLimit), ';');
        QTest::newRow("variants") << QByteArray(
            "[Option]\nDeviceTotal=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\0\\x4)\n");
        QTest::newRow("deep names") << QByteArray("[") + QByteArray(200000, '\\') + "]\nDeviceTotal=4\n";
    }
    void isEmptyForBadFiles()
    {
        QFETCH(QByteArray, bytes);
        ConfigReader reader(write(bytes));
        const DeviceCatalogue catalogue(reader);
        QCOMPARE(catalogue.total(), 0);
        QCOMPARE(catalogue.find(18, 6), 0);
        QCOMPARE(catalogue.optionList("VID"), QStringList());
        QCOMPARE(catalogue.colour("LabelColor"), QString("224,224,224"));
    }

    void isEmptyForWhatIsNoFile()
    {
        for (const QString &path :
             {folder_->filePath("none"), folder_->path(), QString(), QString("/dev/zero")})
            QCOMPARE(DeviceCatalogue(*std::make_unique<ConfigReader>(path)).total(), 0);
    }

    void survivesRandomBytes()
    {
        QRandomGenerator random(815);
        for (int round = 0; round < 200; ++round) {
            QByteArray bytes = "[Option]\n";
            for (int i = random.bounded(2000); i > 0; --i)
                bytes += char(random.bounded(256));
            ConfigReader reader(write(bytes));
            QCOMPARE(DeviceCatalogue(reader).total(), 0);
        }
    }

    void writesAndRemoves()
    {
        const QString path = write("[Option]\nCID=MTI=\nDeviceTotal=1\n");
        {
            ConfigReader reader(path);
            QVERIFY(reader.WriteConfig("Drive1", "MID", "7"));
            QVERIFY(reader.RemoveConfig("Option", "DeviceTotal"));
            QCOMPARE(reader.ReadConfig("Drive1", "MID"), QString("7"));
        }
        ConfigReader again(path);
        QCOMPARE(again.ReadConfig("Drive1", "MID"), QString("7"));
        QCOMPARE(again.ReadConfig("Option", "CID"), QString("12"));
        QCOMPARE(again.ReadConfig("Option", "DeviceTotal"), QString());
    }

    void isOneForTheProcess()
    {
        QDir(folder_->path()).mkpath("usersetting");
        write("[Option]\nDeviceTotal=3\n", "usersetting/Config.ini");
        setApplicationFolder(folder_->path());
        QCOMPARE(DeviceCatalogue().total(), 3);
        QCOMPARE(&ConfigReader::instance(), &ConfigReader::instance());
        ConfigReader::instance().open(write("[Option]\nDeviceTotal=5\n", "other.ini"));
        QCOMPARE(DeviceCatalogue().total(), 5);
        setApplicationFolder({});
    }

    void answersManyThreads()
    {
        ConfigReader reader(write("[Option]\nCID=MTI=\nVID=QQ==,Qg==\n"));
        std::atomic<int> right{0};
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t) {
            threads.emplace_back([&] {
                for (int i = 0; i < 200; ++i)
                    right += reader.ReadConfig("Option", "CID") == "12" &&
                             reader.ReadConfigList("Option", "VID").size() == 2;
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(right.load(), 1600);
    }

private:
    QString write(const QByteArray &bytes, const QString &name = "Config.ini")
    {
        QFile file(folder_->filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
        return file.fileName();
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

TEST_CLASS(tst_ConfigReader, testmain::CoreApplication)
#include "tst_configreader.moc"
