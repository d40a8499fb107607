// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every code, kind, virtual key and name through each conversion, against tests/data/keys.tsv and the
// deviations as they are listed here.
#include "binding/keys/KeyVocabulary.h"
#include "tests/support/KeysFile.h"

#include <QtTest>
#include <cstring>
#include <set>

namespace
{

constexpr int CodeEnd = 0x200;
constexpr int KindEnd = 5;
constexpr int ModifierKind = 0, OrdinaryKind = 1, MouseKind = 4;

const std::vector<ExpectedKey> &table()
{
    static const std::vector<ExpectedKey> rows = readKeysFile();
    return rows;
}

QString ordinaryName(int code)
{
    for (const ExpectedKey &row : table())
        if (row.kind == OrdinaryKind && row.code() == code)
            return row.name;
    return {};
}

// What the kinds 0, 1 and any other read where a modifier and a key share a code.
struct ByKind {
    const char *modifier, *key, *other;
    QString of(int kind) const { return kind == 0 ? modifier : kind == 1 ? key : other; }
};
const std::map<int, ByKind> DeviceNames = {
    {0x01, {"LCtrl", "LCtrl", "LCtrl"}}, {0x02, {"LShift", "LShift", "LShift"}},
    {0x04, {"LAlt", "A", ""}},           {0x08, {"LWin", "E", ""}},
    {0x10, {"RCtrl", "M", ""}},          {0x20, {"RShift", "3", ""}},
    {0x40, {"RAlt", "F7", "F7"}},        {0x80, {"RWin", "RWin", "RWin"}},
    {0x58, {"Enter", "Enter", "Enter"}},
};
const std::map<int, ByKind> ComboNames = {
    {0x01, {"Ctrl", "Ctrl", "Ctrl"}},
    {0x02, {"Shift", "Shift", "Shift"}},
    {0x04, {"Alt", "A", ""}},
    {0x08, {"Win", "E", ""}},
    {0x10, {"M", "M", "M"}},
    {0x20, {"Shift", "3", ""}},
    {0x40, {"Alt", "F7", "F7"}},
    {0x80, {"Win", "Win", "Win"}},
    {0x58, {"Enter", "Enter", "Enter"}},
};
const std::pair<const char *, int> ShortModifiers[] = {
    {"Ctrl", 0x01}, {"Shift", 0x02}, {"Alt", 0x04}, {"Win", 0x08}};

const MouseButtonTexts English = {"Left button", "Right button", "Middle button", "Back button",
                                  "Forward button"};
const std::map<int, int> MouseBits = {{1, 0}, {2, 1}, {4, 2}, {8, 3}, {16, 4}};

QString hexText(int code)
{
    return QString("0x%1").arg(QString("%1").arg(code, 2, 16, QChar('0')).toUpper());
}

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

class tst_KeyVocabulary : public QObject
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
    void initTestCase() { QCOMPARE(table().size(), std::size_t(104)); }
    void init() { SetMouseButtonNames(English); }

    void virtualKeys()
    {
        std::map<int, ExpectedKey> rows;
        for (const ExpectedKey &row : table())
            rows[row.virtualKey] = row;
        QCOMPARE(rows.size(), std::size_t(104));
        for (int key = -1; key < CodeEnd; ++key) {
            const auto row = rows.find(key);
            const bool known = row != rows.end();
            QCOMPARE(KeyNameFromVirtualKey(key).has_value(), known);
            QCOMPARE(KeyNameFromVirtualKey(key).value_or(""), known ? row->second.name : "");
            const bool ordinary = known && row->second.kind == OrdinaryKind;
            QCOMPARE(GroupKeyNameFromVirtualKey(key), ordinary ? row->second.name : "");
        }
    }

    void physicalKeys()
    {
        std::map<int, int> rows = {{96, 0x0D}}; // the keypad's Enter
        for (const ExpectedKey &row : table())
            rows[row.evdev] = row.virtualKey;
        QCOMPARE(rows.size(), std::size_t(105));
        std::set<int> unnamed;
        for (int evdev = 1; evdev < 0x300; ++evdev) {
            const auto row = rows.find(evdev);
            if (row != rows.end()) {
                QCOMPARE(VirtualKeyFromEvdev(evdev), row->second);
                continue;
            }
            QVERIFY(!KeyNameFromVirtualKey(VirtualKeyFromEvdev(evdev)));
            QVERIFY(unnamed.insert(VirtualKeyFromEvdev(evdev)).second);
        }
    }

    void codeTexts()
    {
        for (int code = 0; code < CodeEnd; ++code)
            for (int kind = 0; kind < KindEnd; ++kind) {
                QString wanted;
                for (const ExpectedKey &row : table())
                    if (row.kind == kind && row.codeText == hexText(code))
                        wanted = row.name;
                if (kind == MouseKind && MouseBits.count(code))
                    wanted = English[std::size_t(MouseBits.at(code))];
                QCOMPARE(KeyNameFromCodeText(hexText(code), kind), wanted);
                const QString lower = hexText(code).toLower();
                QCOMPARE(KeyNameFromCodeText(lower, kind), lower == hexText(code) ? wanted : QString());
            }
    }

    void codeTextsAreComparedAsTheyStand_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "0x", "0x4", "0x004", "04", "4", "0X04", " 0x04", "0x04 ", "0x04\n", "A", "0xÀ4", "-0x04"})
            QTest::newRow(text) << text;
    }
    void codeTextsAreComparedAsTheyStand()
    {
        QFETCH(QString, text);
        for (int kind = -1; kind < 256; ++kind)
            QCOMPARE(KeyNameFromCodeText(text, kind), QString());
    }

    void deviceCodes()
    {
        for (int code = 0; code < CodeEnd; ++code)
            for (int kind = 0; kind < KindEnd; ++kind) {
                const auto shared = DeviceNames.find(code);
                QCOMPARE(KeyNameFromCode(code, kind),
                         shared != DeviceNames.end() ? shared->second.of(kind) : ordinaryName(code));
                const auto combo = ComboNames.find(code);
                QCOMPARE(ComboNameFromCode(code, kind),
                         combo != ComboNames.end() ? combo->second.of(kind) : ordinaryName(code));
            }
        for (const int code : {-1, 0x100, 0x104, 0xFFFF, 0x10004})
            for (const int kind : {0, 1, 255}) {
                QCOMPARE(KeyNameFromCode(code, kind), QString());
                QCOMPARE(ComboNameFromCode(code, kind), QString());
            }
    }

    void everyOtherKindIsAlike()
    {
        for (int code = 0; code < CodeEnd; ++code)
            for (int kind = 2; kind < 256; ++kind) {
                QCOMPARE(KeyNameFromCode(code, kind), KeyNameFromCode(code, 2));
                QCOMPARE(ComboNameFromCode(code, kind), ComboNameFromCode(code, 2));
            }
    }

    void mouseBits()
    {
        for (int bit = -1; bit < CodeEnd; ++bit)
            QCOMPARE(MouseNameFromBit(bit),
                     MouseBits.count(bit) ? English[std::size_t(MouseBits.at(bit))] : QString());
    }

    void mouseNamesFollowTheLanguage()
    {
        QCOMPARE(KeyNameToCodeText("Back button"), QStringList({"0x08", "4"}));
        SetMouseButtonNames({"左键", "右键", "中键", "后退键", "前进键"});
        QCOMPARE(KeyNameFromCodeText("0x08", MouseKind), QString("后退键"));
        QCOMPARE(MouseNameFromBit(16), QString("前进键"));
        QCOMPARE(KeyNameToCodeText("后退键"), QStringList({"0x08", "4"}));
        QCOMPARE(KeyNameToCodeText("Back button"), QStringList());
    }

    // Before a language is loaded the empty name is still the key that does nothing.
    void mouseNamesMayBeEmpty()
    {
        SetMouseButtonNames({});
        QCOMPARE(MouseNameFromBit(1), QString());
        QCOMPARE(KeyNameToCodeText(""), QStringList({"0x00", "1"}));
    }

    void aKeysNameIsStrongerThanAMouseButtons()
    {
        SetMouseButtonNames({"A", "LAlt", "", "", ""});
        QCOMPARE(KeyNameToCodeText("A"), QStringList({"0x04", "1"}));
        QCOMPARE(KeyNameToCodeText("LAlt"), QStringList({"0x04", "0"}));
    }

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
                                 "A ", "0x04", "Command", "`", "LLCtrl"})
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

    // A keypad's Enter that another tool stored becomes the main one at the next write.
    void theKeypadsEnterIsReadAndNotWritten()
    {
        QCOMPARE(KeyNameFromCode(0x58, OrdinaryKind), QString("Enter"));
        QCOMPARE(KeyNameFromCodeText("0x58", OrdinaryKind), QString());
        QCOMPARE(KeyNameToCodeText("Enter"), QStringList({"0x28", "1"}));
    }
};

QTEST_APPLESS_MAIN(tst_KeyVocabulary)

#include "tst_keyvocabulary.moc"
