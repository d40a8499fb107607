// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A macro's whole way through the real program: made, recorded, edited by hand, saved, bound to a button, and
// changed again, against the flash of an emulated mouse.
#include "hub/PostMsg.h"
#include "macro/store/MacroFolder.h"
#include "presentation/QuestionDialog.h"
#include "tests/e2e/Program.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QToolButton>
#include <QWindow>

namespace
{

constexpr int A = 30, LeftShift = 42; // numbers of the kernel
constexpr int Button = 4;

struct Event {
    uint8_t direction, kind;
    uint16_t code;
    uint32_t delay;
};
constexpr Event Recorded[] = {{0, 0, 0x02, 30}, {0, 1, 0x04, 45}, {1, 1, 0x04, 5}, {1, 0, 0x02, 0}};
// With a click of the left mouse button at the end.
constexpr Event Edited[] = {{0, 0, 0x02, 30}, {0, 1, 0x04, 45}, {1, 1, 0x04, 5},
                            {1, 0, 0x02, 10}, {0, 4, 0x01, 10}, {1, 4, 0x01, 0}};

template <std::size_t Count> MacroBlock blockOf(const Event (&events)[Count], const QByteArray &name)
{
    MacroBlock block{};
    block.NameLength = uint8_t(name.size());
    std::memcpy(block.Name, name.constData(), std::size_t(name.size()));
    block.EventCount = uint8_t(Count);
    for (std::size_t i = 0; i < Count; ++i) {
        block.Events[i].Direction = events[i].direction;
        block.Events[i].Kind = events[i].kind;
        block.Events[i].Code.set(events[i].code);
        block.Events[i].DelayMs.set(events[i].delay);
    }
    return block;
}

QByteArray fileOf(const char *name)
{
    QFile file(macro::macroPath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_recordedmacro : public QObject
{
    Q_OBJECT

    // A key of the kernel's, as the window system tells the window that has the keyboard.
    static void key(const Program &program, int evdev, bool down, ulong time)
    {
        QKeyEvent event(down ? QEvent::KeyPress : QEvent::KeyRelease, Qt::Key_Space, {}, quint32(evdev + 8),
                        0, 0);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(program.window->windowHandle(), &event);
    }
    static QWidget *page(const Program &program) { return program.window->findChild<QWidget *>("Macro"); }

private slots:
    void fromTheKeyboardToTheFlash_data()
    {
        QTest::addColumn<bool>("endsAtOnce"); // as when the display is gone
        QTest::newRow("in peace") << false;
        QTest::newRow("at the end") << true;
    }
    void fromTheKeyboardToTheFlash()
    {
        QFETCH(bool, endsAtOnce);
        QFile::remove(macro::macroPath(QStringLiteral("Burst")));
        Program program;
        Watchdog watchdog;
        FlashDataMap wanted{};
        const auto arrived = [&] { return sameBytes(program.bus.record("m1"), wanted); };
        program.open(QStringLiteral("r1"));
        program.click("MacroButton");
        program.click("NewHong");
        program.script.step("name", isShown<QuestionDialog>, [] {
            auto *const dialog = windows::shown<QuestionDialog>();
            dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit"))->setText(QStringLiteral("Burst"));
            dialog->on_OK_clicked();
        });
        program.click("StartRecord");
        program.script.step(
            "keys", [] { return bool(MacroRecording); },
            [&] {
                wanted = DeviceRecord::copy();
                key(program, LeftShift, true, 1000);
                key(program, A, true, 1030);
                key(program, A, false, 1075);
                key(program, LeftShift, false, 1080);
            });
        program.click("StopRecord");
        program.click("ReUntilLoose");
        program.click("Save");
        program.expect("file", [] {
            return fileOf("Burst") == "254\n0x02 0 0\n30ms\n0x04 1 0\n45ms\n0x04 1 1\n5ms\n0x02 0 1\n";
        });
        program.expect("the mouse has none of it", arrived);

        program.click("ButtonMain");
        const auto bind = [&] {
            wanted.KeyBindings[Button] = {6, Button, 254};
            wanted.MacroBlocks[Button] = blockOf(Recorded, "Burst");
            windows::click(QStringLiteral("StartPause"));
            windows::click(QStringLiteral("DPI_10"));
            program.window->findChild<QWidget *>(QStringLiteral("page_5"))
                ->findChild<QToolButton *>()
                ->click();
        };
        program.actUntil("bound", "m1", bind, arrived);

        // Another macro is selected before the mouse gets the new rows.
        program.click("MacroButton");
        program.script.step("edit", always, [&] {
            QMetaObject::invokeMethod(page(program), "on_ChooseEvent_activated", Q_ARG(int, 4));
            wanted.MacroBlocks[Button] = blockOf(Edited, "Burst");
        });
        program.click("ReUntil");
        program.click("Save");
        program.script.step("another one is chosen", always, [&] {
            wanted.KeyBindings[Button].Second = 253;
            page(program)->findChild<QListWidget *>(QStringLiteral("listWidgetHong"))->clearSelection();
            if (endsAtOnce)
                program.window->letGo();
        });
        program.expect("saved rows and mode", arrived);
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    // A recording that a lost receiver ends leaves a page, and a column of pages, that work.
    void theReceiverGoesInTheMiddle()
    {
        Program program;
        Watchdog watchdog;
        program.open(QStringLiteral("r1"));
        program.click("MacroButton");
        program.click("NewHong");
        program.script.step("name", isShown<QuestionDialog>, [] {
            auto *const dialog = windows::shown<QuestionDialog>();
            dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit"))->setText(QStringLiteral("Cut"));
            dialog->on_OK_clicked();
        });
        program.click("StartRecord");
        program.script.step(
            "keys", [] { return bool(MacroRecording); },
            [&] {
                key(program, A, true, 1000);
                key(program, A, false, 1010);
            });
        program.order("unplug r1");
        program.expect("the recording ended", [] { return !MacroRecording; });
        program.open(QStringLiteral("r2"));
        program.click("MacroButton");
        program.script.step("the rows are there", [&] {
            const auto *events = page(program)->findChild<QListWidget *>(QStringLiteral("listWidgetKey"));
            return events->count() == 3 && windows::visible(QStringLiteral("StartRecord"));
        });
        program.click("StartRecord");
        program.expect("another one begins", [] { return bool(MacroRecording); });
        program.click("StopRecord");
        program.expect("and ends", [] { return !MacroRecording; });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }
};

TEST_CLASS(tst_recordedmacro, ProgramSetUp)

#include "tst_recordedmacro.moc"
