// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a person would see at a glance, over every page and dialog with the product's own catalogue, texts
// and skin: no text is cut or faint, no control stands on another, and each that can be used has a name and
// is told from its ground. The same in a language that takes 40 % more room, and by the keyboard.
#include "app/Dialog.h"
#include "app/DialogMain.h"
#include "lighting/InputPic.h"
#include "lighting/LampLight.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "lighting/LightTables.h"
#include "macro/Macro.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/FileDialog.h"
#include "presentation/Notices.h"
#include "presentation/QuestionDialog.h"
#include "presentation/SkinPalette.h"
#include "presentation/UpDataParam.h"
#include "presentation/Widgets.h"
#include "presentation/dialogs/AddDelayTime.h"
#include "presentation/dialogs/FireKey.h"
#include "presentation/dialogs/GroupKey.h"
#include "presentation/dialogs/addKey.h"
#include "presentation/language/LanguageTables.h"
#include "selection/NodePermission.h"
#include "selection/PermissionHint.h"
#include "sensor/SensorDPI.h"
#include "service/FormSetting.h"
#include "service/Match.h"
#include "service/UpDateRepair.h"
#include "tests/support/LongTexts.h"
#include "tests/support/StillDesktop.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"
#include "tests/widget/app/Faults.h"
#include "tests/widget/selection/RefusedNodes.h"

#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QToolButton>

class tst_Layout : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();
    const support::StillDesktop still;

    static void check(QWidget *window)
    {
        QCOMPARE(faults::in(window).join('\n'), QString());
        QString inLongTexts;
        {
            const support::LongTexts language;
            emit PostMsg::instance()->SigAllLanguage(0);
            inLongTexts = faults::inLongTexts(window).join('\n');
        }
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(inLongTexts, QString());
    }
    static void checkWithKeys(QWidget *window)
    {
        check(window);
        QCOMPARE(faults::ofTheKeyboard(window).join('\n'), QString());
    }

private slots:
    void initTestCase() { faults::watchTexts(); }
    void init() { fixture::clean(); }

    // Whatever draws it. A tool button's text beside which only its icon is drawn is none.
    void aTextInTheColorOfItsGroundIsFound()
    {
        QWidget window;
        window.setStyleSheet("* { background: #21272a; color: #21272a; border: none; }");
        QLabel plain("Plain", &window), rich("<b>Rich</b>", &window), live("Live", &window);
        QToolButton button(&window), icon(&window);
        QLineEdit field("Field", &window);
        live.setStyleSheet("color: #ffffff");
        button.setText("Button");
        icon.setText("Icon");
        icon.setToolButtonStyle(Qt::ToolButtonIconOnly);
        QPixmap picture(16, 16);
        picture.fill(Qt::white);
        icon.setIcon(picture);
        int y = 0;
        for (QWidget *each : std::initializer_list<QWidget *>{&plain, &rich, &live, &button, &icon, &field}) {
            each->setGeometry(20, y += 40, 120, 30);
            each->setObjectName("widget" + QString::number(y));
        }
        window.resize(300, 300);
        window.show();
        QStringList wanted;
        for (const QWidget *each : std::initializer_list<QWidget *>{&plain, &rich, &button, &field})
            wanted << "faint text 1.00: " + faults::place(each);
        QCOMPARE(faults::faintTexts(&window), wanted);
    }

    void selectionPage_data()
    {
        QTest::addColumn<int>("count");
        for (int count = 0; count <= 4; ++count)
            QTest::addRow("%d", count) << count;
    }
    void selectionPage()
    {
        QFETCH(int, count);
        const std::vector<FakeDevice> all = {fixture::shipped(6, Receiver1K, "0x0002"),
                                             fixture::shipped(7, Receiver8K, "0x0005", false),
                                             fixture::shipped(8, fixture::CableKind, "0x0001"),
                                             fixture::shipped(99, Receiver4K, "0x0004", false)};
        fake.setDevices({all.begin(), all.begin() + count});
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        QTRY_COMPARE(window.findChildren<mytoolButtonEnter *>().size(), count);
        checkWithKeys(&window);
    }

    // Nodes that keep the user out, beside tiles and alone, in each of the hint's wordings.
    void permissionHint_data()
    {
        QTest::addColumn<int>("tiles");
        QTest::addColumn<int>("nodes");
        QTest::addColumn<bool>("installed");
        QTest::addColumn<int>("mode");
        QTest::newRow("alone, without rules") << 0 << 1 << false << 0;
        QTest::newRow("alone, rules that wait") << 0 << 1 << true << 0;
        QTest::newRow("alone, of a group") << 0 << 1 << true << 060;
        QTest::newRow("two beside three tiles") << 3 << 2 << false << 0;
        QTest::newRow("five beside four tiles") << 4 << 5 << true << 0;
    }
    void permissionHint()
    {
        QFETCH(int, tiles);
        QFETCH(int, nodes);
        QFETCH(bool, installed);
        QFETCH(int, mode);
        const fixture::RefusedNodes refused(installed);
        std::vector<FakeDevice> devices = {fixture::shipped(6, Receiver1K, "0x0002"),
                                           fixture::shipped(7, Receiver8K, "0x0005", false),
                                           fixture::shipped(8, fixture::CableKind, "0x0001"),
                                           fixture::shipped(99, Receiver4K, "0x0004", false)};
        devices.resize(std::size_t(tiles));
        for (int i = 0; i < nodes; ++i) {
            devices.push_back(fixture::shipped(9, Receiver2K, "0x0003"));
            devices.back().path = refused.add(QString("hidraw1%1").arg(i), mode).toStdString();
        }
        fake.setDevices(devices);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        QTRY_VERIFY(window.findChild<PermissionHint *>()->isVisible());
        QCOMPARE(window.findChildren<mytoolButtonEnter *>().size(), tiles);
        checkWithKeys(&window);
    }

    void devicePages()
    {
        fake.setDevices({fixture::shipped(6, Receiver8K, "0x0005")});
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("0x0005/6", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        emit PostMsg::instance()->SigUpDataSensorUIB(FlashDataMap{});
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigUpDataConfigUI(4, 2, true); });
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigBattery(true, 100, true); });
        auto *dialog = window.findChild<Dialog *>();
        for (const char *way :
             {"ButtonMain", "SensorButton", "MacroButton", "LightsButton", "Advanced", "FormSetting"}) {
            dialog->findChild<QToolButton *>(way)->click();
            QVERIFY(dialog->findChild<QToolButton *>(way)->isVisible());
            checkWithKeys(&window);
        }
        for (const QComboBox *box : window.findChildren<QComboBox *>())
            QVERIFY2(box->maxVisibleItems() == 5, qPrintable(faults::place(box)));
        QTRY_VERIFY(fake.idle());
    }

    // The titles of page, sections and panels are of one size, larger than the labels of controls.
    void headings()
    {
        fake.setDevices({fixture::shipped(6, Receiver8K, "0x0005")});
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("0x0005/6", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        emit PostMsg::instance()->SigUpDataSensorUIB(FlashDataMap{});
        emit PostMsg::instance()->SigUpDataButtonUIC(FlashDataMap{});
        auto *dialog = window.findChild<Dialog *>();
        const std::pair<const char *, QStringList> pages[] = {
            {"ButtonMain", {"page_9 label_3"}},
            {"SensorButton",
             {"SensorDPI label", "SensorRate label", "Sensor label_10", "settingHelp helpTitle"}},
            {"FormSetting",
             {"FormSetting label_2", "FormSetting label_3", "FormSetting label_8", "FormSetting label_9",
              "FormSetting label_12", "FormSetting label_13"}},
            {"LightsButton", {"LampLight title", "LampLight lightTitle", "LampLight indicatorTitle"}},
            {"Advanced",
             {"Advanced SleepCaption", "Advanced KFpsCaption", "Advanced LongRangeCaption",
              "Advanced AngleCaption"}}};
        const auto checkHeading = [dialog](const QString &place) {
            const QStringList names = place.split(' ');
            QLabel *heading = nullptr;
            for (const QWidget *parent : dialog->findChildren<QWidget *>(names[0]))
                if (auto *found = parent->findChild<QLabel *>(names[1]))
                    heading = found;
            QVERIFY2(heading, qPrintable(place));
            QCOMPARE(QFontInfo(heading->font()).pixelSize(), 15);
            QCOMPARE(heading->font().weight(), int(QFont::Medium));
        };
        for (const auto &[way, headings] : pages) {
            dialog->findChild<QToolButton *>(way)->click();
            checkHeading("deviceHead headTitle");
            for (const QString &heading : headings)
                checkHeading(heading);
        }
        QVERIFY(QFontInfo(dialog->findChild<QLabel *>("label_11")->font()).pixelSize() < 15);
        QTRY_VERIFY(fake.idle());
    }

    // What stands on a card as wide as the page begins on one line from page to page, and ends as far from
    // its other edge; what stands beside the cards begins and ends with them.
    void cardsHaveOneInset()
    {
        fake.setDevices({fixture::shipped(6, Receiver8K, "0x0005")});
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("0x0005/6", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        constexpr int left = 16, right = 866, inset = 24;
        const auto on = [&window](const char *page, const char *name) {
            auto *const pages = window.findChild<QStackedWidget *>("stackedWidgetDialog");
            auto *const parent = pages->findChild<QWidget *>(page, Qt::FindDirectChildrenOnly);
            pages->setCurrentWidget(parent); // has its final look once it has shown
            const auto *widget = parent->findChild<QWidget *>(name);
            return QRect(widget->mapTo(parent, QPoint()), widget->size());
        };
        for (const auto &[page, name] :
             {std::pair("Buttoninterface", "label_3"), std::pair("Buttoninterface", "DebounceNote"),
              std::pair("FormSetting", "TitleButton_2"), std::pair("Advanced", "SleepMarker")})
            QVERIFY2(on(page, name).left() == left + inset,
                     qPrintable(QString("%1 %2").arg(name).arg(on(page, name).left())));
        QCOMPARE(on("Buttoninterface", "DebunceButton").right(), right - inset);
        QCOMPARE(on("FormSetting", "line_2").right(), right - inset);
        QCOMPARE(on("Buttoninterface", "label_8").left(), left);
        QCOMPARE(on("Buttoninterface", "Reset").right(), right);
        for (const char *panel : {"page_3", "page_4", "page_5", "page_6", "page_7", "page_8", "page_10"}) {
            const auto *ground = window.findChild<QWidget *>("Buttoninterface")->findChild<QWidget *>(panel);
            for (const QWidget *each : ground->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
                if (!each->objectName().startsWith("Functions"))
                    QVERIFY2(each->x() >= inset && each->geometry().right() < right - left - inset + 1,
                             panel);
        }
        QTRY_VERIFY(fake.idle());
    }

    // Each model with all of its stages, each of them in turn the current one, and its longest number on all.
    void sensorPage_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("stages");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("largest");
        QTest::newRow("6") << 0 << 6 << 0x07 << 0x88 << "26000";
        QTest::newRow("7") << 1 << 8 << 0xA3 << 0x66 << "42000";
        QTest::newRow("8") << 2 << 5 << 0x8F << 0x11 << "12000";
        QTest::newRow("9") << 3 << 4 << 0xC7 << 0x00 << "10000";
    }
    void sensorPage()
    {
        QFETCH(int, model);
        QFETCH(int, stages);
        QFETCH(int, code);
        QFETCH(int, flags);
        QFETCH(QString, largest);
        fake.setDevices({fixture::shipped(uint8_t(6 + model), Receiver8K, "0x0005")});
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("dev", Receiver8K, model));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        auto *dialog = window.findChild<Dialog *>();
        dialog->findChild<QToolButton *>("SensorButton")->click();
        FlashDataMap map{};
        map.DpiStageCount = uint8_t(stages);
        map.Performance = 1;
        for (DpiStage &stage : map.DpiStages)
            stage = {uint8_t(code), uint8_t(code), uint8_t(flags), 255, 128, 0};
        for (int stage = 0; stage < stages; ++stage) {
            map.CurrentDpiStage = uint8_t(stage);
            emit PostMsg::instance()->SigUpDataSensorUIB(map);
            QCOMPARE(dialog->findChild<QToolButton *>("BlueButton")->text(), largest);
            check(&window);
        }
        checkWithKeys(&window);
        QCOMPARE(dialog->findChild<QToolButton *>("LightYellowButton")->isVisible(), stages == 8);
        QTRY_VERIFY(fake.idle());
    }

    // Each model on cable and radio, with what it has of the groups, and without any device.
    void advancedPage()
    {
        fake.setDevices({fixture::shipped(6, Receiver8K, "0x0005")});
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        auto *open = window.findChild<Dialog *>()->findChild<QToolButton *>("Advanced");
        FlashDataMap map{};
        map.StopCloseTime = 60;
        map.AngleSet = 256 - 30;
        for (int model = 0; model < 4; ++model) {
            for (const uint16_t kind : {uint16_t(Receiver8K), uint16_t(fixture::CableKind)}) {
                fixture::select(fixture::info("dev", kind, model));
                emit PostMsg::instance()->SigChangeMainDialog(1);
                emit PostMsg::instance()->SigUpDataSensorUIB(map);
                emit PostMsg::instance()->SigFormB();
                open->click();
                QVERIFY(open->isVisible());
                check(&window);
            }
            checkWithKeys(&window);
        }
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        open->click();
        check(&window);
        QTRY_VERIFY(fake.idle());
    }

    // Each mode of both lights, on cable and radio, with and without colour schemes, from top to bottom.
    void lightPage_data()
    {
        QTest::addColumn<int>("mode");
        for (int mode = 0; mode < LightModeCount; ++mode)
            QTest::addRow("%d", mode) << mode;
    }
    void lightPage()
    {
        QFETCH(int, mode);
        FakeDevice device = fixture::shipped(6, Receiver8K, "0x0005");
        device.bar = {uint8_t(mode), 250, 251, 252, 9, 9, uint8_t(mode > 0)};
        device.indicator = {{1, 2, 3}};
        fake.setDevices({device});
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        auto *open = window.findChild<Dialog *>()->findChild<QToolButton *>("LightsButton");
        FlashDataMap map{};
        map.LedBarMode = uint8_t(mode);
        map.LedBarEnable = mode > 0;
        map.LedBarBrightness = map.LedBarSpeed = 9;
        map.DpiLedMode = 2;
        map.DpiLedEnable = 1;
        for (const int model : {0, 3})
            for (const uint16_t kind : {uint16_t(Receiver8K), uint16_t(fixture::CableKind)}) {
                fixture::select(fixture::info("0x0005/6", kind, model));
                emit PostMsg::instance()->SigChangeMainDialog(1);
                emit PostMsg::instance()->SigUpDataLightUIA(map);
                emit PostMsg::instance()->SigFormB();
                open->click();
                QVERIFY(open->isVisible());
                auto *bar = window.findChild<LampLight *>()->findChild<QScrollBar *>("verticalScrollBar");
                for (bar->setValue(0);; bar->setValue(bar->value() + 300)) {
                    check(&window);
                    if (bar->value() == bar->maximum())
                        break;
                }
                if (mode == Breathing) // shows every control
                    checkWithKeys(&window);
            }
        QTRY_VERIFY(fake.idle());
    }

    // Also at its corners, which are round in the shell.
    void theBatteryFillsWithinItsShell()
    {
        fake.setDevices({fixture::shipped(6, Receiver8K, "0x0005")});
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("dev", Receiver8K, 0));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        auto *dialog = window.findChild<Dialog *>();
        const QRect shell(2, 2, 46, 18); // within its outline
        const auto *battery = dialog->findChild<QToolButton *>("BatteryButtonC");
        const auto fillOf = [&](int level, const QColor &color) {
            fixture::emitOnOtherThread([=] { emit PostMsg::instance()->SigBattery(false, level, true); });
            const QImage shot = window.grab().toImage();
            const QPoint place = battery->mapTo(&window, QPoint());
            QRegion fill;
            for (int y = 0; y < battery->height(); ++y)
                for (int x = 0; x < battery->width(); ++x)
                    if (shot.pixelColor(place + QPoint(x, y)) == color)
                        fill += QRect(x, y, 1, 1);
            return fill;
        };
        const QRegion full = fillOf(100, QColor(0, 255, 153));
        QCOMPARE(full.boundingRect(), shell.adjusted(2, 2, -2, -2));
        QVERIFY(!full.contains(full.boundingRect().topRight()));
        QVERIFY(!full.contains(full.boundingRect().bottomLeft()));
        QVERIFY(shell.contains(fillOf(9, QColor(152, 43, 34)).boundingRect()));
        const QColor warning(255, 107, 94); // 6.6 to 1 on the head, where the fill has 2.4
        QVERIFY(fillOf(9, warning).boundingRect().contains(shell));
        QCOMPARE(dialog->findChild<QLabel *>("label_2")->palette().color(QPalette::WindowText), warning);
        QVERIFY(fillOf(16, warning).isEmpty());
        fillOf(9, warning);
        QCOMPARE(battery->toolTip(), QString("Battery level: 9%"));
        QCOMPARE(dialog->findChild<QLabel *>("label_2")->text(), QString("9%"));
        emit PostMsg::instance()->SigIsUsb(true, false);
        const QString cable = dialog->findChild<QLabel *>("label_4")->toolTip();
        emit PostMsg::instance()->SigIsUsb(false, false);
        const QString radio = dialog->findChild<QLabel *>("label_4")->toolTip();
        QVERIFY(!cable.isEmpty() && !radio.isEmpty() && cable != radio);
        QTRY_VERIFY(fake.idle());
    }

    // Each model's page, and each panel that a button can open.
    void bindingPage_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<QString>("opener");
        for (int model = 0; model < 4; ++model)
            QTest::addRow("model %d", model) << model << QString();
        for (const char *opener :
             {"MidKey", "DPI_12", "DPI_4", "DPI_9", "DPI_7", "DPI_11", "DPI_13", "DPI_10"})
            QTest::newRow(opener) << 1 << QString(opener);
    }
    void bindingPage()
    {
        QFETCH(int, model);
        QFETCH(QString, opener);
        fake.setDevices({fixture::shipped(uint8_t(6 + model), Receiver8K, "0x0005")});
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("dev", Receiver8K, model));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        emit PostMsg::instance()->SigMouseIndex(6 + model);
        FlashDataMap map{};
        map.KeyBindings[0] = map.KeyBindings[1] = {1, 1, 0};
        map.KeyBindings[2] = {6, 2, 1};
        qstrncpy(map.MacroBlocks[2].Name, "Reload", MacroNameSize);
        map.MacroBlocks[2].NameLength = 6;
        DeviceRecord::edit([&](FlashDataMap &record) { record = map; });
        emit PostMsg::instance()->SigUpDataButtonUIC(map);
        const auto click = [&](const char *name) { window.findChild<QToolButton *>(name)->click(); };
        if (!opener.isEmpty())
            click("RightKey");
        if (opener.startsWith("DPI"))
            click(opener.toLatin1());
        checkWithKeys(&window);
        QTRY_VERIFY(fake.idle());
    }

    // From its top to its end, by cable and by radio, with every mark and each text of the upgrade button.
    void settingsPage_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("radio") << int(Receiver8K);
        QTest::newRow("cable") << int(fixture::CableKind);
    }
    void settingsPage()
    {
        QFETCH(int, kind);
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("dev", uint16_t(kind)));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        auto *dialog = window.findChild<Dialog *>();
        dialog->findChild<QToolButton *>("FormSetting")->click();
        auto *page = dialog->findChild<FormSetting *>();
        for (const char *mark : {"toolButton_2", "toolButton_3"})
            page->findChild<QToolButton *>(mark)->show();
        emit PostMsg::instance()->SigLabelText(0, "v12.0A");
        emit PostMsg::instance()->SigLabelText(1, "v12.0B");
        QScrollBar *bar = page->findChild<QScrollArea *>("scrollArea")->verticalScrollBar();
        checkWithKeys(&window);
        for (const int language : {0, 1, 2}) {
            emit PostMsg::instance()->SigAllLanguage(language);
            for (int at = 0; at < bar->maximum(); at += bar->pageStep() / 2) {
                bar->setValue(at);
                check(&window);
            }
            bar->setValue(bar->maximum());
            check(&window);
            emit PostMsg::instance()->SigSetNewVer();
            bar->setValue(0);
            check(&window);
        }
        QTRY_VERIFY(fake.idle());
    }

    // Macros with names of any length, the events of one, a draft, and a recording.
    void macroPage()
    {
        for (const QString &name : {QString("Reload"), QString(30, 'W')}) {
            QFile file(macro::macroPath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("3\n0xE1 0 0\n10ms\n0x04 1 0\n65535ms\n0x04 1 1\n20ms\n0xE1 0 1\n");
        }
        fake.setDevices({fixture::shipped(6, Receiver8K, "0x0005")});
        fake.setRunsWatchAtStart(false);
        DialogMain window;
        window.show();
        QTRY_VERIFY(fake.idle());
        fixture::select(fixture::info("0x0005/6", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        window.findChild<QToolButton *>("MacroButton")->click();
        auto *page = window.findChild<Macro *>();
        auto *list = page->findChild<QListWidget *>("listWidgetHong");
        QTRY_COMPARE(list->count(), 2);
        const QRect first = list->visualItemRect(list->item(0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first.center());
        QVERIFY(page->findChild<QListWidget *>("listWidgetKey")->count() > 0);
        checkWithKeys(&window);
        page->findChild<QListWidget *>("listWidgetKey")->setCurrentRow(1);
        page->findChild<QRadioButton *>("ReUntilLoose")->click();
        checkWithKeys(&window);
        page->findChild<QToolButton *>("StartRecord")->click();
        check(&window);
        page->findChild<QToolButton *>("StopRecord")->click();
        QTRY_VERIFY(fake.idle());
    }

    void colorDialog()
    {
        fixture::beginWithDevice();
        SensorDPI panel;
        emit PostMsg::instance()->SigAllLanguage(0);
        panel.show();
        panel.findChild<QToolButton *>("BlueButtonA")->click();
        auto *dialog = panel.findChild<QColorDialog *>();
        QVERIFY(dialog && dialog->isVisible());
        const QStringList found =
            faults::faintTexts(dialog) + faults::faintControls(dialog) + faults::ofTheKeyboard(dialog);
        QCOMPARE(found.join('\n'), QString());
        dialog->reject();
    }

    void fileDialogs()
    {
        QStringList found;
        int seen = 0;
        const auto look = [&](QFileDialog *dialog) {
            found << faults::faintTexts(dialog) + faults::faintControls(dialog);
            ++seen;
            dialog->reject();
        };
        fixture::whenModal<QFileDialog>(look);
        filedialog::askForFile(nullptr, "File(*.bin)");
        fixture::whenModal<QFileDialog>(look);
        filedialog::askForNewFile(nullptr, "File(*.bin)", "bin", "Name.bin");
        QCOMPARE(found.join('\n'), QString());
        QCOMPARE(seen, 2);
    }

    // Each of its forms, with each of its texts.
    void upgrade()
    {
        UpDateRepair dialog;
        dialog.show();
        checkWithKeys(&dialog);
        dialog.readyForm();
        checkWithKeys(&dialog);
        dialog.busyForm();
        check(&dialog);
        for (const int word : {1, 2}) {
            emit PostMsg::instance()->SigProgress(0, word);
            checkWithKeys(&dialog);
        }
        for (const UpgradeTextRow &row : UpgradeTextRows) {
            dialog.noticeForm(row.text);
            checkWithKeys(&dialog);
        }
    }

    void dialogsThatNothingOpens()
    {
        LoadLanguageTables();
        static DongleRGB record;
        fixture::select(fixture::info("dev", Receiver8K));
        LedInfo receiver;
        receiver.SlotRGBValue(&record);
        InputPicB screen;
        LightModeSet light;
        for (QDialog *dialog : std::initializer_list<QDialog *>{&receiver, &screen, &light}) {
            dialog->show();
            checkWithKeys(dialog);
        }
        for (int mode = 0; mode < 6; ++mode) {
            light.findChild<QComboBox *>("LightMod")->setCurrentIndex(mode);
            check(&light);
        }
    }

    void notices()
    {
        LoadLanguageTables();
        const auto shown = [](NoticeDialog &&notice) {
            notice.show();
            checkWithKeys(&notice);
        };
        shown(MouseOffLine());
        OffLineKind = 1;
        shown(MouseOffLine());
        shown(QuestiondialogB());
        shown(ContainReset());
        shown(InportFail());
        ImportResult = 2;
        shown(InportFail());
        shown(LeftButtonOnly());
        shown(MakeMacro());
        shown(SameMacro());
        shown(GroupMaxThree());
        shown(KeyNumberLimit());
        shown(DeleteConfirm());
        shown(LessThree());
        shown(RePair());
        shown(QuestionDialog());
        UpDateWarning warning;
        warning.setText(language::text(language::Section::home, "WiredMode", 0));
        shown(std::move(warning));
        shown(ExeIsRun());
        shown(UpDataParam());
    }

    // Each state of the pairing, and the one that asks for a receiver.
    void pairing()
    {
        LoadLanguageTables();
        AttachedDevices attached;
        for (const bool wired : {true, false}) {
            attached.choosePairingTarget(fixture::info(
                QStringLiteral("dev"), wired ? uint16_t(fixture::CableKind) : uint16_t(Receiver1K)));
            Match match(&attached);
            match.show();
            checkWithKeys(&match);
            if (wired)
                continue;
            match.on_MatchButton_clicked();
            for (int i = 0; i < 4; ++i)
                match.onTextTimeupDestroy(); // as long as the text gets
            checkWithKeys(&match);
            pairing::end(PairingPhase::Failed);
            for (const int outcome : {0, 1}) {
                emit PostMsg::instance()->SigButtonEnable(outcome);
                checkWithKeys(&match);
            }
        }
    }

    void inputDialogs()
    {
        LoadLanguageTables();
        const auto shown = [](InputDialog &&dialog) {
            dialog.show();
            check(&dialog);
            emit PostMsg::instance()->SigAllLanguage(99); // the forms' own texts
            check(&dialog);
        };
        shown(GroupKey());
        shown(FireKey());
        shown(addKey());
        shown(AddDelayTime());
        FireKey fireKey; // the others take Tab as a key
        fireKey.show();
        QCOMPARE(faults::ofTheKeyboard(&fireKey).join('\n'), QString());
    }
};

TEST_CLASS(tst_Layout, fixture::ShippedProduct)

#include "tst_layout.moc"
