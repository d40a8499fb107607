// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialogs that ask for a file.
#include "presentation/DeviceOperations.h"
#include "presentation/FileDialog.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeView>

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
