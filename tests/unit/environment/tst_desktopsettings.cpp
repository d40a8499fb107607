// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/DesktopSettings.h"
#include "tests/support/TestMain.h"

#include <QtTest>

namespace
{

// A text, a colour and two numbers, as a settings manager publishes them.
QByteArray settings(bool bigEndian)
{
    QByteArray made;
    const auto number = [&](quint32 value, int size) {
        for (int i = 0; i < size; ++i)
            made += char(value >> 8 * (bigEndian ? size - 1 - i : i));
    };
    const auto entry = [&](int type, const QByteArray &name) {
        number(quint32(type), 1);
        number(0, 1);
        number(quint32(name.size()), 2);
        made += name + QByteArray((4 - name.size() % 4) % 4, '\0');
        number(7, 4);
    };
    made = QByteArray(1, bigEndian ? '\1' : '\0') + QByteArray(3, '\0');
    number(7, 4);
    number(4, 4);
    entry(1, "Net/ThemeName");
    number(5, 4);
    made += "Plain" + QByteArray(3, '\0');
    entry(2, "Some/Color");
    made += QByteArray(8, '\7');
    entry(0, "Xft/DPI");
    number(98304, 4);
    entry(0, "Gtk/EnableAnimations");
    number(0, 4);
    return made;
}

} // namespace

class tst_DesktopSettings : public QObject
{
    Q_OBJECT

private slots:
    void findsANumber_data()
    {
        QTest::addColumn<bool>("bigEndian");
        QTest::newRow("big endian") << true;
        QTest::newRow("little endian") << false;
    }
    void findsANumber()
    {
        QFETCH(bool, bigEndian);
        const QByteArray bytes = settings(bigEndian);
        QCOMPARE(desktopNumber(bytes, "Xft/DPI"), std::optional<int>(98304));
        QCOMPARE(desktopNumber(bytes, "Gtk/EnableAnimations"), std::optional<int>(0));
        QVERIFY(!desktopNumber(bytes, "Net/ThemeName"));
        QVERIFY(!desktopNumber(bytes, "Net/EnableAnimations"));
    }

    void findsNothingInWhatIsCutOrNone()
    {
        const QByteArray whole = settings(true);
        QVERIFY(desktopNumber(whole, "Gtk/EnableAnimations"));
        for (int size = 0; size < whole.size(); ++size)
            QVERIFY(!desktopNumber(whole.left(size), "Gtk/EnableAnimations"));
        QByteArray wild = whole;
        wild.replace(12, 1, "\x9"); // the first entry's type
        QVERIFY(!desktopNumber(wild, "Gtk/EnableAnimations"));
        for (const int at : {8, 14, 32}) { // counts and sizes
            wild = whole;
            wild.replace(at, 2, "\xFF\xFF");
            desktopNumber(wild, "Gtk/EnableAnimations"); // ends, and reads nothing outside
        }
    }

    void withoutAServerThereAreNone()
    {
        const QByteArray display = qgetenv("DISPLAY");
        qunsetenv("DISPLAY");
        QCOMPARE(desktopSettings(), QByteArray());
        qputenv("DISPLAY", display);
    }
};

TEST_CLASS(tst_DesktopSettings, testmain::CoreApplication)
#include "tst_desktopsettings.moc"
