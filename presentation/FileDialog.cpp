// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/FileDialog.h"

#include "presentation/ToolkitDialog.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QHeaderView>
#include <QIconEngine>
#include <QLabel>
#include <QStandardPaths>
#include <QToolButton>
#include <QTreeView>

namespace
{

// An icon that counts as none, so that no list keeps room for it, and yet has every size: the dialog's list
// of places scales an icon that is too small, and warns when it has no picture.
class NoPicture : public QIconEngine
{
public:
    void paint(QPainter *, const QRect &, QIcon::Mode, QIcon::State) override {}
    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }
    QIconEngine *clone() const override { return new NoPicture; }
    void virtual_hook(int id, void *data) override
    {
        if (id == IsNullHook)
            *static_cast<bool *>(data) = true;
        else
            QIconEngine::virtual_hook(id, data);
    }
};

// The desktop's icons do not go with the skin.
class NoIcons : public QFileIconProvider
{
public:
    QIcon icon(IconType) const override { return none_; }
    QIcon icon(const QFileInfo &) const override { return none_; }

private:
    const QIcon none_{new NoPicture};
};

// The name takes the room that the other columns leave.
void fitColumns(const QFileDialog &dialog)
{
    auto *const list = dialog.findChild<QTreeView *>(QStringLiteral("treeView"));
    if (!list)
        return; // a dialog of the desktop's own
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

// The toolkit lays a caption beside each list of choices without saying that it is the list's.
void nameChoices(const QFileDialog &dialog)
{
    static constexpr const char *Choices[][2] = {{"lookInLabel", "lookInCombo"},
                                                 {"fileTypeLabel", "fileTypeCombo"}};
    for (const auto &[caption, choice] : Choices)
        if (auto *const label = dialog.findChild<QLabel *>(QLatin1String(caption)))
            label->setBuddy(dialog.findChild<QWidget *>(QLatin1String(choice)));
}

QString run(QFileDialog &dialog)
{
    static NoIcons icons; // the dialog keeps asking for them until its own end
    dialog.setIconProvider(&icons);
    // The folder that the dialog begins with was entered in the list before.
    if (auto *const folders = dialog.findChild<QComboBox *>(QStringLiteral("lookInCombo")))
        for (int i = 0; i < folders->count(); ++i)
            folders->setItemIcon(i, QIcon());
    dialog.setViewMode(QFileDialog::Detail); // else the one that any program used last
    fitColumns(dialog);
    nameChoices(dialog);
    styleToolkitDialog(&dialog);
    for (QToolButton *button : dialog.findChildren<QToolButton *>())
        button->setIcon(QIcon()); // the sheet has the skin's
    // Without icons a list of names shows less than one with dates, and nothing else.
    for (const char *name : {"listModeButton", "detailModeButton"})
        if (auto *const button = dialog.findChild<QToolButton *>(QLatin1String(name)))
            button->hide();
    const bool chosen = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    return chosen ? dialog.selectedFiles().first() : QString();
}

} // namespace

QString documentsFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

namespace filedialog
{

QString askForFile(QWidget *page, const QString &filter)
{
    QFileDialog dialog(page, QStringLiteral("SelectFile"), documentsFolder(), filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return run(dialog);
}

QString askForNewFile(QWidget *page, const QString &filter, const QString &suffix, const QString &proposed)
{
    QFileDialog dialog(page, QStringLiteral("FileSave"), documentsFolder(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    dialog.selectFile(proposed);
    return run(dialog);
}

} // namespace filedialog
