// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a screen reader and the keyboard alone get of the real windows. It needs a window system, and a
// session of its own with an accessibility bus.
#include "macro/store/MacroFolder.h"
#include "presentation/ColorDialog.h"
#include "presentation/FileDialog.h"
#include "service/Match.h"
#include "service/UpDateRepair.h"
#include "tests/e2e/AccessibleBus.h"
#include "tests/e2e/Program.h"
#include "tests/e2e/ProgramSettled.h"
#include "tests/support/TestMain.h"
#include "tour/EveryNotice.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QColorDialog>
#include <QComboBox>
#include <QListWidget>
#include <QSlider>
#include <QSpinBox>

namespace
{

const char *const Pages[] = {"ButtonMain",   "SensorButton", "MacroButton",
                             "LightsButton", "Advanced",     "FormSetting"};
const char *const FunctionPanels[] = {"DPI_12", "DPI_4", "DPI_9", "DPI_11", "DPI_7", "DPI_13"};

constexpr int StopsOfAPage = 30;
constexpr int SteadyLight = 3; // the mode with a color of its own

const char *const Roles[] = {"push button", "radio button", "check box", "combo box", "list",
                             "list item",   "tree item",    "slider",    "spin box",  "text"};
// Each of these is on or off by itself; what else can be checked is one of a group.
const char *const Switches[] = {"Full performance",
                                "Ripple control",
                                "Angle snapping",
                                "Motion sync",
                                "Lights off while moving",
                                "High frame rate",
                                "Long-range mode",
                                "Start at login",
                                "Shift",
                                "Ctrl",
                                "Alt",
                                "Win"};

template <std::size_t Count> bool isOneOf(const QString &text, const char *const (&all)[Count])
{
    return std::any_of(std::begin(all), std::end(all),
                       [&](const char *each) { return text == QLatin1String(each); });
}

// Empty for an object that a screen reader can tell.
QString faultOf(const HeardObject &object)
{
    if (!object.focusable)
        return {};
    // A folder has no size.
    const bool isUnchosen =
        object.role.endsWith(QLatin1String(" item")) || object.name == QLatin1String("Insert event");
    if (object.name.trimmed().isEmpty() && !isUnchosen)
        return QStringLiteral("no name");
    if (object.name == object.value && !isUnchosen)
        return QStringLiteral("named after its value");
    if (!isOneOf(object.role, Roles))
        return QStringLiteral("no role of a control");
    if (object.role == QLatin1String("check box") && !isOneOf(object.name, Switches))
        return QStringLiteral("a choice, not a switch");
    return {};
}

// Of a group with a checked member the focus may stand on that one only.
bool isRightStop(const QWidget *stop)
{
    const auto *button = qobject_cast<const QAbstractButton *>(stop);
    if (!button || button->isChecked() || (!button->group() && !button->autoExclusive()))
        return true;
    const QList<QAbstractButton *> group =
        button->group()
            ? button->group()->buttons()
            : button->parent()->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly);
    return std::none_of(group.begin(), group.end(),
                        [](const QAbstractButton *each) { return each->isChecked() && each->isVisible(); });
}

// The field of colours below this caption.
QWidget *wellOf(const char *caption)
{
    const QList<QLabel *> labels = QApplication::activeModalWidget()->findChildren<QLabel *>();
    const auto found = std::find_if(labels.begin(), labels.end(), [caption](const QLabel *label) {
        return label->text().remove(QLatin1Char('&')) == QLatin1String(caption);
    });
    return found == labels.end() ? nullptr : (*found)->buddy();
}

QColor shownColor()
{
    return qobject_cast<QColorDialog *>(QApplication::activeModalWidget())->currentColor();
}

} // namespace

class tst_accessible : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<AccessibleBus> bus_; // from before the first program, which looks for what is left behind
    QStringList faults_;
    int controls_ = 0;

    // There is no window manager to do it.
    static void activate(Program &program)
    {
        program.script.step("active", always,
                            [&program] { QApplication::setActiveWindow(program.window.get()); });
    }

    // Steps that press a key and look where the focus goes. A screen reader gets the key first, and the
    // program only then.
    template <typename Look> static void press(Program &program, Qt::Key key, const Look &look)
    {
        const auto before = std::make_shared<QWidget *>();
        program.script.step(
            "a focus", [] { return QApplication::focusWidget() != nullptr; },
            [before, key] {
                *before = QApplication::focusWidget();
                QTest::keyClick(*before, key);
            });
        program.script.step(
            "the next focus",
            [before] { return QApplication::focusWidget() && QApplication::focusWidget() != *before; },
            [look] { look(QApplication::focusWidget()); });
    }

    // A step that walks what shows; of a dialog over the window only the dialog.
    void look(Program &program, AccessibleBus &bus, const QString &what, bool dialogOnly = false)
    {
        program.script.step("walk", always, [&bus] { bus.walk(); });
        program.script.step(
            "walked", [&bus] { return bus.isDone(); },
            [this, &bus, what, dialogOnly] {
                int found = 0;
                for (const HeardObject &each : bus.heard()) {
                    if (dialogOnly && each.window == applicationName())
                        continue;
                    found += each.focusable;
                    const QString fault = faultOf(each);
                    if (!fault.isEmpty())
                        faults_ << QStringLiteral("%1: %2: %3 \"%4\" (%5)")
                                       .arg(what, fault, each.role, each.name, each.value);
                }
                if (found == 0 && what != QLatin1String("UpDataParam")) // which has nothing to press
                    faults_ << what + QStringLiteral(": no control");
                controls_ += found;
            });
    }

private slots:
    void initTestCase()
    {
        QWidget first; // with which the program joins the bus
        first.show();
        QIcon::fromTheme(QStringLiteral("folder")).pixmap(16); // the toolkit keeps the theme's file open
        bus_ = std::make_unique<AccessibleBus>();
        bus_->findProgram();
        QTRY_VERIFY_WITH_TIMEOUT(bus_->isDone(), 60000);
        QVERIFY(bus_->isThere());
    }
    void cleanupTestCase() { bus_.reset(); }
    void init()
    {
        faults_.clear();
        controls_ = 0;
    }

    void everyControlHasANameAndItsRole()
    {
        Program program;
        AccessibleBus &bus = *bus_;
        program.expect("tiles", [] { return windows::visible(QStringLiteral("btn1")); });
        look(program, bus, QStringLiteral("tiles"));
        program.open(QStringLiteral("r2"));
        for (const char *page : Pages) {
            program.click(page);
            look(program, bus, QString::fromLatin1(page));
        }
        program.click("LightsButton");
        program.script.step("a color of its own", always, [] {
            windows::visible<QComboBox>(QStringLiteral("LightMod"))->setCurrentIndex(SteadyLight);
        });
        look(program, bus, QStringLiteral("steady light"));
        program.click("ButtonMain");
        for (const char *panel : FunctionPanels) {
            program.click("RightKey");
            program.click(panel);
            look(program, bus, QString::fromLatin1(panel));
            program.click("FunctionsBack");
        }
        const auto shown = std::make_shared<std::unique_ptr<QWidget>>();
        const auto dialog = [&](const char *name, const std::function<std::unique_ptr<QWidget>()> &make) {
            program.script.step(name, always, [shown, make] {
                *shown = make();
                (*shown)->show();
            });
            look(program, bus, QString::fromLatin1(name), true);
            program.script.step(name, always, [shown] { shown->reset(); });
        };
        for (const NoticeRow &row : everyNotice())
            dialog(row.name, row.make);
        dialog("Match", [] { return std::make_unique<Match>(); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(faults_.isEmpty(), qPrintable(QLatin1Char('\n') + faults_.join(QLatin1Char('\n'))));
        QVERIFY2(controls_ > 250, qPrintable(QString::number(controls_)));
    }

    // The toolkit's own ones, over the page that opens them.
    void theToolkitsDialogsAreNamedToo()
    {
        const QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkdir(QStringLiteral("a folder")));
        QVERIFY(QFile(home.filePath(QStringLiteral("a file.bin"))).open(QIODevice::WriteOnly));
        const QByteArray homeBefore = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(home.path()));
        const auto restored = qScopeGuard([&] { qputenv("HOME", homeBefore); });
        Program program;
        AccessibleBus &bus = *bus_;
        const QString filter = QStringLiteral("Image (*.bin)");
        const auto open = [&](const char *name, const std::function<void()> &ask) {
            program.script.step(name, always, ask);
            program.expect(name, [] { return QApplication::activeModalWidget() != nullptr; });
            look(program, bus, QString::fromLatin1(name), true);
        };
        const auto close = [&] {
            program.script.step("close", always, [] { QApplication::activeModalWidget()->close(); });
        };
        const auto dialog = [&](const char *name, const std::function<void()> &ask) {
            open(name, ask);
            close();
        };
        dialog("a file", [&] { filedialog::askForFile(program.window.get(), filter); });
        dialog("a new file", [&] {
            filedialog::askForNewFile(program.window.get(), filter, QStringLiteral("bin"),
                                      QStringLiteral("a"));
        });
        QStringList told;
        open("a color", [] { std::unique_ptr<QColorDialog>(makeColorDialog(nullptr))->exec(); });
        for (const char *field : {"Basic colors", "Custom colors"}) {
            const auto before = std::make_shared<QColor>();
            program.script.step("an arrow key", always, [before, field] {
                *before = shownColor();
                QWidget *const well = wellOf(field);
                QTest::keyClick(well, Qt::Key_Down);
                QTest::keyClick(well, Qt::Key_Up);
                QTest::keyClick(well, Qt::Key_Space); // chooses it
            });
            program.expect("another color", [before] { return shownColor() != *before; });
            program.script.step("walk", always, [&bus] { bus.walk(); });
            program.script.step(
                "walked", [&bus] { return bus.isDone(); },
                [&bus, &told, field] {
                    const QString wanted =
                        QStringLiteral("%1: %2").arg(QLatin1String(field), shownColor().name().toUpper());
                    for (const HeardObject &each : bus.heard())
                        if (each.role == QLatin1String("list") && each.value == wanted)
                            told << QLatin1String(field);
                });
        }
        close();
        dialog("an upgrade", [&program] {
            UpDateRepair::instance()->readyForm();
            UpDateRepair::instance()->showOver(program.window.get());
        });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(told, (QStringList{QStringLiteral("Basic colors"), QStringLiteral("Custom colors")}));
        QVERIFY2(faults_.isEmpty(), qPrintable(QLatin1Char('\n') + faults_.join(QLatin1Char('\n'))));
        QVERIFY2(controls_ > 40, qPrintable(QString::number(controls_)));
    }

    void changesAndTheUnpluggingAreTold()
    {
        Program program;
        AccessibleBus &bus = *bus_;
        QStringList events;
        const auto isTold = [&](const char *event) {
            if (bus.isDone()) {
                events << bus.events();
                bus.askEvents(QString::fromLatin1(event));
            }
            return events.contains(QString::fromLatin1(event));
        };
        program.open(QStringLiteral("r2"));
        program.click("SensorButton");
        program.order("press m2 dpi");
        program.expect("the mouse's own stage",
                       [&] { return isTold("checked 1 radio button: DPI stage 2"); });
        program.click("Button500HZ");
        program.expect("the rate", [&] { return isTold("checked 1 radio button: 500 Hz"); });
        const auto change = [&](const char *control, const std::function<void(QWidget *)> &set,
                                const char *event) {
            program.script.step(control, always, [&events, control, set] {
                events.clear(); // the load has changed it, too
                set(windows::visible(QLatin1String(control)));
            });
            program.expect(control, [&isTold, event] { return isTold(event); });
        };
        const auto press = [](QWidget *button) { static_cast<QAbstractButton *>(button)->click(); };
        const auto chooseAnother = [](QWidget *box) {
            auto *const list = static_cast<QComboBox *>(box);
            list->setCurrentIndex(list->currentIndex() == 0);
        };
        const auto move = [](QWidget *slider) { static_cast<QSlider *>(slider)->setValue(2); };
        const auto count = [](QWidget *box) { static_cast<QSpinBox *>(box)->setValue(22); };
        change("RippeControl_2", press, "checked 1 check box: Ripple control");
        change("LOD", chooseAnother, "accessible-name  combo box: Lift-off distance");
        program.click("LightsButton");
        program.script.step("a color of its own", always, [] {
            windows::visible<QComboBox>(QStringLiteral("LightMod"))->setCurrentIndex(SteadyLight);
        });
        change("horizontalLight", move, "accessible-value  slider: Brightness");
        change("RSpinBox", count, "accessible-value  spin box: Red");
        activate(program);
        program.order("unplug r2");
        program.expect("the unplugging",
                       [&] { return isTold("focused 1 panel: Devices. The open device was unplugged."); });
        program.script.step(
            "the focus on the tile that is left",
            [] { return qobject_cast<mytoolButtonEnter *>(QApplication::focusWidget()); },
            [] {
                DataLoaded = false;
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            });
        program.expect("Enter opens it", [] { return windows::shown<UpDataParam>() || DataLoaded; });
        program.waitForPage();
        QString missing = program.script.run();
        QVERIFY2(missing.isEmpty(), qPrintable(missing + QLatin1Char('\n') + events.join(QLatin1Char('\n'))));
    }

    // Around each page and back again.
    void theTabKeyStopsAtWhatIsCheckedAndWritesNothing()
    {
        Program program;
        uint64_t writes = 0;
        QStringList wrong;
        int stops = 0;
        program.open(QStringLiteral("r2"));
        program.script.step("count", always, [&] {
            writes = program.bus.emulated.reportCount("r2", wire::Command::FlashWrite);
        });
        for (const char *page : Pages) {
            program.click(page);
            activate(program);
            for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab})
                for (int i = 0; i < StopsOfAPage; ++i)
                    press(program, key, [&, page](const QWidget *stop) {
                        ++stops;
                        if (!isRightStop(stop))
                            wrong << QLatin1String(page) + QLatin1Char(' ') + stop->objectName();
                    });
        }
        std::unique_ptr<ProgramSettled> settled;
        program.script.step("a word behind", always,
                            [&] { settled = std::make_unique<ProgramSettled>(program.bus, "m2"); });
        program.expect("settled", [&] { return bool(*settled); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(wrong, QStringList());
        QCOMPARE(stops, int(std::size(Pages)) * 2 * StopsOfAPage);
        QCOMPARE(program.bus.emulated.reportCount("r2", wire::Command::FlashWrite), writes);
    }

    void whatAScreenReaderSetsIsWritten()
    {
        const std::pair<QString, QString> keysOfMacros[] = {{QStringLiteral("second"), QStringLiteral("B")},
                                                            {QStringLiteral("first"), QStringLiteral("A")}};
        for (const auto &[name, key] : keysOfMacros) {
            QFile file(macro::macroPath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(key == QLatin1String("A") ? "1\n0x04 1 0\n10ms\n0x04 1 1\n"
                                                 : "1\n0x05 1 0\n10ms\n0x05 1 1\n");
        }
        Program program;
        AccessibleBus &bus = *bus_;
        FlashDataMap before{};
        program.open(QStringLiteral("r2"));
        const auto walkAnd = [&](const std::function<void()> &act) {
            program.script.step("walk", always, [&bus] { bus.walk(); });
            program.script.step(
                "walked", [&bus] { return bus.isDone(); }, act);
            program.script.step("answered", [&bus] { return bus.isDone(); });
        };
        // Until the mouse has it. One whose answer comes too late on a busy machine counts as away: the edit
        // is taken back, or the write waits for the next answer.
        using Wanted = std::function<bool(const FlashDataMap &)>;
        const auto expectWritten = [&](const char *control, const std::function<void()> &set,
                                       const Wanted &isWanted) {
            walkAnd(set);
            program.expect(control, [&program, &bus, set, isWanted] {
                if (program.agrees("m2") && isWanted(program.bus.record("m2")))
                    return true;
                if (bus.isDone() && !isWanted(DeviceRecord::copy()))
                    set();
                else if (bus.isDone())
                    UsbFinderC_GetDeviceOnLine(CurrentDevicePath());
                return false;
            });
        };
        const auto set = [&](const char *control, double value, const Wanted &isWanted) {
            expectWritten(
                control, [&bus, control, value] { bus.setValue(QLatin1String(control), value); }, isWanted);
        };
        program.click("SensorButton");
        program.script.step("the record", always, [&] { before = program.bus.record("m2"); });
        set("DPI of the current stage", 1234,
            [&before](const FlashDataMap &now) { return !sameBytes(before, now); });
        program.script.step("as if it were typed", always, [] {
            QCOMPARE(windows::visible<QSpinBox>(QStringLiteral("spinBoxA"))->value(), 1200);
        });
        program.click("LightsButton");
        const auto mode = [] { return windows::visible<QComboBox>(QStringLiteral("LightMod")); };
        const auto openList = [mode] {
            mode()->showPopup();
            return true;
        };
        program.expect("the list of the modes", openList);
        expectWritten(
            "a color of its own",
            [&bus, mode, openList] {
                openList();
                bus.chooseItem(mode()->itemText(SteadyLight));
            },
            [](const FlashDataMap &now) { return now.LedBarEnable && now.LedBarMode == SteadyLight; });
        program.expect("the closed list", [mode] { return !mode()->view()->isVisible(); });
        set("Brightness", 3, [](const FlashDataMap &now) { return now.LedBarBrightness == 2; });
        set("Red", 17, [](const FlashDataMap &now) { return now.LedBarRed == 17; });
        expectWritten(
            "Color code", [&bus] { bus.setText(QStringLiteral("Color code"), QStringLiteral("0A141F")); },
            [](const FlashDataMap &now) {
                return now.LedBarRed == 10 && now.LedBarGreen == 20 && now.LedBarBlue == 31;
            });
        program.click("MacroButton");
        for (const auto &each : keysOfMacros) {
            walkAnd([&bus, name = each.first] { bus.chooseItem(name); });
            program.expect("the macro's events", [key = each.second] {
                const auto *const events = windows::visible<QListWidget>(QStringLiteral("listWidgetKey"));
                return events->count() > 0 && events->item(0)->text().contains(key);
            });
        }
        QString missing = program.script.run();
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
    }
};

TEST_CLASS(tst_accessible, ProgramSetUp)

#include "tst_accessible.moc"
