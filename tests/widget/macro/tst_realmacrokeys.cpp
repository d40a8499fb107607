// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A recording with a real keyboard on a real X server: every key under two layouts, held keys, modifiers,
// keys that would press a button, and keys that come fast. And a row that a real pointer drags.
#include "macro/RecordingKeys.h"
#include "presentation/Notices.h"
#include "presentation/SkinPalette.h"
#include "tests/support/EvdevCodes.h"
#include "tests/widget/macro/MacroPage.h"

#include <QAbstractNativeEventFilter>
#include <QProcess>
#include <QTimer>
#include <xcb/xproto.h>

using namespace evdev;

namespace
{

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
}

// The server's number has two digits or more, since one digit is a key's name to the tool. Esc has one.
QString serverKey(int evdev) { return evdev == Escape ? "Escape" : QString::number(evdev + Offset); }
void send(int evdev, bool down)
{
    run("xdotool", {down ? "keydown" : "keyup", "--delay", "0", serverKey(evdev)});
}
void type(const QVector<int> &keys, const char *pause = "0")
{
    QStringList arguments;
    for (const int key : keys)
        for (const char *move : {"keydown", "keyup"})
            arguments << move << "--delay" << pause << serverKey(key);
    run("xdotool", arguments);
}

// When keys went down and up, as the server stamped its own events.
class ServerTimes : public QAbstractNativeEventFilter
{
public:
    ServerTimes() { qApp->installNativeEventFilter(this); }
    ~ServerTimes() override { qApp->removeNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray &, void *message, long *) override
    {
        const auto *event = static_cast<const xcb_key_press_event_t *>(message);
        const int type = event->response_type & ~0x80;
        if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE)
            times_ << event->time;
        return false;
    }
    QStringList delays() const
    {
        QStringList delays;
        for (int i = 1; i < times_.size(); ++i)
            delays << QStringLiteral("%1ms").arg(times_[i] - times_[i - 1]);
        return delays;
    }

private:
    QVector<xcb_timestamp_t> times_;
};

} // namespace

class tst_RealMacroKeys : public QObject
{
    Q_OBJECT

    std::unique_ptr<MacroPage> made;

    const MacroPage &page() const { return *made; }
    QStringList events() const // without the delays
    {
        QStringList rows = page().rows().split(' ');
        rows.erase(
            std::remove_if(rows.begin(), rows.end(), [](const QString &row) { return row.contains("ms"); }),
            rows.end());
        return rows;
    }
    // The server tells of a new layout in its own time.
    void layout(const char *name, const QString &typed)
    {
        run("setxkbmap", {name});
        QLineEdit probe;
        probe.show();
        probe.activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), probe.windowHandle());
        QTRY_VERIFY_WITH_TIMEOUT((type({Y}), QCoreApplication::processEvents(), probe.text().endsWith(typed)),
                                 10000);
        probe.hide();
        page().page->activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), page().page->windowHandle());
        QCoreApplication::processEvents();
    }

private slots:
    void init()
    {
        made = std::make_unique<MacroPage>(
            QVector<QPair<QString, QByteArray>>{{"Alpha", "1\n"}, {"Beta", "1\n"}});
        page().page->activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), page().page->windowHandle());
        page().choose("Alpha");
    }
    void cleanup()
    {
        made.reset();
        run("setxkbmap", {"us"});
    }

    // A macro names the physical key, whatever the layout makes of it.
    void theLayoutDoesNotMatter_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("us") << "y";
        QTest::newRow("de") << "z";
    }
    void theLayoutDoesNotMatter()
    {
        QFETCH(QString, typed);
        layout(QTest::currentDataTag(), typed);
        page().button("StartRecord")->click();
        type({Y, LeftShift, RightAlt, LeftAlt});
        QTRY_COMPARE(events(),
                     QStringList({"+Y", "-Y", "+LShift", "-LShift", "+RAlt", "-RAlt", "+LAlt", "-LAlt"}));
    }

    void modifiersOfBothSides()
    {
        page().button("StartRecord")->click();
        send(LeftShift, true);
        send(RightShift, true);
        type({A});
        send(LeftShift, false);
        send(RightShift, false);
        QTRY_COMPARE(events(), QStringList({"+LShift", "+RShift", "+A", "-A", "-LShift", "-RShift"}));
    }

    // The server repeats the key that went down last; one that repeats again after another is still one
    // press.
    void heldKeysAreOnePress()
    {
        page().button("StartRecord")->click();
        int repeats = 0;
        for (RecordingKeys *keys : page().page->findChildren<RecordingKeys *>())
            connect(keys, &RecordingKeys::keyEvent, this,
                    [&](int, bool down, bool again) { repeats += down && again; });
        send(A, true);
        QTRY_VERIFY(repeats >= 3);
        type({B});
        send(A, false);
        QTRY_VERIFY2(events() == QStringList({"+A", "+B", "-B", "-A"}), qPrintable(page().rows()));
    }

    void keysDoNothingElse()
    {
        page().button("StartRecord")->click();
        const QWidget *focused = QApplication::focusWidget();
        QStringList wanted;
        const std::pair<int, const char *> keys[] = {{Space, "Space"}, {Enter, "Enter"}, {Escape, "Esc"},
                                                     {Tab, "Tab"},     {F2, "F2"},       {Delete, "Del"},
                                                     {LeftAlt, "LAlt"}};
        for (const auto &[key, name] : keys) {
            type({key});
            wanted << QString("+") + name << QString("-") + name;
        }
        send(LeftCtrl, true);
        type({R});
        send(LeftCtrl, false);
        wanted << "+LCtrl"
               << "+R"
               << "-R"
               << "-LCtrl";
        QTRY_COMPARE(events(), wanted);
        QCOMPARE(QApplication::focusWidget(), focused);
        QVERIFY(MacroRecording && page().page->isVisible() && !QApplication::activeModalWidget());
        QCOMPARE(page().names(), QStringList({"Alpha", "Beta"}));
        QCOMPARE(page().selected(), QString("Alpha"));
    }

    // 200 events a second: none is lost, and all are in order. They come at a stretch once all are typed, and
    // still their delays are those between the keys.
    void fastKeys()
    {
        const ServerTimes server;
        page().button("StartRecord")->click();
        type(QVector<int>(30, A), "5");
        QStringList wanted;
        for (int i = 0; i < 30; ++i)
            wanted << "+A"
                   << "-A";
        QTRY_COMPARE(events(), wanted);
        QCOMPARE(page().events()->count(), 119);
        QStringList delays;
        for (int row = 1; row < 119; row += 2)
            delays << page().events()->item(row)->text();
        QCOMPARE(delays, server.delays());
    }

    // A row goes where the mark stands, above or below the row that the pointer is on.
    void aRowIsDragged_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("onto");
        QTest::addColumn<bool>("isBelow");
        QTest::addColumn<QString>("rows");
        QTest::newRow("below the last") << 0 << 4 << true << "+B 10ms +C 20ms +A";
        QTest::newRow("above the last") << 0 << 4 << false << "+B 10ms +A 20ms +C";
        QTest::newRow("above the first") << 4 << 0 << false << "+C 10ms +A 20ms +B";
        QTest::newRow("below the first") << 4 << 0 << true << "+A 10ms +C 20ms +B";
        QTest::newRow("a delay") << 1 << 4 << false << "+A 20ms +B 10ms +C";
    }
    // The rest of the hand's way comes while the drag runs its own event loop.
    void aRowIsDragged()
    {
        QFETCH(int, row);
        QFETCH(int, onto);
        QFETCH(bool, isBelow);
        MacroHome::write(macro::macroPath("Beta"), "1\n0x04 1 0\n10ms\n0x05 1 0\n20ms\n0x06 1 0\n");
        page().choose("Beta");
        const auto to = [&](int at, int down) {
            const QPoint place = page().events()->viewport()->mapToGlobal(
                page().events()->visualItemRect(page().events()->item(at)).center() + QPoint(0, down));
            return QStringList{"mousemove", QString::number(place.x()), QString::number(place.y())};
        };
        QList<QStringList> way = {to(row, 0),  {"mousedown", "1"},         to(row, 12),     to(2, 0),
                                  to(onto, 0), to(onto, isBelow ? 4 : -4), {"mouseup", "1"}};
        // Beside the cap and the text, at the edge of the row.
        const auto marked = [&] {
            const QRect at = page().events()->visualItemRect(page().events()->item(onto));
            const QImage shown = page().events()->viewport()->grab().toImage();
            return shown.pixelColor(at.right() - 20, isBelow ? at.bottom() : at.top());
        };
        const QColor plain = marked();
        QColor mark;
        int trembles = 0;
        QElapsedTimer patience;
        patience.start();
        QTimer hand;
        connect(&hand, &QTimer::timeout, [&] {
            if (way.size() == 1) { // the button is still down, and the drag may be behind the hand
                mark = marked();
                if (mark != skinColor("SliderColor") && !patience.hasExpired(60000)) {
                    run("xdotool", to(onto, (isBelow ? 4 : -4) + ++trembles % 2)); // the hand trembles
                    return;
                }
            }
            way.isEmpty() ? hand.stop() : run("xdotool", way.takeFirst());
        });
        hand.start(20);
        QFETCH(QString, rows);
        QTRY_VERIFY_WITH_TIMEOUT(!hand.isActive(), 60000);
        QTRY_COMPARE(page().rows(), rows);
        QCOMPARE(mark, skinColor("SliderColor"));
        QVERIFY(plain != mark && marked() != mark);
        QCOMPARE(page().events()->count(), 5);
        QVERIFY(page().saves());
    }
};

TEST_CLASS(tst_RealMacroKeys, MacroSetUp)

#include "tst_realmacrokeys.moc"
