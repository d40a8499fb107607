// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The actions of the buttons: each widget's bytes against bytes written down here, and each slot's caption
// and widgets against rules written down here.
#include "binding/actions/BindingDecoder.h"
#include "binding/actions/BindingEncoder.h"
#include "binding/actions/DefaultActions.h"
#include "catalogue/sensor/SensorDpi.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/Records.h"

#include <QtTest>
#include <cstring>

using namespace binding;

namespace
{

constexpr int Loaded = 0; // the language whose texts tell their keys
constexpr int Missing = 1;

struct Golden {
    const char *widget;
    const char *place; // page it stands on
    const char *bytes; // of the binding
    const char *code;  // of a sequence's events, as it lies in memory
    const char *text;  // until a language gives one
    const char *key;   // in KeyOptions, or with "M" in front, of the mouse buttons; empty: none
};
const Golden Table[] = {
    {"LeftKey_3", "page_2", "010100", "", "左键", "M2"},
    {"RightKey_3", "page_2", "010200", "", "右键", "M3"},
    {"MidKey", "page_2", "010400", "", "中键", "M4"},
    {"BackKey_2", "page_2", "010800", "", "后退键", "M6"},
    {"ForWardKey", "page_2", "011000", "", "前进键", "M5"},
    {"DPI_2", "page_2", "070000", "", "切换报告率", "7"},
    {"DPI_3", "page_2", "090000", "", "配置切换", "9"},
    {"DPI_6", "page_2", "040a03", "", "火力键", "4"},
    {"DPI_8", "page_2", "", "", "组合键", "5"},
    {"DPI_5", "page_2", "000000", "", "待定义按键", "10"},
    {"DPI_13", "page_2", "", "", "上下滚动", "B"},
    {"DPI_11", "page_2", "", "", "左右滚动", "3"},
    {"DPI_4", "page_2", "", "", "DPI锁定", "12"},
    {"DPI_9", "page_2", "", "", "灯光", "11"},
    {"DPI_7", "page_2", "", "", "DPI切换", "2"},
    {"DPI_12", "page_2", "", "", "多媒体", "1005"},
    {"DPI_10", "page_2", "", "", "宏", "6"},
    {"VolumeUp_14", "page_10", "0b0100", "", "上滚", "ScrollUp"},
    {"VolumeDown_14", "page_10", "0b0200", "", "下滚", "ScrollDown"},
    {"VolumeUp_2", "page_4", "030100", "", "左滚", "ScrollLeft"},
    {"VolumeDown_2", "page_4", "030200", "", "右滚", "ScrollRight"},
    {"VolumeUp_11", "page_8", "0a0100", "", "100", ""},
    {"VolumeUp_12", "page_8", "0a0300", "", "200", ""},
    {"VolumeUp_13", "page_8", "0a0500", "", "300", ""},
    {"VolumeUp_16", "page_8", "0a0700", "", "400", ""},
    {"VolumeUp_15", "page_8", "0a0900", "", "500", ""},
    {"VolumeUp_19", "page_8", "0a0b00", "", "600", ""},
    {"VolumeUp_20", "page_8", "0a0d00", "", "700", ""},
    {"VolumeUp_22", "page_8", "0a0f00", "", "800", ""},
    {"VolumeUp_18", "page_8", "0a1100", "", "900", ""},
    {"VolumeUp_24", "page_8", "0a1300", "", "1000", ""},
    {"VolumeUp_23", "page_8", "0a1500", "", "1100", ""},
    {"VolumeUp_21", "page_8", "0a1700", "", "1200", ""},
    {"VolumeUp_4", "page_6", "080000", "", "开/关所有装饰灯", "13"},
    {"VolumeUp_5", "page_6", "080100", "", "开/关DPI指示灯", "14"},
    {"VolumeUp_6", "page_6", "080300", "", "开/关灯带", "15"},
    {"VolumeUp_7", "page_6", "080400", "", "循环切换灯带效果", "16"},
    {"VolumeUp_8", "page_7", "020100", "", "DPI循环", "DPICycle"},
    {"VolumeUp_9", "page_7", "020200", "", "DPI+", "DPI+"},
    {"VolumeUp_10", "page_7", "020300", "", "DPI-", "DPI-"},
    {"Player", "page_3", "050000", "8301", "播放器", "0x0183"},
    {"StartPause_2", "page_3", "050000", "cd00", "播放/暂停", "0x00CD"},
    {"BackMusic_2", "page_3", "050000", "b500", "下一曲", "0x00B5"},
    {"TopMusic_2", "page_3", "050000", "b600", "上一曲", "0x00B6"},
    {"Mute", "page_3", "050000", "b700", "停止播放", "0x00B7"},
    {"VolumeUp", "page_3", "050000", "e200", "静音", "0x00E2"},
    {"VolumeDown", "page_3", "050000", "e900", "音量加", "0x00E9"},
    {"VolumeDown_4", "page_3", "050000", "ea00", "音量减", "0x00EA"},
    {"VolumeDown_5", "page_3", "050000", "8a01", "邮件", "0x018A"},
    {"VolumeDown_6", "page_3", "050000", "9201", "计算器", "0x0192"},
    {"VolumeDown_3", "page_3", "050000", "9401", "我的电脑", "0x0194"},
    {"VolumeDown_8", "page_3", "050000", "2302", "主页", "0x0223"},
    {"VolumeDown_9", "page_3", "050000", "2102", "搜索", "0x0221"},
    {"VolumeDown_7", "page_3", "050000", "2502", "前进", "0x0225"},
    {"VolumeDown_10", "page_3", "050000", "2402", "后退", "0x0224"},
    {"VolumeDown_12", "page_3", "050000", "2602", "停止网页", "0x0226"},
    {"VolumeDown_13", "page_3", "050000", "2702", "刷新", "0x0227"},
    {"VolumeDown_11", "page_3", "050000", "2a02", "收藏夹", "0x022A"},
};
// Where each opener leads.
const std::pair<const char *, const char *> Openers[] = {
    {"DPI_12", "page_3"}, {"DPI_10", "page_5"}, {"DPI_9", "page_6"},  {"DPI_4", "page_8"},
    {"DPI_11", "page_4"}, {"DPI_7", "page_7"},  {"DPI_13", "page_10"}};

const SensorCodes NoTable{{}, {}, QStringLiteral("3395")};
// A table with a code for 400 DPI and one for 800, and another sensor's.
const SensorCodes SmallTable{{QStringLiteral("SENSOR_PA42_DPI_400"), QStringLiteral("SENSOR_PA42_DPI_800"),
                              QStringLiteral("SENSOR_PB_DPI_1200")},
                             {9, 0x13, 0x42},
                             QStringLiteral("PA42")};

template <typename Record> QByteArray hex(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record).toHex();
}

// A sequence's bytes from what its used part holds.
QByteArray sequenceHex(const QByteArray &used) { return used.leftJustified(2 * sizeof(KeySequence), '0'); }

const Golden &goldenOf(const QString &widget)
{
    for (const Golden &row : Table)
        if (widget == QLatin1String(row.widget))
            return row;
    qFatal("no such widget");
}

QString loadedText(const char *widget)
{
    const Golden &row = goldenOf(QString::fromLatin1(widget));
    return *row.key ? QStringLiteral("T") + QString::fromLatin1(row.key) : QString::fromUtf8(row.text);
}

// A language whose texts tell under which key each was found.
QByteArray tellingLanguage()
{
    QByteArrayList functions, mouse;
    for (const Golden &row : Table) {
        const QByteArray key(row.key);
        if (key.startsWith('M'))
            mouse << "{\"command\":" + key.mid(1) + ",\"option\":\"T" + key + "\"}";
        else if (!key.isEmpty())
            functions << "{\"value\":\"" + key + "\",\"label\":\"T" + key + "\"}";
    }
    return "{\"mouse\":{\"key\":{\"KeyOptions\":[" + functions.join(',') +
           "]},\"macro\":{\"MacroSeond\":\"Macro \",\"InsertEventOptions\":[" + mouse.join(',') + "]}}}";
}

// A slot of its own.
struct Slot {
    KeyBinding binding{};
    KeySequence sequence{};
    MacroBlock macro{};

    DecodedBinding decode(const SensorCodes &sensor = NoTable, int language = Loaded) const
    {
        return decodeBinding({binding, sequence, macro}, sensor, language);
    }
};

Slot slotOf(const EncodedAction &action)
{
    Slot slot;
    slot.binding = action.binding;
    slot.sequence = action.sequence.value_or(KeySequence{});
    return slot;
}

Slot sequenceSlot(uint32_t count, uint8_t kind, uint16_t code, uint16_t secondCode = 0)
{
    Slot slot;
    slot.binding = {5, 0, 0};
    slot.sequence.Count.set(count);
    for (KeyEvent &event : slot.sequence.Events) {
        event.Kind = kind;
        event.Code.set(&event == slot.sequence.Events ? code : secondCode);
    }
    return slot;
}

Slot macroSlot(const QByteArray &name)
{
    Slot slot;
    slot.binding = {6, 3, 1};
    std::memcpy(slot.macro.Name, name.constData(), size_t(qMin(name.size(), MacroNameSize)));
    return slot;
}

QString widgetOf(const ActionRow *row) { return row ? QString::fromLatin1(row->widget) : QString(); }

QString captionOf(const DecodedBinding &decoded)
{
    return decoded.caption.value_or(QStringLiteral("(as it was)"));
}

} // namespace

class tst_actions : public QObject
{
    Q_OBJECT

private:
    ProductFolder product{smallCatalogue()};

    void check(const DecodedBinding &decoded, const QString &caption, const char *panel, const char *function,
               const char *detail = "")
    {
        QCOMPARE(captionOf(decoded), caption);
        QCOMPARE(panelName(decoded.panel), QString::fromLatin1(panel));
        QCOMPARE(widgetOf(decoded.function), QString::fromLatin1(function));
        QCOMPARE(widgetOf(decoded.detail), QString::fromLatin1(detail));
    }

    static void rows()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(Table); ++i)
            QTest::newRow(Table[i].widget) << int(i);
    }

private slots:
    void initTestCase()
    {
        QDir(product.path(QString())).mkpath(QStringLiteral("Language"));
        QFile file(product.path(QStringLiteral("Language/en.json")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(tellingLanguage());
        file.close();
        LoadLanguageTables();
    }

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
        QCOMPARE(actionText(row, Missing), QString::fromUtf8(Table[index].text));
        QCOMPARE(actionText(row, -1), QString::fromUtf8(Table[index].text));
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
            QCOMPARE(hex(*action->sequence),
                     sequenceHex(QByteArray("02000000") + "0002" + golden.code + "0a000000" + "0102" +
                                 golden.code + "0a000000"));
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
            {131, "Player"},       {205, "StartPause_2"}, {181, "BackMusic_2"},   {182, "TopMusic_2"},
            {183, "Mute"},         {226, "VolumeUp"},     {233, "VolumeDown"},    {234, "VolumeDown_4"},
            {138, "VolumeDown_5"}, {146, "VolumeDown_6"}, {148, "VolumeDown_3"},  {35, "VolumeDown_8"},
            {33, "VolumeDown_9"},  {37, "VolumeDown_7"},  {36, "VolumeDown_10"},  {38, "VolumeDown_12"},
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
        row("A", "02000000" "00010400" + delay + "01010400" + delay);
        row("F", "02000000" "00010900" + delay + "01012900" + delay);
        row("Enter", "02000000" "00012800" + delay + "01012800" + delay);
        row("Ctrl+C", "04000000" "00000100" + delay + "00010600" + delay + "01010600" + delay +
                          "01000100" + delay);
        row("Shift+Ctrl+A", "06000000" "00000200" + delay + "00000100" + delay + "00010400" + delay +
                                "01010400" + delay + "01000100" + delay + "01000200" + delay);
        row("Shift+Ctrl+Alt", "06000000" "00000200" + delay + "00000100" + delay + "00000400" + delay +
                                  "01000400" + delay + "01000100" + delay + "01000200" + delay);
        row("Win+F+↑", "06000000" "00000800" + delay + "00010900" + delay + "00015200" + delay +
                           "01015200" + delay + "01012900" + delay + "01000800" + delay);
        row("", "02000000" "00010000" + delay + "01010000" + delay);
        row("Num+", "04000000" "00010000" + delay + "00010000" + delay + "01010000" + delay +
                        "01010000" + delay);
        row("CTRL", "02000000" "00010000" + delay + "01010000" + delay);
        row("RCtrl+B", "04000000" "00010000" + delay + "00010500" + delay + "01010500" + delay +
                           "01010000" + delay);
        row("A+B+C+D", "06000000" "00010400" + delay + "00010500" + delay + "00010600" + delay +
                           "01010600" + delay + "01010500" + delay + "01010400" + delay); // three at most
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
            {"VolumeUp_16", "0a0900"}, {"VolumeUp_22", "0a1300"},  // in the table
            {"VolumeUp_21", "0a1800"}, {"VolumeUp_11", "0a0200"}}; // 1200 and 100 are not: a count of 50s
        for (const auto &[widget, bytes] : codes)
            QCOMPARE(hex(encodeAction(*actionOf(QString::fromLatin1(widget)), SmallTable)->binding),
                     QByteArray(bytes));
    }

    // ---- Decoding -------------------------------------------------------------------------------

    // What each binding shows, by the rules; the sequence and the macro are the slot's, all zero.
    void everyClassAndFirstParameter()
    {
        const QMap<QPair<int, int>, const char *> chosen = {
            {{1, 1}, "LeftKey_3"},   {{1, 2}, "RightKey_3"},    {{1, 4}, "MidKey"},
            {{1, 8}, "BackKey_2"},   {{1, 16}, "ForWardKey"},   {{2, 1}, "VolumeUp_8"},
            {{2, 2}, "VolumeUp_9"},  {{2, 3}, "VolumeUp_10"},   {{3, 1}, "VolumeUp_2"},
            {{3, 2}, "VolumeDown_2"}, {{8, 0}, "VolumeUp_4"},   {{8, 1}, "VolumeUp_5"},
            {{8, 3}, "VolumeUp_6"},  {{8, 4}, "VolumeUp_7"},    {{11, 1}, "VolumeUp_14"},
            {{11, 2}, "VolumeDown_14"}};
        const QMap<int, const char *> whole = {{0, "DPI_5"}, {4, "DPI_6"}, {7, "DPI_2"}, {9, "DPI_3"}};
        const QMap<int, QPair<const char *, const char *>> panels = {{2, {"page_7", "DPI_7"}},
                                                                     {3, {"page_4", "DPI_11"}},
                                                                     {8, {"page_6", "DPI_9"}},
                                                                     {11, {"page_10", "DPI_13"}}};
        for (int kind = 0; kind < 256; ++kind) {
            if (kind == 5 || kind == 6 || kind == 10)
                continue; // have tests of their own
            const auto panel = panels.value(kind, {"page_9", ""});
            for (int first = 0; first < 256; ++first) {
                for (const int second : {0, 1, 3, 127, 255}) {
                    Slot slot;
                    slot.binding = {uint8_t(kind), uint8_t(first), uint8_t(second)};
                    const char *row = whole.value(kind, chosen.value({kind, first}, ""));
                    const QString caption = *row ? loadedText(row) : QStringLiteral("(as it was)");
                    const bool isDetail = *panel.second != 0;
                    check(slot.decode(), caption, panel.first, isDetail ? panel.second : row,
                          isDetail ? row : "");
                    if (QTest::currentTestFailed())
                        qFatal("class %d, parameters %d and %d", kind, first, second);
                }
            }
        }
    }

    void everyLockCode()
    {
        for (int code = 0; code < 256; ++code) {
            for (const int second : {0, 1, 255}) {
                Slot slot;
                slot.binding = {10, uint8_t(code), uint8_t(second)};
                const int dpi = (code + 1) * 50;
                const bool offered = dpi % 100 == 0 && dpi <= 1200;
                QString widget;
                for (const Golden &row : Table)
                    if (offered && QString::number(dpi) == QLatin1String(row.text))
                        widget = QString::fromLatin1(row.widget);
                check(slot.decode(), QStringLiteral("T12-%1").arg(dpi), "page_8", "DPI_4",
                      qPrintable(widget));
            }
        }
    }

    void lockCodesOfASensorsTable()
    {
        Slot slot;
        slot.binding = {10, 9, 0};
        check(slot.decode(SmallTable), "T12-400", "page_8", "DPI_4", "VolumeUp_16");
        slot.binding.First = 0x13;
        check(slot.decode(SmallTable), "T12-800", "page_8", "DPI_4", "VolumeUp_22");
        for (const uint8_t unknown : {0x00, 0x42, 0xFF}) {
            slot.binding.First = unknown;
            check(slot.decode(SmallTable), "T12-0", "page_8", "DPI_4");
        }
        slot.binding.First = 1;
        check(slot.decode(NoTable, Missing), "DPI锁定-100", "page_8", "DPI_4", "VolumeUp_11");
    }

    void everyConsumerUsage()
    {
        for (int usage = 0; usage < 0x10000; usage += usage < 0x400 ? 1 : 251) {
            const Slot slot = sequenceSlot(2, 2, uint16_t(usage));
            QString widget, caption = QStringLiteral("(as it was)");
            for (const Golden &row : Table) {
                if (!*row.code || (QByteArray::fromHex(row.code)[0] & 0xFF) != (usage & 0xFF))
                    continue;
                widget = QString::fromLatin1(row.widget);
                caption = loadedText(row.widget);
            }
            check(slot.decode(), caption, "page_3", "DPI_12", qPrintable(widget));
        }
    }

    void storedCombinations_data()
    {
        QTest::addColumn<uint32_t>("count");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("secondCode");
        QTest::addColumn<QString>("caption");
        const auto row = [](const char *name, uint32_t count, int kind, int code, int second,
                            const char *caption) {
            QTest::newRow(name) << count << kind << code << second << QString::fromUtf8(caption);
        };
        row("two names", 4, 1, 0x04, 0x05, "A+B");
        row("one name", 2, 1, 0x09, 0x29, "F");
        row("short names", 4, 0, 0x01, 0x40, "Ctrl+Alt");
        row("the right Ctrl is lost", 2, 0, 0x10, 0, "M");
        row("unknown keys", 6, 1, 0x32, 0xFFFF, "++");
        row("unknown kind", 4, 0xFF, 0x04, 0x05, "+B");
        row("none", 0, 1, 0x04, 0x05, "");
        row("half a key", 1, 1, 0x04, 0x05, "");
        row("odd count", 5, 1, 0x04, 0x05, "A+B");
        row("all places", 12, 1, 0x04, 0x05, "A+B+B+B+B+B");
        row("beyond the places", 14, 1, 0x04, 0x05, "A+B+B+B+B+B");
        row("largest byte", 0xFF, 1, 0x04, 0x05, "A+B+B+B+B+B");
        row("largest count", 0xFFFFFFFF, 1, 0x04, 0x05, "A+B+B+B+B+B");
        row("only the first byte counts", 0xFFFFFF02, 1, 0x04, 0x05, "A");
        row("and may be zero", 0x100, 1, 0x04, 0x05, "");
    }
    void storedCombinations()
    {
        QFETCH(uint32_t, count);
        QFETCH(int, kind);
        QFETCH(int, code);
        QFETCH(int, secondCode);
        QFETCH(QString, caption);
        const Slot slot = sequenceSlot(count, uint8_t(kind), uint16_t(code), uint16_t(secondCode));
        check(slot.decode(), caption, "page_9", "DPI_8");
    }

    void everyParameterOfASequenceIsLetBe()
    {
        for (int first = 0; first < 256; ++first) {
            Slot slot = sequenceSlot(2, 1, 0x04);
            slot.binding = {5, uint8_t(first), uint8_t(255 - first)};
            check(slot.decode(), "A", "page_9", "DPI_8");
        }
    }

    void macros_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");
        QTest::newRow("short") << QByteArray("Burst") << "Burst";
        QTest::newRow("empty") << QByteArray() << "";
        QTest::newRow("full") << QByteArray(30, 'x') << QString(30, 'x');
        QTest::newRow("tail of a longer name") << QByteArray("xy\0defgh", 8) << "xydefgh";
        QTest::newRow("no text") << QByteArray(30, '\xFE') << QString::fromLocal8Bit(QByteArray(30, '\xFE'));
    }
    void macros()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        Slot slot = macroSlot(bytes);
        for (const int length : {0, 3, 30, 31, 255}) { // says nothing
            slot.macro.NameLength = slot.macro.EventCount = uint8_t(length);
            QCOMPARE(macroName(slot.macro), name);
            check(slot.decode(), "Macro " + name, "page_5", "DPI_10");
            check(slot.decode(NoTable, Missing), name, "page_5", "DPI_10");
        }
        for (int first = 0; first < 256; ++first) {
            slot.binding = {6, uint8_t(first), uint8_t(first)};
            check(slot.decode(), "Macro " + name, "page_5", "DPI_10");
        }
    }

    void slotsLieWhereTheRecordHasThem()
    {
        for (int button = 0; button < KeySlotCount; ++button) {
            FlashDataMap record{};
            auto *bytes = reinterpret_cast<uint8_t *>(&record);
            bytes[95 + 3 * button] = 5;
            const uint8_t combination[] = {2, 0, 0, 0, 0, 1, 0x04};
            std::memcpy(bytes + 144 + 52 * button, combination, sizeof combination);
            check(decodeBinding(binding::slotOf(record, button), NoTable, Loaded), "A", "page_9", "DPI_8");
            bytes[95 + 3 * button] = 6;
            bytes[976 + 592 * button + 1] = 'm';
            check(decodeBinding(binding::slotOf(record, button), NoTable, Loaded), "Macro m", "page_5",
                  "DPI_10");
        }
    }

    void randomSlotsDecode()
    {
        std::mt19937 random(20);
        int captions = 0;
        for (int i = 0; i < 10000; ++i) {
            Slot slot;
            for (uint8_t *at = reinterpret_cast<uint8_t *>(&slot), *end = at + sizeof slot; at != end; ++at)
                *at = uint8_t(random());
            slot.binding.Class = uint8_t(random() % 13);
            if (random() % 2)
                slot.sequence.Events[0].Kind = uint8_t(random() % 5);
            const DecodedBinding decoded = slot.decode(random() % 2 ? NoTable : SmallTable);
            captions += decoded.caption.has_value();
            QVERIFY(captionOf(decoded).size() < 100);
            QVERIFY(!decoded.function || decoded.function->place == Panel::Functions);
            QVERIFY(!decoded.detail || decoded.detail->place == decoded.panel);
        }
        QVERIFY(captions > 3000 && captions < 9000); // both answers occurred
    }

    // ---- There and back -------------------------------------------------------------------------

    void whatIsEncodedIsReadBack_data() { rows(); }
    void whatIsEncodedIsReadBack()
    {
        QFETCH(int, index);
        const ActionRow &row = ActionRows[std::size_t(index)];
        const auto action = encodeAction(row, NoTable);
        if (!action)
            return;
        const DecodedBinding decoded = slotOf(*action).decode();
        const ActionRow *read = decoded.detail ? decoded.detail : decoded.function;
        QCOMPARE(read, &row);
        const auto again = encodeAction(*read, NoTable);
        QCOMPARE(hex(again->binding), hex(action->binding));
        QCOMPARE(hex(again->sequence.value_or(KeySequence{})), hex(action->sequence.value_or(KeySequence{})));
        if (row.form != Form::Lock)
            QCOMPARE(captionOf(decoded), actionText(row, Loaded));
    }

    void combinationsAreReadBack()
    {
        const QStringList keys = {"A", "F", "Ctrl", "Shift", "Alt", "Win", "Enter", "F12", "Num5", "↑", "\\"};
        for (const QString &first : keys) {
            for (const QString &last : keys) {
                for (const QString &text : {first, first + '+' + last, first + "+Z+" + last}) {
                    const EncodedAction action = encodeCombination(text);
                    const DecodedBinding decoded = slotOf(action).decode();
                    check(decoded, text, "page_9", "DPI_8");
                    QCOMPARE(hex(*encodeCombination(*decoded.caption).sequence), hex(*action.sequence));
                }
            }
        }
    }

    void everyFireKeyIsReadBack()
    {
        for (int interval = 10; interval <= 255; ++interval) {
            for (int count = 0; count <= 3; ++count) {
                const Slot slot = slotOf(encodeFireKey(interval, count));
                check(slot.decode(), "T4", "page_9", "DPI_6");
                QCOMPARE(hex(encodeFireKey(slot.binding.First, slot.binding.Second).binding),
                         hex(slot.binding));
            }
        }
    }

    // ---- Defaults -------------------------------------------------------------------------------

    void builtInDefaults()
    {
        const char *const widgets[] = {"LeftKey_3",  "RightKey_3",  "MidKey", "BackKey_2", "ForWardKey",
                                       "VolumeUp_8", "VolumeUp_9",  "VolumeUp_10", "DPI_2", "DPI_2",
                                       "DPI_6",      "DPI_5"};
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
            QTest::newRow(name) << button << list << QString::fromLatin1(widget)
                                << QString::fromLatin1(keys);
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

QTEST_GUILESS_MAIN(tst_actions)
#include "tst_actions.moc"
