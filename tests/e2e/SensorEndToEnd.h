// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SensorEndToEnd: the program on one emulated mouse of a model and a link, led to its sensor page; and what
// the page ought to show of a record. Made anew for each test function.
#pragma once

#include "catalogue/DpiCodes.h"
#include "hub/PostMsg.h"
#include "presentation/LossWatch.h"
#include "presentation/Widgets.h"
#include "sensor/PerformanceTimes.h"
#include "sensor/Sensor.h"
#include "sensor/SensorDPI.h"
#include "sensor/SensorRate.h"
#include "tests/e2e/Program.h"
#include "tests/e2e/ProgramSettled.h"
#include "tests/support/StageNames.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

struct SensorLink {
    const char *name;
    int kind;
    const char *device; // what is plugged
};
constexpr SensorLink SensorLinks[] = {
    {"cable", 3, nullptr}, {"oldcable", 2, nullptr}, {"1k", 0, "1k"},
    {"2k", 4, "2k"},       {"4k", 1, "4k"},          {"8k", 5, "8k"},
};
// The models of the catalogue, and what their mice come with.
struct SensorModel {
    int mid;
    const char *flash;
};
constexpr SensorModel SensorModels[] = {
    {6, "set m flash 0x01 06\n"},
    {7, "set m flash 0x01 08\n"},
    {8, "set m flash 0x01 05\nset m flash 0x1c 0a 0a 00 00 ff 99  13 13 00 00 80 ff  1d 1d 00 ff 00 80  "
        "26 26 00 ff ff 00  39 39 00 ff ff ff\n"},
    {9, "set m flash 0x01 04\n"},
};

constexpr int LargestStep = 200; // DPI, of any model

// The places in the record where the two differ, with both values.
inline QString difference(const FlashDataMap &is, const FlashDataMap &wanted)
{
    const auto *a = reinterpret_cast<const uint8_t *>(&is);
    const auto *b = reinterpret_cast<const uint8_t *>(&wanted);
    QStringList found;
    for (std::size_t i = 0; i < sizeof is && found.size() < 8; ++i)
        if (a[i] != b[i])
            found << QStringLiteral("byte %1 is %2, not %3").arg(i).arg(a[i]).arg(b[i]);
    return found.join(QStringLiteral("; "));
}

class SensorEndToEnd
{
public:
    using Act = std::function<void()>;
    using Change = std::function<void(FlashDataMap &)>;

    SensorEndToEnd(const SensorModel &model, const SensorLink &deviceLink)
        : link(deviceLink), program(scenario(model, deviceLink).constData())
    {
    }

    QString open()
    {
        program.open(plug());
        program.click("SensorButton");
        program.expect("sensor page", [this] { return page() && page()->isVisible(); });
        return program.script.run();
    }

    QString plug() const { return link.device ? QStringLiteral("r") : QStringLiteral("m"); }
    FlashDataMap flash() { return program.bus.record("m"); }
    // Without those that come again under the same number, which the layer sends when an answer is late, as
    // it may be on a busy machine. A second edit has a number of its own and counts.
    uint64_t writes()
    {
        return program.bus.emulated.requestCount(link.device ? "r" : "m", wire::Command::FlashWrite);
    }

    // How often the layer has asked again, the question whether the mouse is there and the write taken
    // together.
    uint64_t repeats()
    {
        uint64_t count = 0;
        for (const wire::Command command : {wire::Command::OnLine, wire::Command::FlashWrite})
            count += program.bus.emulated.reportCount(plug().toStdString(), command) -
                     program.bus.emulated.requestCount(plug().toStdString(), command);
        return count;
    }

    Sensor *page() const { return program.window->findChild<Sensor *>(); }
    template <typename Widget = QWidget> Widget *find(const char *name) const
    {
        return page()->findChild<Widget *>(QLatin1String(name));
    }
    QSlider *slider() const { return find<QSlider>("horizontalSliderC"); }
    QToolButton *rate(int index) const { return page()->findChild<SensorRate *>()->button(index); }
    QAbstractButton *stage(int index) const
    {
        return find<QAbstractButton>((name(index) + "Button").constData());
    }
    QAbstractButton *bar(int index) const
    {
        return find<QAbstractButton>((name(index) + "ButtonA").constData());
    }

    // Acts as the user and waits for the flash; the empty text when exactly `change` has come of it, by no
    // more than that many reports. What a mouse does not answer in time, as on a busy machine, is refused;
    // when it has been read anew, the user acts again.
    QString edit(const Act &act, const Change &change, uint64_t reports = 1)
    {
        FlashDataMap wanted = flash();
        change(wanted);
        const auto arrived = [&] { return sameBytes(flash(), wanted); };
        const bool changes = !arrived();
        uint64_t before = 0;
        uint64_t repeatsBefore = 0;
        bool isRefused = true;
        for (int tries = 0; tries < Tries && isRefused; ++tries) {
            const LossWatch watch;
            before = writes();
            repeatsBefore = repeats();
            act();
            const auto isSettled = [this] { return isRested() && program.agrees("m"); };
            isRefused = watch.isLost() && QTest::qWaitFor(isSettled, LongWait) && !arrived();
        }
        if (!QTest::qWaitFor(arrived, LongWait))
            return QStringLiteral("flash: ") + difference(flash(), wanted);
        if (!program.agrees("m"))
            return QStringLiteral("record: ") + difference(DeviceRecord::copy(), wanted);
        const uint64_t sent = writes() - before;
        // A write whose tries all went unanswered is made anew, under a number of its own.
        const bool isFew = sent <= (changes ? reports : 0) || repeats() > repeatsBefore;
        return isFew ? QString() : QStringLiteral("%1 writes").arg(sent);
    }
    // The device has spoken: record, flash and page come to say the same. The empty text when they do.
    QString settle()
    {
        const ProgramSettled settled(program.bus, "m");
        if (!QTest::qWaitFor([&settled] { return bool(settled); }, LongWait))
            return QStringLiteral("the program does not show the battery");

        const auto agreed = [this] { return program.agrees("m") && shown(flash()).isEmpty(); };
        if (QTest::qWaitFor(agreed, LongWait))
            return QString();
        return difference(DeviceRecord::copy(), flash()) + QStringLiteral(" | ") + shown(flash());
    }

    static constexpr int Tries = 5;
    static constexpr int LongWait = 60000; // milliseconds, for what comes at once

    // The empty text when the page shows the record; else what it shows in another way.
    QString shown(const FlashDataMap &record) const;

    SensorLink link;
    Program program;

private:
    static QByteArray name(int stage) { return StageNames[stage]; }
    static QByteArray scenario(const SensorModel &model, const SensorLink &link)
    {
        QByteArray text = "mouse m cid 18 mid " + QByteArray::number(model.mid) + " version 1.05";
        if (!link.device)
            text += " kind " + QByteArray::number(link.kind);
        else
            text += "\nreceiver r version 1.02 mouse m class " + QByteArray(link.device);
        return text + '\n' + model.flash + (link.device ? "plug r\n" : "plug m\n");
    }
};

inline QString SensorEndToEnd::shown(const FlashDataMap &record) const
{
    QStringList wrong;
    const auto check = [&wrong](const char *what, int is, int wanted) {
        if (is != wanted)
            wrong << QStringLiteral("%1 is %2, not %3").arg(QLatin1String(what)).arg(is).arg(wanted);
    };
    for (const RateRow &row : RateRows)
        check("rate", rate(int(&row - RateRows.data()))->isChecked(), row.code == record.ReportRate);
    const auto *count = find<QComboBox>("ChooseEvent");
    check("count", count->currentIndex(), record.DpiStageCount - 1);
    for (int i = 0; i < count->count(); ++i) {
        const DpiStage &entry = record.DpiStages[i];
        check("stage", stage(i)->isChecked(), i == record.CurrentDpiStage);
        check("bar", bar(i)->isChecked(), i == record.CurrentDpiStage);
        check("stage is there", !stage(i)->isHidden(), i < record.DpiStageCount);
        check("number", stage(i)->text().toInt(), SensorDpiDecode(entry.LevelX, entry.LevelFlags));
        const QString color = QStringLiteral("%1,%2,%3").arg(entry.Red).arg(entry.Green).arg(entry.Blue);
        if (bar(i)->accessibleDescription() != color)
            wrong << bar(i)->accessibleDescription() + QStringLiteral(", not ") + color;
    }
    const int dpi = stage(record.CurrentDpiStage % DpiStageLimit)->text().toInt();
    // The pointer may rest between two values; what counts is the one that it stands for.
    const int aside = slider()->value() - qBound(slider()->minimum(), dpi, slider()->maximum());
    check("slider", qAbs(aside) < LargestStep, true);
    check("spin box", find<QSpinBox>("spinBoxA")->value(), qMax(50, dpi));
    check("performance", find<QCheckBox>("Performance")->isChecked(), record.Performance);
    check("time", find<QComboBox>("PerformanceOpen")->currentIndex(),
          performanceIndexOf(record.PerformanceOpen));
    check("ripple", find<QAbstractButton>("RippeControl_2")->isChecked(), record.RippeControl);
    check("snapping", find<QAbstractButton>("StraightLine_2")->isChecked(), record.StraightLine);
    check("sync", find<QAbstractButton>("MotionSync_2")->isChecked(), record.MotionSync);
    const auto *lod = find<QComboBox>("LOD");
    check("lift-off", lod->currentIndex(),
          lod->count() == 3 ? record.LiftOffDistance % 3 : record.LiftOffDistance - 1);
    const auto *mode = find<QComboBox>("ModelChoose");
    if (mode->isEnabled())
        check("mode", mode->currentIndex(), record.ModelChoose);
    return wrong.join(QStringLiteral("; "));
}
