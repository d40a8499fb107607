// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The actions of the buttons: the table, each widget's bytes, and the defaults.
#include "binding/actions/DefaultActions.h"
#include "tests/support/Actions.h"
#include "tests/support/OtherLanguage.h"
#include "tests/support/TestMain.h"

#include <QtTest>

using namespace binding;
using namespace support;

namespace
{

// Where each opener leads.
const std::pair<const char *, const char *> Openers[] = {
    {"DPI_12", "page_3"}, {"DPI_10", "page_5"}, {"DPI_9", "page_6"},  {"DPI_4", "page_8"},
    {"DPI_11", "page_4"}, {"DPI_7", "page_7"},  {"DPI_13", "page_10"}};

// A sequence's bytes from what its used part holds.
QByteArray sequenceHex(const QByteArray &used) { return used.leftJustified(2 * sizeof(KeySequence), '0'); }

} // namespace

class tst_actions : public QObject
{
    Q_OBJECT

private:
    support::TellingProduct product;

    static void rows()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(Table); ++i)
            QTest::newRow(Table[i].widget) << int(i);
    }

private slots:
    // ---- The table ------------------------------------------------------------------------------

    void hasTheseWidgetsInThisOrder()
    {
        QCOMPARE(ActionRows.size(), std::size(Table));
        for (std::size_t i = 0; i < ActionRows.size(); ++i) {
            QCOMPARE(QString::fromLatin1(ActionRows[i].widget), QString::fromLatin1(Table[i].widget));
            QCOMPARE(panelName(ActionRows[i].place), QString::fromLatin1(Table[i].place));
            QCOMPARE(actionOf(QString::fromLatin1(Table[i].widget)), &ActionRows[i]);
        }
        QVERIFY(!actionOf(QString()) && !actionOf(QStringLiteral("VolumeUp_3")));
    }

    void openersLeadToTheirPanels()
    {
        for (const auto &[widget, panel] : Openers) {
            const ActionRow *row = actionOf(QString::fromLatin1(widget));
            QCOMPARE(panelName(row->shows), QString::fromLatin1(panel));
            QCOMPARE(openerOf(row->shows), row);
        }
        QVERIFY(!openerOf(Panel::Functions) && !openerOf(Panel::Debounce));
    }

    void othersShowTheDebouncePanelOrStay()
    {
        for (const ActionRow &row : ActionRows)
            if (row.form != Form::Opener)
                QCOMPARE(row.shows, row.place == Panel::Functions ? Panel::Debounce : row.place);
    }

    void texts_data() { rows(); }
    void texts()
    {
        QFETCH(int, index);
        const ActionRow &row = ActionRows[std::size_t(index)];
        QCOMPARE(actionText(row, Loaded), loadedText(Table[index].widget));
        for (const int other : {Missing, -1})
            QCOMPARE(actionText(row, other), loadedText(Table[index].widget));
        const support::WithoutTexts bare;
        QCOMPARE(actionText(row, Loaded), QString::fromUtf8(Table[index].text));
    }

    // ---- Encoding -------------------------------------------------------------------------------

    void encodesEveryWidget_data() { rows(); }
    void encodesEveryWidget()
    {
        QFETCH(int, index);
        const Golden &golden = Table[index];
        const auto action = encodeAction(ActionRows[std::size_t(index)], NoTable);
        QCOMPARE(action.has_value(), *golden.bytes != 0);
        if (!action)
            return;
        QCOMPARE(hex(action->binding), QByteArray(golden.bytes));
        QCOMPARE(action->sequence.has_value(), *golden.code != 0);
        if (action->sequence)
            QCOMPARE(hex(*action->sequence), sequenceHex(QByteArray("02000000") + "0002" + golden.code +
                                                         "0a000000" + "0102" + golden.code + "0a000000"));
    }

    void aMediaKeyIsTwoWords()
    {
        const KeySequence sequence = *encodeAction(*actionOf("Player"), NoTable)->sequence;
        LittleU32 words[2];
        std::memcpy(&words[0], &sequence.Events[0], 4);
        std::memcpy(&words[1], &sequence.Events[1], 4);
        QCOMPARE(words[0].get(), 25362944u);
        QCOMPARE(words[1].get(), 25362945u);
        const KeySequence next = *encodeAction(*actionOf("BackMusic_2"), NoTable)->sequence;
        std::memcpy(&words[0], &next.Events[0], 4);
        QCOMPARE(words[0].get(), 0x00B50200u);
    }

    void mediaKeysAreKnownByTheirLowByte()
    {
        const std::pair<int, const char *> codes[] = {
            {131, "Player"},       {205, "StartPause_2"}, {181, "BackMusic_2"},  {182, "TopMusic_2"},
            {183, "Mute"},         {226, "VolumeUp"},     {233, "VolumeDown"},   {234, "VolumeDown_4"},
            {138, "VolumeDown_5"}, {146, "VolumeDown_6"}, {148, "VolumeDown_3"}, {35, "VolumeDown_8"},
            {33, "VolumeDown_9"},  {37, "VolumeDown_7"},  {36, "VolumeDown_10"}, {38, "VolumeDown_12"},
            {39, "VolumeDown_13"}, {42, "VolumeDown_11"}};
        QMap<int, QString> expected;
        for (const auto &[code, widget] : codes)
            expected.insert(code, QString::fromLatin1(widget));
        QCOMPARE(expected.size(), 18);
        for (int code = 0; code < 256; ++code)
            QCOMPARE(widgetOf(mediaAction(uint8_t(code))), expected.value(code));
    }

    void combinations_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QByteArray>("used");
        const auto row = [](const char *keys, const QByteArray &used) {
            QTest::newRow(*keys ? keys : "nothing") << QString::fromUtf8(keys) << used;
        };
        const QByteArray delay("0a000000");
        row("A", "02000000"
                 "00010400" +
                     delay + "01010400" + delay);
        row("F", "02000000"
                 "00010900" +
                     delay + "01012900" + delay);
        row("Enter", "02000000"
                     "00012800" +
                         delay + "01012800" + delay);
        row("Ctrl+C", "04000000"
                      "00000100" +
                          delay + "00010600" + delay + "01010600" + delay + "01000100" + delay);
        row("Shift+Ctrl+A", "06000000"
                            "00000200" +
                                delay + "00000100" + delay + "00010400" + delay + "01010400" + delay +
                                "01000100" + delay + "01000200" + delay);
        row("Shift+Ctrl+Alt", "06000000"
                              "00000200" +
                                  delay + "00000100" + delay + "00000400" + delay + "01000400" + delay +
                                  "01000100" + delay + "01000200" + delay);
        row("Win+F+↑", "06000000"
                       "00000800" +
                           delay + "00010900" + delay + "00015200" + delay + "01015200" + delay + "01012900" +
                           delay + "01000800" + delay);
        row("", "02000000"
                "00010000" +
                    delay + "01010000" + delay);
        row("Num+", "04000000"
                    "00010000" +
                        delay + "00010000" + delay + "01010000" + delay + "01010000" + delay);
        row("CTRL", "02000000"
                    "00010000" +
                        delay + "01010000" + delay);
        row("RCtrl+B", "04000000"
                       "00010000" +
                           delay + "00010500" + delay + "01010500" + delay + "01010000" + delay);
        row("A+B+C+D", "06000000"
                       "00010400" +
                           delay + "00010500" + delay + "00010600" + delay + "01010600" + delay + "01010500" +
                           delay + "01010400" + delay); // three at most
        row("++++++++++", "06000000" + ("00010000" + delay).repeated(3) + ("01010000" + delay).repeated(3));
    }
    void combinations()
    {
        QFETCH(QString, keys);
        QFETCH(QByteArray, used);
        QCOMPARE(hex(BuildKeySequence(keys)), sequenceHex(used));
        const EncodedAction action = encodeCombination(keys);
        QCOMPARE(hex(action.binding), QByteArray("050000"));
        QCOMPARE(hex(*action.sequence), sequenceHex(used));
    }

    void fireKeys_data()
    {
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("least") << 10 << 0 << QByteArray("040a00");
        QTest::newRow("most") << 255 << 3 << QByteArray("04ff03");
        QTest::newRow("too little") << 9 << -1 << QByteArray("040a00");
        QTest::newRow("too much") << 256 << 4 << QByteArray("04ff03");
        QTest::newRow("far too much") << INT_MAX << INT_MAX << QByteArray("04ff03");
    }
    void fireKeys()
    {
        QFETCH(int, interval);
        QFETCH(int, count);
        QFETCH(QByteArray, bytes);
        const EncodedAction action = encodeFireKey(interval, count);
        QCOMPARE(hex(action.binding), bytes);
        QVERIFY(!action.sequence);
    }

    void aMacroStandsInTheButtonsOwnSlot()
    {
        QCOMPARE(hex(macroBinding(0, 0)), QByteArray("060000"));
        QCOMPARE(hex(macroBinding(11, 254)), QByteArray("060bfe"));
    }

    void aLockTakesItsCodeFromTheSensorsTable()
    {
        const std::pair<const char *, const char *> codes[] = {
            {"VolumeUp_16", "0a0900"},
            {"VolumeUp_22", "0a1300"}, // in the table
            {"VolumeUp_21", "0a1800"},
            {"VolumeUp_11", "0a0200"}}; // 1200 and 100 are not: a count of 50s
        for (const auto &[widget, bytes] : codes)
            QCOMPARE(hex(encodeAction(*actionOf(QString::fromLatin1(widget)), SmallTable)->binding),
                     QByteArray(bytes));
    }

    // ---- Defaults -------------------------------------------------------------------------------

    void builtInDefaults()
    {
        const char *const widgets[] = {"LeftKey_3",  "RightKey_3", "MidKey",     "BackKey_2",
                                       "ForWardKey", "VolumeUp_8", "VolumeUp_9", "VolumeUp_10",
                                       "DPI_2",      "DPI_2",      "DPI_6",      "DPI_5"};
        const int classes[] = {1, 1, 1, 1, 1, 2, 2, 2, 7, 7, 4, 0};
        const int firsts[] = {1, 2, 4, 8, 16, 1, 2, 3, 0, 0, 10, 0};
        for (int button = 0; button < 12; ++button) {
            const ActionRow *row = builtInAction(button);
            QCOMPARE(widgetOf(row), QString::fromLatin1(widgets[button]));
            QCOMPARE(int(row->binding.Class), classes[button]);
            QCOMPARE(int(row->binding.First), firsts[button]);
            QCOMPARE(defaultAction(button, {}).action, row);
        }
        QVERIFY(!builtInAction(-1) && !builtInAction(12));
        QVERIFY(!defaultAction(-1, {}).action && !defaultAction(12, {}).action);
    }

    void defaultsOfTheModel_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QString>("widget");
        QTest::addColumn<QString>("keys");
        const auto row = [](const char *name, int button, const QStringList &list, const char *widget,
                            const char *keys = "") {
            QTest::newRow(name) << button << list << QString::fromLatin1(widget) << QString::fromLatin1(keys);
        };
        row("media", 0, {"0x05", "0", "0x00CD"}, "StartPause_2");
        row("media, high byte", 3, {"0x05", "x", "0x0223"}, "VolumeDown_8");
        row("media, action code", 5, {"0x05", "x", "23"}, "VolumeDown_8");
        row("media that is none", 0, {"0x05", "0", "0x0001"}, "");
        row("media, no number", 0, {"0x05", "0", "next"}, "");
        row("combination", 5, {"0x05", "0", "0", "Ctrl+C"}, "DPI_8", "Ctrl+C");
        row("empty combination", 1, {"0x05", "0", "0", ""}, "DPI_8", "");
        row("no items behind", 0, {"0x05"}, "");
        row("two items", 0, {"0x05", "0"}, "");
        row("five items", 0, {"0x05", "0", "0", "A", "B"}, "");
        row("other kind", 2, {"0x06", "0", "0x00CD"}, "MidKey");
        row("other spelling", 2, {"5", "0", "0x00CD"}, "MidKey");
        row("empty list", 4, {}, "ForWardKey");
        row("a button without", 6, {"0x05", "0", "0x00CD"}, "VolumeUp_9");
    }
    void defaultsOfTheModel()
    {
        QFETCH(int, button);
        QFETCH(QStringList, list);
        QFETCH(QString, widget);
        QFETCH(QString, keys);
        const DefaultAction found = defaultAction(button, list);
        QCOMPARE(widgetOf(found.action), widget);
        QCOMPARE(found.keys, keys);
    }

    void keysOfTheDefaults()
    {
        QCOMPARE(keyParamName(0), QStringLiteral("KeyParam1"));
        QCOMPARE(keyParamName(5), QStringLiteral("KeyParam6"));
        for (const int button : {-1, 6, 11})
            QCOMPARE(keyParamName(button), QString());
    }
};

TEST_CLASS(tst_actions, testmain::CoreApplication)
#include "tst_actions.moc"
