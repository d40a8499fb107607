// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The exported macro: its exact bytes, the forms that other programs and older streams write, and files that
// are not what they should be.
#include "macro/store/ExportedMacro.h"
#include "macro/store/MacroFile.h"
#include "tests/support/TestMain.h"
#include "tests/unit/macro/MacroHome.h"

#include <QBuffer>
#include <QDataStream>
#include <QIcon>
#include <QPixmap>
#include <QtTest>
#include <sys/stat.h>

using namespace macro;

namespace
{

QByteArray png(int width = 4, int height = 4)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

ExportedMacro someMacro() { return {"Burst", 254, {keyRow("A", true), delayRow(10), keyRow("A", false)}}; }

// The parts of a file without pictures, written down byte by byte.
const QByteArray
    Head("\x00\x00\x00\x0C"
         "Taigri\0\0\0\0\0\0"
         "\x00\x00\x00\x30"
         "Burst\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
         "\x00\x00\x00\x0C"
         "254\0\0\0\0\0\0\0\0\0",
         84);
const QByteArray Rows("\x00\x00\x00\x03"
                      "\x00\x00\x00\x02\0A"
                      "\xFF\xFF\xFF\xFF"
                      "\x00\x00\x00\x02"
                      "0\0"
                      "\x00\x00\x00\x08\0"
                      "1\0"
                      "0\0m\0s"
                      "\xFF\xFF\xFF\xFF"
                      "\x00\x00\x00\x02\0A"
                      "\xFF\xFF\xFF\xFF"
                      "\x00\x00\x00\x02"
                      "1\0",
                      52);

using WriteIcon = std::function<void(QDataStream &, const QIcon &)>;
// What a program writes that keeps real icons; `version` is its stream's.
QByteArray foreign(int version, const WriteIcon &writeIcon)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    const ExportedMacro macro = someMacro();
    QPixmap pixmap;
    pixmap.loadFromData(png());
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected);
    for (const auto &[text, size] : {std::pair<QByteArray, int>{"Taigri", 12}, {"Burst", 48}, {"254", 12}})
        stream << (text + '\0').leftJustified(size, '#');
    stream << qint32(macro.rows.size());
    for (const MacroRow &row : macro.rows) {
        stream << row.text;
        writeIcon(stream, icon);
        if (!row.isDelay())
            stream.writeBytes(row.isRelease() ? "1" : "0", 2);
    }
    return bytes;
}

bool isSomeMacro(const std::optional<ExportedMacro> &read)
{
    return read && read->name == "Burst" && read->cycle == 254 && read->rows == someMacro().rows;
}

} // namespace

class tst_exportedmacro : public QObject
{
    Q_OBJECT

private:
    MacroHome home;

private slots:
    void init() { home.clear(); }

    void anExportIsTheseBytes()
    {
        QCOMPARE(exportedMacro(someMacro(), {}).toHex(), (Head + Rows).toHex());
        QVERIFY(isSomeMacro(parseExportedMacro(Head + Rows)));
    }

    // The one place where the toolkit reads an icon: this file is the program's own.
    void aStreamReadsTheExport()
    {
        const QByteArray bytes = exportedMacro(someMacro(), {png(3, 5), png(4, 5), png(5, 5)});
        QDataStream stream(bytes);
        stream.setVersion(17);
        QByteArray field;
        for (const int size : {12, 48, 12}) {
            stream >> field;
            QCOMPARE(field.size(), size);
        }
        qint32 count = 0;
        stream >> count;
        QCOMPARE(count, 3);
        const int widths[] = {3, 5, 4};
        for (int i = 0; i < count; ++i) {
            QString text, direction;
            QIcon icon;
            stream >> text >> icon;
            QCOMPARE(text, someMacro().rows[i].text);
            QCOMPARE(icon.availableSizes(), QList<QSize>() << QSize(widths[i], 5));
            QCOMPARE(icon.pixmap(QSize(5, 5)).toImage().pixelColor(0, 0), QColor(Qt::red));
            if (i == 1)
                continue;
            stream >> direction;
            QCOMPARE(direction, QString(QChar(i == 0 ? 0x3000 : 0x3100)));
        }
        QVERIFY(stream.atEnd());
        QCOMPARE(int(stream.status()), int(QDataStream::Ok));
        QVERIFY(isSomeMacro(parseExportedMacro(bytes)));
    }

    void iconsOfOtherPrograms()
    {
        for (const int version : {9, 13, 17, 18, 19})
            QVERIFY(isSomeMacro(
                parseExportedMacro(foreign(version, [](QDataStream &s, const QIcon &icon) { s << icon; }))));
        QVERIFY(isSomeMacro(
            parseExportedMacro(foreign(17, [](QDataStream &s, const QIcon &) { s << QIcon(); }))));
        // Of streams before the engines had names.
        for (const int version : {7, 8})
            QVERIFY(isSomeMacro(
                parseExportedMacro(foreign(version, [](QDataStream &s, const QIcon &icon) { s << icon; }))));
    }

    // A name of a file, or of an engine that a plug-in would be loaded for, is never followed.
    void onlyEmbeddedPicturesAreIcons()
    {
        const auto engine = [](const QString &key, bool picture) {
            return foreign(17, [=](QDataStream &s, const QIcon &) {
                s << key << qint32(1) << qint32(picture ? 1 : 0);
                if (picture)
                    s.writeRawData(png().constData(), png().size());
                s << QString("/dev/zero") << QSize(4, 4) << quint32(0) << quint32(1);
            });
        };
        QVERIFY(isSomeMacro(parseExportedMacro(engine("QPixmapIconEngine", true))));
        QVERIFY(isSomeMacro(parseExportedMacro(engine("QPixmapIconEngine", false))));
        QVERIFY(!parseExportedMacro(engine("QIconLoaderEngine", true)));
        QVERIFY(!parseExportedMacro(engine("../plugin12345678", true))); // of the same length
        QVERIFY(!parseExportedMacro(engine("svg", false)));
    }

    void picturesAreBounded_data()
    {
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<bool>("sound");
        QTest::newRow("small") << png() << true;
        QTest::newRow("large") << png(512, 512) << true;
        QTest::newRow("too wide") << png(513, 1) << false;
        QTest::newRow("no picture") << QByteArray("GIF89a and more that is no PNG") << false;
        QTest::newRow("cut") << png().left(40) << false;
        QByteArray huge = png();
        huge.replace(8, 4, QByteArray("\x7F\xFF\xFF\xFF", 4));
        QTest::newRow("length that lies") << huge << false;
        QByteArray empty = png();
        empty.replace(16, 4, QByteArray(4, '\0'));
        QTest::newRow("no width") << empty << false;
    }
    void picturesAreBounded()
    {
        QFETCH(QByteArray, picture);
        const QByteArray file = foreign(17, [&](QDataStream &s, const QIcon &) {
            s << QString("QPixmapIconEngine") << qint32(1) << qint32(1);
            s.writeRawData(picture.constData(), picture.size());
            s << QString() << QSize(4, 4) << quint32(0) << quint32(1);
        });
        QTEST(isSomeMacro(parseExportedMacro(file)), "sound");
        // What is no picture is not written either.
        QVERIFY(isSomeMacro(parseExportedMacro(exportedMacro(someMacro(), {picture, picture, picture}))));
    }

    void names_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<QString>("name");
        QTest::newRow("junk behind the NUL") << QByteArray("Tap\0xml/..", 10).leftJustified(48, '#') << "Tap";
        QTest::newRow("48 bytes without NUL") << QByteArray(48, 'n') << QString(30, 'n');
        QTest::newRow("empty") << QByteArray(48, '\0') << "refused";
        QTest::newRow("separator") << QByteArray("a/b").leftJustified(48, '\0') << "refused";
        QTest::newRow("parent") << QByteArray("..").leftJustified(48, '\0') << "refused";
        QTest::newRow("hidden") << QByteArray(".a").leftJustified(48, '\0') << "refused";
        QTest::newRow("xml") << QByteArray("axml").leftJustified(48, '\0') << "refused";
        QTest::newRow("line end") << QByteArray("a\nb").leftJustified(48, '\0') << "refused";
        QTest::newRow("no text") << QByteArray("a\xFF").leftJustified(48, '\0') << "refused";
        QTest::newRow("shorter field") << QByteArray("Tap\0", 4) << "refused";
    }
    void names()
    {
        QFETCH(QByteArray, field);
        QByteArray file = Head.left(16);
        QDataStream stream(&file, QIODevice::Append);
        stream << field;
        const auto read = parseExportedMacro(file + Head.mid(68) + Rows);
        QTEST(read ? read->name : QString("refused"), "name");
    }

    void aLongNameIsCutToItsField()
    {
        const QByteArray wide = exportedMacro({QString(30, QChar(0x4F60)), 1, {}}, {});
        QCOMPARE(wide.mid(20, 48), QString(15, QChar(0x4F60)).toUtf8() + QByteArray(3, '\0'));
        QCOMPARE(exportedMacro({QString(60, 'x'), 1, {}}, {}).mid(20, 48), QByteArray(47, 'x') + '\0');
    }

    void fieldsThatAreRefused_data()
    {
        QTest::addColumn<int>("at");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("marker") << 4 << QByteArray("T1igri");
        QTest::newRow("marker that goes on") << 10 << QByteArray("x");
        QTest::newRow("cycle that is no number") << 72 << QByteArray("2x4");
        QTest::newRow("empty cycle") << 72 << QByteArray("\0\0\0", 3);
        QTest::newRow("cycle that is no byte") << 72 << QByteArray("999");
        QTest::newRow("cycle with a line of its own") << 72 << QByteArray("1\n5ms");
        QTest::newRow("negative count") << 84 << QByteArray("\xFF\xFF\xFF\xFF");
        QTest::newRow("huge count") << 84 << QByteArray("\x7F\xFF\xFF\xFF");
        QTest::newRow("one row more") << 84 << QByteArray("\x00\x00\x00\x04", 4);
        QTest::newRow("length of a text") << 88 << QByteArray("\x7F\xFF\xFF\xFE");
        QTest::newRow("odd length") << 88 << QByteArray("\x00\x00\x00\x01", 4);
        QTest::newRow("line end in a text") << 92 << QByteArray("\0\n", 2);
    }
    void fieldsThatAreRefused()
    {
        QFETCH(int, at);
        QFETCH(QByteArray, bytes);
        QVERIFY(parseExportedMacro(Head + Rows));
        QVERIFY(!parseExportedMacro(QByteArray(Head + Rows).replace(at, bytes.size(), bytes)));
    }

    void anyOtherDirectionIsARelease()
    {
        for (const char *field : {"1", "2", "\x31", "\x7F"}) {
            QByteArray file = Head + Rows;
            file.replace(102, 2, QByteArray(field, 2));
            QVERIFY(parseExportedMacro(file)->rows[0].isRelease());
        }
    }

    void aMouseButtonOfAnotherLanguageIsKnown()
    {
        const MacroRow wheel = keyRow(QString::fromUtf8("中键"), true);
        const auto read = parseExportedMacro(exportedMacro({"Burst", 1, {wheel, delayRow(1), wheel}}, {}));
        QCOMPARE(read->rows, (MacroRows{keyRow("Middle", true), delayRow(1), keyRow("Middle", true)}));
    }

    void aFileCutAtAnyByteIsRefused()
    {
        const QByteArray whole = exportedMacro(someMacro(), {png(), png(), png()});
        for (int size = 0; size < whole.size(); ++size)
            QVERIFY2(!parseExportedMacro(whole.left(size)), qPrintable(QString::number(size)));
        QVERIFY(isSomeMacro(parseExportedMacro(whole)));
        QVERIFY(isSomeMacro(parseExportedMacro(whole + QByteArray(5000, '\0')))); // padded by a copy
    }

    void aFileWithAnyBitFlippedIsSoundOrRefused()
    {
        const QByteArray whole = exportedMacro(someMacro(), {png(), png(), png()});
        for (int bit = 0; bit < whole.size() * 8; ++bit) {
            QByteArray file = whole;
            file[bit / 8] = char(file[bit / 8] ^ (1 << bit % 8));
            if (const auto read = parseExportedMacro(file))
                QCOMPARE(parseMacro(macroText(read->cycle, read->rows))->rows.size(), read->rows.size());
        }
    }

    void filesThatAreNone()
    {
        for (const QString &path : {QString("/nowhere"), QDir::tempPath(), QString("/dev/zero")})
            QVERIFY(!loadExportedMacro(path));
        const QString path = macroFolder() + "/../exported.ini";
        QCOMPARE(mkfifo(path.toLocal8Bit(), 0600), 0);
        QVERIFY(!loadExportedMacro(path));
        QFile::remove(path);
        QVERIFY(saveExportedMacro(path, someMacro(), {}));
        QVERIFY(isSomeMacro(loadExportedMacro(path)));
        QVERIFY(!saveExportedMacro("/nowhere/at/all", someMacro(), {}));
        MacroHome::write(path, Head + Rows + QByteArray(ExportedMacroLimit, '\0'));
        QVERIFY(!loadExportedMacro(path));
    }

    void listsComeBackFromTheirExport()
    {
        std::mt19937 random(4);
        const RowIcons icons{png(), png(), png()};
        for (int i = 0; i < rounds(200); ++i) {
            const ExportedMacro macro{"Burst", int(random() % 256), anyRows(random, 100)};
            const auto read = parseExportedMacro(exportedMacro(macro, icons));
            QVERIFY(read && read->cycle == macro.cycle && read->rows == macro.rows);
        }
    }
};

TEST_CLASS(tst_exportedmacro, testmain::WidgetApplication)
#include "tst_exportedmacro.moc"
