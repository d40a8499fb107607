// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DpiCodes.h"
#include "keys/MediaKeys.h"
#include "tests/support/TestMain.h"
#include "tools/encode/KeyForms.h"
#include "tools/encode/UdevRules.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <sstream>

namespace
{

constexpr char Sensors[] = "/* x */\n"
                           "#define SENSORS\t3395,PA42,T1,T12\n"
                           "#define SUPPORT_RIPPLE\t3395\n"
                           "#define SENSOR_T1_DPI_100\t0x01\n"
                           "#define SENSOR_T1_DPI_200\t0xff\n"
                           "#define SENSOR_T1_DPI_300\t3\n";

SensorHeader headerOf(const QByteArray &text)
{
    std::istringstream stream(text.toStdString());
    return readSensorHeader(stream);
}

// A catalogue with one model and all that is needed, one key a line; the model begins at line 13.
constexpr char Small[] = "[Option]\n"
                         "DeviceTotal=1\n"
                         "VID=0x1209\n"
                         "USB_PID=0x0001\n"
                         "CID=18\n"
                         "LabelColor=1,2,3\n"
                         "ButtonColor=1,2,3\n"
                         "SliderColor=1,2,3\n"
                         "ComboxTextColor=1,2,3\n"
                         "ComboxSelectColor=1,2,3\n"
                         "ComboxBackGroundColor=1,2,3\n"
                         "LinEditColor=1,2,3\n"
                         "LinEditColorSecond=1,2,3\n"
                         "[Drive1]\n"
                         "MID=6\n"
                         "Sensor=PA42\n"
                         "DPIMaxGrade=2\n"
                         "DPIGrade=100,200,300,400,500,600,6200,12000\n"
                         "DPIColor=255,0,0,0,0,255\n"
                         "DPIRange=100,6000,100,6200,12000,200,0x11\n"
                         "KeyNumber=8\n"
                         "Adveanced=-1,3\n";

// `Small` with another value for a key; a key that it lacks is put at the end.
QByteArray withValue(const QByteArray &key, const QByteArray &value)
{
    QByteArray source = Small;
    const int at = source.indexOf('\n' + key + '=');
    if (at < 0)
        return source + key + '=' + value + '\n';
    return source.replace(at + 1, source.indexOf('\n', at + 1) - at - 1, key + '=' + value);
}

QByteArray without(const QByteArray &line)
{
    QByteArray source = Small;
    return source.replace(line + '\n', "");
}

int lineOf(const QByteArray &source, const QByteArray &line)
{
    const int at = ('\n' + source).indexOf('\n' + line);
    return at < 0 ? 0 : int(source.left(at).count('\n')) + 1;
}

} // namespace

class tst_EncodeCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void encodesTheKeysThatAreCoded()
    {
        const EncodedCatalogue result = encode(Small);
        QCOMPARE(result.error, std::string());
        const QByteArray text = QByteArray::fromStdString(result.text);
        for (const char *line : {"VID=MHgxMjA5", "CID=MTg=", "Sensor=UEE0Mg==", "MID=6", "Adveanced=-1,3"})
            QVERIFY2(text.contains('\n' + QByteArray(line) + '\n'), line);
    }

    void encodesItemByItem_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("one") << QByteArray("0x1209") << QByteArray("MHgxMjA5");
        QTest::newRow("two") << QByteArray("0x1209,0x1234") << QByteArray("MHgxMjA5,MHgxMjM0");
        QTest::newRow("blanks") << QByteArray(" 0x1209 ,\t0x1234 ") << QByteArray("MHgxMjA5,MHgxMjM0");
    }
    void encodesItemByItem()
    {
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, stored);
        const QByteArray text = QByteArray::fromStdString(encode(withValue("VID", source)).text);
        QVERIFY(text.contains("\nVID=" + stored + '\n'));
    }

    // Base64 of one, two and three bytes more than whole groups.
    void encodesNamesOfAnyLength()
    {
        for (const QByteArray &name :
             {QByteArray("M"), QByteArray("M6"), QByteArray("M6_"), QByteArray(63, 'z')}) {
            const EncodedCatalogue result = encode(withValue("MM", name));
            QCOMPARE(result.error, std::string());
            QVERIFY(result.text.find("\nMM=" + name.toBase64().toStdString() + '\n') != std::string::npos);
        }
    }

    void refusesWhatIsNoCatalogue_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("line");
        QTest::newRow("nothing") << QByteArray() << 0;
        QTest::newRow("no line of a catalogue") << QByteArray("[Option]\nDeviceTotal\n") << 2;
        QTest::newRow("value first") << QByteArray("; x\n\nCID=1\n[Option]\n") << 3;
        QTest::newRow("a model first") << QByteArray("[Drive1]\nMID=1\n") << 1;
        QTest::newRow("bad key") << QByteArray("[Option]\nC ID=1\n") << 2;
        QTest::newRow("no key") << QByteArray("[Option]\n=1\n") << 2;
        QTest::newRow("section twice") << QByteArray(Small) + "[Option]\n" << 23;
        QTest::newRow("model twice") << QByteArray(Small) + "[Drive1]\n" << 23;
        QTest::newRow("gap") << QByteArray(Small) + "[Drive3]\n" << 23;
        QTest::newRow("unknown section") << QByteArray(Small) + "[Drives]\n" << 23;
        QTest::newRow("open heading") << QByteArray("[Option\n") << 1;
        QTest::newRow("not ASCII") << QByteArray("[Option]\nVID=\xC3\xA9\n") << 2;
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF") + Small << 1;
        QTest::newRow("UTF-16") << QByteArray("[\0O\0p\0t\0i\0o\0n\0]\0\n\0", 18) << 1;
        QTest::newRow("lacks a colour") << without("SliderColor=1,2,3") << 1;
        QTest::newRow("lacks the total") << without("DeviceTotal=1") << 1;
        QTest::newRow("lacks the model id") << without("MID=6") << 14;
        QTest::newRow("lacks the ranges") << without("DPIRange=100,6000,100,6200,12000,200,0x11") << 14;
        QTest::newRow("key twice") << QByteArray(Small) + "KeyNumber=8\n" << 23;
        QTest::newRow("line without an end") << Small + QByteArray("; ").leftJustified(1001, 'x') << 23;
        QTest::newRow("no model") << QByteArray(Small).left(QByteArray(Small).indexOf("[Drive")) << 2;
        const QByteArray model = QByteArray(Small).mid(QByteArray(Small).indexOf("[Drive"));
        QByteArray second = model;
        second.replace("[Drive1]", "[Drive2]");
        QByteArray two = Small;
        two.replace("Total=1", "Total=2");
        QTest::newRow("a model more than told") << Small + QByteArray(second).replace("MID=6", "MID=7") << 2;
        QTest::newRow("model id twice") << two + second << 24;
    }
    void refusesWhatIsNoCatalogue()
    {
        QFETCH(QByteArray, source);
        QFETCH(int, line);
        const EncodedCatalogue result = encode(source);
        QVERIFY(!result.error.empty());
        QCOMPARE(result.errorLine, line);
    }

    void refusesAValueOutOfForm_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        const auto row = [](const char *key, const char *value) {
            QTest::addRow("%s=%s", key, value) << QByteArray(key) << QByteArray(value);
        };
        row("KeyNumbr", "8");
        row("keynumber", "8");
        row("VID2", "0x1209");
        row("CID", "18"); // of the other section
        for (const char *value :
             {"ninety", "", "0", "13", "8x", "0x8", "+8", "08", "8.0", "8,9", "9999999999"})
            row("KeyNumber", value);
        for (const char *value : {"MTg=", "256", "-1", "1 8"})
            row("MID", value);
        for (const char *value : {"1209", "0x120", "0x12095", "0x12g9", "0x1209,", "MHgxMjA5", "",
                                  "\"0x1209\"", "0x1209 ; one", "@Variant(1)", "a\\b", "0x0000"})
            row("VID", value);
        for (const char *value : {"PA43", "3395,PA42", "pa42", "", "UEE0Mg=="})
            row("Sensor", value);
        for (const char *value : {"1,2", "1,2,3,4", "1,2,256", "1,2,red", "#ffffff", "1,2,"})
            row("LabelColor", value);
        for (const char *value : {"255,0,0", "255,0,0,0,0", "255,0,0,0,0,256",
                                  "1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3"})
            row("DPIColor", value);
        for (const char *value : {"100,200,300,400,500,600,6200", "100,200,300,400,500,600,6200,12000,12000",
                                  "100,200,300,400,500,600,6200,12200", "150,200,300,400,500,600,6200,12000",
                                  "100,200,300,400,500,600,6100,12000"})
            row("DPIGrade", value);
        for (const char *value :
             {"100,6000,100,6200,12000,200", "100,6000,100,6200,12000", "100,6000,100", "0x11", "",
              "6000,100,100,0x11", "100,6000,0,0x11", "100,6050,100,0x11", "100,6000,100,0x12",
              "100,6000,100,6000,12000,200,0x11", "6200,12000,200,100,6000,100,0x11", "100,6000,100,11",
              "1,2,1,3,4,1,5,6,1,7,8,1,9,10,1,0x33"})
            row("DPIRange", value);
        for (const char *value :
             {"0x06,0,0x00CD", "0x05,0", "0x05,0,play", "0x05,0,0,", "0x05,0,0,Ctrl+", "0x05,0,0,A+B+C+D",
              "0x05,0,0,A,B", "0x05,0,0x00CE", "0x05,0,0,Ctrl+Foo", "0x05,0,0,LCtrl", "0x05,0,0,ctrl",
              "5,0,0x00CD", "0x05,0x00CD", "0x05,0,0,0,Ctrl+C", "0x05,0,0,Ctrl + C", "0x05,0,0,C+Ctrl+C"})
            row("KeyParam3", value);
        row("KeyParam7", "0x05,0,0x00CD");
        row("KeyParam0", "0x05,0,0x00CD");
        for (const char *value : {"-1", "2,1", "0,4", "-2,0", "0,1,0"})
            row("Adveanced", value);
        row("MM", "M6 Mouse");
        row("MM", "../M6");
        row("MM", ".M6");
        row("MM", QByteArray(64, 'm').constData());
        row("XIn1", "3");
        row("DPIMaxGrade", "9");
        row("DeviceTotal", "256");
    }
    void refusesAValueOutOfForm()
    {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, value);
        const QByteArray source = key == "CID" ? Small + QByteArray("CID=18\n") : withValue(key, value);
        const EncodedCatalogue result = encode(source);
        QVERIFY(result.error.find(key.toStdString()) != std::string::npos);
        QCOMPARE(result.errorLine, key == "CID" ? 23 : lineOf(source, key + '='));
    }

    void takesWhatIsInForm_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        const auto row = [](const char *key, const char *value) {
            QTest::addRow("%s=%s", key, value) << QByteArray(key) << QByteArray(value);
        };
        row("KeyNumber", "1");
        row("KeyNumber", "12");
        row("MID", "255");
        row("VID", "0x12aB, 0xFFFF");
        row("DPIRange", "100,12000,100,0x00");
        row("DPIRange", "100,1000,100,1200,2000,200,2400,4000,400,4800,12000,200,0x33");
        row("DPIColor", "1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3,1,2,3");
        row("KeyParam1", "0x05,0,0x00CD");
        row("KeyParam6", "0x05,0,0,Ctrl+Shift+C");
        row("KeyParam2", "0x05,1,0x00CD");
        row("KeyParam2", "0x05,x,,Ctrl+C");
        row("Adveanced", "1,-1");
        row("KeyNumber", "5\nKeyParam6=0x05,0,0x00CD"); // counts for what a reset empties
    }
    void takesWhatIsInForm()
    {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, value);
        QByteArray source = withValue(key, value);
        if (value.endsWith("0x33")) // with stages that lie in these ranges
            source.replace("500,600,6200,12000", "1200,2400,4800,12000");
        QCOMPARE(encode(source).error, std::string());
    }

    // What the encoder refuses, the program still reads as well as it can.
    void theProgramReadsTheRestAllTheSame()
    {
        QVERIFY(write("odd.ini", "[Option]\nDeviceTotal=1\nOther=1\n[Drive1]\nKeyNumber=ninety\nMID=6\n"));
        const ConfigReader reader(folder_.filePath("odd.ini"));
        const DeviceCatalogue catalogue(reader);
        QCOMPARE(catalogue.total(), 1);
        QCOMPARE(catalogue.number(0, "KeyNumber"), 0);
        QCOMPARE(catalogue.number(0, "MID"), 6);
    }

    void givesTheReaderWhatTheSourceSays()
    {
        QByteArray source = "; x\r\n" + withValue("VID", " 0x1209, 0x1234").replace('\n', "\r\n");
        QVERIFY(write("source.ini", source));
        QCOMPARE(run("source.ini", "Config.ini"), 0);
        ConfigReader reader(folder_.filePath("Config.ini"));
        QCOMPARE(reader.ReadConfig("Option", "DeviceTotal"), QString("1"));
        QCOMPARE(reader.ReadConfigList("Option", "VID"), QStringList({"0x1209", "0x1234"}));
        QCOMPARE(reader.ReadConfig("Option", "CID"), QString("18"));
        QCOMPARE(reader.ReadConfig("Drive1", "Sensor"), QString("PA42"));
        QCOMPARE(reader.ReadConfigList("Drive1", "DPIRange").size(), 7);
    }

    void saysWhereTheMistakeIs()
    {
        const QByteArray bad = withValue("KeyNumber", "ninety");
        QVERIFY(write("bad.ini", bad));
        for (const QStringList &options : {QStringList(), QStringList("--udev")}) {
            QVERIFY(run("bad.ini", "none.ini", options) != 0);
            QCOMPARE(errors_, folder_.filePath("bad.ini").toUtf8() +
                                  ":21: KeyNumber is \"ninety\", but takes a number from 1 to 12\n");
            QVERIFY(!QFileInfo::exists(folder_.filePath("none.ini")));
        }
        QVERIFY(run("missing.ini", "none.ini") != 0);
        QVERIFY(errors_.contains("missing.ini"));
        QVERIFY(write("good.ini", Small));
        QVERIFY(run("good.ini", "no/such/folder.ini") != 0);
        QCOMPARE(run("good.ini", "good.txt"), 0);
        QVERIFY(QFile::remove(folder_.filePath("driver_sensor.h")));
        QVERIFY(run("good.ini", "none.ini") != 0);
        QVERIFY(errors_.contains("driver_sensor.h"));
    }

    // A catalogue that cannot be read whole, and a target that must not be lost.
    void refusesFilesThatAreNone()
    {
        QVERIFY(write("good.ini", Small));
        QVERIFY(QDir(folder_.path()).mkpath("folder"));
        const auto says = [this](const char *source, const char *target, const QByteArray &file,
                                 const char *reason, const QStringList &options = {}) {
            const bool refuses = run(source, target, options) == 1;
            return refuses && errors_ == file + ": " + reason + '\n';
        };
        const auto path = [this](const char *name) { return folder_.filePath(name).toUtf8(); };
        QVERIFY2(says("folder", "none.ini", path("folder"), "cannot be read"), errors_);
        QVERIFY2(says("good.ini", "folder", path("folder"), "cannot be written"), errors_);
        QVERIFY(QFileInfo(folder_.filePath("folder")).isDir());
        QVERIFY2(says("good.ini", "good.ini", path("good.ini"), "is the target too"), errors_);
        QVERIFY2(says("good.ini", "driver_sensor.h", path("driver_sensor.h"), "is the target too"), errors_);
        QCOMPARE(run("good.ini", "Config.ini"), 0); // both are whole
        QVERIFY(write("empty.ini", ""));
        QVERIFY2(says("empty.ini", "Config.ini", path("empty.ini"), "has no [Option]"), errors_);
        QVERIFY(QFileInfo(folder_.filePath("Config.ini")).size() > 0);
        QVERIFY(QFile::link("/dev/zero", folder_.filePath("endless.ini")));
        QVERIFY2(says("endless.ini", "none.ini", path("endless.ini"), "is larger than 1 MiB"), errors_);
        QVERIFY2(says("good.ini", "none.rules", "\"a\", b\"", "is no name of a group", {"--udev=a\", b"}),
                 errors_);
        QVERIFY(!QFileInfo::exists(folder_.filePath("none.rules")));
    }

    // Every row of the document's tables is a key as the code has it, and every key has a row.
    void theDocumentSaysTheSame()
    {
        QFile file(SOURCE_FOLDER "/docs/catalogue.md");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString document = QString::fromUtf8(file.readAll());
        QStringList told;
        CatalogueSection section = CatalogueSection::Option;
        for (const QString &line : document.split('\n')) {
            if (line.startsWith("## "))
                section = line.contains("Option") ? CatalogueSection::Option : CatalogueSection::Model;
            const QStringList cells = line.split(" | ");
            if (cells.size() != 5 || !line.startsWith("| `"))
                continue;
            for (const QString &name : namesIn(cells[0])) {
                told << name;
                const CatalogueKey *const key = catalogueKey(name.toStdString());
                QVERIFY2(key, qPrintable(name));
                QVERIFY2(key->section == section, qPrintable(name));
                QCOMPARE(cells[1], QString(key->isNeeded ? "yes" : "no"));
                QCOMPARE(cells[2], QString::fromStdString(describeForm(*key)));
                const std::string example = namesIn(cells[4]).value(0).toStdString();
                QVERIFY2(fitsForm(*key, splitItems(example), headerOf(Sensors).sensors), qPrintable(name));
            }
        }
        QCOMPARE(std::size_t(told.size()), CatalogueKeys.size());
        QCOMPARE(QSet<QString>(told.begin(), told.end()).size(), told.size());
        for (const MediaKey key : MediaKeys) {
            const QString text = QString::number(int(key), 16).toUpper().rightJustified(4, '0');
            QVERIFY2(document.contains("0x" + text + ' '), qPrintable(text));
        }
        const int coded = document.indexOf("In `Config.ini` the items of");
        const QStringList listed =
            namesIn(document.mid(coded, document.indexOf("are Base64", coded) - coded));
        for (const CatalogueKey &key : CatalogueKeys)
            QCOMPARE(listed.contains(key.name.data()), key.isEncoded);
    }

    // A device's product id says what it is, whatever the case of its letters.
    void refusesAnIdThatStandsTwice_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("vendor") << QByteArray("VID") << QByteArray("0x12ab,0x12AB")
                                << QByteArray("VID has 0x12AB, which stands in line 3 already");
        QTest::newRow("in a list") << QByteArray("USB_PID") << QByteArray("0x0001,0x0002,0x0001")
                                   << QByteArray("USB_PID has 0x0001, which stands in line 4 already");
        QTest::newRow("of another class")
            << QByteArray("ButtonColor=1,2,3\nWireless_PID") << QByteArray("0x0002, 0x0001")
            << QByteArray("Wireless_PID has 0x0001, which stands in line 4 already");
        QTest::newRow("of a boot loader")
            << QByteArray("ButtonColor=1,2,3\nBoot_PID") << QByteArray("0x0001")
            << QByteArray("Boot_PID has 0x0001, which stands in line 4 already");
    }
    void refusesAnIdThatStandsTwice()
    {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, value);
        QFETCH(QByteArray, reason);
        QByteArray source = Small;
        const QByteArray first = key.split('=').first();
        const int at = source.indexOf('\n' + first + '=');
        source.replace(at + 1, source.indexOf('\n', at + 1) - at - 1, key + '=' + value);
        const EncodedCatalogue result = encode(source);
        QCOMPARE(QByteArray::fromStdString(result.error), reason);
        QCOMPARE(result.errorLine, lineOf(source, key.split('\n').last() + '='));
        QCOMPARE(encode(withValue("VID", "0x0001")).error, std::string()); // a vendor is no product
    }

    // Without a table the count of a DPI is a byte, or ten bits of the sensors that have them.
    void takesTheRangesThatTheSensorCounts_data()
    {
        QTest::addColumn<QByteArray>("sensor");
        QTest::addColumn<QByteArray>("ranges");
        QTest::addColumn<bool>("fits");
        const auto row = [](const char *sensor, const char *ranges, bool fits) {
            QTest::addRow("%s: %s", sensor, ranges) << QByteArray(sensor) << QByteArray(ranges) << fits;
        };
        row("3395", "50,51200,50,0x00", true);
        row("3395", "50,51250,50,0x00", false);
        row("3395", "50,51200,50,51300,65500,100,0x22", true);
        row("PA42", "50,12800,50,0x00", true);
        row("PA42", "50,12850,50,0x00", false);
        row("PA42", "50,12800,50,12900,25600,100,0x11", true);
        row("PA42", "50,12800,50,12900,25700,100,0x11", false);
        row("PA42", "50,12800,50,12850,25600,50,0x11", false);
        row("PA42", "60,12060,100,0x00", false);
        row("PA42", "50,12050,10,0x00", false);
        row("PA42", "50,1000,50,1100,2000,100,2100,4000,100,4200,51200,200,0x33", true);
        row("PA42", "50,1000,50,1100,2000,100,2100,4000,100,4200,51400,200,0x33", false);
        row("PA42", "50,1000,50,1100,2000,100,2100,4000,100,4100,51200,100,0x33", false);
        row("T1", "100,300,100,0x00", true);
        row("T1", "100,300,100,400,600,200,0x22", true);
        row("T1", "100,300,50,0x00", false);
        row("T1", "100,400,100,0x00", false);
        row("T1", "100,300,100,400,600,100,0x22", false);
    }
    void takesTheRangesThatTheSensorCounts()
    {
        QFETCH(QByteArray, sensor);
        QFETCH(QByteArray, ranges);
        QFETCH(bool, fits);
        QByteArray source = withValue("DPIRange", ranges);
        const QByteArray stage = ranges.split(',').first();
        source.replace("DPIGrade=100,200,300,400,500,600,6200,12000",
                       "DPIGrade=" + (stage + ',').repeated(7) + stage);
        source.replace("Sensor=PA42", "Sensor=" + sensor);
        const EncodedCatalogue result = encode(source);
        QCOMPARE(QByteArray::fromStdString(result.error),
                 fits ? QByteArray() : "DPIRange holds a DPI that the sensor " + sensor + " cannot count");
        QCOMPARE(result.errorLine, fits ? 0 : lineOf(source, "DPIRange="));

        // The program's own conversion agrees.
        SensorCodes codes;
        codes.sensor = QString::fromLatin1(sensor);
        parseSensorDefines(Sensors, &codes.names, &codes.values);
        DpiRanges read;
        read.read(QString::fromLatin1(ranges).split(','));
        bool all = true;
        for (int range = 0; range < read.DpiRangeCount; ++range) {
            for (int dpi = read.DpiRangeMins[range]; dpi <= read.DpiRangeMaxs[range];
                 dpi += read.DpiRangeSteps[range]) {
                const DpiStageCode stored = encodeDpi(dpi, 0, codes, read);
                all = all && decodeDpi(uint8_t(stored.code), stored.flags, codes) == dpi;
            }
        }
        QCOMPARE(all, fits);
    }

    // What the program would pass over or take for something else.
    void refusesASensorHeader_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("reason");
        const auto row = [](const char *line, const QByteArray &reason) {
            QTest::addRow("%s", line) << QByteArray(line) + '\n' << reason;
        };
        row("#define SENSORS\t3395", "SENSORS stands in line 2 already");
        row("#define SENSORS", "SENSORS has no value");
        row("#define SENSOR_T1_DPI_\t4", "SENSOR_T1_DPI_ does not end with a DPI");
        row("#define SENSOR_T1_DPI_0400\t4", "SENSOR_T1_DPI_0400 does not end with a DPI");
        row("#define SENSOR_T1_DPI_400", "SENSOR_T1_DPI_400 has no value");
        row("#define SENSOR_T2_DPI_400\t4", "the sensor T2 does not stand in the line SENSORS");
        row("#define SENSOR_T1_DPI_400\t256", "the code 256 is no number from 0 to 255");
        row("#define SENSOR_T1_DPI_400\t0x100", "the code 0x100 is no number from 0 to 255");
        row("#define SENSOR_T1_DPI_400\tFF", "the code FF is no number from 0 to 255");
        row("#define SENSOR_T1_DPI_300\t4", "the DPI or its code stands above already");
        row("#define SENSOR_T1_DPI_400\t255", "the DPI or its code stands above already");
        row("#define SENSOR_T1_DPI_400\t0x24 //x",
            "the program reads 0x24 as 0 where a blank stands behind it");
        for (const char *name : {"SENSOR_T1_400", "SENSR_T1_DPI_400", "SUPPORT_RIPLE", "SUPORT_RIPPLE",
                                 "SUPPROT_RIPPLE", "SUPPORTED"})
            row(QByteArray("#define ") + name + "\t3395",
                name +
                    QByteArray(" is neither SENSORS, nor one of the SUPPORT_ names, nor SENSOR_, the sensor, "
                               "_DPI_ and the DPI"));
        row("#define SUPPORT_RIPPLE\t3395", "SUPPORT_RIPPLE stands in line 3 already");
        row("#define SUPPORT_FIXLINE", "SUPPORT_FIXLINE has no value");
        row("#define SUPPORT_FIXLINE\t3395,PA43", "the sensor PA43 does not stand in the line SENSORS");
        row("#define SUPPORT_FIXLINE\tT12,PA42", "the program finds the sensor T1 too, within the name of "
                                                 "another one");
        row("// SUPPORT_FIXLINE\tPA42", "is no #define, but the program reads SUPPORT_FIXLINE from it");
        row("//#define SENSOR_T1_DPI_400 4",
            "is no #define, but the program reads SENSOR_T1_DPI_400 from it");
        const auto form = [&row](const char *line, const char *name) {
            row(line, QByteArray("the program does not read ") + name +
                          " in this form; it takes #define, a blank, the name, a tab and the value, without "
                          "other blanks and with a line end");
        };
        form("#define\tSENSOR_T1_DPI_400\t4", "SENSOR_T1_DPI_400");
        form("#define\tSENSOR_T1_DPI_400 4", "SENSOR_T1_DPI_400");
        form("# define SENSOR_T1_DPI_400\t4", "SENSOR_T1_DPI_400");
        form("#define SENSOR_T1_DPI_400 4 //x", "SENSOR_T1_DPI_400");
        form("#define SENSOR_T1_DPI_400\t4//x", "SENSOR_T1_DPI_400");
        form("#define SENSOR_T1_DPI_400\t4\t//x", "SENSOR_T1_DPI_400");
        form("#define\tSUPPORT_FIXLINE\t3395", "SUPPORT_FIXLINE");
        form("#define SUPPORT_FIXLINE 3395", "SUPPORT_FIXLINE");
        form("#define SUPPORT_FIXLINE\t3395, PA42", "SUPPORT_FIXLINE");
        form("#define SUPPORT_FIXLINE\t3395,\tPA42", "SUPPORT_FIXLINE");
        form("#define SUPPORT_FIXLINE\t3395 //x", "SUPPORT_FIXLINE");
        QTest::newRow("no line end")
            << QByteArray("#define SENSOR_T1_DPI_400\t4")
            << QByteArray(
                   "the program does not read SENSOR_T1_DPI_400 in this form; it takes #define, a blank, "
                   "the name, a tab and the value, without other blanks and with a line end");
    }
    void refusesASensorHeader()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, reason);
        const SensorHeader header = headerOf(Sensors + line);
        QCOMPARE(QByteArray::fromStdString(header.error), reason);
        QCOMPARE(header.errorLine, 7);
        QCOMPARE(headerOf(Sensors).error, std::string());
        QVERIFY(write("driver_sensor.h", Sensors + line));
        QVERIFY(write("good.ini", Small));
        QVERIFY(run("good.ini", "none.ini") != 0);
        QCOMPARE(errors_, folder_.filePath("driver_sensor.h").toUtf8() + ":7: " + reason + '\n');
    }

    void refusesAListOfSensors()
    {
        QCOMPARE(headerOf("/* x */\n").error, std::string("has no line SENSORS"));
        QCOMPARE(headerOf("#define SENSORS\t3395,\n").error, std::string("SENSORS holds an empty name"));
        QCOMPARE(headerOf("#define SENSORS\t3395,PA42,3395\n").error,
                 std::string("SENSORS holds 3395 twice"));
        for (const char *name : {"33 95", "\xC3\xA9", "A_DPI_B"}) {
            const SensorHeader header = headerOf(QByteArray("#define SENSORS\t3395,") + name + '\n');
            QCOMPARE(header.error,
                     "the sensor " + std::string(name) + " has other characters than letters, digits and -");
            QCOMPARE(header.errorLine, 1);
        }
        QCOMPARE(headerOf("#define SENSORS\tPI42\n").error, std::string()); // without a table
        QCOMPARE(headerOf("#define SENSORS\tPI42\n#define SENSOR_PI42_DPI_100\t1\n").error,
                 std::string("the sensor PI42 holds a capital I, and its DPI values are not read"));
    }

    // The program reads the line as it is meant, or is not meant to read it.
    void takesASensorHeader_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("codes");
        const auto row = [](const char *line, int codes) {
            QTest::addRow("%s", line) << QByteArray(line) + '\n' << codes;
        };
        for (const char *line : {"#define SENSOR_T1_DPI_400\t0x24", "#define SENSOR_T1_DPI_400\t\t36",
                                 "#define SENSOR_T1_DPI_400 0x24", "#define SENSOR_T1_DPI_400 0x024",
                                 "#define SENSOR_T1_DPI_400\t36 //x", "#define SENSOR_T1_DPI_400\t36 ",
                                 "  #define  SENSOR_T1_DPI_400\t36", "#define SENSOR_T1_DPI_400\t0x24\r"})
            row(line, 4);
        for (const char *line :
             {"#ifndef DRIVER_SENSOR_H", "#define DRIVER_SENSOR_H", "#define SENSOR_H", "#define\tOTHER\t1",
              "#define SUPPLY_MV 3300", "#define SENSITIVITY\t3", "#define OTHER 1 // three words",
              "#define SUPPORT_FIXLINE\t\t3395", "#define SUPPORT_FIXLINE\t3395,",
              "#define SUPPORT_FIXLINE\tT1,T12", "#define SUPPORT_FIXLINE\t3395\t//x",
              "// #define SENSOR_T1_DPI_400 4", "#endif // SENSOR_H"})
            row(line, 3);
        QTest::newRow("no line end") << QByteArray("#define SUPPORT_FIXLINE\t3395") << 3;
    }
    void takesASensorHeader()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, codes);
        for (const QByteArray &text :
             {Sensors + line, line.endsWith('\n') ? line + Sensors : Sensors + line}) {
            const SensorHeader header = headerOf(text);
            QCOMPARE(header.error, std::string());
            const std::map<int, int> &table = header.codesByDpi.at("T1");
            QCOMPARE(int(table.size()), codes);

            // The program reads the same.
            SensorCodes read;
            read.sensor = "T1";
            const SensorCapabilities capabilities = parseSensorDefines(text, &read.names, &read.values);
            for (int dpi = 100; dpi <= 400; dpi += 100) {
                const auto code = table.find(dpi);
                QCOMPARE(read.codeOf(dpi).value_or(-1), code == table.end() ? -1 : code->second);
            }
            QCOMPARE(capabilities.FixLineSupport.contains("3395"), line.contains("3395"));
            QCOMPARE(capabilities.FixLineSupport.contains("T12"), line.contains("T12"));
            QCOMPARE(capabilities.RippleSupport, QString("3395"));
        }
    }

    void udevRulesNameTheIds_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("vendors");
        QTest::addColumn<QByteArray>("products");
        QTest::newRow("one") << QByteArray(Small) << QByteArray("1209") << QByteArray("0001");
        QTest::newRow("lists") << withValue("VID", "0x1209, 0x12AB\r\nBoot_PID = 0x0005,0x0006")
                               << QByteArray("1209|12ab") << QByteArray("0005|0006|0001");
        QTest::newRow("indented") << withValue("VID", "0x1234")
                                         .replace("\nVID", "\n \tVID")
                                         .replace("\nUSB_PID", "\n  ; USB_PID=0x0009\n USB_PID")
                                  << QByteArray("1234") << QByteArray("0001");
    }
    void udevRulesNameTheIds()
    {
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, vendors);
        QFETCH(QByteArray, products);
        const EncodedCatalogue catalogue = encode(source);
        QCOMPARE(catalogue.error, std::string());
        const QByteArray text = QByteArray::fromStdString(udevRules(catalogue));
        QVERIFY(text.contains("\nSUBSYSTEM==\"hidraw\", ATTRS{idVendor}==\"" + vendors +
                              "\", ATTRS{idProduct}==\"" + products + "\", "));
        QVERIFY(text.endsWith("TAG+=\"uaccess\"\n"));
    }

    // Distributions differ in their groups, so only the one that is asked for is named.
    void udevRulesNameTheGroupThatIsAskedFor()
    {
        QVERIFY(write("group.ini", Small));
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

    void init() { QVERIFY(write("driver_sensor.h", Sensors)); }

private:
    // What stands between backticks.
    static QStringList namesIn(const QString &text)
    {
        QStringList names;
        for (auto each = QRegularExpression("`([^`]*)`").globalMatch(text); each.hasNext();)
            names << each.next().captured(1);
        return names;
    }
    static EncodedCatalogue encode(const QByteArray &source)
    {
        std::istringstream stream(source.toStdString());
        return encodeCatalogue(stream, headerOf(Sensors));
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
