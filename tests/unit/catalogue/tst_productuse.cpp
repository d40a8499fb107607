// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the code asks of the shipped data, and what the data gives, held against each other both ways: a key
// that is asked for and not given fails, and so does one that nothing asks for.
#include "catalogue/CatalogueKeys.h"
#include "catalogue/DeviceCatalogue.h"
#include "environment/DataRoot.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/ProgramSources.h"
#include "tests/support/TestMain.h"

#include <QtTest>

using namespace language;

namespace
{

struct RequiredTexts {
    Section section;
    const char *keys;
};
constexpr RequiredTexts MouseTexts[] = {
    {Section::home,
     "ClickIn ComKey EnterDelay EnterKey ErrorDevice Exit MakeMaro MaxThree NewVerTips NoApear NoPair "
     "NoRecieve NoUSB NotDevice OnRun OpenMain PairTips_z PleaseEnter Repair RepairDevice SameDevice "
     "Version WarnUpdate Error Error1 ErrorFile MultiDongle MultiMouse ReadyUpdate NoDevice WiredMode"},
    {Section::common, "Cancel OK Save"},
    {Section::Settings,
     "DeviceInfo DialogRestore DongleVersion Language MouseVersion OK PairTool Others AutoOpen "
     "Restore WindowSet LabelTip"},
    {Section::infoTips, "DialogImporting DialogOffline DialogUpdating TimeOut"},
    {Section::key,
     "DebounceTime DialogConfigError DialogDebounceTips DialogEConfigMismatch DialogFireKeyInterval "
     "DialogFireKeyTimes DialogFireKeyTips DialogKeepLeftKey configName Import Export"},
    {Section::light,
     "DPIEffect LightMode Brightness Speed MovingOffLight Preview CustomColor Preset receiver "
     "receiverLight PreviewLightsTips default R: G: B:"},
    {Section::macro,
     "AutoDelay DialogDeleteMacro DialogInputMacroName DialogMaxMacroKey DialogSameMacroName "
     "DialogSelectMacroFirst DialogStopRecordFirst KeyList MacroList MacroSeond Modify NewMacro "
     "StartRecord StopRecord InsertEvent DefaultDelay Delay CycleTimes UntilThisPressed "
     "UntilThisReleased UntilAnyPressed Delete MacroExport MacroImport Rename"},
    {Section::pair, "DialogPairTips Pair PairFail PairSuccess PairTool Pairing StartPair"},
    {Section::sensor,
     "DPISetting LOD LODTips MotionSync MotionSyncTips Performance PerformanceTips ReportRate "
     "SensorMode SensorModeTips SensorSetting Ripple RippleTips Angle AngleTips"},
    {Section::update,
     "DialogUpgradeFail DialogUpgradeStart DialogUpgradeSuccess DialogUpgradeUpgrading Upgrade "
     "UpgradeTips"},
    {Section::AdvancedSettings,
     "dpiModeTipsX dpiModeTipsY dpiModeTitle dpiSensitivityTips dpiSensitivityTitle "
     "SleepTime SleepTimeTips scanningTitle scanningTips LongDistance LongDistanceTips "
     "AngularMode AngularModeTips"},
};

// The lists of choices, each with the page that asks for it; `keys` are those it cannot do without.
struct RequiredChoices {
    const char *name;
    const char *keys;
    const char *page;
};
constexpr RequiredChoices MouseChoices[] = {
    {"KeyOptions",
     "2 3 4 5 6 7 9 10 11 12 13 14 15 16 B 1005 DPI+ DPI- 0x0183 0x00CD 0x00B5 0x00B6 0x00B7 0x00E2 0x00E9 "
     "0x00EA 0x018A 0x0192 0x0194 0x0223 0x0221 0x0225 0x0224 0x0226 0x0227 0x022A "
     "DPICycle ScrollUp ScrollDown ScrollLeft ScrollRight",
     "buttons"},
    {"ProfileOptions", "0 1 2 3", "buttons"},
    {"StatusDescriptionList", "#42e81b #f5b020 #f52c17", "lights"},
    {"LightOffTimeOptions", "1 3 6 12 18 30 60 90", "lights"},
    {"DPIEffectOptions", "0 1 2", "lights"},
    {"LightModeOptions", "0 1 2 3 4 5 6", "lights"},
    {"receiverList", "0 1 2 3", "lights"},
    {"receiverStatusList", "signal", "lights"},
    {"InsertEventOptions", "0 1 2 3 4 5 6", "macros"},
    {"PerformanceOptions", "1 3 6 12 18 30 60 90", "sensor"},
    {"ReportRates", "1 2 4 8 16 32 64", "sensor"},
    {"LODOptions", "1 2 3", "sensor"},
    {"SensorModeOptions", "0 1 2", "sensor"},
    {"dpiModeOptions", "0", "advanced"},
    {"tabsList", "0", "settings"},
};

// Part of the format, and without an effect in any release: a search takes fixed values, and both kinds of
// transition lead to the same files.
constexpr const char *SilentKeys[] = {"InterfaceId", "DeviceId", "Transition"};

QStringList captured(const QString &sources, const QString &pattern)
{
    QStringList found;
    for (auto each = QRegularExpression(pattern).globalMatch(sources); each.hasNext();)
        found << each.next().captured(1);
    return found;
}

bool isSilent(std::string_view key)
{
    return std::find(std::begin(SilentKeys), std::end(SilentKeys), key) != std::end(SilentKeys);
}

} // namespace

class tst_ProductUse : public QObject
{
    Q_OBJECT

private:
    QString sources;
    QString forms;
    LanguageFile english;

    // A form names a key "section key", or "section key 3" where the text takes a number, and so does the
    // source of a page that makes its controls itself.
    bool namesAsk(const QString &key) const
    {
        return forms.contains('>' + key + '<') || forms.contains('>' + key + ' ') ||
               sources.contains('"' + key + '"') || sources.contains('"' + key + " %1");
    }

private slots:
    void initTestCase()
    {
        setApplicationFolder(PRODUCT_FOLDER);
        LoadLanguageTables();
        sources = programSources();
        forms = programSources({"*.ui"});
        english = readLanguageFile(applicationFolder() + "/Language/en.json");
        QVERIFY(sources.size() > 100000);
    }

    void hasEveryText_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < std::size(MouseTexts); ++i)
            QTest::newRow(Sections[std::size_t(MouseTexts[i].section)].name) << int(i);
    }
    void hasEveryText()
    {
        QFETCH(int, row);
        const RequiredTexts &required = MouseTexts[row];
        for (const QString &key : QString(required.keys).split(' '))
            QVERIFY2(!text(required.section, key, 0).isEmpty(), qPrintable(key));
    }

    // The look-ups as they stand in the sources, by section and key.
    void hasWhatTheSourcesAskFor()
    {
        const QHash<QString, QString> shorts = {{"homeText\\(", "home"}};
        int asked = 0;
        const auto check = [&asked](const QString &section, const QString &key) {
            for (std::size_t i = 0; i < Sections.size(); ++i)
                if (section == Sections[i].name) {
                    QVERIFY2(!text(Section(i), key, 0).isEmpty(), qPrintable(section + ' ' + key));
                    ++asked;
                }
        };
        const QRegularExpression direct("Section::(\\w+),\\s*\"(\\w+)\"");
        for (auto found = direct.globalMatch(sources); found.hasNext();) {
            const auto match = found.next();
            check(match.captured(1), match.captured(2));
        }
        const QRegularExpression names("\"(light) (\\w+)(?: %1)?\"");
        for (auto found = names.globalMatch(sources); found.hasNext();) {
            const auto match = found.next();
            check(match.captured(1), match.captured(2));
        }
        for (auto row = shorts.begin(); row != shorts.end(); ++row)
            for (auto found = QRegularExpression(row.key() + "\"(\\w+)\"").globalMatch(sources);
                 found.hasNext();)
                check(row.value(), found.next().captured(1));
        QVERIFY(asked >= 20); // the scan still finds the look-ups
    }

    // Each text is asked for by the sources or stands in the list of what the pages need.
    void hasNoTextThatNobodyAsksFor()
    {
        QStringList idle;
        for (const RequiredTexts &required : MouseTexts)
            for (const QString &key : english.section(Word::Mouse, required.section).keys())
                if (!QString(required.keys).split(' ').contains(key) && !sources.contains('"' + key + '"') &&
                    !namesAsk(Sections[std::size_t(required.section)].name + (' ' + key)))
                    idle << Sections[std::size_t(required.section)].name + (' ' + key);
        QCOMPARE(idle, QStringList());
    }

    // What a form says of a control aloud or in a tool tip comes from the tables. Dialog gives its column of
    // icons their names itself.
    void eachNameInAFormHasAKey()
    {
        const QStringList ofTheColumn = {"Buttons", "Sensor", "Macros", "Lights", "Advanced", "Settings"};
        int keyed = 0;
        const QRegularExpression named(
            "\"(accessibleName|toolTip)\"><string>([^<]*)</string></property>\\s*"
            "(?:<property name=\"nameKey\" stdset=\"0\"><string notr=\"true\">([^<]*)<)?");
        QHash<QString, QStringList> keysOf;
        for (auto each = named.globalMatch(forms); each.hasNext();) {
            const auto match = each.next();
            const QString name = match.captured(2);
            const QStringList place = match.captured(3).split(' ');
            if (match.captured(1) == "toolTip") { // stands behind the name, which it repeats
                QVERIFY2(keysOf.contains(name) || ofTheColumn.contains(name), qPrintable(name));
                continue;
            }
            if (place.size() < 2) {
                QVERIFY2(ofTheColumn.contains(name), qPrintable(name));
                continue;
            }
            keysOf[name] = place;
            for (std::size_t i = 0; i < Sections.size(); ++i)
                if (place.at(0) == Sections[i].name) {
                    const QString given = text(Section(i), place.at(1), 0);
                    QCOMPARE(place.size() > 2 ? given.arg(place.at(2)) : given, name);
                    ++keyed;
                }
        }
        QCOMPARE(keyed, forms.count("\"nameKey\""));
        QVERIFY(keyed > 40);
    }

    // Of the other device's texts the program shows one.
    void hasNoKeyboardTextButOne()
    {
        QStringList given;
        for (std::size_t i = 0; i < Sections.size(); ++i)
            given << english.section(Word::Keyboard, Section(i)).keys();
        QCOMPARE(given, QStringList("newTips"));
    }

    void hasEveryChoice_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < std::size(MouseChoices); ++i)
            QTest::newRow(MouseChoices[i].name) << int(i);
    }
    void hasEveryChoice()
    {
        QFETCH(int, row);
        for (const QString &key : QString(MouseChoices[row].keys).split(' '))
            QVERIFY2(!choice(MouseChoices[row].name, key, 0).isEmpty(), qPrintable(key));
    }

    void hasNoChoiceThatNobodyAsksFor()
    {
        QStringList idle;
        for (std::size_t i = 0; i < Choices.size(); ++i) {
            const ChoiceRow &row = Choices[i];
            const bool wanted =
                row.word == Word::Mouse && std::any_of(std::begin(MouseChoices), std::end(MouseChoices),
                                                       [&row](const RequiredChoices &choice) {
                                                           return qstrcmp(choice.name, row.name) == 0;
                                                       });
            if (!wanted && !english.choices[i].isEmpty())
                idle << row.name;
        }
        QCOMPARE(idle, QStringList());
    }

    // A list that no table takes would be dropped without a word.
    void hasNoListWithoutATable()
    {
        QFile file(applicationFolder() + "/Language/en.json");
        QVERIFY(file.open(QIODevice::ReadOnly));
        for (const QString &name : captured(QString::fromUtf8(file.readAll()), "\"(\\w+)\"\\s*:\\s*\\["))
            QVERIFY2(name == "children" ||
                         std::any_of(std::begin(MouseChoices), std::end(MouseChoices),
                                     [&name](const RequiredChoices &choice) { return name == choice.name; }),
                     qPrintable(name));
    }

    void hasTheChoicesTheSourcesAskFor()
    {
        const QStringList asked = captured(sources, "language::choices?\\(\"(\\w+)\"");
        QVERIFY(!asked.isEmpty());
        for (const QString &name : asked)
            QVERIFY2(!choices(name.toLatin1().constData(), 0).isEmpty(), qPrintable(name));
    }

    void theCatalogueGivesEveryKey()
    {
        const ConfigReader &reader = ConfigReader::instance();
        for (const CatalogueKey &row : CatalogueKeys) {
            if (row.form == KeyForm::DefaultAction) // a model may leave it out
                continue;
            const bool isOfModel = row.section == CatalogueSection::Model;
            for (int i = 0; i < (isOfModel ? DeviceCatalogue().total() : 1); ++i) {
                const QString section = isOfModel ? DeviceCatalogue::section(i) : QString("Option");
                QVERIFY2(!reader.ReadConfigList(section, row.name.data()).isEmpty(), row.name.data());
            }
        }
    }

    void everyCatalogueKeyIsRead()
    {
        QFile table(SOURCE_FOLDER "/catalogue/CatalogueKeys.h"); // names keys without reading them
        QVERIFY(table.open(QIODevice::ReadOnly));
        const QString list = QString::fromUtf8(table.readAll());
        QVERIFY(sources.contains(list));
        const QString readers = QString(sources).remove(list);
        for (const CatalogueKey &row : CatalogueKeys) {
            const QString key = row.form == KeyForm::DefaultAction ? "KeyParam" : row.name.data();
            QCOMPARE(readers.contains(QRegularExpression('"' + key + "(%1)?\"")), !isSilent(row.name));
        }
    }

    // The look-ups as they stand in the sources.
    void theCatalogueKnowsWhatTheSourcesAskFor()
    {
        QStringList asked =
            captured(sources, "(?:style::color|skinColor|optionList|driveList|\\boption)\\(\"(\\w+)\"\\)");
        asked += captured(sources, "ReadConfig(?:List)?\\([^;{}]*?QStringLiteral\\(\"(\\w+)\"\\)\\)");
        asked += captured(sources, "atalogue(?:\\(\\))?\\.(?:text|list|number)\\([^;{}\"]*\"(\\w+)\"");
        QVERIFY(asked.size() >= 20);
        for (const QString &key : asked)
            QVERIFY2(catalogueKey(key.toStdString()) || key == "KeyParam", qPrintable(key));
    }
};

TEST_CLASS(tst_ProductUse, testmain::CoreApplication)
#include "tst_productuse.moc"
