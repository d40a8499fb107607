// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What each code, kind and virtual key is called, walked whole against tests/data/keys.tsv and the deviations
// as they are listed here.
#include "tests/support/TestMain.h"
#include "tests/unit/keys/ExpectedKeys.h"

#include <set>

using namespace expected;

namespace
{

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

} // namespace

class tst_KeyVocabulary : public QObject
{
    Q_OBJECT

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

    // A keypad's Enter that another tool stored becomes the main one at the next write.
    void theKeypadsEnterIsReadAndNotWritten()
    {
        QCOMPARE(KeyNameFromCode(0x58, OrdinaryKind), QString("Enter"));
        QCOMPARE(KeyNameFromCodeText("0x58", OrdinaryKind), QString());
        QCOMPARE(KeyNameToCodeText("Enter"), QStringList({"0x28", "1"}));
    }
};

TEST_CLASS(tst_KeyVocabulary, testmain::NoApplication)

#include "tst_keyvocabulary.moc"
