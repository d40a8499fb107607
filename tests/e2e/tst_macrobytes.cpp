// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macros from a file of the folder to the flash of an emulated mouse and back: the whole record after each
// step, for every button, and what a lost mouse leaves.
#include "hub/PostMsg.h"
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/QuestionDialog.h"
#include "tests/e2e/BoundButtons.h"
#include "tests/support/TestMain.h"

#include <QLineEdit>
#include <QListWidget>
#include <QToolButton>

using namespace macro;

namespace
{

// Button 0 stays the left one.
const std::vector<ButtonOf> OthersThanLeft(std::begin(Buttons) + 1, std::end(Buttons));

MacroRows presses(int count, const char *key = "A")
{
    MacroRows rows;
    for (int i = 0; i < count; ++i) {
        rows << keyRow(QString::fromLatin1(key), i % 2 == 0);
        if (i + 1 < count)
            rows << delayRow(quint32(i * 37));
    }
    return rows;
}

QToolButton *macroButton(const Program &program, const QString &name)
{
    const auto *const panel = program.window->findChild<QWidget *>(QStringLiteral("page_5"));
    for (auto *each : panel->findChildren<QToolButton *>())
        if (each->text() == name && !each->isHidden())
            return each;
    return nullptr;
}

void bind(const Program &program, const char *caption, const QString &name)
{
    named(program, caption)->click();
    named(program, "DPI_10")->click();
    if (auto *const button = macroButton(program, name))
        button->click();
}

void saveAndBind(Program &program, int events)
{
    const auto act = [&program, events] {
        saveMacro("Burst", 254, presses(events));
        bind(program, "RightKey", "Burst");
    };
    program.actUntil("bound", "m2", act,
                     [&program] { return program.bus.flash("m2").KeyBindings[1].Class == 6; });
}

// The mouse sleeps, so the notice of what was just tried comes.
void acceptRefusal(Program &program)
{
    program.script.step("the notice", isShown<MouseOffLine>, [] { answer<MouseOffLine>("OK"); });
}

// By the keyboard, of the macro that is chosen.
void renameByKey(Program &program, const QString &name)
{
    program.script.step("a new name", always, [&program] {
        QTest::keyClick(program.window->findChild<QWidget *>(QStringLiteral("listWidgetHong")), Qt::Key_F2);
    });
    program.script.step("name", isShown<QuestionDialog>, [name] {
        auto *const dialog = windows::shown<QuestionDialog>();
        dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit"))->setText(name);
        dialog->on_OK_clicked();
    });
}

void chooseMacro(Program &program)
{
    program.click("MacroButton");
    program.script.step("chosen", always, [&program] {
        program.window->findChild<QListWidget *>(QStringLiteral("listWidgetHong"))->setCurrentRow(0);
    });
}

void setMacro(FlashDataMap *map, int button, const char *name, uint8_t cycle, const MacroRows &rows)
{
    map->KeyBindings[button] = {6, uint8_t(button), cycle};
    map->MacroBlocks[button] = boundBlock(QString::fromLatin1(name), rows);
}

} // namespace

class tst_macrobytes : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        for (const QString &folder : {macroFolder(), keptFolder()})
            QDir(folder).removeRecursively();
        makeDataFolders();
    }

    void everyStepOfEveryButtonIsTheseBytes()
    {
        Program program;
        FlashDataMap wanted{};
        const auto arrived = [&](const char *what) {
            program.expect(what, [&] { return sameBytes(program.bus.record("m2"), wanted); });
        };
        program.open(QStringLiteral("r2"));
        program.script.step("a macro", always, [&] {
            wanted = DeviceRecord::copy();
            saveMacro("Burst of fire", 7, presses(70));
        });
        for (const ButtonOf &each : OthersThanLeft) {
            const auto act = [&, each] {
                setMacro(&wanted, each.button, "Burst of fire", 7, presses(70));
                bind(program, each.caption, "Burst of fire");
            };
            program.actUntil(each.caption, "m2", act, [&, each] {
                return sameBytes(program.bus.record("m2"), wanted) &&
                       named(program, each.caption)->text() == QLatin1String("Macro: Burst of fire");
            });
        }
        program.script.step("a save", always, [&] {
            for (const ButtonOf &each : OthersThanLeft)
                setMacro(&wanted, each.button, "Burst of fire", 7, presses(9, "B"));
            saveMacro("Burst of fire", 254, presses(9, "B"));
            emit PostMsg::instance()->SigUpDataMacro("Burst of fire", 0);
        });
        arrived("saved");
        program.script.step("its cycle mode", always, [&] {
            for (const ButtonOf &each : OthersThanLeft)
                wanted.KeyBindings[each.button].Second = 254;
            emit PostMsg::instance()->SigUpDataMacro("Burst of fire", 1);
        });
        arrived("with the mode");
        program.script.step("a new name", always, [&] {
            for (const ButtonOf &each : OthersThanLeft)
                renameBlock(&wanted.MacroBlocks[each.button], "Tap");
            QVERIFY(renameMacro("Burst of fire", "Tap"));
            emit PostMsg::instance()->SigMacroRename("Burst of fire", "Tap");
        });
        arrived("renamed");
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        program.script.step("a deletion", always, [&] {
            constexpr KeyBinding Defaults[] = {{1, 1, 0},  {1, 2, 0}, {1, 4, 0},  {1, 8, 0},
                                               {1, 16, 0}, {2, 1, 0}, {2, 2, 0},  {2, 3, 0},
                                               {7, 0, 0},  {7, 0, 0}, {4, 10, 3}, {0, 0, 0}};
            // The catalogue gives two buttons a media key and a combination. Their blocks are cleared behind
            // them, which the next record takes along.
            for (const ButtonOf &each : OthersThanLeft) {
                wanted.KeyBindings[each.button] = Defaults[each.button];
                if (each.button != OthersThanLeft.back().button)
                    wanted.KeySequences[each.button] = {};
            }
            wanted.KeyBindings[3] = wanted.KeyBindings[5] = {5, 0, 0};
            QVERIFY(removeMacro("Tap"));
            emit PostMsg::instance()->SigDeleteMacroButton("Macro: Tap");
        });
        arrived("deleted");
        QCOMPARE(program.script.run(), QString());
    }

    void aMouseBringsItsMacros()
    {
        Program program;
        program.open(QStringLiteral("r2"));
        saveAndBind(program, 70);
        program.click("UpArrow");
        program.script.step("forgotten", always, [] { QVERIFY(removeMacro("Burst")); });
        program.open(QStringLiteral("r2"));
        program.expect("in the folder again", [] {
            const std::optional<MacroText> read = loadMacro("Burst");
            return read && read->cycle == 254 && read->rows == presses(70);
        });
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
    }

    // A save reaches the mouse, whatever the user does while its rows wait.
    void aSaveReachesTheMouse_data()
    {
        QTest::addColumn<QString>("then");
        for (const char *then :
             {"the page is left", "the window is closed", "it is renamed", "the mouse sleeps"})
            QTest::newRow(then) << then;
    }
    void aSaveReachesTheMouse()
    {
        QFETCH(QString, then);
        Program program;
        const QString name = then == "it is renamed" ? QStringLiteral("Tap") : QStringLiteral("Burst");
        const MacroRows rows = presses(3) + MacroRows{delayRow(10), keyRow("Left button", true), delayRow(10),
                                                      keyRow("Left button", false)};
        const auto plays = [&] {
            const FlashDataMap held = program.bus.record("m2");
            return held.KeyBindings[1].Second == 253 && blockName(held.MacroBlocks[1]) == name &&
                   sameEvents(held.MacroBlocks[1], savedBlock(name, rows));
        };
        program.open(QStringLiteral("r2"));
        saveAndBind(program, 3);
        chooseMacro(program);
        program.script.step("edited", always, [&] {
            auto *const page = program.window->findChild<QWidget *>(QStringLiteral("Macro"));
            QMetaObject::invokeMethod(page, "on_ChooseEvent_activated", Q_ARG(int, 4));
        });
        program.click("ReUntil");
        if (then == "the mouse sleeps")
            program.order("radio m2 off");
        program.click("Save");
        if (then == "the mouse sleeps") {
            acceptRefusal(program);
            program.order("radio m2 on");
            program.waitForLoad();
        } else if (then == "it is renamed") {
            renameByKey(program, name);
        } else if (then == "the page is left") {
            program.click("UpArrow");
            program.open(QStringLiteral("r2"));
        } else {
            program.click("CloseButton");
        }
        program.expect("in flash", plays);
        program.expect("in the folder", [&] {
            const std::optional<MacroText> file = loadMacro(name);
            return file && file->rows == rows && file->cycle == 253;
        });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(QDir(keptFolder()).entryList(QDir::Files), QStringList());
    }

    // What the mouse was away for reaches it with the next read, and the old name makes no second macro.
    void aRefusedNameReachesTheMouse_data()
    {
        QTest::addColumn<bool>("isLeft");
        QTest::newRow("at the next read") << false;
        QTest::newRow("when the device is opened again") << true;
    }
    void aRefusedNameReachesTheMouse()
    {
        QFETCH(bool, isLeft);
        Program program;
        const auto caption = [&] { return named(program, "RightKey")->text(); };
        program.open(QStringLiteral("r2"));
        saveAndBind(program, 3);
        chooseMacro(program);
        program.order("radio m2 off");
        renameByKey(program, "Tap");
        acceptRefusal(program);
        program.script.step("one macro", always, [&] {
            QCOMPARE(macroNames(), QStringList("Tap"));
            QCOMPARE(caption(), QString("Macro: Tap"));
        });
        if (isLeft)
            program.click("UpArrow");
        program.order("radio m2 on");
        if (isLeft)
            program.open(QStringLiteral("r2"));
        else
            program.waitForLoad();
        program.expect("in flash",
                       [&] { return blockName(program.bus.record("m2").MacroBlocks[1]) == "Tap"; });
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        program.script.step("one macro still", always, [&] {
            QCOMPARE(macroNames(), QStringList("Tap"));
            QCOMPARE(caption(), QString("Macro: Tap"));
        });
        QCOMPARE(program.script.run(), QString());
    }

    void aLostMouseHasNoBindingWithoutItsMacro_data()
    {
        QTest::addColumn<int>("at");
        for (const int at : {1, 5, 9})
            QTest::addRow("at write %d", at) << at;
    }
    void aLostMouseHasNoBindingWithoutItsMacro()
    {
        QFETCH(int, at);
        Program program;
        const std::string fault = "fault r2 unplug at " + std::to_string(at) + " command flashwrite";
        const MacroBlock before = boundBlock("One", presses(70)), after = boundBlock("Two", presses(70, "B"));
        const auto plays = [&](const MacroBlock &block) {
            const FlashDataMap held = program.bus.record("m2");
            return held.KeyBindings[1].Class == 6 &&
                   std::memcmp(&held.MacroBlocks[1], &block, sizeof block) == 0;
        };
        program.open(QStringLiteral("r2"));
        const auto bindFirst = [&] {
            saveMacro("One", 1, presses(70));
            saveMacro("Two", 1, presses(70, "B"));
            bind(program, "RightKey", "One");
        };
        program.actUntil("bound", "m2", bindFirst, [&] { return plays(before); });
        program.order(fault.c_str());
        program.script.step("bound anew", always, [&] { bind(program, "RightKey", "Two"); });
        program.expect("gone", [] { return OnDevicePage == 0; });
        program.expect("no mixture", [&] {
            return plays(before) || plays(after) || program.bus.record("m2").KeyBindings[1].Class == 0;
        });
        program.order("plug r2");
        program.open(QStringLiteral("r2"));
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        program.actUntil(
            "once more", "m2", [&] { bind(program, "RightKey", "Two"); },
            [&] { return plays(after) && program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
    }
};

TEST_CLASS(tst_macrobytes, ProgramSetUp)

#include "tst_macrobytes.moc"
