// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The real sensor page of every model, on the cable and behind every class of receiver: its gates, what each
// control does to the mouse's flash, what the mouse's own buttons do to the page, and the way back when the
// mouse does not answer.
#include "sensor/MarkerTrack.h"
#include "tests/e2e/SensorEndToEnd.h"
#include "tests/support/TestMain.h"

#include <QColorDialog>

namespace
{

// A DPI value of a model and what its stage holds then.
struct DpiRow {
    int dpi;
    uint8_t code, flags;
};
struct ModelRow {
    bool mode, lod, ripple, snapping, sync, settings;
    int heights, stages;
    DpiRow first, next, last; // `next` is a step above `first`, `last` the largest one
};
// By the model.
constexpr ModelRow ModelRows[] = {
    {true, true, true, true, true, true, 2, 6, {1000, 19, 0}, {1050, 20, 0}, {26000, 0x07, 0x88}},
    {true, true, true, true, true, true, 3, 8, {1000, 19, 0}, {1050, 20, 0}, {42000, 0xA3, 0x66}},
    {false, true, false, true, false, true, 2, 5, {1000, 0x18, 0}, {1100, 0x1A, 0}, {12000, 0x8F, 0x11}},
    {false, false, false, false, false, false, 2, 4, {1000, 19, 0}, {1100, 21, 0}, {10000, 199, 0}},
};

// How many of the three fast rates a link can carry.
int fastRates(int kind) { return kind == 3 || kind == 5 ? 3 : kind == 1 ? 2 : kind == 4 ? 1 : 0; }

// Answers each off-line notice and counts them.
class NoticeAnswer
{
public:
    NoticeAnswer()
    {
        QObject::connect(PostMsg::instance(), &PostMsg::SigMouseOffLineo, &timer, [this] { ++count; });
        QObject::connect(&timer, &QTimer::timeout, &timer, [] { answer<MouseOffLine>("NewHong"); });
        timer.start(5);
    }
    int taken() { return std::exchange(count, 0); }

private:
    QTimer timer;
    int count = 0;
};

struct Edit {
    QString name;
    SensorEndToEnd::Act act;
    SensorEndToEnd::Change change;
    uint64_t reports = 1;
};

// What a user can do on the page. It outlives the edits.
class Edits
{
public:
    Edits(SensorEndToEnd &sensorEndToEnd, const ModelRow &modelRow) : scene(sensorEndToEnd), model(modelRow)
    {
    }

    std::vector<Edit> all()
    {
        if (model.mode && scene.find("ModelChoose")->isEnabled())
            addBox("ModelChoose", &FlashDataMap::ModelChoose, {1, 0});
        if (model.settings)
            addSettings();
        addSwitch("RippeControl_2", model.ripple, &FlashDataMap::RippeControl);
        addSwitch("StraightLine_2", model.snapping, &FlashDataMap::StraightLine);
        addSwitch("MotionSync_2", model.sync, &FlashDataMap::MotionSync);
        addStages();
        for (int i = 0; i < 4 + fastRates(scene.link.kind); ++i)
            addClick(scene.rate(i), &FlashDataMap::ReportRate, RateRows[std::size_t(i)].code);
        addClick(scene.rate(Rate1000), &FlashDataMap::ReportRate, 1);
        return edits;
    }

private:
    using Field = uint8_t FlashDataMap::*;

    void add(const QString &name, SensorEndToEnd::Act act, SensorEndToEnd::Change change,
             uint64_t reports = 1)
    {
        edits.push_back({name, std::move(act), std::move(change), reports});
    }
    void addClick(QAbstractButton *button, Field field, int value)
    {
        add(
            button->objectName(),
            [button] { QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(9, button->height() / 2)); },
            [=](FlashDataMap &map) { map.*field = uint8_t(value); });
    }
    void addSwitch(const char *name, bool there, Field field)
    {
        auto *const button = scene.find<QAbstractButton>(name);
        const int before = button->isChecked();
        for (int i = 1; there && i <= 2; ++i)
            addClick(button, field, (before + i) % 2);
    }
    // One row for each index, in order; `values` are the bytes.
    void addBox(const char *name, Field field, const std::vector<int> &values)
    {
        auto *const box = scene.find<QComboBox>(name);
        const bool fromLast = name == QByteArray("ModelChoose");
        for (int i = 0; i < int(values.size()); ++i)
            add(
                QLatin1String(name) + QString::number(i),
                [=] { box->setCurrentIndex(fromLast ? int(values.size()) - 1 - i : i); },
                [=, value = values[std::size_t(i)]](FlashDataMap &map) { map.*field = uint8_t(value); });
    }
    void addSettings()
    {
        if (model.heights == 3)
            addBox("LOD", &FlashDataMap::LiftOffDistance, {3, 1, 2});
        else
            addBox("LOD", &FlashDataMap::LiftOffDistance, {1, 2});
        addClick(scene.find<QAbstractButton>("Performance"), &FlashDataMap::Performance, 1);
        addBox("PerformanceOpen", &FlashDataMap::PerformanceOpen, {1, 3, 6, 12, 18, 30, 60, 90});
        addClick(scene.find<QAbstractButton>("Performance"), &FlashDataMap::Performance, 0);
    }
    void addStages()
    {
        for (int i = 0; i < scene.flash().DpiStageCount; ++i)
            addClick(scene.stage(i), &FlashDataMap::CurrentDpiStage, i);
        addClick(scene.stage(0), &FlashDataMap::CurrentDpiStage, 0);
        for (int i = 1; i < scene.flash().DpiStageCount; ++i) {
            const MarkerBand &band = MarkerBands[std::size_t(i - 1)];
            addDrop(i, 0, (band.rightFrom + band.rightTo) / 2);
            addDrop(0, i, qMax(band.leftFrom, MarkerLeftLimit - StagePoint[std::size_t(i)].x()));
        }
        addDrop(0, 0, 140); // between two bands
        addValue("slider", model.first, [this] { moveSlider(model.first.dpi); });
        addValue("add", model.next, [this] { scene.find<QAbstractButton>("AddLevelA")->click(); });
        addValue("reduce", model.first, [this] { scene.find<QAbstractButton>("ReduceLevelA")->click(); });
        addValue("largest", model.last, [this] { moveSlider(model.last.dpi); });
        for (int count = 1; count <= model.stages; ++count)
            add(
                QStringLiteral("count %1").arg(count),
                [=] { scene.find<QComboBox>("ChooseEvent")->setCurrentIndex(count - 1); },
                [=](FlashDataMap &map) { map.DpiStageCount = uint8_t(count); });
        add(
            QStringLiteral("color"), [this] { chooseColor(QColor(1, 22, 133)); },
            [](FlashDataMap &map) {
                map.DpiStages[0].Red = 1;
                map.DpiStages[0].Green = 22;
                map.DpiStages[0].Blue = 133;
            });
        addClick(scene.stage(model.stages - 1), &FlashDataMap::CurrentDpiStage, model.stages - 1);
        add(
            QStringLiteral("exchange"), [this] { scene.find<QComboBox>("ChooseEvent")->setCurrentIndex(1); },
            [this](FlashDataMap &map) {
                std::swap(map.DpiStages[1], map.DpiStages[model.stages - 1]);
                map.CurrentDpiStage = 1;
                map.DpiStageCount = 2;
            },
            4);
    }
    // The pointer is let go that far from the place of the marker.
    void addDrop(int stage, int from, int distance)
    {
        add(
            QStringLiteral("marker from %1 to %2").arg(from).arg(stage), [=] { drag(from, distance); },
            [=](FlashDataMap &map) { map.CurrentDpiStage = uint8_t(stage); });
    }
    void drag(int from, int distance)
    {
        auto *const panel = scene.page()->findChild<SensorDPI *>();
        const QPoint grip = StagePoint[std::size_t(from)] + QPoint(14, 14);
        const QPoint end(StagePoint[std::size_t(from)].x() + distance, grip.y());
        QWindow *const window = scene.program.window->windowHandle();
        const auto inWindow = [&](const QPoint &point) { return panel->mapTo(panel->window(), point); };
        QTest::mousePress(window, Qt::LeftButton, {}, inWindow(grip));
        QTest::mouseMove(window, inWindow((grip + end) / 2));
        QTest::mouseMove(window, inWindow(end));
        QTest::mouseRelease(window, Qt::LeftButton, {}, inWindow(end));
    }
    void addValue(const char *name, const DpiRow &row, SensorEndToEnd::Act act)
    {
        add(QLatin1String(name), std::move(act), [row](FlashDataMap &map) {
            map.DpiStages[0].LevelX = map.DpiStages[0].LevelY = row.code;
            map.DpiStages[0].LevelFlags = row.flags;
        });
    }
    // One that has gone back cannot be moved before the next load.
    void moveSlider(int dpi)
    {
        if (scene.slider()->isEnabled())
            scene.slider()->setValue(dpi);
    }
    void chooseColor(const QColor &color)
    {
        scene.bar(0)->click();
        auto *const dialog = scene.page()->findChild<QColorDialog *>();
        dialog->setCurrentColor(color);
        dialog->accept();
    }

    SensorEndToEnd &scene;
    const ModelRow &model;
    std::vector<Edit> edits;
};

} // namespace

class tst_sensorpage : public QObject
{
    Q_OBJECT

private:
    static void eachModelAndLink(bool wired)
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("link");
        for (int model = 0; model < int(std::size(ModelRows)); ++model)
            for (int link = 0; link < int(std::size(SensorLinks)); ++link)
                if (wired || SensorLinks[link].device)
                    QTest::addRow("%d-%s", SensorModels[model].mid, SensorLinks[link].name) << model << link;
    }
    static void checkGates(const SensorEndToEnd &scene, const ModelRow &model)
    {
        const auto isThere = [&scene](const char *name) { return !scene.find(name)->isHidden(); };
        QCOMPARE(isThere("ModelChoose"), model.settings);
        QCOMPARE(scene.find("ModelChoose")->isEnabled(), model.mode && !SelectedDevice::info().Usb);
        QCOMPARE(scene.find<QComboBox>("ModelChoose")->currentIndex(),
                 model.mode && SelectedDevice::info().Usb ? int(Corded) : 0);
        QCOMPARE(scene.find("LOD")->isEnabled(), model.lod);
        QCOMPARE(scene.find<QComboBox>("LOD")->count(), model.heights);
        QCOMPARE(isThere("Performance"), model.settings);
        QCOMPARE(isThere("settingsCard"), model.settings);
        QCOMPARE(isThere("RippeControl"), model.ripple);
        QCOMPARE(isThere("StraightLine"), model.snapping);
        QCOMPARE(isThere("MotionSync"), model.sync);
        QCOMPARE(scene.find<QComboBox>("ChooseEvent")->count(), model.stages);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(!scene.rate(4 + i)->isHidden(), i < fastRates(scene.link.kind));
    }
    // The page follows the mouse's own buttons and writes nothing.
    static void pressButtons(SensorEndToEnd &scene)
    {
        const uint64_t writes = scene.writes();
        for (int i = 0; i < 8; ++i)
            for (const char *button : {"press m dpi", "press m rate"}) {
                const FlashDataMap before = scene.flash();
                scene.program.bus.order(button);
                QVERIFY(!sameBytes(scene.flash(), before) || before.DpiStageCount == 1);
                QCOMPARE(scene.settle(), QString());
            }
        QCOMPARE(scene.writes(), writes);
    }
    // Without what stands in the colour dialog.
    static QStringList state(const SensorEndToEnd &scene)
    {
        const auto isOfPage = [&scene](const QWidget *widget) {
            return widget->window() == scene.page()->window();
        };
        QStringList all{QString::number(scene.slider()->value())};
        for (const QAbstractButton *button : scene.page()->findChildren<QAbstractButton *>())
            if (isOfPage(button))
                all << QStringLiteral("%1 %2").arg(button->objectName()).arg(button->isChecked());
        for (const QComboBox *box : scene.page()->findChildren<QComboBox *>())
            if (isOfPage(box))
                all << QStringLiteral("%1 %2").arg(box->objectName()).arg(box->currentIndex());
        return all;
    }

private slots:
    void everyControlWritesItsBytes_data() { eachModelAndLink(true); }
    void everyControlWritesItsBytes()
    {
        QFETCH(int, model);
        QFETCH(int, link);
        SensorEndToEnd scene(SensorModels[model], SensorLinks[link]);
        QCOMPARE(scene.open(), QString());
        QCOMPARE(scene.settle(), QString());
        checkGates(scene, ModelRows[model]);
        if (QTest::currentTestFailed())
            return;
        Edits edits(scene, ModelRows[model]);
        for (const Edit &edit : edits.all()) {
            const QString wrong = scene.edit(edit.act, edit.change, edit.reports);
            QVERIFY2(wrong.isEmpty(), qPrintable(edit.name + QStringLiteral(": ") + wrong));
            QCOMPARE(scene.shown(scene.flash()), QString());
        }
        pressButtons(scene);
    }

    void aSilentMouseTakesEveryControlBack_data() { eachModelAndLink(false); }
    void aSilentMouseTakesEveryControlBack()
    {
        QFETCH(int, model);
        QFETCH(int, link);
        SensorEndToEnd scene(SensorModels[model], SensorLinks[link]);
        QCOMPARE(scene.open(), QString());
        Edits edits(scene, ModelRows[model]);
        const std::vector<Edit> all = edits.all();
        const FlashDataMap flash = scene.flash();
        const FlashDataMap record = DeviceRecord::copy();
        scene.program.bus.order("radio m off");
        NoticeAnswer notice;
        for (const Edit &edit : all) {
            const QStringList before = state(scene);
            edit.act();
            // The notice opens from a timer that has run out already; this one stands behind it.
            bool isBehind = false;
            QTimer::singleShot(0, [&isBehind] { isBehind = true; });
            QTRY_VERIFY(isBehind && isGone<MouseOffLine>());
            const int notices = notice.taken();
            QVERIFY2(notices <= 1, qPrintable(edit.name));
            QVERIFY2(state(scene) == before, qPrintable(edit.name));
        }
        QVERIFY(sameBytes(scene.flash(), flash));
        QVERIFY(sameBytes(DeviceRecord::copy(), record));
    }
};

TEST_CLASS(tst_sensorpage, ProgramSetUp)
#include "tst_sensorpage.moc"
