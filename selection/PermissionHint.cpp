// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/PermissionHint.h"

#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "selection/NodePermission.h"
#include "ui_PermissionHint.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <algorithm>
#include <functional>

namespace
{

// The command's place, by the number of its lines.
constexpr QRect OneLine{52, 92, 704, 32};
constexpr QRect TwoLines{52, 86, 704, 44};
constexpr int CommandEdges = 16; // left and right padding of its text

// By PermissionLack.
constexpr const char *LackKeys[] = {"PermissionNoRules", "PermissionOldRules", "PermissionNotInEffect",
                                    "PermissionNotInGroup"};

QString hintText(const char *key, int index) { return language::text(language::Section::home, key, index); }

QString nameFirst(const QStringList &nodes, int count)
{
    const QString more = nodes.size() > count ? QStringLiteral(", …") : QString();
    return QStringList(nodes.mid(0, count)).join(QStringLiteral(", ")) + more;
}

int widthOf(const QString &text, const QWidget *widget)
{
    return widget->fontMetrics().size(Qt::TextSingleLine, text).width();
}

// On two lines the command ends its first between two commands, which a shell reads as it reads one line; as
// late as both fit. One that fits nowhere is left to the field.
QString inLines(const QString &command, const std::function<bool(const QString &)> &fits)
{
    const QString joint = QStringLiteral(" && ");
    if (fits(command))
        return command;
    for (int at = command.lastIndexOf(joint); at > 0; at = command.lastIndexOf(joint, at - 1)) {
        const QString first = command.left(at + joint.size() - 1);
        const QString second = command.mid(at + joint.size());
        if (fits(first) && fits(second))
            return first + QLatin1Char('\n') + second;
    }
    return command;
}

// Names as many nodes as the label has room for, and one in any case.
QString titleFor(const QLabel *label, const QString &text, const QStringList &nodes)
{
    int count = nodes.size();
    while (count > 1 && widthOf(text.arg(nameFirst(nodes, count)), label) > label->width())
        --count;
    return text.arg(nameFirst(nodes, count));
}

} // namespace

PermissionHint::PermissionHint(QWidget *parent) : QFrame(parent)
{
    hide();
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &PermissionHint::checkNodes);
}

PermissionHint::~PermissionHint() = default;

// On most machines no device refuses, and the card's fonts alone would be a part of each start.
void PermissionHint::build()
{
    ui = std::make_unique<Ui::PermissionHint>();
    ui->setupUi(this);
    applyStyle();
    connect(ui->hintCopy, &QToolButton::clicked, this, &PermissionHint::copyCommand);
    for (QWidget *child : findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        scaleFontsToScreen(child); // the window's fonts were scaled before
}

void PermissionHint::applyStyle()
{
    const QString pictures = style::pictureFolder(QStringLiteral("DialogChange"));
    setStyleSheetWhenShown(
        this, style::areaPicture(pictures, QStringLiteral("permissionHint"), QStringLiteral("Hint.png")));
    setStyleSheetWhenShown(ui->hintSign, style::labelPicture(pictures, QStringLiteral("Locked.png")));
    setStyleSheetWhenShown(ui->hintTitle, style::label(style::color("LabelColor")));
    setStyleSheetWhenShown(ui->hintText, style::label(style::color("LinEditColorSecond")));
    setStyleSheetWhenShown(ui->hintCommand, style::quotedText());
    ui->hintCommand->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setStyleSheetWhenShown(ui->hintCopy,
                           style::textButton(pictures, style::color("ButtonColor"), QStringLiteral("Copy")));
}

// Watches the folder, since a node that may not be read may not be watched either.
void PermissionHint::setNodes(const QStringList &refused)
{
    nodes_ = refused;
    announced_ = false;
    if (!watcher_.directories().isEmpty())
        watcher_.removePaths(watcher_.directories());
    for (const QString &node : nodes_)
        watcher_.addPath(QFileInfo(node).path());
    if (isNeeded() && !ui)
        build();
    writeTexts();
    setVisible(isNeeded());
    checkNodes(); // permission may have been granted before the watch began
}

void PermissionHint::checkNodes()
{
    if (announced_)
        return;
    announced_ = !std::all_of(nodes_.cbegin(), nodes_.cend(), isRefused);
    if (announced_)
        emit permissionGranted();
    else
        writeTexts(); // the reason for the refusal may have changed
}

void PermissionHint::setLanguage(int index)
{
    language_ = index;
    writeTexts();
}

void PermissionHint::writeTexts()
{
    if (!ui)
        return;
    nameWidgets(this, language_);
    ui->hintCopy->setText(hintText("CopyCommand", language_));
    if (!isNeeded())
        return;
    const NodeRemedy remedy = nodeRemedy(nodes_.first());
    ui->hintTitle->setText(titleFor(ui->hintTitle, hintText("PermissionMissing", language_), nodes_));
    ui->hintText->setText(hintText(LackKeys[int(remedy.lack)], language_).arg(remedy.subject));
    const auto fits = [this](const QString &line) {
        return widthOf(line, ui->hintCommand) + CommandEdges <= OneLine.width();
    };
    command_ = remedy.command;
    ui->hintCommand->setGeometry(fits(command_) ? OneLine : TwoLines);
    const QString lines = inLines(command_, fits);
    if (ui->hintCommand->toPlainText() != lines)
        ui->hintCommand->setPlainText(lines);
}

void PermissionHint::copyCommand()
{
    QApplication::clipboard()->setText(command_);
    ui->hintCopy->setText(hintText("Copied", language_));
}
