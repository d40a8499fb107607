// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A device and an edit pass through the real windows, worker and layer, with devices that the
// kernel takes for real ones: from the plug to the tile, to the page, to the flash, and back when the cable
// is pulled. On a display it saves pictures in the folder that OUT names. How long the main thread is silent
// says nothing on an emulated processor.
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "tests/e2e/Program.h"
#include "tests/support/UsbFolder.h"

#include <QScreen>

namespace
{

constexpr int StepMs = 60000; // an emulated processor beside others' work is slow

// Ten mice, no two of one model behind receivers of one class.
std::string tenReceivers()
{
    struct ClassRow {
        const char *name;
        int models; // from mid 6 on
    };
    std::string scenario =
        "usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007\n";
    int n = 0;
    for (const ClassRow &row : {ClassRow{"1k", 4}, {"2k", 3}, {"4k", 2}, {"8k", 1}})
        for (int mid = 6; mid < 6 + row.models; ++mid, ++n)
            scenario += "mouse m" + std::to_string(n) + " cid 18 mid " + std::to_string(mid) +
                        "\nreceiver r" + std::to_string(n) + " class " + row.name + " mouse m" +
                        std::to_string(n) + "\n";
    return scenario;
}
constexpr int Receivers = 10;

// The carousel's page shows these tiles and no others.
bool showsTiles(int first, int count)
{
    for (int i = 0; i < Receivers; ++i) {
        const bool shown = windows::visible(QStringLiteral("btn%1").arg(i)) != nullptr;
        if (shown != (i >= first && i < first + count))
            return false;
    }
    return true;
}

bool promptAlone() { return windows::attached().empty() && windows::visible(QStringLiteral("label_2")); }

bool onSelectionPage(std::size_t tiles)
{
    const auto *stack = windows::visible(QStringLiteral("stackedWidget"));
    return OnDevicePage == 0 && stack && windows::attached().size() == tiles;
}

} // namespace

class machine_program : public QObject
{
    Q_OBJECT

private:
    // What has been painted is on the screen a moment later.
    static void shoot(Program &program, const char *name)
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            return;
        const auto since = std::make_shared<QElapsedTimer>();
        program.script.step(name, always, [since] {
            QCursor::setPos(0, 0); // where it hovers over nothing
            since->start();
        });
        program.script.step(
            name, [since] { return since->isValid() && since->elapsed() > 400; },
            [name] {
                const QString file =
                    qEnvironmentVariable("OUT", QDir::tempPath()) + '/' + name + QStringLiteral(".png");
                QVERIFY2(QGuiApplication::primaryScreen()->grabWindow(0).save(file), qPrintable(file));
            });
    }
    static void edit(Program &program, const char *button, int rate)
    {
        program.click(button);
        program.expect(button, [&program, rate] { return program.bus.flash("m1").ReportRate == rate; });
        program.expect("record and flash agree", [&program] { return program.agrees("m1"); });
    }

private slots:
    void aDeviceAndAnEdit()
    {
        Program program;
        program.expect("two tiles", [] {
            return windows::visible(Program::tile(QStringLiteral("r1"))) &&
                   windows::visible(Program::tile(QStringLiteral("r2")));
        });
        shoot(program, "tiles");
        program.open(QStringLiteral("r1"));
        program.expect("a node of the kernel's",
                       [] { return QByteArray(CurrentDevicePath()).startsWith("/dev/hidraw"); });
        program.click("SensorButton");
        edit(program, "Button500HZ", 2);
        shoot(program, "edited");
        edit(program, "Button125HZ", 8);
        program.click("UpArrow");
        program.expect("tiles again", [] { return onSelectionPage(2); });
        program.order("unplug r1");
        program.expect("one tile", [] { return onSelectionPage(1); });
        program.order("set m1 flash 0 04"); // another machine's edit, while it was away
        program.order("plug r1");
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.expect("read anew", [] { return windows::isChecked(QStringLiteral("Button250HZ")); });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(StepMs), QString());
    }

    void pulledFromItsPage()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        edit(program, "Button500HZ", 2);
        program.order("unplug r1");
        program.expect("back at the tile that is left", [] { return onSelectionPage(1); });
        program.order("plug r1");
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.expect("what was set", [] { return windows::isChecked(QStringLiteral("Button500HZ")); });
        edit(program, "Button1000HZ", 1);
        QCOMPARE(program.script.run(StepMs), QString());
    }

    void tenInARowAndOutAgain()
    {
        Program program(tenReceivers().c_str());
        program.expect("nothing yet", promptAlone);
        program.script.step("all in", always, [&] {
            for (int i = 0; i < Receivers; ++i) // in a row, without a look at what comes of each
                QCOMPARE(program.bus.emulated.order("plug r" + std::to_string(i)), std::string("ok\n"));
        });
        program.expect("three", [] { return windows::attached().size() == Receivers && showsTiles(0, 3); });
        // A search that ends late shows the first page again, so whoever turns pages looks where he is.
        for (const int first : {3, 6, 9})
            program.expect("the next page", [first] {
                for (int before = 0; before < first; before += 3)
                    if (showsTiles(before, 3))
                        windows::click(QStringLiteral("RightButton"));
                return showsTiles(first, first < 9 ? 3 : 1) &&
                       (windows::visible(QStringLiteral("RightButton")) == nullptr) == (first == 9) &&
                       (windows::visible(QStringLiteral("LeftButton")) != nullptr) == (first == 9);
            });
        program.expect("each known and on line", [] {
            const std::vector<DeviceAllInfo> devices = windows::attached();
            return std::all_of(devices.begin(), devices.end(), [](const DeviceAllInfo &device) {
                return device.Online && device.DriveIndex == device.Mid - 6;
            });
        });
        program.script.step("all out, as with a hub", always, [&] {
            for (int i = 0; i < Receivers; ++i)
                QCOMPARE(program.bus.emulated.order("unplug r" + std::to_string(i)), std::string("ok\n"));
        });
        program.expect("nothing left, and nothing to say of it",
                       [] { return promptAlone() && showsTiles(0, 0) && isGone<QuestiondialogB>(); });
        QCOMPARE(program.script.run(StepMs), QString());
    }

    void twoIdenticalDevicesAreTold()
    {
        Program program((std::string(Family) + "mouse twin cid 18 mid 6\n"
                                               "receiver r3 class 1k mouse twin\n")
                            .c_str());
        program.expect("two tiles", [] { return onSelectionPage(2); });
        program.order("plug r3");
        program.expect("notice", [] {
            return shows<QuestiondialogB>(
                language::text(language::Section::home, "ErrorDevice", LanguageIndex));
        });
        program.expect("no tile", [] { return showsTiles(0, 0); });
        program.script.step("answer", always, [] { answer<QuestiondialogB>("CloseButton"); });
        program.expect("notice gone", isGone<QuestiondialogB>);
        program.order("unplug r3");
        program.expect("two tiles", [] { return onSelectionPage(2) && showsTiles(0, 2); });
        QCOMPARE(program.script.run(StepMs), QString());
    }

    // The cable is pulled while a macro of the greatest length is on its way.
    void aMacroThatIsCutAndBoundAgain()
    {
        using namespace macro;
        MacroRows rows;
        for (int i = 0; i < MacroEventCount; ++i) {
            rows << keyRow(QStringLiteral("A"), i % 2 == 0);
            if (i + 1 < MacroEventCount)
                rows << delayRow(quint32(i));
        }
        const MacroBlock block = boundBlock(QStringLiteral("Burst"), rows);
        const auto plays = [&](const FlashDataMap &map) {
            return map.KeyBindings[1].Class == MacroBlockClass &&
                   std::memcmp(&map.MacroBlocks[1], &block, sizeof block) == 0;
        };
        Program program;
        const auto bind = [&program] {
            program.click("ButtonMain");
            program.click("RightKey");
            program.click("DPI_10");
            program.script.step(
                "its button", [] { return windows::visible(QStringLiteral("page_5")) != nullptr; },
                [] { windows::visible(QStringLiteral("page_5"))->findChild<QAbstractButton *>()->click(); });
        };
        QVERIFY(saveMacro(QStringLiteral("Burst"), 254, rows));
        program.open(QStringLiteral("r1"));
        program.order("fault r1 unplug at 4 command flashwrite");
        bind();
        program.expect("back at the tile that is left", [] { return onSelectionPage(1); });
        program.script.step("not bound", always,
                            [&] { QVERIFY(program.bus.flash("m1").KeyBindings[1].Class == 1); });
        program.order("plug r1");
        program.open(QStringLiteral("r1"));
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        bind();
        program.expect("bound", [&] { return plays(program.bus.record("m1")) && program.agrees("m1"); });
        QCOMPARE(program.script.run(StepMs), QString());
        QVERIFY(removeMacro(QStringLiteral("Burst")));
    }

    // The name of the node is the same, whatever has it now.
    void itsNodeComesBackAsAnotherModel()
    {
        Program program((std::string(Family) + "mouse m3 cid 18 mid 8\n"
                                               "receiver r3 class 4k mouse m3\n")
                            .c_str());
        const FlashDataMap before = program.bus.record("m3");
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        edit(program, "Button500HZ", 2);
        program.script.step("another model", always, [&] {
            const std::string node = usbnodes::nodeOf("r1");
            emulator::Emulator &emulated = program.bus.emulated;
            // The page learns of neither before both are done.
            QCOMPARE(emulated.order("unplug r1"), std::string("ok\n"));
            QVERIFY(usbnodes::settle(emulated.interfaces()));
            QCOMPARE(emulated.order("plug r3"), std::string("ok\n"));
            QVERIFY(usbnodes::settle(emulated.interfaces()));
            QCOMPARE(usbnodes::nodeOf("r3"), node);
        });
        program.expect("back at two tiles", [] {
            return onSelectionPage(2) && windows::visible(Program::tile(QStringLiteral("r3")));
        });
        program.expect("the other model's tile", [] {
            const std::vector<DeviceAllInfo> devices = windows::attached();
            return std::any_of(devices.begin(), devices.end(),
                               [](const DeviceAllInfo &device) { return device.Mid == 8; });
        });
        program.script.step("nothing written", always, [&] {
            QVERIFY(sameBytes(program.bus.record("m3"), before));
            QCOMPARE(program.bus.emulated.reportCount("r3", wire::Command::FlashWrite), uint64_t(0));
        });
        program.open(QStringLiteral("r3"));
        program.expect("record and flash agree", [&] { return program.agrees("m3"); });
        QCOMPARE(program.script.run(StepMs), QString());
    }

    // As in a sleep of the machine's: the cable stays in, the device goes and comes.
    void awayAndBackWithoutBeingPulled()
    {
        Program program;
        std::filesystem::path authorized;
        const auto authorize = [&](const char *state) {
            program.script.step(state, always,
                                [&, state] { std::ofstream(authorized) << state << std::flush; });
        };
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        edit(program, "Button500HZ", 2);
        program.script.step("its folder", always,
                            [&] { authorized = usbnodes::folderOf("r1") / "authorized"; });
        authorize("0");
        program.expect("back at the tile that is left", [] { return onSelectionPage(1); });
        authorize("1");
        program.expect("two tiles", [] { return onSelectionPage(2); });
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.expect("what was set", [] { return windows::isChecked(QStringLiteral("Button500HZ")); });
        edit(program, "Button1000HZ", 1);
        QCOMPARE(program.script.run(StepMs), QString());
    }
};

int main(int argc, char **argv) { return runProgramTest<machine_program>(argc, argv); }

#include "machine_program.moc"
