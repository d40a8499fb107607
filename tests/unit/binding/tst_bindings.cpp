// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a slot shows, by rules written down here, whatever bytes it holds; and that what is encoded is read
// back as what it was.
#include "tests/support/Actions.h"
#include "tests/support/OtherLanguage.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <random>

using namespace binding;
using namespace support;

namespace
{

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

QString captionOf(const DecodedBinding &decoded)
{
    return decoded.caption.value_or(QStringLiteral("(as it was)"));
}

} // namespace

class tst_bindings : public QObject
{
    Q_OBJECT

private:
    support::TellingProduct product;

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
    // ---- Decoding -------------------------------------------------------------------------------

    // What each binding shows, by the rules; the sequence and the macro are the slot's, all zero.
    void everyClassAndFirstParameter()
    {
        const QMap<QPair<int, int>, const char *> chosen = {
            {{1, 1}, "LeftKey_3"},     {{1, 2}, "RightKey_3"},  {{1, 4}, "MidKey"},
            {{1, 8}, "BackKey_2"},     {{1, 16}, "ForWardKey"}, {{2, 1}, "VolumeUp_8"},
            {{2, 2}, "VolumeUp_9"},    {{2, 3}, "VolumeUp_10"}, {{3, 1}, "VolumeUp_2"},
            {{3, 2}, "VolumeDown_2"},  {{8, 0}, "VolumeUp_4"},  {{8, 1}, "VolumeUp_5"},
            {{8, 3}, "VolumeUp_6"},    {{8, 4}, "VolumeUp_7"},  {{11, 1}, "VolumeUp_14"},
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
                        QFAIL(
                            qPrintable(QStringLiteral("class %1, %2, %3").arg(kind).arg(first).arg(second)));
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
        const support::WithoutTexts bare;
        check(slot.decode(NoTable), "DPI锁定-100", "page_8", "DPI_4", "VolumeUp_11");
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
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("name");
        QTest::newRow("short") << QByteArray("Burst") << 5 << "Burst";
        QTest::newRow("empty") << QByteArray() << 0 << "";
        QTest::newRow("full") << QByteArray(30, 'x') << 30 << QString(30, 'x');
        QTest::newRow("tail of a longer name") << QByteArray("xydefgh") << 2 << "xy";
        QTest::newRow("NUL") << QByteArray("xy\0defgh", 8) << 8 << "xydefgh";
        QTest::newRow("length that lies") << QByteArray(30, 'x') << 31 << QString(30, 'x');
        QTest::newRow("length of all ones") << QByteArray("xy") << 255 << "xy";
        QTest::newRow("no text") << QByteArray(30, '\xFE') << 30
                                 << QString::fromLocal8Bit(QByteArray(30, '\xFE'));
    }
    void macros()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, length);
        QFETCH(QString, name);
        Slot slot = macroSlot(bytes);
        slot.macro.NameLength = slot.macro.EventCount = uint8_t(length);
        check(slot.decode(), "Macro " + name, "page_5", "DPI_10");
        {
            const support::WithoutTexts bare;
            check(slot.decode(NoTable), name, "page_5", "DPI_10");
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
            bytes[976 + 592 * button] = 1;
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
};

TEST_CLASS(tst_bindings, testmain::CoreApplication)
#include "tst_bindings.moc"
