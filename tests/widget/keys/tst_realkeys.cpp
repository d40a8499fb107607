// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A key source on a real X server: keys that come from outside, under several layouts, held down, and with
// the keyboard taken away.
#include "keys/KeySource.h"
#include "tests/support/EvdevCodes.h"
#include "tests/support/KeysFile.h"
#include "tests/support/TestMain.h"

#include <QApplication>
#include <QLineEdit>
#include <QProcess>
#include <QtTest>

using namespace evdev;

namespace
{

constexpr int LastOfServer = 255; // the server knows no key above it

struct Key {
    int evdev;
    int virtualKey;
};

std::vector<Key> keys()
{
    std::vector<Key> all = {{96, 0x0D}}; // the keypad's Enter
    for (const ExpectedKey &key : readKeysFile())
        if (key.evdev + Offset <= LastOfServer)
            all.push_back({key.evdev, key.virtualKey});
    return all;
}

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
}

// The server's number has two digits or more, since one digit is a key's name to the tool. Esc has one.
QString serverKey(int evdev) { return evdev == 1 ? "Escape" : QString::number(evdev + Offset); }

void down(int evdev) { run("xdotool", {"keydown", "--delay", "0", serverKey(evdev)}); }
void up(int evdev) { run("xdotool", {"keyup", "--delay", "0", serverKey(evdev)}); }

QString downText(int key) { return QString("+%1").arg(key, 0, 16); }
QString upText(int key) { return QString("-%1").arg(key, 0, 16); }

// The toolkit's own input method, whichever the desktop has.
struct ComposingInput {
    ComposingInput() { qputenv("QT_IM_MODULE", "compose"); }
};
struct ComposingApplication : private ComposingInput, testmain::WidgetApplication {
    using WidgetApplication::WidgetApplication;
};

// Another program, which takes the keyboard.
int otherWindow(int argc, char **argv)
{
    const ComposingApplication setUp(argc, argv);
    QLineEdit other;
    other.show();
    other.activateWindow();
    return QApplication::exec();
}

} // namespace

class tst_RealKeys : public QObject
{
    Q_OBJECT

    std::unique_ptr<QLineEdit> field;
    std::unique_ptr<KeySource> source;
    QStringList log; // "+41" down, "-41" up, "*41" repeated

    // The server tells of a new layout in its own time, so the key is pressed until it types the new sign.
    void layout(const char *name, int evdev, const char *typed)
    {
        run("setxkbmap", {name});
        for (const QDeadlineTimer patience(10000); !field->text().endsWith(typed);) {
            QVERIFY(!patience.hasExpired());
            log.clear();
            down(evdev);
            up(evdev);
            QTRY_VERIFY(!log.filter("-").isEmpty());
        }
        log.clear();
        field->clear();
    }
    // A server that comes to the release late repeats the key meanwhile.
    QStringList withoutRepeats() const { return log.filter(QRegularExpression("^[+-]")); }

private slots:
    void init()
    {
        field = std::make_unique<QLineEdit>();
        field->show();
        field->activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), field->windowHandle());
        source = std::make_unique<KeySource>(KeySource::AltKeys::Known);
        connect(source.get(), &KeySource::keyEvent, this, [this](int key, bool isDown, bool again) {
            log += isDown && again ? QString("*%1").arg(key, 0, 16) : isDown ? downText(key) : upText(key);
        });
        source->start();
        log.clear();
    }
    void cleanup()
    {
        source.reset();
        field.reset();
        run("setxkbmap", {"us"});
    }

    void everyKeyUnderEveryLayout_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("evdev");
        QTest::addColumn<QByteArray>("typed");
        QTest::newRow("us") << QByteArray("us") << 21 << QByteArray("y");
        QTest::newRow("de") << QByteArray("de") << 21 << QByteArray("z");
        QTest::newRow("fr") << QByteArray("fr") << 16 << QByteArray("a");
        QTest::newRow("ru") << QByteArray("ru") << 16 << QByteArray("й");
    }
    void everyKeyUnderEveryLayout()
    {
        QFETCH(QByteArray, name);
        QFETCH(int, evdev);
        QFETCH(QByteArray, typed);
        layout(name, evdev, typed);
        QStringList arguments, wanted;
        const std::vector<Key> all = keys();
        QCOMPARE(all.size(), std::size_t(104)); // of 104 rows one is beyond the server, one has two keys
        for (const Key &key : all) {
            arguments << "keydown"
                      << "--delay"
                      << "0" << serverKey(key.evdev);
            arguments << "keyup"
                      << "--delay"
                      << "0" << serverKey(key.evdev);
            wanted << downText(key.virtualKey) << upText(key.virtualKey);
        }
        run("xdotool", arguments);
        QTRY_COMPARE(withoutRepeats().size(), wanted.size());
        QCOMPARE(withoutRepeats(), wanted);
    }

    // A dead key waits for the next one in a field; here it is a key like any other.
    void deadKeys()
    {
        layout("de", 21, "z");
        for (const int key : {Backtick, A}) {
            down(key);
            up(key);
        }
        QTRY_COMPARE(withoutRepeats(), QStringList({"+c0", "-c0", "+41", "-41"}));
    }

    void theKeysStillReachTheField()
    {
        layout("us", 21, "y");
        down(A);
        up(A);
        QTRY_VERIFY(field->text().startsWith("a"));
    }

    void modifiersOfBothSides_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("us") << QByteArray("us");
        QTest::newRow("de") << QByteArray("de"); // the right Alt chooses a third character
    }
    void modifiersOfBothSides()
    {
        QFETCH(QByteArray, name);
        run("setxkbmap", {name});
        for (const auto &pair : {std::pair(LeftShift, RightShift), std::pair(RightAlt, LeftAlt)}) {
            down(pair.first);
            down(pair.second);
            up(pair.first);
            up(pair.second);
        }
        QTRY_COMPARE(withoutRepeats(), QStringList({"+a0", "+a1", "-a0", "-a1", "+a5", "+a4", "-a5", "-a4"}));
    }

    void aHeldKeyRepeats()
    {
        down(A);
        QTRY_VERIFY(log.count("*41") >= 3);
        up(A);
        QTRY_VERIFY(log.contains("-41"));
        QCOMPARE(log.first(), QString("+41"));
        QCOMPARE(log.last(), QString("-41"));
        QCOMPARE(log.count("+41"), 1);
        QCOMPARE(log.count("-41"), 1);
    }

    void whatIsHeldGoesUpWhenAnotherProgramTakesTheKeyboard()
    {
        down(LeftShift);
        down(A);
        QTRY_VERIFY(log.contains("+41"));
        QProcess other;
        other.start(QCoreApplication::applicationFilePath(), {"otherWindow"});
        // It is a whole process that has to start.
        QTRY_COMPARE_WITH_TIMEOUT(log.mid(log.size() - 2), QStringList({"-41", "-a0"}), 30000);
        log.clear();
        up(A);
        up(LeftShift);
        down(A); // goes to the other program
        up(A);
        other.terminate();
        QVERIFY(other.waitForFinished());
        run("xdotool", {"windowfocus", QString::number(field->winId())});
        QTRY_COMPARE(QGuiApplication::focusWindow(), field->windowHandle());
        down(A);
        up(A);
        QTRY_COMPARE(withoutRepeats(), QStringList({"+41", "-41"}));
    }
};

TEST_CHILD(otherWindow)
TEST_CLASS(tst_RealKeys, ComposingApplication)

#include "tst_realkeys.moc"
