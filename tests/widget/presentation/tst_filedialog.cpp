// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialogs that ask for a file.
#include "presentation/ColorDialog.h"
#include "presentation/DeviceOperations.h"
#include "presentation/FileDialog.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QToolButton>
#include <QTreeView>

namespace
{

// But for what a display that draws to memory says of each window.
QStringList warnings;
void keepWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !text.startsWith("This plugin does not support"))
        warnings << text;
}

} // namespace

class tst_FileDialog : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> home;

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", home->path().toLocal8Bit());
        fixture::clean();
    }

    void startsInAFolderThatExists()
    {
        QCOMPARE(documentsFolder(), home->path());
        QDir(home->path()).mkdir("Documents");
        QCOMPARE(documentsFolder(), home->filePath("Documents"));
    }

    void anExportProposesTheNameOfItsModel()
    {
        fixture::select(fixture::info("dev", Receiver8K));
        QString proposed, folder;
        bool fits = false;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            proposed = dialog->findChild<QLineEdit *>("fileNameEdit")->text();
            folder = dialog->directory().path();
            const auto *list = dialog->findChild<QTreeView *>("treeView");
            fits = list->header()->sectionResizeMode(0) == QHeaderView::Stretch &&
                   list->header()->length() <= list->viewport()->width();
            static_cast<QDialog *>(dialog)->accept();
        });
        runImageExport(nullptr);
        QCOMPARE(proposed, QString("Device_CID12_MID06.bin"));
        QCOMPARE(folder, home->path());
        QVERIFY(fits);
        QVERIFY(QFile::exists(home->filePath("Device_CID12_MID06.bin")));
    }

    // The toolkit restores the way in which a file dialog was shown last, in any program.
    void itListsDatesWhateverWasShownLast()
    {
        qputenv("XDG_CONFIG_HOME", home->path().toLocal8Bit());
        const auto restored = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"); });
        QSettings(QSettings::UserScope, "QtProject").setValue("FileDialog/viewMode", "List");
        bool isRestored = false, isDetailed = false;
        {
            QFileDialog other;
            other.setOption(QFileDialog::DontUseNativeDialog);
            isRestored = other.viewMode() == QFileDialog::List;
        }
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            isDetailed = dialog->viewMode() == QFileDialog::Detail &&
                         dialog->findChild<QTreeView *>("treeView")->isVisible();
            dialog->reject();
        });
        filedialog::askForFile(nullptr, "File(*.bin)");
        QVERIFY(isRestored);
        QVERIFY(isDetailed);
    }

    // Over a page with a sheet of its own, whose style the dialog begins with.
    void itHasTheLooksOfTheSkin()
    {
        QWidget page;
        page.setStyleSheet("QFrame{background: #21272a;}");
        page.show();
        const auto middleOf = [](QWidget *widget) {
            return widget->grab().toImage().pixelColor(widget->width() / 4, widget->height() / 2);
        };
        const QColor primary(0, 112, 74);
        QColor chosen;
        QStringList bare;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            chosen = middleOf(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open));
            for (QToolButton *button : dialog->findChildren<QToolButton *>()) {
                if (!button->isVisibleTo(dialog))
                    continue;
                button->setEnabled(true);
                const QImage shot = button->grab().toImage().convertToFormat(QImage::Format_RGB32);
                bool drawn = false;
                for (int x = 0; x < shot.width(); ++x)
                    drawn = drawn || shot.pixel(x, shot.height() / 2) != shot.pixel(0, 0);
                if (!drawn || !button->icon().isNull())
                    bare << button->objectName();
            }
            dialog->reject();
        });
        filedialog::askForFile(&page, "File(*.bin)");
        QCOMPARE(chosen, primary);
        QCOMPARE(bare, QStringList());
        const std::unique_ptr<QColorDialog> colors(makeColorDialog(&page));
        colors->show();
        auto *const ok = colors->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        QCOMPARE(middleOf(ok), primary);
    }

    // Names stand where they stand without icons, and the toolkit has no reason to complain of missing ones.
    void itHasNoIconsAndWarnsOfNothing()
    {
        QDir(home->path()).mkdir("Folder");
        warnings.clear();
        const QtMessageHandler before = qInstallMessageHandler(keepWarning);
        const auto restored = qScopeGuard([before] { qInstallMessageHandler(before); });
        QVector<QIcon> icons;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            const auto left = qScopeGuard([dialog] { dialog->reject(); });
            icons << dialog->findChild<QComboBox *>("lookInCombo")->itemIcon(0);
            for (const char *name : {"sidebar", "treeView"}) {
                const auto *view = dialog->findChild<QAbstractItemView *>(name);
                QTRY_VERIFY(view->model()->rowCount(view->rootIndex()) > 0);
                icons
                    << view->model()->index(0, 0, view->rootIndex()).data(Qt::DecorationRole).value<QIcon>();
            }
        });
        filedialog::askForFile(nullptr, "File(*.bin);;All(*)");
        QCOMPARE(icons.size(), 3);
        for (const QIcon &icon : qAsConst(icons))
            QVERIFY(icon.isNull());
        fixture::whenModal<QFileDialog>([](QFileDialog *dialog) { dialog->reject(); });
        filedialog::askForNewFile(nullptr, "File(*.bin)", "bin", "Name.bin");
        qWarning("The handler keeps this one.");
        QCOMPARE(warnings, QStringList("The handler keeps this one."));
    }

    void nothingIsNamedByADialogThatIsDismissed()
    {
        QString title;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            title = dialog->windowTitle();
            dialog->reject();
        });
        QCOMPARE(filedialog::askForFile(nullptr, "File(*.bin)"), QString());
        QCOMPARE(title, QString("SelectFile"));
    }
};

TEST_CLASS(tst_FileDialog, fixture::ShippedLooks)

#include "tst_filedialog.moc"
