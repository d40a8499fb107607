// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The emulator's panel on an emulator in this process, and on an impostor that answers what it likes.
#include "device/hidusb/wire/FlashLayout.h"
#include "emulator/Emulator.h"
#include "emulator/panel/PanelLook.h"
#include "emulator/panel/PanelWindow.h"
#include "tests/support/RawClient.h"
#include "tests/support/TempFolder.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QScrollBar>
#include <QTabBar>
#include <QtTest>
#include <atomic>
#include <sys/socket.h>

namespace
{

constexpr const char *Scenario = R"(
usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007
mouse air name "Six" cid 18 mid 6 version 1.05 battery 80
receiver rx class 8k mouse air version 1.02 address a10001
mouse wired name "A name of many letters" cid 18 mid 8 battery 100
plug rx
)";

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

// Stands where the emulator's control socket is and gives each connection the same bytes for each order.
class Impostor
{
public:
    Impostor(const std::string &folder, std::string answer) : answer_(std::move(answer))
    {
        std::string error;
        if (folder_.open(folder, error))
            listener_ = folder_.listen(emulator::BusFolder::ControlName, SOCK_STREAM);
        thread_ = std::thread([this] { serve(); });
    }
    ~Impostor()
    {
        ends_ = true;
        thread_.join();
        folder_.remove(emulator::BusFolder::ControlName);
    }
    bool isListening() const { return listener_.valid(); }
    int asked() const { return asked_; }

private:
    void serve()
    {
        std::vector<emulator::FileDescriptor> clients;
        while (!ends_) {
            std::vector<pollfd> polled{{listener_.get(), POLLIN, 0}};
            for (const auto &client : clients)
                polled.push_back({client.get(), POLLIN, 0});
            ::poll(polled.data(), polled.size(), 20);
            for (std::size_t i = 1; i < polled.size(); ++i)
                answer(clients[i - 1], polled[i].revents);
            if ((polled[0].revents & POLLIN) != 0)
                clients.emplace_back(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        }
    }
    void answer(emulator::FileDescriptor &client, short events)
    {
        char bytes[4096];
        if (events == 0)
            return;
        if (::recv(client.get(), bytes, sizeof bytes, MSG_DONTWAIT) <= 0)
            return client.reset();
        ++asked_;
        (void)!::send(client.get(), answer_.data(), answer_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    const std::string answer_;
    emulator::BusFolder folder_;
    emulator::FileDescriptor listener_;
    std::thread thread_;
    std::atomic<bool> ends_{false};
    std::atomic<int> asked_{0};
};

} // namespace

class tst_Panel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TempFolder> folder;
    std::unique_ptr<emulator::Emulator> emulated;
    std::unique_ptr<PanelWindow> window;

    template <typename Widget> Widget *part(const char *name) const
    {
        auto *found = window->findChild<Widget *>(QLatin1String(name));
        if (found == nullptr)
            qFatal("no %s", name);
        return found;
    }
    QString bus() const { return QString::fromStdString(folder->path()); }
    QString stateText() const { return part<QLabel>("stateLabel")->text(); }
    int rows() const { return part<QListView>("deviceList")->model()->rowCount(); }
    void open()
    {
        window = std::make_unique<PanelWindow>(bus());
        window->show();
    }
    void startEmulator()
    {
        emulated = std::make_unique<emulator::Emulator>();
        std::string error;
        QVERIFY2(emulated->loadText(Scenario, "scenario", error), error.c_str());
        QVERIFY2(emulated->start(folder->path(), error), error.c_str());
    }
    void openOnEmulator()
    {
        startEmulator();
        open();
        QTRY_COMPARE(rows(), 3);
    }
    void choose(const char *id)
    {
        auto *list = part<QListView>("deviceList");
        for (int row = 0; row < rows(); ++row) {
            if (list->model()->index(row, 0).data().toString() == QLatin1String(id))
                QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                                  list->visualRect(list->model()->index(row, 0)).center());
        }
        QTRY_VERIFY(part<QGroupBox>("deviceControls")->findChild<QLabel *>("heading")->text().startsWith(id));
    }
    void click(const char *name)
    {
        auto *button = part<QAbstractButton>(name);
        QTRY_VERIFY(button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(10, button->height() / 2));
    }
    PanelDevice shown(const char *id) const
    {
        const auto *model = part<QListView>("deviceList")->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            const auto device = model->index(row, 0).data(DeviceModel::DeviceRole).value<PanelDevice>();
            if (device.id == QLatin1String(id))
                return device;
        }
        return PanelDevice();
    }
    static void pickText(QComboBox *box, const char *text)
    {
        box->setCurrentIndex(box->findText(QLatin1String(text)));
        QCOMPARE(box->currentText(), QString(text));
    }

private slots:
    void init() { folder = std::make_unique<TempFolder>(); }
    void cleanup()
    {
        window.reset();
        emulated.reset();
        folder.reset();
    }

    void cardsTellWhatTheDevicesAre()
    {
        openOnEmulator();
        const QString text =
            part<QListView>("deviceList")->model()->index(1, 0).data(Qt::AccessibleTextRole).toString();
        QCOMPARE(text, QString("air, Mouse \u201cSix\u201d. Unplugged, on line. Battery 80 %. "
                               "Profile 0, stage 2 of 6, 1000 Hz, address a10001"));
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
        QCOMPARE(kinds->count(), 10);
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
        emulated->order("set air flash 0x4d 77");
        QTRY_COMPARE(view->model()->index(4, 13).data().toString(), QString("77"));
        QVERIFY(model->isChanged(0x4d));
        QVERIFY(!model->isChanged(0x4c));
        QTRY_VERIFY(!model->isChanged(0x4d));
        choose("wired");
        QTRY_COMPARE(view->model()->index(4, 13).data().toString(), QString("80"));
        QVERIFY(!model->isChanged(0x4d));
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

    void goneAndBack()
    {
        open();
        QCOMPARE(stateText(), QString("Emulator not running"));
        QVERIFY(!part<QCheckBox>("paceCheck")->isEnabled());
        startEmulator();
        QTRY_COMPARE(rows(), 3);
        choose("wired");
        emulated.reset();
        QTRY_COMPARE(stateText(), QString("Emulator not running"));
        QCOMPARE(rows(), 0);
        QVERIFY(!part<QCheckBox>("pluggedCheck")->isEnabled());
        QVERIFY(!part<QPushButton>("pressDpi")->isEnabled());
        startEmulator();
        QTRY_COMPARE(rows(), 3);
        // The same device is chosen again.
        QCOMPARE(part<QListView>("deviceList")->currentIndex().data().toString(), QString("wired"));
        click("pluggedCheck");
        QTRY_VERIFY(shown("wired").plugged);
    }

    void refusalIsShown()
    {
        openOnEmulator();
        choose("wired");
        emulated->order("plug wired");
        EmulatorLink link(bus());
        QSignalSpy refusals(&link, &EmulatorLink::refused);
        QTRY_VERIFY(link.isRunning() || (link.setWatching(true), false));
        link.change("sleep wired");
        QTRY_COMPARE(refusals.count(), 1);
        QCOMPARE(refusals.first().first().toString(), QString("wired is on its cable"));
    }

    void hiddenAsksNothing()
    {
        const Impostor impostor(folder->path(), "pace=0\nok\n");
        open();
        QTRY_COMPARE(stateText(), QString("Emulator running"));
        window->hide();
        const int last = impostor.asked() + 1; // one may be on its way
        QVERIFY(!QTest::qWaitFor([&] { return impostor.asked() > last; }, 1200));
    }

    void hostileAnswers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("devices");
        QTest::newRow("garbage") << QByteArray("\xff\xfe\0\x01=\n==\n\"\ndevice=\nok\n", 20) << 0;
        QTest::newRow("no answer") << QByteArray("x\n") << 0;
        QTest::newRow("half a line") << QByteArray("device=a kind=mo") << 0;
        QTest::newRow("huge line") << QByteArray(1 << 20, 'x') << 0;
        QTest::newRow("huge line with an end") << QByteArray(1 << 16, 'x') + "\nok\n" << 0;
        QTest::newRow("endless lines") << QByteArray("x\n").repeated(1 << 17) << 0;
        QTest::newRow("many answers") << QByteArray("ok\n").repeated(10000) << 0;
        QTest::newRow("error") << QByteArray("error no order state\n") << 0;
        QTest::newRow("bad ids")
            << QByteArray("device=../x kind=mouse\ndevice=A kind=mouse\ndevice=a kind=cat\nok\n") << 0;
        QTest::newRow("wild numbers")
            << QByteArray("device=a kind=mouse battery=99999999999 profile=-7 stage=x rate=2147483647\nok\n")
            << 1;
        QTest::newRow("markup") << QByteArray("device=a kind=mouse name=\"<img src=x>%1%2%9\"\nok\n") << 1;
        QTest::newRow("twice") << QByteArray("device=a kind=mouse\ndevice=a kind=receiver\nok\n") << 1;
        QByteArray many;
        for (int i = 0; i < 900; ++i)
            many += "device=d" + QByteArray::number(i) + " kind=mouse\n";
        QTest::newRow("many devices") << many + "ok\n" << int(PanelState::DeviceLimit);
    }
    void hostileAnswers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, devices);
        {
            const Impostor impostor(folder->path(), answer.toStdString());
            QVERIFY(impostor.isListening());
            open();
            part<QTabWidget>("tabs")->setCurrentIndex(1);
            QTRY_VERIFY(impostor.asked() >= 3);
            if (devices > 0)
                QTRY_COMPARE(rows(), devices);
            QVERIFY(rows() <= devices);
            QVERIFY(shown("a").battery <= 100 && shown("a").profile >= 0);
            QCOMPARE(part<QTableView>("flashBytes")->model()->rowCount(), 0);
        }
        // Whatever it was, a sound emulator is taken after it.
        startEmulator();
        QTRY_COMPARE_WITH_TIMEOUT(rows(), 3, 10000);
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
        QCOMPARE(order,
                 QStringList(
                     {"pluggedCheck",  "radioCheck",  "asleepCheck", "profileBox",          "batterySlider",
                      "chargingCheck", "pressDpi",    "pressRate",   "pressProfile",        "pressLight",
                      "pressBar",      "resetButton", "faultKind",   "faultWhere",          "faultAt",
                      "faultCommand",  "faultAdd",    "faultClear",  "qt_tabwidget_tabbar", "pauseButton",
                      "clearButton",   "reportList",  "paceCheck",   "deviceList"}));
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    application.setFont(QFont("DejaVu Sans", 9));
    look::apply(application);
    tst_Panel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_panel.moc"
