// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Devices that are there and may not be opened: the selection page says so, says what is missing and which
// command adds it, and forgets it by itself when the permission is granted.
#include "selection/PermissionHint.h"
#include "tests/support/TestMain.h"
#include "tests/widget/selection/RefusedNodes.h"
#include "tests/widget/selection/SelectionPage.h"

#include <QClipboard>
#include <QPlainTextEdit>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using fixture::RefusedNodes;

// Takes the place of the system's function: a node of this name is refused with the number that it ends in.
static const char NumberedNode[] = "/dev/refused-by-";

extern "C" int access(const char *path, int mode) noexcept
{
    constexpr std::size_t length = sizeof NumberedNode - 1;
    if (std::strncmp(path, NumberedNode, length) != 0)
        return ::faccessat(AT_FDCWD, path, mode, 0);
    errno = std::atoi(path + length);
    return errno == 0 ? 0 : -1;
}

class tst_PermissionHint : public SelectionPage
{
    Q_OBJECT

private:
    std::unique_ptr<RefusedNodes> nodes;

    FakeDevice refused(const QString &name, uint8_t mid = 8, int mode = 0)
    {
        return fixture::device(nodes->add(name, mode).toStdString(), mid, Receiver1K);
    }
    static void write(const QString &path, const char *text)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    static QString homeText(const char *key) { return language::text(language::Section::home, key, 0); }
    QString title() const { return child<QLabel>("hintTitle")->text(); }
    QString hint() const { return child<QLabel>("hintText")->text(); }
    QString lines() const { return child<QPlainTextEdit>("hintCommand")->toPlainText(); }
    QString command() const { return lines().replace('\n', ' '); }
    QString prompt() const { return child<QLabel>("label_2")->text(); }

private slots:
    void init()
    {
        begin();
        nodes = std::make_unique<RefusedNodes>(false);
    }
    void cleanup()
    {
        end();
        nodes.reset();
    }

    void theKernelsAnswer_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("refused");
        QTest::newRow("none") << 0 << false;
        QTest::newRow("the node's mode") << EACCES << true;
        QTest::newRow("the device rules of a container") << EPERM << true;
        QTest::newRow("no such node") << ENOENT << false;
    }
    void theKernelsAnswer()
    {
        QFETCH(int, error);
        QFETCH(bool, refused);
        setNodeProbe(nullptr);
        QCOMPARE(isRefused(QLatin1String(NumberedNode) + QString::number(error)), refused);
    }

    void aNodeWithoutTheRightIsNoSilentDevice()
    {
        build();
        QVERIFY(!shows("permissionHint"));
        QVERIFY(
            child<QWidget>("permissionHint")->findChildren<QWidget *>().isEmpty()); // costs a start nothing
        const FakeDevice device = refused("hidraw3");
        plug({device});
        QVERIFY(shows("permissionHint"));
        QCOMPARE(child<QToolButton>("hintCopy")->accessibleName(), homeText("CopyCommandName"));
        QVERIFY2(title().contains(QString::fromStdString(device.path)), qPrintable(title()));
        QVERIFY(shows("label_2"));
        QCOMPARE(prompt(), homeText("PermissionPrompt"));
        QVERIFY(prompt() != homeText("PleaseEnter"));
        QCOMPARE(tileCount(), 0);
        QVERIFY(attached().empty());
        QCOMPARE(fake.count("UsbFinderC_GetDeviceInfo"), 0);
        plug({});
        QVERIFY(!shows("permissionHint"));
        QCOMPARE(prompt(), homeText("PleaseEnter"));
    }

    // It is no device that could be opened, but a repair has to write to it.
    void aBootLoaderWithoutTheRightIsNamedToo()
    {
        build();
        FakeDevice boot = refused("hidraw5");
        boot.pid = "0006";
        plug({boot});
        QVERIFY(shows("permissionHint"));
        QVERIFY2(title().contains(QString::fromStdString(boot.path)), qPrintable(title()));
        QCOMPARE(tileCount(), 0);
        boot.path = nodes->add("hidraw6", 0600).toStdString();
        plug({boot});
        QVERIFY(!shows("permissionHint"));
    }

    void besideTiles()
    {
        build();
        std::vector<FakeDevice> all = devices(2);
        all.push_back(refused("hidraw3"));
        plug(all);
        QCOMPARE(tileCount(), 2);
        QVERIFY(shows("permissionHint"));
        QVERIFY(!shows("label_2"));
        plug(devices(2));
        QVERIFY(!shows("permissionHint"));
        QCOMPARE(tileCount(), 2);
    }

    // Nothing is known of their models, so none can be said to be there twice.
    void severalAreNamedAndNotTakenForDuplicates()
    {
        build();
        std::vector<FakeDevice> five(5);
        for (std::size_t i = 0; i < five.size(); ++i)
            five[i] = refused(QString("hidraw%1").arg(i), 6);
        plug({five[0], five[1]});
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(title().contains("hidraw0") && title().contains("hidraw1") && !title().contains("…"));
        plug(five);
        QVERIFY(!title().contains("hidraw4") && title().endsWith(", …"));
    }

    void theRightComesToANodeThatIsThere()
    {
        build();
        const FakeDevice device = refused("hidraw3", 6);
        plug({device});
        QVERIFY(shows("permissionHint"));
        QCOMPARE(tileCount(), 0);
        RefusedNodes::setMode(QString::fromStdString(device.path), 0600);
        QTRY_COMPARE(tileCount(), 1);
        QVERIFY(!shows("permissionHint"));
        QVERIFY(!shows("label_2"));
    }

    // The node was refused when the search looked and open when the page was told.
    void theRightComesBeforeTheWatch()
    {
        build();
        const FakeDevice device = refused("hidraw3", 6);
        const FakeDevice other = fixture::device("a", 7, Receiver8K);
        fake.setHook([&](const std::string &call) {
            if (call == "UsbFinderC_GetDeviceInfo") // of the other one, after both were looked at
                RefusedNodes::setMode(QString::fromStdString(device.path), 0600);
        });
        plug({device, other});
        QTRY_COMPARE(tileCount(), 2);
        QVERIFY(!shows("permissionHint"));
    }

    void oneOfTwoIsOpened()
    {
        build();
        const FakeDevice first = refused("hidraw3", 6);
        const FakeDevice second = refused("hidraw4", 7);
        plug({first, second});
        RefusedNodes::setMode(QString::fromStdString(first.path), 0600);
        QTRY_COMPARE(tileCount(), 1);
        QTRY_VERIFY(!title().contains("hidraw3"));
        QVERIFY(shows("permissionHint"));
        RefusedNodes::setMode(QString::fromStdString(second.path), 0600);
        QTRY_COMPARE(tileCount(), 2);
        QVERIFY(!shows("permissionHint"));
    }

    void aHiddenPageAsksNobody()
    {
        build();
        const FakeDevice device = refused("hidraw3", 6);
        plug({device});
        const auto searches = [this] { return fake.count("UsbFinderC_FindHidDevicesByDefaultDeviceId"); };
        fake.clearCalls();
        plug({device});
        const int inOne = searches();
        QVERIFY(inOne > 0);
        page->hide();
        fake.clearCalls();
        QSignalSpy changed(child<PermissionHint>("permissionHint"), &PermissionHint::permissionGranted);
        RefusedNodes::setMode(QString::fromStdString(device.path), 0600);
        QTRY_COMPARE(changed.count(), 1);
        for (int i = 1; i <= 3; ++i) { // which gives a search of its own the time to show
            plug({device});
            QCOMPARE(searches(), inOne * i);
        }
    }

    void saysWhatIsMissing_data()
    {
        QTest::addColumn<bool>("installed");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("command");
        QTest::newRow("the rules") << false << 0 << "PermissionNoRules"
                                   << "sudo cp %1/70-morlen.rules /etc/udev/rules.d/ && sudo udevadm control "
                                      "--reload && sudo udevadm trigger";
        QTest::newRow("their effect") << true << 0 << "PermissionNotInEffect"
                                      << "sudo udevadm control --reload && sudo udevadm trigger";
        QTest::newRow("a group") << true << 060 << "PermissionNotInGroup"
                                 << "sudo usermod -aG %2 $USER";
        QTest::newRow("rules before a group") << false << 060 << "PermissionNoRules"
                                              << "sudo cp %1/70-morlen.rules /etc/udev/rules.d/ && sudo "
                                                 "udevadm control --reload && sudo udevadm trigger";
    }
    void saysWhatIsMissing()
    {
        QFETCH(bool, installed);
        QFETCH(int, mode);
        QFETCH(QString, key);
        QFETCH(QString, command);
        if (installed)
            nodes->installRules();
        build();
        const FakeDevice device = refused("hidraw3", 6, mode);
        const QString group = QFileInfo(QString::fromStdString(device.path)).group();
        plug({device});
        const QString rules = nodes->rules() + "/70-morlen.rules";
        QCOMPARE(hint(), homeText(key.toLatin1())
                             .arg(mode && installed ? group
                                  : installed       ? rules
                                                    : "70-morlen.rules"));
        QCOMPARE(this->command(), command.replace("%1", applicationFolder()).replace("%2", group));
    }

    // Rules of an older program do not name the device, and an emptied file names none.
    void rulesOfAnotherVersionAreReplaced()
    {
        const QString own = applicationFolder() + "/70-morlen.rules";
        const QString installed = nodes->rules() + "/70-morlen.rules";
        write(own, "all devices\n");
        const auto lack = [](const QString &node) { return nodeRemedy(node).lack; };
        const QString closed = nodes->add("closed", 0);
        write(installed, "some devices\n");
        const NodeRemedy remedy = nodeRemedy(closed);
        QCOMPARE(int(remedy.lack), int(PermissionLack::OldRules));
        QCOMPARE(remedy.subject, installed);
        QVERIFY2(remedy.command.startsWith("sudo cp " + own), qPrintable(remedy.command));
        build();
        plug({refused("hidraw3")});
        QCOMPARE(hint(), homeText("PermissionOldRules").arg(installed));
        QCOMPARE(int(lack(nodes->add("ofAGroup", 060))), int(PermissionLack::NotInGroup));
        write(installed, "all devices\n");
        QCOMPARE(int(lack(closed)), int(PermissionLack::NotInEffect));
        QFile::remove(installed);
        QVERIFY(QFile::link("/dev/null", installed));
        QCOMPARE(int(lack(closed)), int(PermissionLack::OldRules));
        QFile::remove(installed);
        QCOMPARE(mkfifo(installed.toLocal8Bit(), 0600), 0); // which nobody writes to
        QCOMPARE(int(lack(closed)), int(PermissionLack::OldRules));
        QFile::remove(own);
        QCOMPARE(int(lack(closed)), int(PermissionLack::NotInEffect)); // nothing to compare with
    }

    // The rules come and give the node to a group.
    void whatIsMissingChanges()
    {
        build();
        const FakeDevice device = refused("hidraw3", 6);
        plug({device});
        QCOMPARE(hint(), homeText("PermissionNoRules").arg("70-morlen.rules"));
        nodes->installRules();
        RefusedNodes::setMode(QString::fromStdString(device.path), 060);
        QTRY_VERIFY(command().startsWith("sudo usermod"));
        QVERIFY(shows("permissionHint"));
    }

    // Two lines have two commands or three, none of them in parts; they go to the clipboard in one.
    void aLineEndsBetweenTwoCommands_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("second");
        QTest::newRow("short") << "/opt/m"
                               << "sudo udevadm trigger";
        QTest::newRow("long") << "/usr/local/share/morlen/" + QString(12, 'x')
                              << "sudo udevadm control --reload && sudo udevadm trigger";
        QTest::newRow("as it can") << "/opt/" + QString(150, 'x') << QString();
    }
    void aLineEndsBetweenTwoCommands()
    {
        QFETCH(QString, folder);
        QFETCH(QString, second);
        build();
        plug({refused("hidraw3")});
        const QString before = applicationFolder();
        setApplicationFolder(folder);
        emit PostMsg::instance()->SigAllLanguage(0);
        setApplicationFolder(before);
        QVERIFY2(command().startsWith("sudo cp " + folder), qPrintable(command()));
        QCOMPARE(lines().contains('\n'), !second.isEmpty());
        if (!second.isEmpty()) {
            QVERIFY(lines().section('\n', 0, 0).endsWith(" &&"));
            QCOMPARE(lines().section('\n', 1), second);
            QCOMPARE(child<QPlainTextEdit>("hintCommand")->document()->size().height(), 2.0); // in lines
        }
        child<QToolButton>("hintCopy")->click();
        QCOMPARE(QApplication::clipboard()->text(), command());
    }

    void aFolderThatTheShellWouldReadWrong()
    {
        const QString before = applicationFolder();
        setApplicationFolder("/opt/it's here");
        QCOMPARE(nodeRemedy("/dev/none").command.section(" && ", 0, 0),
                 QString("sudo cp '/opt/it'\\''s here/70-morlen.rules' /etc/udev/rules.d/"));
        setApplicationFolder(before);
    }

    void onlyNodesAreAskedFor()
    {
        setNodeProbe(nullptr);
        const QString closed = nodes->add("closed", 0);
        QVERIFY(!isRefused(closed));
        QVERIFY(!isRefused("/dev/null"));
        QVERIFY(!isRefused("/dev/no-such-node"));
    }

    void theCommandCanBeTaken()
    {
        build();
        plug({refused("hidraw3")});
        auto *copy = child<QToolButton>("hintCopy");
        QApplication::clipboard()->clear();
        copy->click();
        QCOMPARE(QApplication::clipboard()->text(), command());
        QCOMPARE(copy->text(), homeText("Copied"));
        auto *lines = child<QPlainTextEdit>("hintCommand");
        QVERIFY(lines->isReadOnly());
        QTest::keyClick(lines, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(lines, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), this->lines());
        plug({refused("hidraw4")});
        QCOMPARE(copy->text(), homeText("CopyCommand"));
    }

    void theTabKeyComesToItLast()
    {
        build();
        std::vector<FakeDevice> all = devices(4);
        all.push_back(refused("hidraw3"));
        plug(all);
        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        child<QToolButton>("RightButton")->setFocusPolicy(Qt::StrongFocus);
        child<QToolButton>("RightButton")->setFocus();
        QTest::keyClick(page.get(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QString("hintCommand"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QString("hintCopy"));
    }

    void aRepairComesFirst()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, registry::UpdateFailInfo, "x");
        build();
        plug({refused("hidraw3")});
        QCOMPARE(prompt(), homeText("RepairDevice"));
        QVERIFY(shows("Repair"));
        QVERIFY(shows("permissionHint"));
        QVERIFY(
            !child<QWidget>("Repair")->geometry().intersects(child<QWidget>("permissionHint")->geometry()));
    }

    void aLanguageReachesTheHint()
    {
        build();
        plug({refused("hidraw3")});
        child<QLabel>("hintText")->setText({});
        child<QLabel>("label_2")->setText({});
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(hint(), homeText("PermissionNoRules").arg("70-morlen.rules"));
        QCOMPARE(prompt(), homeText("PermissionPrompt"));
    }
};

TEST_CLASS(tst_PermissionHint, fixture::ShippedLooks)

#include "tst_permissionhint.moc"
