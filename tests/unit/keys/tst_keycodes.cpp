// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What each name becomes in a macro's file, in an event of a macro and in a combination.
#include "tests/support/TestMain.h"
#include "tests/unit/keys/ExpectedKeys.h"

#include <cstring>

using namespace expected;

namespace
{

const std::pair<const char *, int> ShortModifiers[] = {
    {"Ctrl", 0x01}, {"Shift", 0x02}, {"Alt", 0x04}, {"Win", 0x08}};

void compareEvent(const KeyEvent &event, int direction, int kind, int code, int delay)
{
    QCOMPARE(int(event.Direction), direction);
    QCOMPARE(int(event.Kind), kind);
    QCOMPARE(int(event.Code.get()), code);
    QCOMPARE(int(event.DelayMs.get()), delay);
}

template <typename Block> Block filledWith(int byte)
{
    Block block;
    std::memset(&block, byte, sizeof block);
    return block;
}

template <typename Block> bool same(const Block &one, const Block &other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

} // namespace

class tst_KeyCodes : public QObject
{
    Q_OBJECT

    static void eachRow()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < table().size(); ++i)
            QTest::addRow("%s %s", qPrintable(table()[i].codeText), qPrintable(table()[i].name)) << int(i);
    }

    // A name's kind and code by the expected table, where the first row of a name counts.
    static std::pair<int, int> kindAndCode(const QString &name)
    {
        for (const ExpectedKey &row : table())
            if (row.name == name)
                return {row.kind, row.code()};
        return {-1, -1};
    }

private slots:
    void init() { SetMouseButtonNames(English); }

    void namesToCodeTexts_data() { eachRow(); }
    void namesToCodeTexts()
    {
        QFETCH(int, row);
        const QString name = table()[std::size_t(row)].name;
        const auto wanted = kindAndCode(name);
        QCOMPARE(KeyNameToCodeText(name),
                 QStringList({hexText(wanted.second), QString::number(wanted.first)}));
    }

    void mouseNamesToCodeTexts()
    {
        for (const auto &bit : MouseBits)
            QCOMPARE(KeyNameToCodeText(English[std::size_t(bit.second)]),
                     QStringList({hexText(bit.first), "4"}));
    }

    void unknownNames_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"a", "enter", "Ctrl", "Shift", "Alt", "Win", "CTRL", "Num", "NumEnter", " ",
                                 "A ", "0x04", "Command", "``", "LLCtrl"})
            QTest::newRow(name) << name;
        QTest::newRow("long") << QString(100000, 'A');
        QTest::newRow("NUL") << QString(1, QChar(0));
    }
    void unknownNames()
    {
        QFETCH(QString, name);
        QCOMPARE(KeyNameToCodeText(name), QStringList());
        MacroBlock macro = filledWith<MacroBlock>(0);
        KeyNameToEvent(name, 3, macro);
        compareEvent(macro.Events[3], 0, OrdinaryKind, 0, 0);
    }

    void namesToEvents_data() { eachRow(); }
    void namesToEvents()
    {
        QFETCH(int, row);
        const QString name = table()[std::size_t(row)].name;
        const auto wanted = kindAndCode(name);
        for (const int index : {0, 1, MacroEventCount - 1}) {
            MacroBlock block = filledWith<MacroBlock>(0);
            block.Events[index].Direction = 1;
            block.Events[index].DelayMs.set(77);
            MacroBlock before = block;
            KeyNameToEvent(name, index, block);
            compareEvent(block.Events[index], 1, wanted.first, wanted.second, 77);
            before.Events[index] = block.Events[index];
            QVERIFY(same(block, before));
        }
    }

    void mouseNamesToEvents()
    {
        for (const auto &bit : MouseBits) {
            MacroBlock block = filledWith<MacroBlock>(0);
            KeyNameToEvent(English[std::size_t(bit.second)], 5, block);
            compareEvent(block.Events[5], 0, MouseKind, bit.first, 0);
        }
    }

    void eventsOutsideTheBlockAreLeftOut()
    {
        const MacroBlock macro = filledWith<MacroBlock>(0xA5);
        for (const int index : {-1, MacroEventCount, MacroEventCount + 1, 1 << 30}) {
            MacroBlock block = macro;
            KeyNameToEvent("A", index, block);
            QVERIFY(same(block, macro));
        }
        const KeySequence sequence = filledWith<KeySequence>(0xA5);
        for (const auto &place :
             {std::pair(-1, -1), std::pair(6, 3), std::pair(40, 40), std::pair(1 << 28, 9)}) {
            KeySequence block = sequence;
            ComboKeyToEvents("A", place.first, place.second, block);
            QVERIFY(same(block, sequence));
        }
    }

    // The fourth of five keys: its press has a place, its release has one no more.
    void aKeyMayFitByHalf()
    {
        KeySequence block = filledWith<KeySequence>(0);
        ComboKeyToEvents("A", 3, 5, block);
        compareEvent(block.Events[3], 0, OrdinaryKind, 0x04, 10);
        block.Events[3] = {};
        QVERIFY(same(block, filledWith<KeySequence>(0)));
    }

    void comboKeys_data() { eachRow(); }
    void comboKeys()
    {
        QFETCH(int, row);
        const QString name = table()[std::size_t(row)].name;
        const auto found = kindAndCode(name);
        const bool known = found.first == OrdinaryKind; // none of "LCtrl" to "RWin"
        for (int count = 1; count <= 3; ++count)
            for (int position = 0; position < count; ++position) {
                KeySequence block = filledWith<KeySequence>(0);
                block.Events[position].Code.set(0x1234);
                block.Events[2 * count - 1 - position].Code.set(0x5678);
                KeySequence rest = block;
                ComboKeyToEvents(name, position, count, block);
                compareEvent(block.Events[position], 0, 1, known ? found.second : 0x1234, 10);
                compareEvent(block.Events[2 * count - 1 - position], 1, 1,
                             !known        ? 0x5678
                             : name == "F" ? 0x29
                                           : found.second,
                             10);
                rest.Events[position] = block.Events[position];
                rest.Events[2 * count - 1 - position] = block.Events[2 * count - 1 - position];
                QVERIFY(same(block, rest));
            }
    }

    void comboModifiers()
    {
        for (const auto &modifier : ShortModifiers) {
            KeySequence block = filledWith<KeySequence>(0);
            ComboKeyToEvents(modifier.first, 0, 2, block);
            compareEvent(block.Events[0], 0, ModifierKind, modifier.second, 10);
            compareEvent(block.Events[3], 1, ModifierKind, modifier.second, 10);
        }
    }

    void comboDoesNotKnow_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"Left button", "Forward button", "CTRL", "ctrl", "Num", "LCtrl", "RWin", "eft"})
            QTest::newRow(name) << name;
    }
    void comboDoesNotKnow()
    {
        QFETCH(QString, name);
        KeySequence block = filledWith<KeySequence>(0);
        block.Events[0].Code.set(0x0BAD);
        ComboKeyToEvents(name, 0, 1, block);
        compareEvent(block.Events[0], 0, OrdinaryKind, 0x0BAD, 10);
        compareEvent(block.Events[1], 1, OrdinaryKind, 0, 10);
    }

    // Golden bytes of Shift+Ctrl+F.
    void aWholeCombination()
    {
        KeySequence block = filledWith<KeySequence>(0);
        const char *names[] = {"Shift", "Ctrl", "F"};
        for (int i = 0; i < 3; ++i)
            ComboKeyToEvents(names[i], i, 3, block);
        const QByteArray bytes(reinterpret_cast<const char *>(&block), sizeof block);
        QCOMPARE(bytes.toHex(' '),
                 QByteArray("00 00 00 00 "
                            "00 00 02 00 0a 00 00 00 00 00 01 00 0a 00 00 00 00 01 09 00 0a 00 00 00 "
                            "01 01 29 00 0a 00 00 00 01 00 01 00 0a 00 00 00 01 00 02 00 0a 00 00 00"));
    }
};

TEST_CLASS(tst_KeyCodes, testmain::NoApplication)

#include "tst_keycodes.moc"
