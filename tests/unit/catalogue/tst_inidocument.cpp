// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "catalogue/IniDocument.h"
#include "catalogue/IniValue.h"
#include "tests/support/TestMain.h"

#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

// QSettings itself is the measure: both must read the same values from the same bytes.
class tst_IniDocument : public QObject
{
    Q_OBJECT

private slots:
    void readsAsQSettingsDoes_data()
    {
        QTest::addColumn<QByteArray>("line");
        const char *const lines[] = {
            "plain",
            "two words",
            " edges ",
            "\"  quoted edges  \"",
            "",
            "\"\"",
            "a,b,c",
            "a, b ,\tc",
            "\"a,b\",c",
            "one,",
            ",",
            "\"half\" quoted",
            "\"never closed",
            "semicolon;comment",
            "\"semi;colon\"",
            "hash#tag",
            "equals=sign",
            "QQ==,Qg==",
            "back\\\\slash",
            "\\a\\b\\f\\n\\r\\t\\v\\\"\\?\\'",
            "\\x41\\x20ac",
            "\\x41 41",
            "\\101\\7",
            "\\q",
            "trailing \\x20",
            "tab\\t",
            "ends with \\",
            "@@text",
            "@text",
            "@String(text)",
            "a,@@b",
            "caf\xC3\xA9 \xE2\x82\xAC",
            "\xF0\x9F\x90\xAD",
            "0x05,0,0x00CD",
            "-1",
        };
        for (const char *line : lines)
            QTest::newRow(line) << QByteArray(line);
    }
    void readsAsQSettingsDoes()
    {
        QFETCH(QByteArray, line);
        const QByteArray bytes = "[Section]\nValue=" + line + "\nNext=after\n";
        write(bytes);
        QSettings settings(path(), QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        const IniDocument document = IniDocument::parse(bytes);
        QCOMPARE(document.list("Section", "Value"), settings.value("Section/Value").toStringList());
        QCOMPARE(document.text("Section", "Value"), settings.value("Section/Value").toString());
        QCOMPARE(document.text("Section", "Next"), settings.value("Section/Next").toString());
    }

    void readsFilesAsQSettingsDoes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF[Section]\nKey=1\n");
        QTest::newRow("other line ends") << QByteArray("[Section]\r\nKey=1\r\nOther=2\r\n");
        QTest::newRow("no line end") << QByteArray("[Section]\nKey=1");
        QTest::newRow("blanks") << QByteArray("\n\n  [ Section ]  \n  Key  =  1  \n\n");
        QTest::newRow("comments") << QByteArray("; one\n[Section]\n;Key=0\nKey=1;x\n  ; two\nOther=2\n");
        QTest::newRow("a key twice") << QByteArray("[Section]\nKey=1\nKey=2\n");
        QTest::newRow("a section twice") << QByteArray("[Section]\nKey=1\n[B]\nx=1\n[Section]\nOther=2\n");
        QTest::newRow("nonsense lines") << QByteArray("what\n[Section]\nnothing\nKey=1\n=2\n]\n");
        QTest::newRow("no section") << QByteArray("Key=1\n[Section]\nKey=2\n");
        QTest::newRow("general") << QByteArray("[General]\nKey=1\n[%General]\nOther=2\n");
        QTest::newRow("escaped names") << QByteArray("[A%20B\\C]\n%U20AC%2fx\\y=1\n%zz=2\n%4=3\n");
        QTest::newRow("quotes over lines") << QByteArray("[Section]\nKey=\"a\nb\"\nOther=2\n");
        QTest::newRow("continued") << QByteArray("[Section]\nKey=a\\\nb\nOther=c\\\r\nd\n");
        QTest::newRow("open heading") << QByteArray("[Section\nKey=1\n");
    }
    void readsFilesAsQSettingsDoes()
    {
        QFETCH(QByteArray, bytes);
        write(bytes);
        QSettings settings(path(), QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        const IniDocument document = IniDocument::parse(bytes);
        for (const QString &name : settings.allKeys()) {
            const QString section = name.section('/', 0, -2);
            QCOMPARE(document.list(section, name.section('/', -1)), settings.value(name).toStringList());
        }
        for (const char *key : {"Key", "Other"}) {
            for (const char *section : {"Section", "", "General", "B"}) {
                const QString name = *section ? QString(section) + '/' + key : QString(key);
                QCOMPARE(!document.list(section, key).isEmpty(), settings.contains(name));
            }
        }
    }

    void writesWhatQSettingsReads_data()
    {
        QTest::addColumn<QString>("text");
        const QString texts[] = {"plain",
                                 "",
                                 " edges ",
                                 "a,b",
                                 "a;b=c",
                                 "\"quoted\"",
                                 "back\\",
                                 "line\nend\r\t",
                                 "@text",
                                 "@@text",
                                 "@Variant(x)",
                                 "€uro café",
                                 "\xF0\x9F\x90\xAD",
                                 "\x01"
                                 "1f",
                                 QString(QChar(0)) + "7",
                                 "1.0/2 [x] %y",
                                 "v1.05",
                                 "/home/a b/prog",
                                 "'single'?",
                                 "\x7F"};
        for (const QString &text : texts)
            QTest::newRow(text.toUtf8().toPercentEncoding().constData()) << text;
    }
    void writesWhatQSettingsReads()
    {
        QFETCH(QString, text);
        IniDocument document;
        document.set("Some Section", "A key/€", text);
        document.set("", "General", text);
        document.set("General", "Key", text);
        write(document.serialise());
        QSettings settings(path(), QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        QCOMPARE(settings.status(), QSettings::NoError);
        QCOMPARE(settings.value("Some Section/A key/€").toString(), text);
        QCOMPARE(settings.value("General").toString(), text);
        QCOMPARE(settings.value("General/Key").toString(), text);
        const IniDocument again = IniDocument::parse(document.serialise());
        QCOMPARE(again.text("Some Section", "A key/€"), text);
        QCOMPARE(again.serialise(), document.serialise());
    }

    void readsWhatQSettingsWrites()
    {
        const QStringList list = {"a", " b ", "c,d", "@e", "", "€", "\"f\"", "g;h=i"};
        {
            QSettings settings(path(), QSettings::IniFormat);
            settings.clear();
            settings.setIniCodec("UTF-8");
            settings.setValue("A B/list", list);
            settings.setValue("A B/number", 17);
            settings.setValue("A B/bytes", QByteArray("bytes"));
        }
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const IniDocument document = IniDocument::parse(file.readAll());
        QCOMPARE(document.list("A B", "list"), list);
        QCOMPARE(document.text("A B", "number"), QString("17"));
        QCOMPARE(document.text("A B", "bytes"), QString("bytes"));
    }

    // A serialised object never becomes one; its value is empty and its neighbours stay.
    void unpacksNoObjects_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("variant") << QByteArray("@Variant(\\0\\0\\0\\x45\\0\\0\\0\\x1)");
        QTest::newRow("huge") << QByteArray("@Variant(\\0\\0\\0\\t\\0\\xff\\xff\\xff\\xff)");
        QTest::newRow("rectangle") << QByteArray("@Rect(1 2 3 4)");
        QTest::newRow("date") << QByteArray("@DateTime(\\0)");
        QTest::newRow("invalid") << QByteArray("@Invalid()");
    }
    void unpacksNoObjects()
    {
        QFETCH(QByteArray, stored);
        QCOMPARE(parseIniValue(stored), QStringList(""));
        QCOMPARE(parseIniValue("a," + stored.left(8) + "x),b").size(), 3);
        const IniDocument document = IniDocument::parse("[S]\nBad=" + stored + "\nGood=1\n");
        QCOMPARE(document.text("S", "Bad"), QString());
        QCOMPARE(document.text("S", "Good"), QString("1"));
        QVERIFY(document.serialise().contains("Good=1"));
    }

    void survivesRandomBytes()
    {
        QRandomGenerator random(4711);
        const QByteArray marks = "[]=;,\"\\@%\n\r \tax0(";
        for (int round = 0; round < 2000; ++round) {
            QByteArray bytes;
            for (int i = random.bounded(200); i > 0; --i)
                bytes +=
                    random.bounded(3) ? marks.at(random.bounded(marks.size())) : char(random.bounded(256));
            const IniDocument document = IniDocument::parse(bytes);
            const QByteArray written = document.serialise();
            QCOMPARE(IniDocument::parse(written).serialise(), written);
        }
    }

    void keepsListsWhenItWrites()
    {
        const QByteArray lists[] = {",b", "a,,", ",", "\"a,b\", c", "\" a\",b"};
        for (const QByteArray &list : lists) {
            const IniDocument document = IniDocument::parse("[S]\nx=" + list + "\n");
            const IniDocument again = IniDocument::parse(document.serialise());
            QCOMPARE(again.list("S", "x"), document.list("S", "x"));
            QVERIFY(again.list("S", "x").size() > 1);
        }
    }

    void removes()
    {
        IniDocument document = IniDocument::parse("[A]\nx=1\ny=2\n[B]\nx=3\n");
        document.remove("A", "x");
        document.remove("A", "none");
        document.remove("B", "x");
        QCOMPARE(document.serialise(), QByteArray("[A]\ny=2\n"));
    }

private:
    QString path() const { return folder_->filePath("test.ini"); }
    void write(const QByteArray &bytes)
    {
        // A new file each time: QSettings keeps what it read of an old one.
        folder_ = std::make_unique<QTemporaryDir>();
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    std::unique_ptr<QTemporaryDir> folder_ = std::make_unique<QTemporaryDir>();
};

TEST_CLASS(tst_IniDocument, testmain::CoreApplication)
#include "tst_inidocument.moc"
