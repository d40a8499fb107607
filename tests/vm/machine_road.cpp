// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The road of a device and of an edit through the real windows, worker and layer, with devices that the
// kernel takes for real ones: from the plug to the tile, to the page, to the flash, and back when the cable
// is pulled. On a display it saves pictures in the folder that OUT names. How long the main thread is silent
// says nothing on an emulated processor.
#include "tests/e2e/Program.h"

#include <QScreen>

namespace
{

constexpr int StepMs = 60000; // an emulated processor beside others' work is slow

bool onSelectionPage(std::size_t tiles)
{
    const auto *stack = windows::visible(QStringLiteral("stackedWidget"));
    return OnDevicePage == 0 && stack && AttachedDevices.size() == tiles;
}

} // namespace

class machine_road : public QObject
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
};

int main(int argc, char **argv) { return runProgramTest<machine_road>(argc, argv); }

#include "machine_road.moc"
