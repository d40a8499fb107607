// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the lines of driver_sensor.h mean, the ranges of the catalogue, and the file with the stage count.
#include "catalogue/DpiRange.h"
#include "catalogue/LevelFile.h"
#include "catalogue/SensorDefines.h"
#include "environment/DataRoot.h"
#include "environment/SafeFile.h"
#include "tests/support/TestMain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>
#include <random>
#include <sys/stat.h>

namespace
{

struct CapabilityCase {
    const char *macro;
    QString SensorCapabilities::*text;
};
constexpr CapabilityCase Capabilities[] = {
    {"SUPPORT_SENSOR_MODE_SEL", &SensorCapabilities::SensorModeSupport},
    {"SUPPORT_LOD_CAL", &SensorCapabilities::LodSupport},
    {"SUPPORT_RIPPLE", &SensorCapabilities::RippleSupport},
    {"SUPPORT_FIXLINE", &SensorCapabilities::FixLineSupport},
    {"SUPPORT_MOTION_SYNC", &SensorCapabilities::MotionSyncSupport},
    {"SUPPORT_MOUSEPAD_CAL", &SensorCapabilities::MousepadCalSupport},
};

// "NAME=1 OTHER=2", as the content makes it.
QString definitions(const QByteArray &content, SensorCapabilities *capabilities = nullptr)
{
    QStringList names;
    QVector<int32_t> values;
    const SensorCapabilities found = parseSensorDefines(content, &names, &values);
    if (capabilities)
        *capabilities = found;
    QStringList pairs;
    for (int i = 0; i < names.size(); ++i)
        pairs << names[i] + '=' + QString::number(values.value(i, -1));
    return names.size() == values.size() ? pairs.join(' ') : QString("lists of different length");
}

QByteArray randomBytes(std::mt19937 *random, int size)
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(char((*random)()));
    return bytes;
}

// Lines made of the pieces that mean something, in an order that need not.
QByteArray randomLines(std::mt19937 *random)
{
    static const QByteArray pieces[] = {"#define",
                                        " ",
                                        "\t",
                                        "\n",
                                        "\r\n",
                                        "0x",
                                        "//",
                                        "SENSOR_I_DPI_400",
                                        "SUPPORT_LOD_CAL",
                                        "15",
                                        "99999999999",
                                        QByteArray(1, '\0'),
                                        "\xff\xfe",
                                        QByteArray(500, ' ')};
    QByteArray content;
    for (int i = 0; i < 200; ++i)
        content += pieces[(*random)() % std::size(pieces)];
    return content;
}

} // namespace

class tst_SensorDefines : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder;
    QTemporaryDir home;

    bool putHeader(const QByteArray &content) const
    {
        return writeFileSafely(folder.filePath("driver_sensor.h"), content);
    }

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        setApplicationFolder(folder.path());
        makeDataFolders();
    }
    void init()
    {
        SensorDefineNames.clear();
        SensorDefineValues.clear();
        QFile::remove(folder.filePath("driver_sensor.h"));
        QFile::remove(levelFilePath());
    }

    // ---- Lines ----------------------------------------------------------------------------------

    void definesOfEachLineForm_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("wanted");
        const auto row = [](const char *name, const char *line, const char *wanted) {
            QTest::newRow(name) << QByteArray(line) << QString(wanted);
        };
        row("decimal", "#define A\t15\n", "A=15");
        row("hexadecimal", "#define A\t0x1F\n", "A=31");
        row("negative", "#define A\t-3\n", "A=-3");
        row("several tabs", "#define A\t\t\t15\n", "A=15");
        row("tab in front of the name", "#define \tA\t15\n", "A=15");
        row("several blanks", "  #define   A\t15\n", "A=15");
        row("end of line of two bytes", "#define A\t15\r\n", "A=15");
        row("carriage return within", "#define A\t1\r5\n", "A=15");
        row("capital X is no hexadecimal mark", "#define A\t0X1F\n", "A=0");
        row("no number", "#define A\tfifteen\n", "A=0");
        row("too large a number", "#define A\t99999999999\n", "A=0");
        row("too large a hexadecimal number", "#define A\t0xFFFFFFFF\n", "A=0");
        row("no end of line", "#define A\t15", "");
        row("no value", "#define A\n", "");
        row("nothing but a tab behind the name", "#define A\t\n", "A=0");
        row("another directive", "#undef A\t15\n", "");
        row("directive in capitals", "#DEFINE A\t15\n", "");
        row("tab behind the directive", "#define\tA\t15\n", "");
        row("third field behind a tab", "#define A\t15\t16\n", "");
        row("twice", "#define A\t15\n#define A\t16\n", "A=15 A=16");
        row("value behind a blank", "#define A 15\n", "A=15");
        row("hexadecimal value behind a blank", "#define A 0x1F\n", "A=31");
        row("value behind a blank and no end of line", "#define A 15", "");
        row("value behind a blank and an end of line of two bytes", "#define A 15\r\n", "A=15");
        row("comment behind a blank", "#define A\t15 //fifteen\n", "A=15");
        row("comment without an end of line", "#define A\t15 //fifteen", "A=15");
        row("hexadecimal value in front of a comment", "#define A\t0x1F //c\n", "A=0");
        row("comment in the place of the value", "#define A //c\n", "A=0");
        row("blank at the end of the line", "#define A\t15 \n", "A=15");
        row("blank behind the tab", "#define A\t 15\n", "A=0");
        row("two tabs in front of a comment", "#define A\t\t15 //c\n", "");
        row("no directive, three words", "const A\t15 //c\n", "A=15");
        row("value with a comment in the same word", "#define A 0x1F//c\n", "A=0");
        row("comment behind a value behind a blank", "#define A 15 //c\n", "");
        row("one word", "#define\n", "");
        row("empty line", "\n", "");
        row("two blanks and an end of line", "#define  \n", "");
        row("four words", "#define A 15 16\n", "");
        row("lone comment", "// A\n", "");
        row("nothing", "", "");
        row("capability in three words is a definition", "#define SUPPORT_LOD_CAL\t3395, 3950\n",
            "SUPPORT_LOD_CAL=0");
    }
    void definesOfEachLineForm()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, wanted);
        QCOMPARE(definitions(line), wanted);
    }

    void capabilities_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(Capabilities); ++i)
            QTest::newRow(Capabilities[i].macro) << int(i);
    }
    void capabilities()
    {
        QFETCH(int, index);
        const QByteArray macro = Capabilities[index].macro;
        SensorCapabilities found;
        QCOMPARE(definitions("#define " + macro + "\t3395,3950\n", &found), QString());
        for (std::size_t i = 0; i < std::size(Capabilities); ++i)
            QCOMPARE(found.*Capabilities[i].text, i == std::size_t(index) ? QString("3395,3950") : QString());
        // Without an end of line and without a directive, and within a longer name.
        definitions("what X_" + macro + "_X\t\t3311", &found);
        QCOMPARE(found.*Capabilities[index].text, QString("3311"));
        definitions("#define " + macro + "\t\r\n", &found);
        QCOMPARE(found.*Capabilities[index].text, QString());
    }

    void laterCapabilityWinsUnlessItSaysNothing()
    {
        SensorCapabilities found;
        definitions("#define SUPPORT_RIPPLE\tA\n#define SUPPORT_RIPPLE\tB\n#define SUPPORT_RIPPLE\n", &found);
        QCOMPARE(found.RippleSupport, QString("B"));
    }

    void firstCapabilityOfALineWins()
    {
        SensorCapabilities found;
        definitions("#define SUPPORT_MOTION_SYNC_SUPPORT_LOD_CAL\tA\n", &found);
        QCOMPARE(found.LodSupport, QString("A"));
        QCOMPARE(found.MotionSyncSupport, QString());
    }

    // ---- Files ----------------------------------------------------------------------------------

    void appendsTheFileAtEachReading()
    {
        QVERIFY(putHeader("#define A\t1\n#define SUPPORT_RIPPLE\tX\n#define B\t2\n#define C\t3"));
        QCOMPARE(ReadSensorDefines().RippleSupport, QString("X"));
        QCOMPARE(SensorDefineNames, QStringList({"A", "B"}));
        ReadSensorDefines();
        QCOMPARE(SensorDefineNames, QStringList({"A", "B", "A", "B"}));
        QCOMPARE(SensorDefineValues, QVector<int32_t>({1, 2, 1, 2}));
        QStringList names;
        QVector<int32_t> values;
        QCOMPARE(ReadSensorDefines(&names, &values).RippleSupport, QString("X"));
        QCOMPARE(names, QStringList({"A", "B"}));
        QCOMPARE(values, QVector<int32_t>({1, 2}));
        QCOMPARE(SensorDefineNames.size(), 4);
    }

    void missingFileSaysNothing()
    {
        QCOMPARE(ReadSensorDefines().LodSupport, QString());
        QVERIFY(SensorDefineNames.isEmpty() && SensorDefineValues.isEmpty());
    }

    void fileThatIsTooLargeSaysNothing()
    {
        const QByteArray line = "#define A\t1\n";
        QVERIFY(putHeader(line + QByteArray(int(SensorHeaderLimit) - line.size(), 'x')));
        ReadSensorDefines();
        QCOMPARE(SensorDefineNames.size(), 1);
        QVERIFY(putHeader(line + QByteArray(int(SensorHeaderLimit) - line.size() + 1, 'x')));
        ReadSensorDefines();
        QCOMPARE(SensorDefineNames.size(), 1);
    }

    void fileThatNeverEndsIsNotRead()
    {
        QVERIFY(::mkfifo(folder.filePath("driver_sensor.h").toLocal8Bit().constData(), 0600) == 0);
        ReadSensorDefines();
        QVERIFY(SensorDefineNames.isEmpty());
    }

    void hostileContent_data()
    {
        QTest::addColumn<uint>("seed");
        for (uint seed = 1; seed <= 200; ++seed)
            QTest::addRow("%u", seed) << seed;
    }
    void hostileContent()
    {
        QFETCH(uint, seed);
        std::mt19937 random(seed);
        for (const QByteArray &content : {randomBytes(&random, 2000), randomLines(&random)}) {
            const QString found = definitions(content);
            QVERIFY(found != "lists of different length");
            // A file twice over says the same twice, when a line end stands between.
            const QString twice = definitions(content + '\n' + content);
            QVERIFY(twice.endsWith(found));
        }
    }

    // ---- Ranges ---------------------------------------------------------------------------------

    void ranges_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<int>("flag");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("read"); // min, max and step of each, then the slider
        const auto row = [](const char *list, int flag, int count, const char *read) {
            QTest::newRow(list) << QString(list) << flag << count << QString(read);
        };
        constexpr char Before[] = "1 2 3 | 1 2";
        row("50,26000,50,0x00", 0, 1, "50 26000 50 | 50 26000");
        row("50,10000,50,10100,26000,100,0x22", 0x22, 2, "50 10000 50 10100 26000 100 | 50 26000");
        row("1,2,3,4,5,6,7,8,9,11", 0x11, 3, "1 2 3 4 5 6 7 8 9 | 1 8");
        row("1,2,3,4,5,6,7,8,9,10,11,12,0x33", 0x33, 4, "1 2 3 4 5 6 7 8 9 10 11 12 | 1 11");
        row("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,22", 0x22, 5, Before);
        row("9,9,9,8", 8, 1, "9 9 9 | 9 9");
        row("9,9,0x22", 0x22, 0, Before);
        row("0x22", 0x22, 0, Before);
        row("", 0, 0, Before);
        row("100,200,x,y,33", 0x33, 1, "100 200 1 | 100 200");
        row("100,200,0,zz", 0, 1, "100 200 1 | 100 200");
        row("100,200,-7,0x00", 0, 1, "100 200 1 | 100 200");
    }
    void ranges()
    {
        QFETCH(QString, list);
        QFETCH(int, flag);
        QFETCH(int, count);
        QFETCH(QString, read);
        DpiRanges ranges;
        QCOMPARE(ranges.DpiSliderMin, 50);
        QCOMPARE(ranges.DpiSliderMax, 32000);
        ranges.read({"1", "2", "3", "0x11"});
        ranges.read(list.isEmpty() ? QStringList() : list.split(','));
        QCOMPARE(ranges.DpiFlagValue, flag);
        QCOMPARE(ranges.DpiRangeCount, count);
        QStringList found;
        for (int i = 0; i < ranges.DpiRangeMins.size(); ++i)
            for (const int value : {ranges.DpiRangeMins[i], ranges.DpiRangeMaxs[i], ranges.DpiRangeSteps[i]})
                found << QString::number(value);
        found << "|" << QString::number(ranges.DpiSliderMin) << QString::number(ranges.DpiSliderMax);
        QCOMPARE(found.join(' '), read);
    }

    // ---- Stage count ----------------------------------------------------------------------------

    void stageCountOfAFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("count");
        QTest::newRow("a number") << QByteArray("6") << 6;
        QTest::newRow("a line") << QByteArray("6\n7\n") << 6;
        QTest::newRow("end of line of two bytes") << QByteArray("6\r\n") << 6;
        QTest::newRow("empty file") << QByteArray() << 1;
        QTest::newRow("empty line") << QByteArray("\n6\n") << 1;
        QTest::newRow("no number") << QByteArray("six") << 0;
        QTest::newRow("hexadecimal") << QByteArray("0x6") << 0;
        QTest::newRow("too large a number") << QByteArray("99999999999") << 0;
        QTest::newRow("binary") << QByteArray("\0\1\2", 3) << 0;
        QTest::newRow("too large a file") << QByteArray(100000, '1') << 1;
    }
    void stageCountOfAFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, count);
        QVERIFY(writeFileSafely(levelFilePath(), content));
        QCOMPARE(LoadDpiStageCount(), count);
    }

    void stageCountIsKept()
    {
        QVERIFY(levelFilePath().endsWith("/usersetting/SensorPage/Level.ini"));
        QCOMPARE(LoadDpiStageCount(), 1);
        QVERIFY(SaveDpiStageCount(12));
        QVERIFY(SaveDpiStageCount(5));
        QCOMPARE(readFile(levelFilePath(), 100).value_or("nothing"), QByteArray("5"));
        QCOMPARE(LoadDpiStageCount(), 5);
    }

    void stageCountWithoutItsFolder()
    {
        QDir(dataRoot()).rename("usersetting", "away");
        QVERIFY(!SaveDpiStageCount(5));
        QCOMPARE(LoadDpiStageCount(), 1);
        QDir(dataRoot()).rename("away", "usersetting");
    }
};

TEST_CLASS(tst_SensorDefines, testmain::CoreApplication)
#include "tst_sensordefines.moc"
