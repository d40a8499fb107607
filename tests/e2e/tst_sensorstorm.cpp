// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The sensor page when much happens at once: a storm of the mouse's own buttons, and a random mixture of ten
// thousand edits and presses for one model and a shorter one for another. Record, flash and page come to say
// the same.
#include "tests/e2e/SensorEndToEnd.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <random>

namespace
{

const SensorLink &fastLink() { return SensorLinks[5]; }

// Draws what a person or the mouse does next. The same seed does the same again.
class Hand
{
public:
    Hand(SensorEndToEnd &sensorEndToEnd, unsigned seed) : scene(sensorEndToEnd), random(seed)
    {
        const auto *page = scene.page();
        for (QAbstractButton *button : page->findChildren<QAbstractButton *>())
            if (button->focusPolicy() != Qt::NoFocus &&
                !button->objectName().endsWith(QLatin1String("ButtonA")))
                buttons.push_back(button);
        for (const char *name : {"ModelChoose", "PerformanceOpen", "LOD", "ChooseEvent"})
            boxes.push_back(scene.find<QComboBox>(name));
    }

    void act()
    {
        switch (draw(10)) {
        case 0:
            scene.program.bus.order("press m dpi");
            return;
        case 1:
            scene.program.bus.order("press m rate");
            return;
        case 2:
            return setColor();
        case 3:
        case 4:
            return chooseItem();
        case 5:
        case 6:
            scene.slider()->setValue(scene.slider()->minimum() +
                                     draw(scene.slider()->maximum() - scene.slider()->minimum() + 1));
            return;
        default:
            return clickButton();
        }
    }

private:
    int draw(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }
    void setColor()
    {
        const QColor color(draw(256), draw(256), draw(256));
        scene.page()->findChild<SensorDPI *>()->SetColor(color);
    }
    void chooseItem()
    {
        QComboBox *const box = boxes[std::size_t(draw(int(boxes.size())))];
        const int index = draw(box->count());
        const bool offered = box->model()->index(index, 0).flags() & Qt::ItemIsEnabled;
        if (box->isEnabled() && offered)
            box->setCurrentIndex(index);
    }
    void clickButton()
    {
        QAbstractButton *const button = buttons[std::size_t(draw(int(buttons.size())))];
        if (button->isVisible() && button->isEnabled())
            button->click();
    }

    SensorEndToEnd &scene;
    std::mt19937 random;
    std::vector<QAbstractButton *> buttons;
    std::vector<QComboBox *> boxes;
};

} // namespace

class tst_sensorstorm : public QObject
{
    Q_OBJECT

private slots:
    void aStormOfButtonsLeavesAllEqual_data()
    {
        QTest::addColumn<int>("model");
        for (int model = 0; model < int(std::size(SensorModels)); ++model)
            QTest::addRow("%d", SensorModels[model].mid) << model;
    }
    void aStormOfButtonsLeavesAllEqual()
    {
        QFETCH(int, model);
        SensorEndToEnd scene(SensorModels[model], fastLink());
        Watchdog watchdog;
        QCOMPARE(scene.open(), QString());
        const uint64_t writes = scene.writes();
        for (int i = 0; i < 100; ++i)
            scene.program.bus.order(i % 2 == 0 ? "press m dpi" : "press m rate");
        QCOMPARE(scene.settle(), QString());
        QCOMPARE(int(scene.flash().CurrentDpiStage), (1 + 50) % scene.flash().DpiStageCount);
        QCOMPARE(int(scene.flash().ReportRate), 2000 / 125); // 50 rates on from 1000 Hz, of seven
        QCOMPARE(scene.writes(), writes);
        QVERIFY(!watchdog.barked());
    }

    void aLongMixtureLeavesAllEqual_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("steps");
        QTest::newRow("7") << 1 << 10000;
        QTest::newRow("8") << 2 << 1000;
    }
    void aLongMixtureLeavesAllEqual()
    {
        QFETCH(int, model);
        QFETCH(int, steps);
        SensorEndToEnd scene(SensorModels[model], fastLink());
        QCOMPARE(scene.open(), QString());
        QCOMPARE(scene.settle(), QString());
        const uint64_t repeats = scene.repeats();
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        Hand hand(scene, unsigned(model));
        int changes = 0;
        for (int step = 1; step <= steps; ++step) {
            const FlashDataMap before = DeviceRecord::copy();
            const FlashDataMap flashBefore = scene.flash();
            hand.act();
            changes += !sameBytes(DeviceRecord::copy(), before) || !sameBytes(scene.flash(), flashBefore);
            QCoreApplication::processEvents();
            if (step % 250 == 0) {
                const QString wrong = scene.settle();
                QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("step %1: %2").arg(step).arg(wrong)));
            }
        }
        QCOMPARE(scene.settle(), QString());
        // A mouse whose answers come too late on a busy machine counts as away.
        QVERIFY(notice.isEmpty() || scene.repeats() > repeats);
        QVERIFY2(changes > steps / 2, qPrintable(QString::number(changes)));
    }
};

TEST_CLASS(tst_sensorstorm, ProgramSetUp)
#include "tst_sensorstorm.moc"
