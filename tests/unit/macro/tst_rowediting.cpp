// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Hand editing of an event list: where each insertion goes for every selection, and what a deletion takes.
// The rows are written as words: "A" and "B" are keys that stand in the list, "X" is the one that goes in, a
// number is a delay.
#include "macro/store/RowEditing.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <functional>

using namespace macro;
using namespace macro::rowediting;

namespace
{

// "+X" a press of X, "-X" its release, a number a delay.
MacroRows rowsOf(const QString &words)
{
    MacroRows rows;
    for (const QString &word : words.split(' ', Qt::SkipEmptyParts))
        rows << (word[0].isDigit() ? delayRow(word.toUInt()) : keyRow(word.mid(1), word[0] == '+'));
    return rows;
}

QString wordsOf(const MacroRows &rows)
{
    QStringList words;
    for (const MacroRow &row : rows)
        words << (row.isDelay() ? row.text.chopped(2) : (row.isRelease() ? '-' : '+') + row.text);
    return words.join(' ');
}

struct Case {
    const char *before;
    int selected;
    const char *after;
    int selectedAfter;
};

void check(const Case &each, const std::function<bool(Editing &)> &change, bool changes = true)
{
    Editing list{rowsOf(each.before), each.selected};
    const QByteArray where = QByteArray(each.before) + " at " + QByteArray::number(each.selected);
    QVERIFY2(change(list) == changes, where);
    QVERIFY2(wordsOf(list.rows) == each.after, where + ": " + wordsOf(list.rows).toUtf8());
    QVERIFY2(list.selected == each.selectedAfter, where + ": " + QByteArray::number(list.selected));
}

} // namespace

class tst_RowEditing : public QObject
{
    Q_OBJECT

private slots:
    // ---- A key

    void aKey()
    {
        const Case cases[] = {
            {"", NoRow, "+X 10", 0}, // the list ends in a delay
            {"+A", NoRow, "+A +X 10", 1},
            {"+A 1 -A", NoRow, "+A 1 -A +X 10", 3},
            {"+A 1", NoRow, "+A 1 +X 10", 2},
            {"+A", 0, "+A +X 10", 1}, // there is no row 1
            {"+A 1", 0, "+A 1 +X 10", 2},
            {"+A 1 -A", 0, "+A 1 +X 10 -A", 2},
            {"+A 1 -A 2 +B", 1, "+A 1 +X 10 -A 2 +B", 2},
            {"+A 1 -A 2 +B", 3, "+A 1 -A 2 +X 10 +B", 4},
            {"+A 1 -A 2 +B", 2, "+A 1 -A 2 +X 10 +B", 4},
            {"+A 1 -A 2 +B", 4, "+A 1 -A 2 +B 10 +X", 6},
            {"+A 1 -A", 2, "+A 1 -A 10 +X", 4},
            {"+A 1", 1, "+A 1 10 +X", 3}, // a delay that is the last row
        };
        for (const Case &each : cases)
            check(each, [](Editing &list) { return insertKey(list, "X", true); });
    }

    void aReleaseGoesWhereAPressGoes()
    {
        for (int selected = NoRow; selected < 5; ++selected) {
            Editing press{rowsOf("+A 1 -A 2 +B"), selected};
            Editing release = press;
            QVERIFY(insertKey(press, "X", true) && insertKey(release, "X", false));
            QCOMPARE(wordsOf(release.rows), wordsOf(press.rows).replace("+X", "-X"));
        }
    }

    // Keys that are inserted one after another stand in that order.
    void keysInARow()
    {
        for (int selected = NoRow; selected < 5; ++selected) {
            Editing list{rowsOf("+A 1 -A 2 +B"), selected};
            for (const char *name : {"X", "Y", "Z"})
                insertKey(list, name, true);
            QStringList order;
            for (const MacroRow &row : qAsConst(list.rows))
                if (row.text == "X" || row.text == "Y" || row.text == "Z")
                    order << row.text;
            QCOMPARE(order.join(""), QString("XYZ"));
        }
    }

    // ---- A click

    void aClick()
    {
        const Case cases[] = {
            {"", NoRow, "+X 10 -X", 2},
            {"+A 1 -A", NoRow, "+A 1 -A 10 +X 10 -X", 6},
            {"+A 1", NoRow, "+A 1 10 +X 10 -X", 5},
            {"+A", 0, "+A +X 10 -X 10", 3},
            {"+A 1 -A", 0, "+A 1 +X 10 -X 10 -A", 4},
            {"+A 1 -A 2 +B", 1, "+A 1 +X 10 -X 10 -A 2 +B", 4},
            {"+A 1 -A 2 +B", 3, "+A 1 -A 2 +X 10 -X 10 +B", 6},
            {"+A 1 -A 2 +B", 2, "+A 1 -A 10 +X 10 -X 2 +B", 6},
            {"+A 1 -A 2 +B", 4, "+A 1 -A 2 +B 10 +X 10 -X", 8},
            {"+A 1", 1, "+A 1 10 +X 10 -X", 5},
        };
        for (const Case &each : cases)
            check(each, [](Editing &list) { return insertClick(list, "X"); });
    }

    // ---- A delay

    void aDelay()
    {
        const Case cases[] = {
            {"", NoRow, "77", 0},
            {"+A 1 -A", NoRow, "+A 1 -A 77", 3},
            {"+A 1 -A", 1, "+A 77 -A", 1}, // the selected one
            {"+A 1 -A", 2, "+A 77 -A", 1}, // the one before
            {"+A 1 -A 2 +B", 4, "+A 1 -A 77 +B", 3},
            {"+A -A", 1, "+A 77 -A", 1}, // no delay to change
        };
        for (const Case &each : cases)
            check(each, [](Editing &list) { return insertDelay(list, 77); });
        for (const Case &first : {Case{"+A 1 -A", 0, "+A 1 -A", 0}, Case{"+A", 0, "+A", 0}})
            check(
                first, [](Editing &list) { return insertDelay(list, 77); }, false);
    }

    // ---- Deleting

    void aDeletion()
    {
        const Case cases[] = {
            {"", NoRow, "", NoRow},
            {"+A", NoRow, "", NoRow},
            {"+A 1 -A", 1, "", NoRow}, // a short list is emptied whatever is selected
            {"+A 1 -A", NoRow, "", NoRow},
            {"+A 1 -A 2 +B", 0, "-A 2 +B", 0},
            {"+A 1 -A 2 +B", 1, "-A 2 +B", 0},
            {"+A 1 -A 2 +B", 2, "+A 1 +B", 2},
            {"+A 1 -A 2 +B", 3, "+A 1 +B", 2},
            {"+A 1 -A 2 +B", 4, "+A 1 -A", 2},
            {"+A 1 -A 2", 3, "+A 1", 1}, // a delay that is the last row
            {"1 +A 2 -A", 0, "2 -A", 0}, // no event before the delay
        };
        for (const Case &each : cases)
            check(each, [](Editing &list) { return remove(list); });
        check(
            {"+A 1 -A 2", NoRow, "+A 1 -A 2", NoRow}, [](Editing &list) { return remove(list); }, false);
    }

    // A list that alternates and ends in an event does so after every edit in its middle.
    void theAlternationStays()
    {
        using Change = std::function<bool(Editing &)>;
        const Change changes[] = {
            [](Editing &list) { return insertKey(list, "X", true); },
            [](Editing &list) { return insertClick(list, "X"); },
            [](Editing &list) { return insertDelay(list, 77); },
            [](Editing &list) { return remove(list); },
        };
        const QString before = "+A 1 -A 2 +B 3 -B 4 +A";
        for (const Change &change : changes)
            for (int selected = 0; selected < 9; ++selected) {
                Editing list{rowsOf(before), selected};
                change(list);
                QCOMPARE(list.rows.size() % 2, 1);
                for (int row = 0; row < list.rows.size(); ++row)
                    QVERIFY2(list.rows[row].isDelay() == (row % 2 == 1), qPrintable(wordsOf(list.rows)));
                QVERIFY(list.selected >= 0 && list.selected < list.rows.size());
            }
    }

    // ---- What the heading says

    void theSummary()
    {
        const Summary none = summaryOf({});
        QVERIFY(none.events == 0 && none.milliseconds == 0 && none.held.isEmpty());
        const Summary some = summaryOf(rowsOf("+A 100 +B 23 -A 4294967295 +C"));
        QCOMPARE(some.events, 4);
        QCOMPARE(some.milliseconds, qint64(123) + 4294967295);
        QCOMPARE(some.held, QStringList({"B", "C"}));
        QCOMPARE(summaryOf(rowsOf("+A 1 +A 1 -A")).held, QStringList());
        QCOMPARE(summaryOf(rowsOf("-A 1 +A")).held, QStringList({"A"}));
        // A delay that is no number counts as none.
        QCOMPARE(summaryOf({{"manyms", 0}, delayRow(5)}).milliseconds, qint64(5));
    }
};

TEST_CLASS(tst_RowEditing, testmain::CoreApplication)

#include "tst_rowediting.moc"
