// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "catalogue/DeviceCatalogue.h"
#include "environment/DataRoot.h"
#include "environment/SafeFile.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <cmath>

using namespace language;

namespace
{

// Relative luminance and contrast as WCAG defines them.
double luminance(const QStringList &rgb)
{
    double parts[3];
    for (int i = 0; i < 3; ++i) {
        const double value = rgb.at(i).toInt() / 255.0;
        parts[i] = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    }
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2];
}

double contrast(const QString &a, const QString &b)
{
    const double first = luminance(a.split(',')) + 0.05;
    const double second = luminance(b.split(',')) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

} // namespace

class tst_ProductData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationFolder(PRODUCT_FOLDER);
        LoadLanguageTables();
    }

    void tellsWhatToLookFor()
    {
        const DeviceCatalogue catalogue;
        QCOMPARE(catalogue.total(), 4);
        QCOMPARE(catalogue.option("CID"), 18);
        QCOMPARE(catalogue.option("ShowBatteryValue"), 1);
        QCOMPARE(catalogue.optionList("VID"), QStringList("0x1209"));
        const char *const keys[] = {"USB_PID", "Wireless_PID", "Wireless2_PID", "Wireless4_PID",
                                    "Wireless8_PID"};
        for (int i = 0; i < 5; ++i)
            QCOMPARE(catalogue.optionList(keys[i]), QStringList(QStringLiteral("0x000%1").arg(i + 1)));
        for (const char *key : {"InterfaceId", "DeviceId", "Transition"})
            QVERIFY(!ConfigReader::instance().ReadConfig("Option", key).isEmpty());
    }

    void hasReadableColours()
    {
        const DeviceCatalogue catalogue;
        const char *const grounds[] = {"18,21,23", "25,29,32", "33,39,42"}; // of the skin's pictures
        for (const char *key : {"LabelColor", "ButtonColor", "SliderColor", "ComboxTextColor",
                                "ComboxSelectColor", "LinEditColor", "LinEditColorSecond"}) {
            QCOMPARE(catalogue.optionList(key).size(), 3);
            for (const char *ground : grounds)
                QVERIFY2(contrast(catalogue.colour(key), ground) >= 4.5, key);
            QVERIFY2(contrast(catalogue.colour(key), catalogue.colour("ComboxBackGroundColor")) >= 4.5, key);
        }
        QVERIFY(contrast(catalogue.colour("ButtonColor"), "0,112,74") >= 4.5); // the filled button
    }

    void describesEveryModel_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("mid");
        QTest::addColumn<QString>("sensor");
        QTest::newRow("6") << 0 << 6 << "3395";
        QTest::newRow("7") << 1 << 7 << "3950";
        QTest::newRow("8") << 2 << 8 << "PA42";
        QTest::newRow("9") << 3 << 9 << "3311";
    }
    void describesEveryModel()
    {
        QFETCH(int, index);
        QFETCH(int, mid);
        QFETCH(QString, sensor);
        const DeviceCatalogue catalogue;
        QCOMPARE(catalogue.find(18, mid), index);
        QCOMPARE(catalogue.text(index, "Sensor"), sensor);
        const int stages = catalogue.number(index, "DPIMaxGrade");
        QVERIFY(stages >= 1 && stages <= 8);
        const int keys = catalogue.number(index, "KeyNumber");
        QVERIFY(keys >= 6 && keys <= 12);
        QCOMPARE(catalogue.list(index, "DPIGrade").size(), 8);
        QCOMPARE(catalogue.list(index, "DPIColor").size(), 24);
        QCOMPARE(catalogue.list(index, "Adveanced").size(), 2);
        for (const char *key : {"MM", "DM", "D2M", "D4M", "D8M"})
            QVERIFY(!catalogue.text(index, key).isEmpty());
        checkDpi(catalogue, index);
        for (int k = 1; k <= 6; ++k)
            checkDefaultBinding(
                catalogue.list(index, QByteArray("KeyParam" + QByteArray::number(k)).constData()));
    }

    void differsBetweenModels()
    {
        const DeviceCatalogue catalogue;
        for (const char *key : {"KeyNumber", "DPIMaxGrade", "DPIGrade", "DPIColor", "DPIRange", "Adveanced",
                                "MM", "DM", "D2M", "D4M", "D8M"}) {
            QSet<QStringList> values;
            for (int i = 0; i < catalogue.total(); ++i)
                values << catalogue.list(i, key);
            QVERIFY2(values.size() == catalogue.total(), key);
        }
        QCOMPARE(catalogue.number(3, "XIn1"), 2); // the plain model shows no sensor column
    }

    // The line forms on which the reader of this file relies.
    void hasASensorHeaderInForm()
    {
        const QByteArray content = sensorHeader();
        QVERIFY(content.endsWith('\n') && !content.contains('\r'));
        const QRegularExpression define("^#define [A-Z0-9_]+\t[A-Za-z0-9,]+$");
        for (const QString &line : QString::fromUtf8(content).split('\n')) {
            const int words = line.split(' ', Qt::SkipEmptyParts).size();
            if (words == 2 || words == 3)
                QVERIFY2(define.match(line).hasMatch(), qPrintable(line));
        }
    }

    void saysWhatTheSensorsCanDo()
    {
        for (const char *name : {"SUPPORT_SENSOR_MODE_SEL", "SUPPORT_LOD_CAL", "SUPPORT_RIPPLE",
                                 "SUPPORT_FIXLINE", "SUPPORT_MOTION_SYNC", "SUPPORT_MOUSEPAD_CAL"}) {
            QCOMPARE(sensorHeader().count("#define " + QByteArray(name) + '\t'), 1);
            QVERIFY(definition(name).contains("3950"));
            QVERIFY(!definition(name).contains("3311"));
        }
        QVERIFY(definition("SUPPORT_LOD_CAL").contains("PA42"));
        QVERIFY(!definition("SUPPORT_RIPPLE").contains("PA42"));
    }

    // A capability is found by a search for the name, and a DPI behind the first capital I of a macro.
    void hasSensorsThatCanBeToldApart()
    {
        const QList<QByteArray> sensors = definition("SENSORS").split(',');
        QVERIFY(sensors.size() >= 4);
        for (const QByteArray &sensor : sensors) {
            QVERIFY2(!sensor.contains('I'), sensor.constData());
            for (const QByteArray &other : sensors)
                QVERIFY2(sensor == other || !sensor.contains(other), sensor.constData());
        }
        for (const char *name : {"SUPPORT_SENSOR_MODE_SEL", "SUPPORT_LOD_CAL", "SUPPORT_RIPPLE",
                                 "SUPPORT_FIXLINE", "SUPPORT_MOTION_SYNC", "SUPPORT_MOUSEPAD_CAL"}) {
            for (const QByteArray &sensor : definition(name).split(','))
                QVERIFY2(sensors.contains(sensor), name);
        }
    }

    void hasDistinctDpiCodes()
    {
        QSet<int> codes;
        for (int dpi = 100; dpi <= 6000; dpi += 100) {
            bool isNumber = false;
            const int code = definition("SENSOR_PA42_DPI_" + QByteArray::number(dpi)).toInt(&isNumber, 16);
            QVERIFY(isNumber && code >= 0 && code <= 255);
            codes << code;
        }
        QCOMPARE(codes.size(), 60);
        QVERIFY(!sensorHeader().contains("SENSOR_3"));
    }

    // A text under a section's name would end the section it stands in.
    void hasNoTextThatEndsItsSection()
    {
        const LanguageFile file = readLanguageFile(applicationFolder() + "/Language/en.json");
        for (const auto &word : file.texts) {
            for (const Texts &table : word) {
                for (const SectionRow &section : Sections)
                    QVERIFY(!table.contains(section.name));
            }
        }
    }

    void hasTheKeyboardAndCompanyTexts()
    {
        QVERIFY(!text(Section::update, "newTips", 0, Word::Keyboard).isEmpty());
        QCOMPARE(companyLabels(0).size(), 4);
        QCOMPARE(companyLabels(0).at(1), QString("https://morlen.example"));
    }

    void servesTheNoticeInItsLanguages()
    {
        for (const int index : {0, 1}) {
            const LanguageFile file = readLanguageFile(applicationFolder() + noticeLanguageFile(index));
            QVERIFY(!file.section(Word::Mouse, Section::home).value("OnRun").isEmpty());
            QVERIFY(!file.section(Word::Mouse, Section::common).value("OK").isEmpty());
        }
    }

private:
    static QByteArray sensorHeader()
    {
        return readFile(applicationFolder() + "/driver_sensor.h", 1024 * 1024).value_or(QByteArray());
    }
    static QByteArray definition(const QByteArray &name)
    {
        const QByteArray start = "#define " + name + '\t';
        const QByteArray content = sensorHeader();
        const int at = content.indexOf(start);
        return at < 0 ? QByteArray()
                      : content.mid(at + start.size(), content.indexOf('\n', at) - at - start.size());
    }
    // Each default stage lies in a range, on its steps, and a sensor with a table has a code for it.
    static void checkDpi(const DeviceCatalogue &catalogue, int index)
    {
        const QStringList range = catalogue.list(index, "DPIRange");
        QVERIFY(range.size() == 4 || range.size() == 7);
        bool isFlag = false;
        const int flag = range.last().toInt(&isFlag, 16);
        QVERIFY(isFlag && (range.size() == 4 || flag == 0x22 || flag == 0x11));
        for (const QString &grade : catalogue.list(index, "DPIGrade")) {
            const int dpi = grade.toInt();
            const int first = range.size() == 7 && dpi > range.at(1).toInt() ? 3 : 0;
            QVERIFY(dpi >= range.at(first).toInt() && dpi <= range.at(first + 1).toInt());
            QCOMPARE((dpi - range.at(first).toInt()) % range.at(first + 2).toInt(), 0);
            const int counted = first == 0 ? dpi : dpi / 2;
            if (catalogue.text(index, "Sensor") == "PA42")
                QVERIFY(!definition("SENSOR_PA42_DPI_" + QByteArray::number(counted)).isEmpty());
        }
    }
    static void checkDefaultBinding(const QStringList &items)
    {
        if (items.isEmpty())
            return;
        QCOMPARE(items.first(), QString("0x05"));
        QVERIFY(items.size() == 4 || !choice("KeyOptions", items.value(2), 0).isEmpty());
    }
};

TEST_CLASS(tst_ProductData, testmain::CoreApplication)
#include "tst_productdata.moc"
