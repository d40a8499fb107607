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

using Change = std::function<bool(Editing &)>;

void check(std::initializer_list<Case> cases, const Change &change, bool changes = true)
{
    for (const Case &each : cases) {
        Editing list{rowsOf(each.before), each.selected};
        const QByteArray where = QByteArray(each.before) + " at " + QByteArray::number(each.selected);
        QVERIFY2(change(list) == changes, where);
        QVERIFY2(wordsOf(list.rows) == each.after, where + ": " + wordsOf(list.rows).toUtf8());
        QVERIFY2(list.selected == each.selectedAfter, where + ": " + QByteArray::number(list.selected));
    }
}

const Change KeyX = [](Editing &list) { return insertKey(list, "X", true); };
const Change ClickX = [](Editing &list) { return insertClick(list, "X"); };
const Change Delay77 = [](Editing &list) { return insertDelay(list, 77); };
const Change Removal = [](Editing &list) { return rowediting::remove(list); };
const Change Up = [](Editing &list) { return move(list, -1); };
const Change Down = [](Editing &list) { return move(list, 1); };

} // namespace

class tst_RowEditing : public QObject
{
    Q_OBJECT

private slots:
    // ---- A key

    void aKey()
    {
        check(
            {
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
            },
            KeyX);
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
        check(
            {
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
            },
            ClickX);
    }

    // ---- A delay

    void aDelay()
    {
        check(
            {
                {"", NoRow, "77", 0},
                {"+A 1 -A", NoRow, "+A 1 -A 77", 3},
                {"+A 1 -A", 1, "+A 77 -A", 1}, // the selected one
                {"+A 1 -A", 2, "+A 77 -A", 1}, // the one before
                {"+A 1 -A 2 +B", 4, "+A 1 -A 77 +B", 3},
                {"+A -A", 1, "+A 77 -A", 1}, // no delay to change
            },
            Delay77);
        check({{"+A 1 -A", 0, "+A 1 -A", 0}, {"+A", 0, "+A", 0}}, Delay77, false);
    }

    // ---- Deleting

    void aDeletion()
    {
        check(
            {
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
            },
            Removal);
        check({{"+A 1 -A 2", NoRow, "+A 1 -A 2", NoRow}}, Removal, false);
    }

    // ---- Moving

    void aMove()
    {
        check(
            {
                {"+A 1 -A 2 +B", 0, "-A 1 +A 2 +B", 2},
                {"+A 1 -A 2 +B", 2, "+A 1 +B 2 -A", 4},
                {"+A 1 -A 2 +B", 1, "+A 2 -A 1 +B", 3},
                {"+A -A 1", 0, "-A +A 1", 1}, // events without a delay between them
            },
            Down);
        check(
            {
                {"+A 1 -A 2 +B", 4, "+A 1 +B 2 -A", 2},
                {"+A 1 -A 2 +B", 2, "-A 1 +A 2 +B", 0},
                {"+A 1 -A 2 +B", 3, "+A 2 -A 1 +B", 1},
            },
            Up);
        check({{"+A 1 -A", 0, "+A 1 -A", 0}, {"+A 1 -A", 1, "+A 1 -A", 1}, {"", NoRow, "", NoRow}}, Up,
              false);
        check({{"+A 1 -A", 2, "+A 1 -A", 2}, {"+A 1 -A", NoRow, "+A 1 -A", NoRow}}, Down, false);
        check({{"+A 1 -A 2 +B", 0, "-A 1 +B 2 +A", 4}}, [](Editing &list) { return move(list, 9); });
    }

    void theWayToAPlaceBetweenTheRows()
    {
        const int steps[] = {-1, 0, 0, 0, 0, 1, 1, 2}; // in front of each row, and behind the last
        const Editing list{rowsOf("+A 1 -A 2 +B 3 -B"), 2};
        for (int place = 0; place <= 7; ++place)
            QVERIFY2(stepsTo(list, place) == steps[place], QByteArray::number(place));
        QCOMPARE(stepsTo({list.rows, NoRow}, 3), 0);
        QCOMPARE(stepsTo({list.rows, 5}, 0), -2);
        QCOMPARE(stepsTo(list, 100), 2); // the list has become shorter since the drop
    }

    // The row stands in front of the rows of its sort that were behind the place; the other sort stays.
    void aDropAtEveryPlace_data()
    {
        QTest::addColumn<QString>("before");
        const QStringList rows = QStringLiteral("+A 1 -A 2 +B 3 -B 4 +C").split(QLatin1Char(' '));
        for (int count = 1; count <= rows.size(); ++count)
            QTest::addRow("%d", count) << rows.mid(0, count).join(QLatin1Char(' '));
        QTest::newRow("a delay first") << "1 +A 2 -A";
        QTest::newRow("not alternating") << "+A -A 1 2 +B";
    }
    void aDropAtEveryPlace()
    {
        QFETCH(QString, before);
        const MacroRows rows = rowsOf(before);
        for (int selected = 0; selected < rows.size(); ++selected)
            for (int place = 0; place <= rows.size(); ++place) {
                const bool isDelay = rows[selected].isDelay();
                MacroRows sort;
                int index = 0; // among its sort
                for (int row = 0; row < rows.size(); ++row) {
                    if (row == selected || rows[row].isDelay() != isDelay)
                        continue;
                    sort << rows[row];
                    index += row < place;
                }
                sort.insert(index, rows[selected]);
                MacroRows wanted = rows;
                int last = -1;
                int wantedRow = -1;
                for (int row = 0; row < rows.size(); ++row)
                    if (rows[row].isDelay() == isDelay) {
                        wanted[row] = sort[++last];
                        wantedRow = last == index ? row : wantedRow;
                    }
                Editing list{rows, selected};
                move(list, stepsTo(list, place));
                const QString told =
                    QStringLiteral("%1 to %2: %3").arg(selected).arg(place).arg(wordsOf(list.rows));
                QVERIFY2(list.rows == wanted && list.selected == wantedRow, qPrintable(told));
            }
    }

    // A list that alternates and ends in an event does so after every edit in its middle.
    void theAlternationStays()
    {
        const Change changes[] = {KeyX, ClickX, Delay77, Removal, Up, Down};
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
