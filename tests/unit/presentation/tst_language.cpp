// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/DataRoot.h"
#include "presentation/language/CompanyLabels.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

using namespace language;

class tst_Language : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        QDir(folder_->path()).mkpath("Language");
        setApplicationFolder(folder_->path());
    }
    void cleanup() { setApplicationFolder({}); }

    void fillsEverySection_data()
    {
        QTest::addColumn<int>("section");
        for (std::size_t i = 0; i < Sections.size(); ++i)
            QTest::newRow(Sections[i].name) << int(i);
    }
    void fillsEverySection()
    {
        QFETCH(int, section);
        const QByteArray name = Sections[std::size_t(section)].name;
        const LanguageFile file = readLanguage(
            "{\"keyboard\":{\"" + name + "\":{\"a\":\"k\"}},\"mouse\":{\"" + name + "\":{\"a\":\"m\"}}}");
        QCOMPARE(file.section(Word::Mouse, Section(section)), Texts({{"a", "m"}}));
        const QStringList keyboard = {"Settings", "common", "key", "light", "macro", "pair", "update"};
        QCOMPARE(file.section(Word::Keyboard, Section(section)),
                 keyboard.contains(name) ? Texts({{"a", "k"}}) : Texts());
    }

    void walksInTheOrderOfTheFile_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("home");
        QTest::addColumn<QString>("common");
        QTest::newRow("the second of two wins")
            << QByteArray(R"({"mouse":{"common":{"a":"1","a":"2"}}})") << ""
            << "2";
        QTest::newRow("two objects of a name")
            << QByteArray(R"({"mouse":{"common":{"a":"1"},"common":{"a":"2"}}})") << ""
            << "2";
        QTest::newRow("a section holds on behind its object")
            << QByteArray(R"({"mouse":{"common":{"b":"1"},"a":"2"}})") << ""
            << "2";
        QTest::newRow("a nested section ends the outer one")
            << QByteArray(R"({"mouse":{"home":{"common":{"b":"1"},"a":"2"}}})") << ""
            << "2";
        QTest::newRow("names in between change nothing")
            << QByteArray(R"({"mouse":{"home":{"page":{"deeper":{"a":"1"}}}}})") << "1"
            << "";
        QTest::newRow("a word holds on") << QByteArray(R"({"mouse":{},"home":{"a":"1"}})") << "1"
                                         << "";
        QTest::newRow("a word inside a section")
            << QByteArray(R"({"home":{"mouse":{"a":"1"},"keyboard":{"a":"2"}}})") << "1"
            << "";
        QTest::newRow("a text with a section's name")
            << QByteArray(R"({"mouse":{"home":{"common":"x","a":"1"}}})") << ""
            << "1";
        QTest::newRow("no section yet") << QByteArray(R"({"mouse":{"a":"1"}})") << ""
                                        << "";
        QTest::newRow("no word yet") << QByteArray(R"({"home":{"a":"1"}})") << ""
                                     << "";
        QTest::newRow("not alphabetical")
            << QByteArray(R"({"mouse":{"home":{"z":"0"},"common":{"b":"x"},"a":"9"}})") << ""
            << "9";
        QTest::newRow("empty texts are not stored")
            << QByteArray(R"({"mouse":{"common":{"a":"1","a":""}}})") << ""
            << "1";
        QTest::newRow("other values are passed over")
            << QByteArray(R"({"mouse":{"common":{"a":1,"b":null,"c":true,"d":-1.5e3,"a":"1","e":{}}}})") << ""
            << "1";
        QTest::newRow("an array is no section")
            << QByteArray(R"({"mouse":{"home":[{"a":"1"}],"a":"2"}})") << "2"
            << "";
        QTest::newRow("blanks") << QByteArray(" \n{\t\"mouse\" : { \"home\" :\r\n{ \"a\" : \"1\" } } } \n")
                                << "1"
                                << "";
        QTest::newRow("byte order mark")
            << QByteArray("\xEF\xBB\xBF{\"mouse\":{\"home\":{\"a\":\"1\"}}}") << "1"
            << "";
        QTest::newRow("escapes")
            << QByteArray("{\"mouse\":{\"ho\\u006de\":{\"a\":\"\\\"\\\\\\/\\n\\u20ac{[,\\ud83d\\udc2d\"}}}")
            << QString::fromUtf8("\"\\/\n€{[,\xF0\x9F\x90\xAD") << "";
        QTest::newRow("an array on top") << QByteArray(R"([{"mouse":{"home":{"a":"1"}}}])") << ""
                                         << "";
    }
    void walksInTheOrderOfTheFile()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, home);
        QFETCH(QString, common);
        const LanguageFile file = readLanguage(json);
        QCOMPARE(file.section(Word::Mouse, Section::home).value("a"), home);
        QCOMPARE(file.section(Word::Mouse, Section::common).value("a"), common);
    }

    void fillsEveryChoiceTable_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < Choices.size(); ++i) {
            QTest::addRow("%s %s %s", Choices[i].word == Word::Mouse ? "mouse" : "keyboard", Choices[i].name,
                          Choices[i].type == nullptr ? "" : Choices[i].type)
                << int(i);
        }
    }
    // Each row is filled by its own array and by no other, and not by an array under the other word.
    void fillsEveryChoiceTable()
    {
        QFETCH(int, row);
        const ChoiceRow &choice = Choices[std::size_t(row)];
        const QByteArray type =
            choice.type == nullptr ? QByteArray() : ",\"type\":\"" + QByteArray(choice.type) + '"';
        const auto element = [&](const QByteArray &key, const QByteArray &text) -> QByteArray {
            return "{\"" + QByteArray(choice.keyField) + "\":" + key + ",\"" + choice.valueField + "\":\"" +
                   text + '"' + type;
        };
        const QByteArray array = '[' + element("1", "one") + "}," + element("\"0x02\"", "two") +
                                 ",\"children\":[" + element("3", "three") + "}]}," + element("1", "again") +
                                 "},{\"x\":1},7,[]]";
        const bool mouse = choice.word == Word::Mouse;
        const QByteArray own = mouse ? "mouse" : "keyboard";
        const Texts expected = {{"1", "again"}, {"0x02", "two"}, {"3", "three"}};
        const LanguageFile file =
            readLanguage("{\"" + own + "\":{\"x\":{\"" + choice.name + "\":" + array + "}}}");
        for (std::size_t i = 0; i < Choices.size(); ++i)
            QCOMPARE(file.choices[i], int(i) == row ? expected : Texts());
        QCOMPARE(file.choice(choice.name, choice.word, choice.type), expected);
        const QByteArray other = mouse ? "keyboard" : "mouse";
        const LanguageFile wrong =
            readLanguage("{\"" + other + "\":{\"x\":{\"" + choice.name + "\":" + array + "}}}");
        QCOMPARE(wrong.choices[std::size_t(row)], Texts());
    }

    void knowsTheRequiredTables()
    {
        const QByteArrayList mouse = {"KeyOptions",       "LightOffTimeOptions",
                                      "ReportRates",      "InsertEventOptions",
                                      "dpiModeOptions",   "tabsList",
                                      "ProfileOptions",   "DPIEffectOptions",
                                      "LightModeOptions", "StatusDescriptionList",
                                      "receiverList",     "receiverStatusList",
                                      "LODOptions",       "PerformanceOptions",
                                      "SensorModeOptions"};
        const QByteArrayList keyboard = {"LightOffTimeOptions", "ReportRates",  "keyboardTabList",
                                         "DisableList",         "FunctionList", "modeList",
                                         "InsertEventOptions"};
        const QByteArrayList types = {"0x00", "0x01", "0x02", "0x03", "0x05", "0x06", "0x09", "0x0A"};
        QCOMPARE(int(Choices.size()), mouse.size() + keyboard.size() + types.size());
        const auto known = [](const QByteArray &name, Word word, const char *type) {
            return std::count_if(Choices.begin(), Choices.end(), [&](const ChoiceRow &row) {
                return name == row.name && word == row.word && qstrcmp(type, row.type) == 0;
            });
        };
        for (const QByteArray &name : mouse)
            QCOMPARE(known(name, Word::Mouse, nullptr), 1);
        for (const QByteArray &name : keyboard)
            QCOMPARE(known(name, Word::Keyboard, nullptr), 1);
        for (const QByteArray &type : types)
            QCOMPARE(known("keyboardKeyfunctions", Word::Keyboard, type.constData()), 1);
    }

    void dropsOtherTypes()
    {
        const LanguageFile file = readLanguage(
            R"({"keyboard":{"keyboardKeyfunctions":[{"type":"0x04","value":"1","label":"a"},{"value":"2","label":"b"},
               {"type":"0x0a","value":"3","label":"c"},{"type":"0x0A","value":"4","label":"d"}]}})");
        int entries = 0;
        for (const Texts &table : file.choices)
            entries += table.size();
        QCOMPARE(entries, 1);
        QCOMPARE(file.choice("keyboardKeyfunctions", Word::Keyboard, "0x0A").value("4"), QString("d"));
    }

    void turnsNumbersIntoDecimalText()
    {
        const LanguageFile file = readLanguage(
            R"({"mouse":{"LODOptions":[{"value":0.7,"option":"a"},{"value":-1,"option":"b"},{"value":100000,"option":"c"},
               {"value":true,"option":"d"},{"value":5},{"option":"e"},{"value":6,"option":7}]}})");
        QCOMPARE(file.choice("LODOptions"), Texts({{"0.7", "a"}, {"-1", "b"}, {"100000", "c"}}));
    }

    void isEmptyForBadJson_data()
    {
        QTest::addColumn<QByteArray>("json");
        const QByteArray good = R"({"mouse":{"home":{"a":"1"},"LODOptions":[{"value":1,"option":"x"}]}})";
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("garbage behind") << good + "x";
        QTest::newRow("comma too much") << QByteArray(R"({"mouse":{"home":{"a":"1",}}})");
        QTest::newRow("bad UTF-8") << QByteArray("{\"mouse\":{\"home\":{\"a\":\"\xff\"}}}");
        QTest::newRow("deep objects")
            << QByteArray("{\"mouse\":").repeated(100000) + "1" + QByteArray(100000, '}');
        QTest::newRow("deep arrays") << "{\"mouse\":{\"home\":{\"a\":\"1\"},\"LODOptions\":" +
                                            QByteArray(100000, '[') + QByteArray(100000, ']') + "}}";
        QTest::newRow("open arrays") << QByteArray(1000000, '[');
        for (int cut = 1; cut < good.size(); cut += 5)
            QTest::addRow("cut at %d", cut) << good.left(cut);
    }
    void isEmptyForBadJson()
    {
        QFETCH(QByteArray, json);
        const LanguageFile file = readLanguage(json);
        for (const auto &word : file.texts) {
            for (const Texts &table : word)
                QVERIFY(table.isEmpty());
        }
        for (const Texts &table : file.choices)
            QVERIFY(table.isEmpty());
    }

    void survivesMixedTrees()
    {
        QRandomGenerator random(99);
        const QByteArrayList words = {"{\"mouse\":",
                                      "{\"home\":",
                                      "{\"LODOptions\":",
                                      "[",
                                      "{\"children\":",
                                      "\"text\"",
                                      "1",
                                      "null",
                                      "}",
                                      "]",
                                      ",",
                                      "\"value\":",
                                      "\"a\":"};
        for (int round = 0; round < 5000; ++round) {
            QByteArray json;
            for (int i = random.bounded(30); i > 0; --i)
                json += words.at(random.bounded(words.size()));
            readLanguage(json);
        }
        const LanguageFile file = readLanguage(
            R"({"mouse":{"LODOptions":{"home":{"a":"1"}},"home":[1,"x",[{"b":"2"}],{"c":{"d":[]}}],
               "LODOptions":[[{"value":1,"option":"no"}],{"value":2,"option":"yes","children":{"value":3}}]}})");
        QCOMPARE(file.section(Word::Mouse, Section::home), Texts({{"a", "1"}}));
        QCOMPARE(file.choice("LODOptions"), Texts({{"2", "yes"}}));
    }

    void loadsTheTables()
    {
        write("en.json", R"({"mouse":{"home":{"OnRun":"Runs"},"LODOptions":[{"value":1,"option":"1 mm"}]},
                             "keyboard":{"update":{"newTips":"New"}}})");
        write("Net.xml", "<Profile><English><CompanyName>A</CompanyName></English></Profile>");
        LoadLanguageTables();
        QCOMPARE(text(Section::home, "OnRun", 0), QString("Runs"));
        QCOMPARE(text(Section::update, "newTips", 0, Word::Keyboard), QString("New"));
        QCOMPARE(choice("LODOptions", "1", 0), QString("1 mm"));
        QCOMPARE(companyLabels(0), QStringList("A"));
        LoadLanguageTables(); // takes the place of what was there
        QCOMPARE(text(Section::home, "OnRun", 0), QString("Runs"));
    }

    void answersEveryLookUp()
    {
        write("en.json", R"({"mouse":{"home":{"OnRun":"Runs"},"LODOptions":[{"value":1,"option":"1 mm"}]}})");
        write("Net.xml", "<Profile><English><CompanyName>A</CompanyName></English></Profile>");
        LoadLanguageTables();
        for (const int index : {0, -1, 1, 3, 7, INT_MAX, INT_MIN}) { // there is no language but the first
            QCOMPARE(text(Section::home, "OnRun", index), QString("Runs"));
            QCOMPARE(choice("LODOptions", "1", index), QString("1 mm"));
            QCOMPARE(companyLabels(index), QStringList("A"));
            QCOMPARE(text(Section::home, "unknown", index), QString());
            QCOMPARE(text(Section::home, "OnRun", index, Word::Keyboard), QString());
            QCOMPARE(choice("LODOptions", "2", index), QString());
            QCOMPARE(choices("unknown", index), Texts());
            QCOMPARE(choices("LODOptions", index, Word::Keyboard), Texts());
        }
        write("Net.xml", "<Profile/>");
        LoadLanguageTables();
        QCOMPARE(companyLabels(0), QStringList());
    }

    void goesOnWithoutFiles()
    {
        write("en.json", "{\"mouse\"");
        write("Net.xml", "<Labels/>");
        LoadLanguageTables();
        QCOMPARE(text(Section::home, "OnRun", 0), QString());
        QDir(folder_->path()).removeRecursively();
        LoadLanguageTables();
        QCOMPARE(text(Section::home, "OnRun", 0), QString());
    }

    void refusesALargeFile()
    {
        const QByteArray good = R"({"mouse":{"home":{"OnRun":"Runs"}}})";
        write("en.json", good + QByteArray(int(LanguageSizeLimit) - good.size(), ' '));
        LoadLanguageTables();
        QCOMPARE(text(Section::home, "OnRun", 0), QString("Runs"));
        write("en.json", good + QByteArray(int(LanguageSizeLimit) - good.size() + 1, ' '));
        LoadLanguageTables();
        QCOMPARE(text(Section::home, "OnRun", 0), QString());
    }

    void readsCompanyLabels_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QStringList>("labels");
        QTest::addColumn<QString>("error");
        const QStringList none;
        QTest::newRow("in the file's order")
            << QByteArray(
                   "<Profile><English><CompanyWeben>1</CompanyWeben><CompanyName>2</CompanyName>"
                   "<CompanyWebcn>3</CompanyWebcn><CompanyNameCn>4</CompanyNameCn></English></Profile>")
            << QStringList({"1", "2", "3", "4"}) << "";
        QTest::newRow("pages and unknown elements are passed over")
            << QByteArray(
                   "<Profile><Light><label>x</label><label_1>y</label_1><CompanyName>z</CompanyName></Light>"
                   "<What><English><CompanyName>w</CompanyName></English></What>"
                   "<English><label>v</label><Other><CompanyName>u</CompanyName></Other>"
                   "<CompanyName>a &amp; b</CompanyName></English><Macro/></Profile>")
            << QStringList("a & b") << "";
        QTest::newRow("no labels") << QByteArray("<Profile/>") << none << "";
        QTest::newRow("other root") << QByteArray("<Labels><English/></Labels>") << none
                                    << "Not a labels file";
        QTest::newRow("too deep") << "<Profile>" + QByteArray("<a>").repeated(50000) << none
                                  << "Nested too deep";
        QTest::newRow("elements in a label")
            << QByteArray("<Profile><English><CompanyName>a<b/></CompanyName></English></Profile>") << none
            << "Expected character data.";
        QTest::newRow("cut off") << QByteArray("<Profile><English><CompanyName>a</CompanyName>") << none
                                 << "Premature end of document.";
    }
    void readsCompanyLabels()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QStringList, labels);
        QFETCH(QString, error);
        QString said;
        QCOMPARE(::readCompanyLabels(xml, &said), labels);
        QCOMPARE(said, error);
    }

    void refusesEntitiesThatGrow()
    {
        QByteArray xml = "<!DOCTYPE Profile [<!ENTITY a0 \"xxxxxxxxxx\">";
        for (int i = 1; i < 12; ++i) {
            const QByteArray before = "&a" + QByteArray::number(i - 1) + ';';
            xml += "<!ENTITY a" + QByteArray::number(i) + " \"" + before.repeated(10) + "\">";
        }
        xml += "]><Profile><English><CompanyName>&a11;</CompanyName></English></Profile>";
        QString error;
        QCOMPARE(::readCompanyLabels(xml, &error), QStringList());
        QVERIFY(!error.isEmpty());
    }

    void namesTheFilesOfTheNotice()
    {
        const QStringList expected = {"/Language//en.json",     "/Language//zh-CN.json",
                                      "/Language/2-German.xml", "/Language/3-Korea.xml",
                                      "/Language/4-Russia.xml", "/Language/5-Japanese.xml",
                                      "/Language/0-English.xml"};
        for (int i = 0; i < expected.size(); ++i)
            QCOMPARE(noticeLanguageFile(i), expected.at(i));
        QCOMPARE(noticeLanguageFile(-1), expected.last());
        QCOMPARE(noticeLanguageFile(INT_MAX), expected.last());
    }

private:
    void write(const char *name, const QByteArray &bytes)
    {
        QFile file(folder_->filePath("Language/" + QString(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

TEST_CLASS(tst_Language, testmain::CoreApplication)
#include "tst_language.moc"
