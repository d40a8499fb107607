// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the real windows do to a whole emulated mouse: factory reset, import of an image file, the kept
// image; and what the user is told when the mouse is lost meanwhile.
#include "device/ImageCache.h"
#include "device/ImageFile.h"
#include "device/WriteFamily.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "tests/e2e/Program.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QDataStream>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

// Two mice of one model, the second one off line.
const char Twins[] = "mouse m1 cid 18 mid 6 version 1.05\n"
                     "receiver r1 class 1k mouse m1 version 1.02 address a10001\n"
                     "mouse m3 cid 18 mid 6 version 1.05\n"
                     "receiver r3 class 1k mouse m3 version 1.02 address a10003\n"
                     "radio m3 off\nplug r1\n";

const QString CacheOfM1 = QStringLiteral("Device_CID12_MID06.bin");

// The rate in a kept image; -1 without one.
int keptRate(const QString &name)
{
    FlashDataMap kept{};
    return ImageCacheRead(name, &kept) ? int(kept.ReportRate) : -1;
}

bool sameFlash(const FlashImage &a, const FlashImage &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

KeySequence someSequence()
{
    KeySequence sequence{};
    sequence.Count.set(2);
    sequence.Events[1].DelayMs.set(10);
    return sequence;
}

} // namespace

class tst_operations : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder;

    QString imageFile(const QByteArray &marker, const QByteArray &sensor, const FlashDataMap &map)
    {
        const QString path = folder.filePath(QStringLiteral("image.bin"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("%s", qPrintable(path));
        QDataStream out(&file);
        out.writeBytes(marker.constData(), uint(marker.size() + 1));
        out.writeBytes(sensor.constData(), uint(sensor.size() + 1));
        out.writeBytes(reinterpret_cast<const char *>(&map), sizeof map);
        return path;
    }
    static void chooseFile(const QString &path)
    {
        auto *const dialog = windows::shown<QFileDialog>();
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    }

private slots:
    void init()
    {
        QDir(dataRoot() + QStringLiteral("/Device_Info")).removeRecursively();
        makeDataFolders();
    }

    // ---- Factory reset

    void aResetEndsAtFactoryValues()
    {
        Program program;
        Watchdog watchdog;
        const FlashImage factory = program.bus.flash("m1");
        program.order("color r1 3");
        program.open(QStringLiteral("r1"));
        program.expect("first image kept", [] { return keptRate(CacheOfM1) == 1; });
        const auto edit = [] {
            SetReportRate(8) && SetDpiColor(2, 9, 9, 9) && SetKeySequence(5, {5, 0, 0}, someSequence());
        };
        program.actUntil("edits", "m1", edit, [&] {
            const FlashDataMap flash = program.bus.record("m1");
            return flash.ReportRate == 8 && flash.DpiStages[2].Red == 9 && flash.KeyBindings[5].Class == 5;
        });
        program.clickUntil("Reset", "m1", isShown<ContainReset>);
        program.script.step("confirm", always, [] { answer<ContainReset>("OK"); });
        program.expect("wait over a quiet watch", [] {
            return isShown<UpDataParam>() && SettingsBusy && !Worker::instance()->checkTimer().isActive();
        });
        program.expect("end of the wait", isGone<UpDataParam>);
        program.expect("factory values", [&] { return sameFlash(program.bus.flash("m1"), factory); });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        program.expect("no notice", [] { return isGone<MouseOffLine>() && quietState(); });
        program.click("SensorButton");
        program.expect("1000 Hz", [] { return windows::isChecked(QStringLiteral("Button1000HZ")); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(SensorPageLoaded && LightPageLoaded && ButtonPageLoaded);
        QCOMPARE(int(program.bus.emulated.mouse("m1")->batteryOptimize), 1);
        QCOMPARE(int(program.bus.emulated.receiver("r1")->color.Scheme), 1); // the catalogue's default
        QCOMPARE(keptRate(CacheOfM1), 1); // not written by the edits or the reset
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    void aResetThatIsNotConfirmedLeavesAll_data()
    {
        QTest::addColumn<QString>("button");
        QTest::newRow("no") << QStringLiteral("Cancel");
        QTest::newRow("closed") << QStringLiteral("CloseButton");
    }
    void aResetThatIsNotConfirmedLeavesAll()
    {
        QFETCH(QString, button);
        const QByteArray name = button.toLatin1();
        Program program;
        program.open(QStringLiteral("r1"));
        program.actUntil(
            "edit", "m1", [] { SetReportRate(8); }, [&] { return program.bus.flash("m1").ReportRate == 8; });
        program.clickUntil("Reset", "m1", isShown<ContainReset>);
        program.script.step("answer", always, [name] { answer<ContainReset>(name.constData()); });
        program.expect("as before", [] {
            return isGone<ContainReset>() && isGone<UpDataParam>() && quietState() && !WorkerArmed;
        });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(program.bus.flash("m1").ReportRate), 8);
        QCOMPARE(int(program.bus.emulated.mouse("m1")->batteryOptimize), 1);
        QCOMPARE(int(program.bus.emulated.reportCount("r1", wire::Command::ClearSettings)), 0);
    }

    // Slot 3 of the second model is kept; what the mouse holds in front of it is cleared, the rest stays.
    void aResetClearsUpToTheKeptSlot()
    {
        Program program;
        program.open(QStringLiteral("r2"));
        program.clickUntil("Reset", "m2", isShown<ContainReset>);
        // The long range is the last thing to go back before the read is ordered: the mouse is given contents
        // of its own in that call.
        QObject reset;
        const auto fillSlots = [&program, filled = false]() mutable {
            if (std::exchange(filled, true))
                return;
            for (const std::size_t slot : {2, 3, 15})
                program.bus.order(
                    "set m2 flash " +
                    std::to_string(offsetof(FlashImage, MacroBlocks) + slot * sizeof(FlashMacro)) +
                    " 02 41 42");
        };
        program.script.step("confirm", always, [&] {
            QObject::connect(PostMsg::instance(), &PostMsg::SigLongRangeMode, &reset, fillSlots,
                             Qt::DirectConnection);
            answer<ContainReset>("OK");
        });
        program.expect("end of the wait", [] { return isGone<UpDataParam>() && !SettingsBusy; });
        program.expect("cleared", [&] { return program.bus.flash("m2").MacroBlocks[2].NameLength == 0; });
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(program.bus.flash("m2").MacroBlocks[3].NameLength), 2);
        QCOMPARE(int(program.bus.flash("m2").MacroBlocks[15].NameLength), 2);
    }

    void aResetNeedsTheMouse()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        program.order("radio m1 off");
        program.click("Reset");
        program.expect("notice", [] { return shows<MouseOffLine>(infoText("DialogOffline")); });
        program.expect("no question", [] { return isGone<ContainReset>() && !SettingsBusy; });
        program.order("radio m1 on");
        program.expect("notice gone", isGone<MouseOffLine>);
        program.waitForLoad();
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(program.bus.emulated.reportCount("r1", wire::Command::ClearSettings)), 0);
    }

    void aMouseThatGoesAtTheQuestionBringsTheNotice()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        program.actUntil(
            "edit", "m1", [] { SetReportRate(8); }, [&] { return program.bus.flash("m1").ReportRate == 8; });
        program.clickUntil("Reset", "m1", isShown<ContainReset>);
        program.order("radio m1 off");
        program.script.step("confirm", always, [] { answer<ContainReset>("OK"); });
        program.expect("wait", isShown<UpDataParam>);
        program.expect("notice", [] { return shows<MouseOffLine>(infoText("DialogOffline")); });
        program.expect("watch again",
                       [] { return !SettingsBusy && Worker::instance()->checkTimer().isActive(); });
        program.script.step("mouse as it was", always,
                            [&] { QCOMPARE(int(program.bus.flash("m1").ReportRate), 8); });
        program.order("radio m1 on");
        program.expect("notice gone", isGone<MouseOffLine>);
        program.expect("record and flash agree",
                       [&] { return program.agrees("m1") && isGone<UpDataParam>(); });
        QCOMPARE(program.script.run(), QString());
    }

    // ---- Import

    void anImportReachesTheFlash()
    {
        Program program;
        Watchdog watchdog;
        FlashDataMap image{};
        program.open(QStringLiteral("r1"));
        program.script.step("file", always, [&] {
            image = program.bus.record("m1");
            image.ReportRate = 4;
            image.DpiStageCount = 6; // all that the model has
            image.KeyBindings[15] = {5, 0, 0};
            image.KeySequences[15] = someSequence();
            image.MacroBlocks[15].NameLength = 3;
            imageFile("Taigri", "3395", image);
        });
        program.clickUntil("ImportData", "m1", [] {
            auto *const dialog = windows::shown<QFileDialog>();
            return dialog && dialog->windowTitle() == QLatin1String("SelectFile") &&
                   dialog->nameFilters() == QStringList{QStringLiteral("File(*.bin)")} && SettingsBusy;
        });
        program.script.step("choose", always,
                            [&] { chooseFile(folder.filePath(QStringLiteral("image.bin"))); });
        program.expect("wait", [] { return isShown<UpDataParam>() && SettingsBusy; });
        program.expect("end of the wait", [] { return isGone<UpDataParam>() && !SettingsBusy; });
        program.expect("flash", [&] { return sameBytes(program.bus.record("m1"), image); });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        program.click("SensorButton");
        program.expect("page", [] { return windows::isChecked(QStringLiteral("Button250HZ")); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(ImportResult), int(ImageAccepted));
        QCOMPARE(keptRate(CacheOfM1), 1); // an import is no leave
        QVERIFY(!watchdog.barked());
    }

    void anImportThatDoesNotFitLeavesTheFlash_data()
    {
        QTest::addColumn<QByteArray>("marker");
        QTest::addColumn<QByteArray>("sensor");
        QTest::addColumn<int>("stages");
        QTest::addColumn<int>("result");
        QTest::addColumn<QByteArray>("textKey");
        QTest::newRow("no image file")
            << QByteArray("Tigris") << QByteArray("3395") << 6 << 1 << QByteArray("DialogConfigError");
        QTest::newRow("other sensor")
            << QByteArray("Taigri") << QByteArray("3950") << 6 << 2 << QByteArray("DialogEConfigMismatch");
        QTest::newRow("too many stages")
            << QByteArray("Taigri") << QByteArray("3395") << 7 << 2 << QByteArray("DialogEConfigMismatch");
    }
    void anImportThatDoesNotFitLeavesTheFlash()
    {
        QFETCH(QByteArray, marker);
        QFETCH(QByteArray, sensor);
        QFETCH(int, stages);
        QFETCH(int, result);
        QFETCH(QByteArray, textKey);
        Program program;
        const FlashImage before = program.bus.flash("m1");
        FlashDataMap image = program.bus.record("m1");
        image.ReportRate = 4;
        image.DpiStageCount = uint8_t(stages);
        const QString path = imageFile(marker, sensor, image);
        uint64_t writes = 0;
        program.open(QStringLiteral("r1"));
        program.script.step("count", always, [&] {
            writes = program.bus.emulated.reportCount("r1", wire::Command::FlashWrite);
        });
        program.click("ImportData");
        program.script.step("choose", isShown<QFileDialog>, [path] { chooseFile(path); });
        program.expect("refusal", [textKey] { return shows<InportFail>(keyText(textKey.constData())); });
        program.expect("busy until it is answered", [] { return SettingsBusy.load(); });
        program.script.step("answer", always, [] { answer<InportFail>("NewHong"); });
        program.expect("end", [] { return isGone<UpDataParam>() && isGone<InportFail>() && !SettingsBusy; });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(ImportResult), result);
        QVERIFY(sameFlash(program.bus.flash("m1"), before));
        QVERIFY(program.agrees("m1"));
        QCOMPARE(program.bus.emulated.reportCount("r1", wire::Command::FlashWrite), writes);
    }

    void anImportWithoutAFileOrAMouseIsNone()
    {
        Program program;
        const FlashImage before = program.bus.flash("m1");
        program.open(QStringLiteral("r1"));
        program.click("ImportData");
        program.script.step("dismiss", isShown<QFileDialog>, [] { windows::shown<QFileDialog>()->reject(); });
        program.expect("nothing",
                       [] { return isGone<UpDataParam>() && isGone<QFileDialog>() && !SettingsBusy; });
        program.order("radio m1 off");
        program.click("ImportData");
        program.expect("notice", [] { return shows<MouseOffLine>(infoText("DialogOffline")); });
        program.expect("no file dialog", [] { return isGone<QFileDialog>() && !SettingsBusy; });
        program.script.step("answer", always, [] { answer<MouseOffLine>("NewHong"); });
        program.expect("answered", isGone<MouseOffLine>);
        QCOMPARE(program.script.run(), QString());
        QVERIFY(AwaitingMouse); // the answered notice does not end the state
        QVERIFY(sameFlash(program.bus.flash("m1"), before));
    }

    // ---- The kept image

    void theImageIsThatOfTheLastLeave()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        program.expect("first load", [] { return keptRate(CacheOfM1) == 1; });
        program.actUntil(
            "edit", "m1", [] { SetReportRate(4); }, [&] { return program.bus.flash("m1").ReportRate == 4; });
        program.expect("not at the edit", [] { return keptRate(CacheOfM1) == 1; });
        program.click("UpArrow");
        program.expect("at the leave", [] { return keptRate(CacheOfM1) == 4; });
        program.expect("tiles", [] { return windows::visible(windows::tileOf(QStringLiteral("r1"))); });
        program.order("set m1 flash 0 02");
        program.open(QStringLiteral("r1"));
        program.expect("not at a later load",
                       [] { return DeviceRecord::copy().ReportRate == 2 && keptRate(CacheOfM1) == 4; });
        program.click("CloseButton");
        program.expect("at the end", [] { return keptRate(CacheOfM1) == 2; });
        QCOMPARE(program.script.run(), QString());
    }

    void anotherMouseOfTheModelShowsTheSameImage()
    {
        Program program(Twins);
        program.open(QStringLiteral("r1"));
        program.actUntil(
            "edit", "m1", [] { SetReportRate(4); }, [&] { return program.bus.flash("m1").ReportRate == 4; });
        program.click("UpArrow");
        program.expect("tiles", [] { return windows::visible(windows::tileOf(QStringLiteral("r1"))); });
        program.order("unplug r1");
        program.order("plug r3");
        program.script.step(
            "tile of the other", [] { return windows::visible(windows::tileOf(QStringLiteral("r3"))); },
            [] { windows::click(windows::tileOf(QStringLiteral("r3"))); });
        program.expect("awaiting", [] { return AwaitingMouse.load(); });
        program.click("SensorButton");
        program.expect("the first one's rate",
                       [] { return windows::isChecked(QStringLiteral("Button250HZ")); });
        program.order("radio m3 on");
        program.expect("its own once it has been read",
                       [] { return windows::isChecked(QStringLiteral("Button1000HZ")); });
        QCOMPARE(program.script.run(), QString());
    }
};

TEST_CLASS(tst_operations, ProgramSetUp)
#include "tst_operations.moc"
