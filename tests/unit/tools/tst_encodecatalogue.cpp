// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "catalogue/ConfigReader.h"
#include "catalogue/EncodedKeys.h"
#include "tests/support/TestMain.h"
#include "tools/encode/CatalogueSource.h"
#include "tools/encode/UdevRules.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <sstream>

class tst_EncodeCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void encodesTheThirteenKeysAndNoOther()
    {
        for (const std::string_view key : EncodedKeys) {
            const EncodedCatalogue result = encode("[Option]\nDeviceTotal=0\n" + std::string(key) + "=12\n");
            QCOMPARE(result.error, std::string());
            QCOMPARE(result.text, "[Option]\nDeviceTotal=0\n" + std::string(key) + "=MTI=\n");
        }
        QCOMPARE(encode("[Option]\nMID=12\nDeviceTotal=0\n").text,
                 std::string("[Option]\nMID=12\nDeviceTotal=0\n"));
    }

    void encodesItemByItem_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("one") << QByteArray("A") << QByteArray("QQ==");
        QTest::newRow("two") << QByteArray("A,B") << QByteArray("QQ==,Qg==");
        QTest::newRow("blanks") << QByteArray(" A , BC ") << QByteArray("QQ==,QkM=");
        QTest::newRow("three bytes") << QByteArray("ABC") << QByteArray("QUJD");
        QTest::newRow("none") << QByteArray("") << QByteArray("");
        QTest::newRow("empty items") << QByteArray(",A,") << QByteArray(",QQ==,");
        QTest::newRow("all digits") << QByteArray("~~~>?>?>?") << QByteArray("~~~>?>?>?").toBase64();
    }
    void encodesItemByItem()
    {
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, stored);
        const std::string text = encode("[Option]\nDeviceTotal=0\nVID=" + source.toStdString() + "\n").text;
        QCOMPARE(QByteArray::fromStdString(text), "[Option]\nDeviceTotal=0\nVID=" + stored + "\n");
    }

    void refusesMistakes_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("line");
        QTest::newRow("no line of a catalogue") << QByteArray("[Option]\nDeviceTotal\n") << 2;
        QTest::newRow("value first") << QByteArray("; x\n\nCID=1\n[Option]\n") << 3;
        QTest::newRow("a model first") << QByteArray("[Drive1]\nMID=1\n") << 1;
        QTest::newRow("key twice") << QByteArray("[Option]\nCID=1\nVID=2\nCID=3\n") << 4;
        QTest::newRow("bad key") << QByteArray("[Option]\nC ID=1\n") << 2;
        QTest::newRow("no key") << QByteArray("[Option]\n=1\n") << 2;
        QTest::newRow("section twice") << QByteArray("[Option]\n[Option]\n") << 2;
        QTest::newRow("gap") << QByteArray("[Option]\nDeviceTotal=2\n[Drive2]\n") << 3;
        QTest::newRow("unknown section") << QByteArray("[Option]\n[Drives]\n") << 2;
        QTest::newRow("open heading") << QByteArray("[Option\n") << 1;
        QTest::newRow("quote") << QByteArray("[Option]\nVID=\"1\"\n") << 2;
        QTest::newRow("backslash") << QByteArray("[Option]\nVID=a\\b\n") << 2;
        QTest::newRow("comment behind") << QByteArray("[Option]\nVID=1 ; one\n") << 2;
        QTest::newRow("object") << QByteArray("[Option]\nXIn1=@Variant(1)\n") << 2;
        QTest::newRow("not ASCII") << QByteArray("[Option]\nVID=\xC3\xA9\n") << 2;
        QTest::newRow("wrong total") << QByteArray("[Option]\nDeviceTotal=2\n[Drive1]\nMID=1\n") << 4;
        QTest::newRow("no total") << QByteArray("[Option]\nCID=1\n") << 2;
    }
    void refusesMistakes()
    {
        QFETCH(QByteArray, source);
        QFETCH(int, line);
        const EncodedCatalogue result = encode(source.toStdString());
        QVERIFY(!result.error.empty());
        QCOMPARE(result.errorLine, line);
    }

    void givesTheReaderWhatTheSourceSays()
    {
        QVERIFY(write("source.ini", "; x\r\n[Option]\r\nDeviceTotal = 1\r\nVID=0x1209, 0x1234\r\nCID=18\r\n"
                                    "[Drive1]\r\nMID=6\r\nDPIRange=50, 26000, 50, 0x22\r\nSensor=PA42\r\n"));
        QCOMPARE(run("source.ini", "Config.ini"), 0);
        ConfigReader reader(folder_.filePath("Config.ini"));
        QCOMPARE(reader.ReadConfig("Option", "DeviceTotal"), QString("1"));
        QCOMPARE(reader.ReadConfigList("Option", "VID"), QStringList({"0x1209", "0x1234"}));
        QCOMPARE(reader.ReadConfig("Option", "CID"), QString("18"));
        QCOMPARE(reader.ReadConfig("Drive1", "Sensor"), QString("PA42"));
        QCOMPARE(reader.ReadConfigList("Drive1", "DPIRange"), QStringList({"50", "26000", "50", "0x22"}));
    }

    void saysWhereTheMistakeIs()
    {
        QVERIFY(write("bad.ini", "[Option]\nDeviceTotal=0\nwhat\n"));
        QVERIFY(run("bad.ini", "none.ini") != 0);
        QVERIFY(errors_.startsWith(folder_.filePath("bad.ini").toUtf8() + ":3: "));
        QVERIFY(!QFileInfo::exists(folder_.filePath("none.ini")));
        QVERIFY(run("missing.ini", "none.ini") != 0);
        QVERIFY(errors_.contains("missing.ini"));
        QVERIFY(write("good.ini", "[Option]\nDeviceTotal=0\n"));
        QVERIFY(run("good.ini", "no/such/folder.ini") != 0);
    }

    void udevRulesNameTheIds_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("vendors");
        QTest::addColumn<QByteArray>("products");
        QTest::newRow("one") << QByteArray("VID=0x1209\nUSB_PID=0x0001\n") << QByteArray("1209")
                             << QByteArray("0001");
        QTest::newRow("lists") << QByteArray(
                                      "VID = 0x1209, 12AB\r\nUSB_PID=0x0001\nWireless8_PID=0x0005,0x0006\n")
                               << QByteArray("1209|12ab") << QByteArray("0001|0005|0006");
        QTest::newRow("each once") << QByteArray("VID=1209,0x1209\nUSB_PID=0001\nBoot_PID=0001,0007\n")
                                   << QByteArray("1209") << QByteArray("0001|0007");
        QTest::newRow("no ids") << QByteArray("VID=1209,12,0x12g4\n; VID=1111\nCID=1234\nUSB_PID=0001\"\n"
                                              "USB_PID=0002\n")
                                << QByteArray("1209") << QByteArray("0002");
    }
    void udevRulesNameTheIds()
    {
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, vendors);
        QFETCH(QByteArray, products);
        std::istringstream stream("[Option]\n" + source.toStdString());
        const UdevRules rules = udevRules(stream);
        QCOMPARE(rules.error, std::string());
        const QByteArray text = QByteArray::fromStdString(rules.text);
        QVERIFY(text.contains("\nSUBSYSTEM==\"hidraw\", ATTRS{idVendor}==\"" + vendors +
                              "\", ATTRS{idProduct}==\"" + products + "\", "));
        QVERIFY(text.endsWith("TAG+=\"uaccess\"\n"));
    }

    // Distributions differ in their groups, so only the one that is asked for is named.
    void udevRulesNameTheGroupThatIsAskedFor()
    {
        QVERIFY(write("group.ini", "[Option]\nVID=0x1209\nUSB_PID=0x0001\n"));
        for (const char *option : {"--udev", "--udev=", "--udev=users"}) {
            QCOMPARE(run("group.ini", "group.rules", {QString::fromLatin1(option)}), 0);
            QFile file(folder_.filePath("group.rules"));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray rules = file.readAll();
            const bool named = QByteArray(option).endsWith("users");
            QCOMPARE(rules.count("users"), named ? 2 : 0);
            QCOMPARE(rules.contains(", MODE=\"0660\", GROUP=\"users\", TAG+=\"uaccess\"\n"), named);
            QCOMPARE(rules.contains("GROUP"), named);
            QVERIFY(!rules.contains("plugdev"));
        }
    }

    void udevRulesNeedIds()
    {
        QVERIFY(write("none.ini", "[Option]\nVID=0x1209\n"));
        QVERIFY(run("none.ini", "none.rules", {"--udev"}) != 0);
        QVERIFY(!QFileInfo::exists(folder_.filePath("none.rules")));
        QVERIFY(write("some.ini", "[Option]\nVID=0x1209\nUSB_PID=1\nUSB_PID=0x0001\n"));
        QCOMPARE(run("some.ini", "some.rules", {"--udev"}), 0);
        QVERIFY(QFileInfo::exists(folder_.filePath("some.rules")));
    }

private:
    static EncodedCatalogue encode(const std::string &source)
    {
        std::istringstream stream(source);
        return encodeCatalogue(stream);
    }
    bool write(const char *name, const QByteArray &bytes)
    {
        QFile file(folder_.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    int run(const char *source, const char *target, const QStringList &options = {})
    {
        QProcess encoder;
        encoder.start(ENCODER, options + QStringList{folder_.filePath(source), folder_.filePath(target)});
        if (!encoder.waitForFinished(60000))
            return -1;
        errors_ = encoder.readAllStandardError();
        return encoder.exitCode();
    }

    QTemporaryDir folder_;
    QByteArray errors_;
};

TEST_CLASS(tst_EncodeCatalogue, testmain::CoreApplication)
#include "tst_encodecatalogue.moc"
