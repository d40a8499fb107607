// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The emulator's panel on an emulator in this process: what it shows and what it does.
#include "device/hidusb/wire/FlashLayout.h"
#include "tests/support/RawClient.h"
#include "tests/support/TestMain.h"
#include "tests/widget/emulator/PanelFixture.h"

#include <QAbstractSpinBox>
#include <QTabBar>

namespace
{

QStringList faults(QWidget *window)
{
    QStringList found;
    QList<QWidget *> controls;
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->objectName().startsWith("qt_"))
            continue;
        const bool isText = qobject_cast<QLabel *>(widget) || qobject_cast<QAbstractButton *>(widget) ||
                            qobject_cast<QComboBox *>(widget);
        if (isText && (widget->width() < widget->minimumSizeHint().width() ||
                       widget->height() < widget->minimumSizeHint().height()))
            found << "cut: " + widget->objectName();
        if (widget->focusPolicy() == Qt::NoFocus || widget->parentWidget()->inherits("QAbstractSpinBox"))
            continue;
        if (widget->accessibleName().isEmpty())
            found << QString("no name: %1 %2").arg(widget->metaObject()->className(), widget->objectName());
        controls << widget;
    }
    for (int i = 0; i < controls.size(); ++i) {
        const QRect a(controls[i]->mapTo(window, QPoint()), controls[i]->size());
        if (!window->rect().contains(a))
            found << "outside: " + controls[i]->objectName();
        for (int j = 0; j < i; ++j) {
            const QRect b(controls[j]->mapTo(window, QPoint()), controls[j]->size());
            const bool within =
                controls[i]->isAncestorOf(controls[j]) || controls[j]->isAncestorOf(controls[i]);
            if (a.intersects(b) && !within)
                found << "overlap: " + controls[i]->objectName() + ", " + controls[j]->objectName();
        }
    }
    return found;
}

} // namespace

class tst_Panel : public PanelFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void cardsTellWhatTheDevicesAre()
    {
        openOnEmulator();
        const QString text =
            part<QListView>("deviceList")->model()->index(1, 0).data(Qt::AccessibleTextRole).toString();
        QCOMPARE(text, QString("air, Mouse \u201cSix\u201d. Unplugged, online. Battery 80 %. "
                               "Profile 1, stage 2 of 6, 1000 Hz, address a10001"));
        QCOMPARE(shown("rx").receiverClass, QString("8k"));
        QVERIFY(shown("rx").plugged && shown("rx").online);
        QCOMPARE(stateText(), QString("Emulator running"));
    }

    void plugAndRadio()
    {
        openOnEmulator();
        choose("rx");
        click("pluggedCheck");
        QTRY_VERIFY(emulated->order("state").find("device=rx kind=receiver plugged=0") != std::string::npos);
        QTRY_VERIFY(!shown("rx").plugged);
        click("pluggedCheck");
        QTRY_VERIFY(shown("rx").plugged);
        click("radioCheck");
        QTRY_VERIFY(!emulated->mouse("air")->radio);
        click("radioCheck");
        QTRY_VERIFY(emulated->mouse("air")->radio);
        click("asleepCheck");
        QTRY_VERIFY(emulated->mouse("air")->asleep);
        click("asleepCheck");
        QTRY_VERIFY(!emulated->mouse("air")->asleep);
    }

    void pairing()
    {
        openOnEmulator();
        choose("rx");
        QVERIFY(!part<QPushButton>("giveUpButton")->isEnabled());
        part<QSpinBox>("pairTimeBox")->setValue(90);
        QTRY_COMPARE(int(emulated->receiver("rx")->pairingTime.count()), 90000);
        RawClient client(folder->path(), "rx");
        QVERIFY(client.ask(wire::Command::PairEnter, {18}));
        click("giveUpButton"); // once the panel knows
        QTRY_COMPARE(int(*emulated->receiver("rx")->pairState), int(wire::PairState::Failed));
        click("refuseCheck");
        QTRY_VERIFY(emulated->receiver("rx")->refusesPairing);
        click("refuseCheck");
        QTRY_VERIFY(!emulated->receiver("rx")->refusesPairing);
        click("lookButton");
        QTRY_VERIFY(emulated->mouse("air")->pairing);
        click("unpairButton");
        QTRY_VERIFY(!emulated->receiver("rx")->paired);
        choose("wired");
        QTRY_VERIFY(!part<QPushButton>("unpairButton")->isEnabled());
        QVERIFY(part<QPushButton>("lookButton")->isEnabled());
    }

    void battery()
    {
        openOnEmulator();
        choose("air");
        auto *slider = part<QSlider>("batterySlider");
        QTRY_COMPARE(slider->value(), 80);
        slider->setFocus();
        QTest::keyClick(slider, Qt::Key_Home);
        QTRY_COMPARE(int(emulated->mouse("air")->battery), 0);
        QTest::keyClick(slider, Qt::Key_End);
        click("chargingCheck");
        QTRY_VERIFY(emulated->mouse("air")->charging);
        QTRY_COMPARE(int(emulated->mouse("air")->battery), 100);
        QTRY_COMPARE(shown("air").battery, 100);
        QTRY_VERIFY(part<QCheckBox>("chargingCheck")->isChecked());
    }

    void draggedBatteryStaysWithItsMouse()
    {
        openOnEmulator();
        choose("air");
        QTRY_COMPARE(part<QSlider>("batterySlider")->value(), 80);
        part<QSlider>("batterySlider")->setValue(33);
        choose("wired");
        QTRY_COMPARE(int(emulated->mouse("air")->battery), 33);
        QTRY_COMPARE(part<QSlider>("batterySlider")->value(), 100);
        QCOMPARE(int(emulated->mouse("wired")->battery), 100);
    }

    void presses()
    {
        openOnEmulator();
        choose("air");
        const auto before = *emulated->flash("air");
        click("pressDpi");
        QTRY_COMPARE(int(emulated->flash("air")->CurrentDpiStage), before.CurrentDpiStage + 1);
        click("pressRate");
        QTRY_COMPARE(int(emulated->flash("air")->ReportRate), 16);
        click("pressLight");
        QTRY_VERIFY(emulated->flash("air")->DpiLedEnable != before.DpiLedEnable);
        click("pressBar");
        QTRY_VERIFY(emulated->flash("air")->LedBarEnable != before.LedBarEnable);
        QTRY_COMPARE(shown("air").rate, 2000);
        click("pressProfile");
        QTRY_COMPARE(int(emulated->mouse("air")->profile), 1);
        QTRY_COMPARE(part<QComboBox>("profileBox")->currentIndex(), 1);
        QTest::keyClick(part<QComboBox>("profileBox"), Qt::Key_Down);
        QTRY_COMPARE(int(emulated->mouse("air")->profile), 2);
        emulated->order("set air flash 0 08");
        click("resetButton");
        QTRY_COMPARE(int(emulated->flash("air")->ReportRate), 1);
    }

    void bootLoader()
    {
        openOnEmulator();
        choose("rx");
        QTRY_VERIFY(part<QCheckBox>("bootCheck")->isEnabled());
        click("bootCheck");
        QTRY_VERIFY(shown("rx").boot);
        auto *erase = part<QSpinBox>("eraseSpin");
        erase->setFocus();
        erase->selectAll();
        QTest::keyClicks(erase, "1500");
        QTest::keyClick(erase, Qt::Key_Return);
        QTRY_COMPARE(shown("rx").erase, 1500);
        choose("wired");
        QTRY_COMPARE(erase->value(), 0);
        QVERIFY(!part<QCheckBox>("bootCheck")->isChecked());
        choose("rx");
        QTRY_COMPARE(erase->value(), 1500);
        click("bootCheck");
        QTRY_VERIFY(!shown("rx").boot);
        emulated->order("erase rx 20");
        QTRY_COMPARE(erase->value(), 20);
    }

    void pacing()
    {
        openOnEmulator();
        click("paceCheck");
        QTRY_VERIFY(emulated->order("state").rfind("pace=1", 0) == 0);
        emulated->order("pace off");
        QTRY_VERIFY(!part<QCheckBox>("paceCheck")->isChecked());
    }

    void everyFaultIsTaken()
    {
        openOnEmulator();
        choose("rx");
        auto *kinds = part<QComboBox>("faultKind");
        QCOMPARE(kinds->count(), 14);
        int count = 0;
        for (int kind = 0; kind < kinds->count(); ++kind) {
            for (const char *where : {"at report", "random", "always"}) {
                kinds->setCurrentIndex(kind);
                pickText(part<QComboBox>("faultWhere"), where);
                part<QComboBox>("faultCommand")->setCurrentIndex(++count % 3);
                click("faultAdd");
                QTRY_COMPARE(shown("rx").faults, count);
            }
        }
        QCOMPARE(part<QLabel>("messageLabel")->text(), QString());
        click("faultClear");
        QTRY_COMPARE(shown("rx").faults, 0);
    }

    void faultStrikes()
    {
        openOnEmulator();
        choose("rx");
        pickText(part<QComboBox>("faultKind"), "refuse");
        pickText(part<QComboBox>("faultWhere"), "at report");
        pickText(part<QComboBox>("faultCommand"), "identity");
        part<QSpinBox>("faultAt")->setValue(2);
        click("faultAdd");
        QTRY_COMPARE(shown("rx").faults, 1);
        RawClient client(folder->path(), "rx");
        QCOMPARE(int(client.ask(wire::Command::Identity)->StatusCode), int(wire::Status::Ok));
        QCOMPARE(int(client.ask(wire::Command::Identity)->StatusCode), int(wire::Status::Refused));
    }

    void followsChangesFromOutside()
    {
        openOnEmulator();
        choose("air");
        emulated->order("battery air 12 charging");
        emulated->order("radio air off");
        QTRY_COMPARE(shown("air").battery, 12);
        QTRY_COMPARE(part<QSlider>("batterySlider")->value(), 12);
        QVERIFY(part<QCheckBox>("chargingCheck")->isChecked());
        QTRY_VERIFY(!part<QCheckBox>("radioCheck")->isChecked());
        QVERIFY(!shown("rx").online);
    }

    void flashFollowsAWrite()
    {
        openOnEmulator();
        choose("rx");
        part<QTabWidget>("tabs")->setCurrentIndex(1);
        auto *view = part<QTableView>("flashBytes");
        auto *model = qobject_cast<FlashModel *>(view->model());
        QTRY_COMPARE(model->rowCount() * model->columnCount(), int(FlashSize));
        QVERIFY(!model->isChanged(0x4d));
        // The mark fades, on a busy machine before a look from here.
        bool marked = false;
        bool markedBeside = false;
        connect(model, &QAbstractItemModel::dataChanged, this, [&] {
            marked |= model->isChanged(0x4d);
            markedBeside |= model->isChanged(0x4c);
        });
        emulated->order("set air flash 0x4d 77");
        QTRY_COMPARE(view->model()->index(4, 13).data().toString(), QString("77"));
        QVERIFY(marked);
        QVERIFY(!markedBeside);
        QTRY_VERIFY(!model->isChanged(0x4d));
        choose("wired");
        QTRY_COMPARE(view->model()->index(4, 13).data().toString(), QString("80"));
        QVERIFY(!model->isChanged(0x4d));
        disconnect(model, nullptr, this, nullptr);
    }

    void fieldsCoverTheLayout()
    {
        const auto &fields = flashFields();
        for (int i = 1; i < fields.size(); ++i)
            QVERIFY2(fields[i - 1].address + fields[i - 1].size <= fields[i].address,
                     qPrintable(fields[i].name));
        QCOMPARE(fields[flashFieldAt(0x4d)].name, QString("Indicator brightness"));
        QCOMPARE(fields[flashFieldAt(0x1c + 6)].name, QString("DPI stage 2"));
        QCOMPARE(fields[flashFieldAt(FlashSize - 1)].name, QString("Macro 16"));
        QCOMPARE(flashFieldAt(0x11), -1);
        QCOMPARE(flashFieldAt(FlashSize), -1);
    }

    void reportsGoBy()
    {
        openOnEmulator();
        auto *model = part<QListView>("reportList")->model();
        RawClient client(folder->path(), "rx");
        QVERIFY(client.ask(wire::Command::Battery));
        QTRY_COMPARE(model->rowCount(), 2);
        QVERIFY(model->index(0, 0).data().toString().contains("-> rx battery 05 04"));
        QVERIFY(model->index(1, 0).data().toString().contains("<- rx battery 05 04"));
        click("pauseButton");
        QVERIFY(client.ask(wire::Command::Battery));
        QTRY_VERIFY(part<ReportList>("reports")->findChild<QLabel *>("quiet")->text().contains(" 2 "));
        QCOMPARE(model->rowCount(), 2);
        click("pauseButton");
        click("clearButton");
        QCOMPARE(model->rowCount(), 0);
        QVERIFY(client.ask(wire::Command::Battery));
        QTRY_COMPARE(model->rowCount(), 2);
    }

    void reportListIsBounded()
    {
        ReportModel model;
        for (int i = 0; i < 3 * ReportModel::Limit; ++i) {
            model.append("0.1 -> rx battery " + QByteArray::number(i));
            if (i % 700 == 0) // what was appended is shown before more comes
                QTRY_VERIFY(
                    model.index(model.rowCount() - 1, 0).data().toString().endsWith(QString(" %1").arg(i)));
            QVERIFY(model.rowCount() <= ReportModel::Limit);
        }
        QTRY_COMPARE(model.rowCount(), ReportModel::Limit);
        QTRY_VERIFY(model.index(ReportModel::Limit - 1, 0).data().toString().endsWith("5999"));
    }

    void layout_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("where");
        QTest::newRow("reports") << 0 << "noreply"
                                 << "at report";
        QTest::newRow("flash, widest fault") << 1 << "late"
                                             << "random";
    }
    void layout()
    {
        QFETCH(int, tab);
        QFETCH(QString, kind);
        QFETCH(QString, where);
        openOnEmulator();
        part<QTabWidget>("tabs")->setCurrentIndex(tab);
        pickText(part<QComboBox>("faultKind"), kind.toLatin1());
        pickText(part<QComboBox>("faultWhere"), where.toLatin1());
        choose("rx");
        window->resize(window->minimumSizeHint());
        QCoreApplication::processEvents();
        QCOMPARE(faults(window.get()).join('\n'), QString());
        QVERIFY2(window->width() <= 1100 && window->height() <= 720,
                 qPrintable(QString("%1 x %2").arg(window->width()).arg(window->height())));
    }

    void tabOrderFollowsTheEye()
    {
        openOnEmulator();
        choose("air");
        QWidget *at = part<QListView>("deviceList");
        at->setFocus();
        QStringList order;
        for (int i = 0; i < 40; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            order << QApplication::focusWidget()->objectName();
            if (QApplication::focusWidget() == at)
                break;
        }
        QCOMPARE(
            order,
            QStringList({"pluggedCheck", "radioCheck",          "asleepCheck",   "bootCheck",    "eraseSpin",
                         "profileBox",   "batterySlider",       "chargingCheck", "pressDpi",     "pressRate",
                         "pressProfile", "pressLight",          "pressBar",      "resetButton",  "lookButton",
                         "faultKind",    "faultWhere",          "faultAt",       "faultCommand", "faultAdd",
                         "faultClear",   "qt_tabwidget_tabbar", "pauseButton",   "clearButton",  "reportList",
                         "paceCheck",    "deviceList"}));
    }
};

TEST_CLASS(tst_Panel, PanelSetUp)

#include "tst_panel.moc"
