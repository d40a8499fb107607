// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macros as blocks: the exact 592 bytes, counts that are kept as they are, and blocks that are not trusted.
#include "device/hidusb/Codec.h"
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "tests/support/TestMain.h"
#include "tests/unit/macro/MacroHome.h"

#include <QtTest>
#include <cstring>
#include <memory>
#include <vector>

using namespace macro;

namespace
{

QByteArray bytesOf(const MacroBlock &block)
{
    return QByteArray(reinterpret_cast<const char *>(&block), sizeof block);
}

QByteArray filled(const QByteArray &start) { return start + QByteArray(592 - start.size(), '\0'); }

// Presses of A, with a delay behind each but the last.
MacroRows presses(int count)
{
    MacroRows rows;
    for (int i = 0; i < count; ++i) {
        rows << keyRow("A", true);
        if (i + 1 < count)
            rows << delayRow(quint32(i + 1));
    }
    return rows;
}

} // namespace

class tst_macroblock : public QObject
{
    Q_OBJECT

private:
    MacroHome home;

private slots:
    void aMacroOfThreeEventsIsTheseBytes()
    {
        const MacroRows rows = {keyRow("A", true), delayRow(10), keyRow("RAlt", false), delayRow(70000),
                                keyRow("Forward", true)};
        QByteArray start("\x05"
                         "Burst");
        start += QByteArray(25, '\0') + '\x03';
        start += QByteArray("\x00\x01\x04\x00\x0A\x00\x00\x00", 8);
        start += QByteArray("\x01\x00\x40\x00\x70\x11\x01\x00", 8);
        start += QByteArray("\x00\x04\x10\x00\x00\x00\x00\x00", 8);
        QCOMPARE(bytesOf(boundBlock("Burst", rows)).toHex(), filled(start).toHex());
        QCOMPARE(bytesOf(savedBlock("Burst", rows)).toHex(), filled(start).toHex());
        QCOMPARE(blockRows(boundBlock("Burst", rows)), rows);
    }

    void countsOfLists_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("bound");
        QTest::addColumn<int>("saved");
        QTest::addColumn<int>("events");
        QTest::newRow("empty file") << QByteArray() << 1 << 0 << 0;
        QTest::newRow("no rows") << QByteArray("1\n") << 1 << 0 << 0;
        QTest::newRow("one event") << QByteArray("1\n0x04 1 0\n") << 1 << 1 << 1;
        QTest::newRow("two events") << QByteArray("1\n0x04 1 0\n1ms\n0x04 1 1\n") << 2 << 2 << 2;
        QTest::newRow("ends in a delay") << QByteArray("1\n0x04 1 0\n1ms\n") << 2 << 2 << 1;
        QTest::newRow("two events without a delay") << QByteArray("1\n0x04 1 0\n0x04 1 1\n") << 2 << 2 << 2;
        QTest::newRow("two delays") << QByteArray("1\n0x04 1 0\n1ms\n2ms\n0x04 1 1\n") << 3 << 3 << 3;
        QTest::newRow("begins with a delay") << QByteArray("1\n1ms\n0x04 1 1\n") << 2 << 2 << 2;
    }
    void countsOfLists()
    {
        QFETCH(QByteArray, text);
        const MacroRows rows = parseMacro(text)->rows;
        QTEST(int(boundBlock("x", rows).EventCount), "bound");
        QTEST(int(savedBlock("x", rows).EventCount), "saved");
        QTEST(eventCount(rows), "events");
    }

    // By its place it would be a delay; the release before it must not be lost, nor the press itself.
    void anEventBehindAnEventIsTheNextOne()
    {
        const MacroRows rows = {keyRow("A", true), delayRow(10), keyRow("A", false), keyRow("B", true),
                                delayRow(20)};
        const MacroBlock block = boundBlock("x", rows);
        QCOMPARE(int(block.EventCount), 4);
        QCOMPARE(int(block.Events[1].Direction), 1);
        QCOMPARE(int(block.Events[1].Code.get()), 0x04);
        QCOMPARE(int(block.Events[1].DelayMs.get()), 0);
        QCOMPARE(int(block.Events[2].Code.get()), 0x05);
        QCOMPARE(int(block.Events[2].DelayMs.get()), 20);
        QCOMPARE(bytesOf(block).mid(32 + 3 * 8), QByteArray(592 - 32 - 3 * 8, '\0'));
    }

    void aBlockHasRoomForSeventyEvents()
    {
        QCOMPARE(int(boundBlock("x", presses(70)).EventCount), 70);
        QVERIFY(fitsBlock(presses(70)));
        QVERIFY(!fitsBlock(presses(71)));
        QVERIFY(fitsBlock(presses(70) << delayRow(9))); // the delay alone has no place
        for (const int more : {1, 2, 7, 186, 187, 1000}) {
            const MacroBlock block = savedBlock("x", presses(70 + more));
            QCOMPARE(bytesOf(block).toHex(), bytesOf(savedBlock("x", presses(70))).toHex());
        }
        QCOMPARE(int(boundBlock("x", presses(70) << delayRow(9)).EventCount), 70);
    }

    void namesFillTheirField()
    {
        QCOMPARE(bytesOf(boundBlock(QString(30, 'n'), {})).left(32),
                 QByteArray("\x1E") + QByteArray(30, 'n') + '\x01');
        QCOMPARE(bytesOf(boundBlock(QString(40, 'n'), {})).left(32),
                 QByteArray("\x1E") + QByteArray(30, 'n') + '\x01');
        QCOMPARE(blockName(boundBlock(QString::fromLatin1("a\0b", 3), {})), QString("ab"));
        QCOMPARE(int(boundBlock("", {}).NameLength), 0);
    }

    void aRenameLeavesTheTailOfTheOldName()
    {
        MacroBlock block = boundBlock("Burst of fire", presses(3));
        const QByteArray events = bytesOf(block).mid(31);
        renameBlock(&block, "Tap");
        QCOMPARE(bytesOf(block).left(31), QByteArray("\x03Tapst of fire") + QByteArray(17, '\0'));
        QCOMPARE(bytesOf(block).mid(31), events);
        QCOMPARE(blockName(block), QString("Tap"));
    }

    void aKeyWithoutCodeIsNoKey()
    {
        const MacroBlock block = boundBlock("x", {keyRow("Nonsense", false)});
        QCOMPARE(bytesOf(block).mid(32, 8), QByteArray("\x01\x01\x00\x00\x00\x00\x00\x00", 8));
    }

    // The mouse's own text of a delay that is no number.
    void delaysThatAreNoNumbers()
    {
        for (const char *text : {"ms", "xms", "-1ms", "99999999999ms", "1.5ms", "ms10ms"}) {
            const MacroRows rows = {keyRow("A", true), {text, 0}, keyRow("A", false)};
            QCOMPARE(int(boundBlock("x", rows).Events[0].DelayMs.get()),
                     qstrcmp(text, "ms10ms") == 0 ? 10 : 0);
        }
    }

    // ---- From a mouse

    void aBlockIsReadWithinItsBytes_data()
    {
        QTest::addColumn<int>("fill");
        for (const int fill : {0, 1, 2, 4, 30, 31, 70, 71, 127, 128, 254, 255})
            QTest::addRow("%d", fill) << fill;
    }
    void aBlockIsReadWithinItsBytes()
    {
        QFETCH(int, fill);
        // Behind its own bytes lies nothing that may be read.
        auto block = std::make_unique<MacroBlock>();
        std::memset(block.get(), fill, sizeof *block);
        const MacroRows rows = blockRows(*block);
        QCOMPARE(rows.size(), fill == 0 ? 0 : 2 * qMin(fill, 70) - 1);
        QVERIFY(blockName(*block).toLocal8Bit().size() <= 3 * 30);
        QVERIFY(eventCount(rows) <= 70);
    }

    void codesOfAMouse_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("name");
        QTest::newRow("key") << 1 << 0x04 << "A";
        QTest::newRow("modifier") << 0 << 0x04 << "LAlt";
        QTest::newRow("mouse") << 4 << 0x04 << "Middle";
        QTest::newRow("enter of the keypad") << 1 << 0x58 << "Enter";
        QTest::newRow("grave") << 1 << 0x35 << "`";
        QTest::newRow("modifier of another kind") << 1 << 0x01 << "LCtrl";
        QTest::newRow("two buttons") << 4 << 0x03 << "";
        QTest::newRow("no code") << 1 << 0xFFFF << "";
        QTest::newRow("unknown kind") << 9 << 0x04 << "";
    }
    void codesOfAMouse()
    {
        QFETCH(int, kind);
        QFETCH(int, code);
        MacroBlock block{};
        block.EventCount = 1;
        block.Events[0].Kind = uint8_t(kind);
        block.Events[0].Code.set(uint16_t(code));
        block.Events[0].Direction = 7; // neither press nor release
        block.Events[0].DelayMs.set(5);
        const MacroRows rows = blockRows(block);
        QCOMPARE(rows.size(), 1);
        QTEST(rows[0].text, "name");
        QVERIFY(rows[0].isRelease());
    }

    void namesAreReadByTheirLength_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("name");
        QTest::newRow("none") << 0 << "";
        QTest::newRow("without the tail") << 3 << "Tap";
        QTest::newRow("with a NUL") << 9 << "Tapst of";
        QTest::newRow("all") << 30 << "Tapst of fire";
        QTest::newRow("31") << 31 << "Tapst of fire";
        QTest::newRow("255") << 255 << "Tapst of fire";
    }
    void namesAreReadByTheirLength()
    {
        QFETCH(int, length);
        MacroBlock block{};
        std::memcpy(block.Name, "Tapst\0 of fire", 14);
        block.EventCount = 'x';
        block.NameLength = uint8_t(length);
        QTEST(blockName(block), "name");
    }

    void sameEventsLookAtTheCountedOnesAlone()
    {
        MacroBlock a = boundBlock("a", presses(3)), b = boundBlock("b", presses(3));
        b.Events[3].Code.set(7);
        QVERIFY(sameEvents(a, b));
        b.Events[2].Direction = 1;
        QVERIFY(!sameEvents(a, b));
        QVERIFY(!sameEvents(a, boundBlock("a", presses(2))));
        a.EventCount = 255;
        b = a;
        b.EventCount = 70;
        QVERIFY(sameEvents(a, b));
    }

    void anyBytesAreRead()
    {
        std::mt19937 random(3);
        for (int i = 0; i < rounds(500); ++i) {
            auto block = std::make_unique<MacroBlock>();
            auto *bytes = reinterpret_cast<uint8_t *>(block.get());
            for (std::size_t at = 0; at < sizeof *block; ++at)
                bytes[at] = uint8_t(random());
            const MacroRows rows = blockRows(*block);
            // What is read settles: keys outside the vocabulary lose their code once and nothing more.
            const MacroRows again = blockRows(savedBlock("x", rows));
            QCOMPARE(blockRows(savedBlock("x", again)), again);
            QCOMPARE(parseMacro(macroText(1, rows))->rows.size(), rows.size());
        }
    }

    // The flash holds an event in five bytes.
    void listsComeBackFromTheMouse()
    {
        std::mt19937 random(6);
        for (int i = 0; i < rounds(160) / KeySlotCount; ++i) {
            auto record = std::make_unique<FlashDataMap>(), read = std::make_unique<FlashDataMap>();
            auto image = std::make_unique<FlashImage>();
            std::vector<MacroRows> lists;
            for (MacroBlock &block : record->MacroBlocks) {
                lists.push_back(anyRows(random));
                block = savedBlock(QString::number(i), parseMacro(macroText(1, lists.back()))->rows);
            }
            hidusb::encode(*record, *image);
            hidusb::decode(*image, *read);
            for (std::size_t slot = 0; slot < KeySlotCount; ++slot) {
                QCOMPARE(bytesOf(read->MacroBlocks[slot]), bytesOf(record->MacroBlocks[slot]));
                QCOMPARE(blockRows(read->MacroBlocks[slot]), lists[slot]);
            }
        }
    }

    // A list that alternates and ends in an event loses nothing on its way.
    void listsComeBackFromFileAndBlock()
    {
        std::mt19937 random(2);
        for (int i = 0; i < rounds(300); ++i) {
            const MacroRows rows = anyRows(random);
            const MacroRows filed = parseMacro(macroText(1, rows))->rows;
            const MacroBlock block = savedBlock("x", filed);
            QCOMPARE(bytesOf(block).toHex(), bytesOf(savedBlock("x", rows)).toHex());
            QCOMPARE(blockRows(block), rows);
            if (!rows.isEmpty())
                QCOMPARE(bytesOf(boundBlock("x", rows)).toHex(), bytesOf(block).toHex());
        }
    }
};

TEST_CLASS(tst_macroblock, testmain::CoreApplication)
#include "tst_macroblock.moc"
