// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The binding page of the real program against the flash of an emulated mouse: every action on every button,
// the dialogs, the profiles, and a record that leaves by a file and comes back.
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "presentation/dialogs/FireKey.h"
#include "presentation/dialogs/GroupKey.h"
#include "tests/e2e/BoundButtons.h"
#include "tests/support/ButtonActions.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QToolButton>

namespace
{

QString captionOf(const Program &program, const char *name) { return named(program, name)->text(); }

// A left button beside the one that is tried, so that this one can always be opened.
FlashDataMap withSpareLeft(FlashDataMap map, int tried)
{
    map.KeyBindings[tried == 11 ? 10 : 11] = {1, 1, 0};
    map.KeyBindings[tried] = {0, 0, 0};
    return map;
}

// Ctrl and a letter. The release of the key "F" is that of another key.
KeySequence withCtrl(char letter)
{
    const auto code = uint16_t(0x04 + letter - 'A');
    const KeyEvent events[] = {{0, 0, {}, {}}, {0, 1, {}, {}}, {1, 1, {}, {}}, {1, 0, {}, {}}};
    const uint16_t codes[] = {1, code, letter == 'F' ? uint16_t(0x29) : code, 1};
    KeySequence sequence{};
    sequence.Count.set(4);
    for (int i = 0; i < 4; ++i) {
        sequence.Events[i] = events[i];
        sequence.Events[i].Code.set(codes[i]);
        sequence.Events[i].DelayMs.set(10);
    }
    return sequence;
}

MacroBlock someMacro()
{
    MacroBlock macro{};
    macro.NameLength = 5;
    std::memcpy(macro.Name, "Burst", 5);
    macro.EventCount = 1;
    macro.Events[0].Code.set(0x04);
    return macro;
}

// A button is opened, whether or not the model shows it, and its function clicked until it is bound. `fill`
// confirms the dialog that the function opens.
template <typename Dialog>
void bindUntil(Program &program, const char *mouse, const char *caption, const char *function,
               std::function<void(Dialog *)> fill, Script::Condition bound)
{
    const auto ready = [&program, mouse, fill] {
        if (auto *const dialog = windows::shown<Dialog>())
            fill(dialog);
        return isRested() && program.agrees(mouse);
    };
    program.script.repeat(function, std::move(bound), ready, [&program, caption, function] {
        named(program, caption)->click();
        named(program, function)->click();
    });
}
void bindUntil(Program &program, const char *mouse, const char *caption, const char *function,
               Script::Condition bound)
{
    const auto bind = [&program, caption, function] {
        named(program, caption)->click();
        named(program, function)->click();
    };
    program.actUntil(function, mouse, bind, std::move(bound));
}

void chooseFile(const QString &path)
{
    auto *const dialog = windows::shown<QFileDialog>();
    dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
    QMetaObject::invokeMethod(dialog, "accept");
}

void exportTo(Program &program, const QString &path)
{
    program.click("OutputData");
    program.script.step("export", isShown<QFileDialog>, [path] { chooseFile(path); });
    program.expect("exported", [path] { return isGone<QFileDialog>() && QFile::exists(path); });
}

void importFrom(Program &program, const char *mouse, const QString &path)
{
    program.clickUntil("ImportData", mouse, isShown<QFileDialog>);
    program.script.step("import", always, [path] { chooseFile(path); });
    program.expect("wait", isShown<UpDataParam>);
}

} // namespace

class tst_boundbuttons : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder;

private slots:
    // The model with twelve buttons, one of which it does not show; it is bound all the same.
    void everyActionOfEveryButtonReachesTheFlash()
    {
        Program program;
        Watchdog watchdog;
        FlashDataMap wanted{};
        const auto arrived = [&] { return sameBytes(program.bus.record("m2"), wanted); };
        program.open(QStringLiteral("r2"));
        for (const ButtonOf &each : Buttons) {
            program.script.step(each.caption, always, [&, each] {
                wanted = withSpareLeft(DeviceRecord::copy(), each.button);
                DeviceRecord::update([&](FlashDataMap &record) { record = wanted; });
                emit PostMsg::instance()->SigUpDataButtonUIC(wanted);
            });
            program.expect("prepared", arrived);
            for (const ButtonAction &action : ButtonActions) {
                const auto choose = [&, each] {
                    wanted.KeyBindings[each.button] = action.binding;
                    if (action.usage)
                        wanted.KeySequences[each.button] = pressAndRelease(action.usage);
                    named(program, each.caption)->click();
                    if (action.opener)
                        named(program, action.opener)->click();
                    named(program, action.widget)->click();
                };
                program.actUntil(action.widget, "m2", choose, [&, each] {
                    return arrived() && captionOf(program, each.caption) == QLatin1String(action.caption);
                });
            }
        }
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    void everyDialogOfEveryButtonReachesTheFlash()
    {
        Program program;
        Watchdog watchdog;
        FlashDataMap wanted{};
        const auto arrivedAs = [&](const ButtonOf &each, const QString &caption) {
            return [&, each, caption] {
                return sameBytes(program.bus.record("m2"), wanted) &&
                       captionOf(program, each.caption) == caption;
            };
        };
        program.open(QStringLiteral("r2"));
        for (const ButtonOf &each : Buttons) {
            const int button = each.button;
            const char letter = char('A' + button);
            program.script.step(each.caption, always, [&, button] {
                const int other = button == 9 ? 8 : 9;
                wanted = withSpareLeft(DeviceRecord::copy(), button);
                wanted.KeyBindings[other] = {6, uint8_t(other), 254};
                wanted.MacroBlocks[other] = someMacro();
                DeviceRecord::update([&](FlashDataMap &record) { record = wanted; });
                emit PostMsg::instance()->SigUpDataButtonUIC(wanted);
                wanted.KeyBindings[button] = {4, uint8_t(15 + 20 * button), uint8_t(button % 4)};
            });
            bindUntil<FireKey>(
                program, "m2", each.caption, "DPI_6",
                [button](FireKey *dialog) {
                    dialog->setValues(15 + 20 * button, button % 4);
                    dialog->on_NewHong_clicked();
                },
                arrivedAs(each, QStringLiteral("Rapid fire")));
            bindUntil<GroupKey>(
                program, "m2", each.caption, "DPI_8",
                [&, button, letter](GroupKey *dialog) {
                    wanted.KeyBindings[button] = {5, 0, 0};
                    wanted.KeySequences[button] = withCtrl(letter);
                    dialog->findChild<QAbstractButton *>(QStringLiteral("Ctrl"))->setChecked(true);
                    dialog->UpdateCapslockTip(letter, true, false);
                    dialog->on_NewHong_clicked();
                },
                arrivedAs(each, QStringLiteral("Ctrl+") + QLatin1Char(letter)));
            const auto chooseMacro = [&, each] {
                wanted.KeyBindings[each.button] = {6, uint8_t(each.button), 254};
                wanted.MacroBlocks[each.button] = someMacro();
                named(program, each.caption)->click();
                named(program, "DPI_10")->click();
                program.window->findChild<QWidget *>(QStringLiteral("page_5"))
                    ->findChild<QToolButton *>()
                    ->click();
            };
            program.actUntil("macro", "m2", chooseMacro, arrivedAs(each, QStringLiteral("Macro: Burst")));
        }
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    void offLineNothingChanges()
    {
        Program program;
        FlashDataMap before{};
        QString caption;
        program.open(QStringLiteral("r2"));
        program.script.step("before", always, [&] {
            before = program.bus.record("m2");
            caption = captionOf(program, "RightKey");
        });
        program.order("radio m2 off");
        program.click("RightKey");
        program.click("DPI_3");
        program.expect("notice", [] { return shows<MouseOffLine>(infoText("DialogOffline")); });
        program.script.step("answer", always, [] { answer<MouseOffLine>("NewHong"); });
        program.expect("as before", [&] {
            return isGone<MouseOffLine>() && captionOf(program, "RightKey") == caption &&
                   windows::visible(QStringLiteral("RightKey"));
        });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(sameBytes(program.bus.record("m2"), before));
        QVERIFY(sameBytes(DeviceRecord::copy(), before));
    }

    void anotherProfileShowsItsOwnCaptions()
    {
        Program program;
        QString plain;
        program.open(QStringLiteral("r2"));
        program.script.step("before", always, [&] { plain = captionOf(program, "RightKey"); });
        bindUntil(program, "m2", "RightKey", "DPI_3",
                  [&] { return program.bus.flash("m2").KeyBindings[1].Class == 9; });
        // Whole reads are three seconds apart, so the first choices may come too early.
        const auto chooseProfile = [&program](int index) {
            program.expect("whole read asked for", [&program, index] {
                auto *const box = program.window->findChild<QComboBox *>(QStringLiteral("ProjectChoose"));
                box->setCurrentIndex(index);
                emit box->activated(index);
                return ConfigChanged.load() || isShown<UpDataParam>();
            });
            program.expect("wait", isShown<UpDataParam>);
            program.expect("end of the wait", [] { return isGone<UpDataParam>() && isGone<MouseOffLine>(); });
        };
        const auto shows = [&program](int profile, const QString &caption) {
            return program.bus.emulated.mouse("m2")->profile == profile &&
                   captionOf(program, "RightKey") == caption;
        };
        chooseProfile(1);
        program.expect("its captions", [&] { return shows(1, plain); });
        chooseProfile(0);
        program.expect("its own again", [&] { return shows(0, QStringLiteral("Next profile")); });
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
    }

    void anExportComesBack()
    {
        const QString path = folder.filePath(QStringLiteral("mine.bin"));
        Program program;
        FlashDataMap kept{};
        program.open(QStringLiteral("r1"));
        bindUntil(program, "m1", "RightKey", "DPI_5",
                  [&] { return program.bus.flash("m1").KeyBindings[1].Class == 0; });
        program.script.step("keep", always, [&] { kept = program.bus.record("m1"); });
        exportTo(program, path);
        bindUntil(program, "m1", "RightKey", "DPI_2",
                  [&] { return program.bus.flash("m1").KeyBindings[1].Class == 7; });
        importFrom(program, "m1", path);
        program.expect("end", [] { return isGone<UpDataParam>() && !SettingsBusy; });
        program.expect("as exported", [&] {
            return sameBytes(program.bus.record("m1"), kept) && program.agrees("m1") &&
                   captionOf(program, "RightKey") == QLatin1String("Disabled");
        });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(QFile(path).size(), qint64(10484));
    }

    void anExportOfAnotherModelIsRefused()
    {
        const QString path = folder.filePath(QStringLiteral("other.bin"));
        Program program;
        FlashDataMap before{};
        program.open(QStringLiteral("r1"));
        exportTo(program, path);
        program.click("UpArrow");
        program.open(QStringLiteral("r2"));
        program.script.step("before", always, [&] { before = program.bus.record("m2"); });
        importFrom(program, "m2", path);
        program.expect("refusal", [] { return shows<InportFail>(keyText("DialogEConfigMismatch")); });
        program.script.step("answer", always, [] { answer<InportFail>("NewHong"); });
        program.expect("end", [] { return isGone<InportFail>() && isGone<UpDataParam>() && !SettingsBusy; });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(sameBytes(program.bus.record("m2"), before));
    }

    void anImportBringsItsMacros()
    {
        const QString path = folder.filePath(QStringLiteral("macro.bin"));
        Program program;
        program.open(QStringLiteral("r1"));
        program.actUntil(
            "macro", "m1",
            [] {
                SetMacroBinding(6, {6, 6, 254}, someMacro());
            },
            [&] { return program.bus.flash("m1").KeyBindings[6].Class == 6; });
        exportTo(program, path);
        program.actUntil(
            "gone", "m1",
            [] {
                SetBinding(6, {0, 0, 0});
            },
            [&] { return program.bus.flash("m1").KeyBindings[6].Class == 0; });
        importFrom(program, "m1", path);
        program.expect("caption", [&] {
            return isGone<UpDataParam>() && captionOf(program, "Button7") == QLatin1String("Macro: Burst");
        });
        const auto choose = [&] {
            named(program, "RightKey")->click();
            named(program, "DPI_10")->click();
            if (QWidget *const offered = windows::visible(QStringLiteral("page_5")))
                offered->findChild<QToolButton *>()->click();
        };
        program.actUntil("copied", "m1", choose, [&] {
            const FlashDataMap flash = program.bus.record("m1");
            return flash.KeyBindings[1].Class == 6 && flash.KeyBindings[1].First == 1 &&
                   flash.KeyBindings[1].Second == 254 &&
                   std::memcmp(&flash.MacroBlocks[1], &flash.MacroBlocks[6], sizeof(MacroBlock)) == 0;
        });
        QCOMPARE(program.script.run(), QString());
    }

    void aResetBringsBackTheCaptions()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        bindUntil(program, "m1", "RightKey", "DPI_3",
                  [&] { return program.bus.flash("m1").KeyBindings[1].Class == 9; });
        program.clickUntil("Reset", "m1", isShown<ContainReset>);
        program.script.step("confirm", isShown<ContainReset>, [] { answer<ContainReset>("OK"); });
        program.expect("wait", isShown<UpDataParam>);
        program.expect("end", [] { return isGone<UpDataParam>() && !SettingsBusy; });
        program.expect("caption", [&] {
            return captionOf(program, "RightKey") == QLatin1String("Right button") && program.agrees("m1");
        });
        QCOMPARE(program.script.run(), QString());
    }
};

TEST_CLASS(tst_boundbuttons, ProgramSetUp)
#include "tst_boundbuttons.moc"
