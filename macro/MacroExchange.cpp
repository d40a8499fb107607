// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MacroExchange.h"

#include "presentation/FileDialog.h"
#include "presentation/StyleSheets.h"

#include <QFile>

namespace macro
{

namespace
{

QByteArray iconBytes(const char *name)
{
    QFile file(style::pictureFolder(QStringLiteral("Macro")) + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString filter() { return QStringLiteral("File(*.ini)"); }

} // namespace

void askAndExport(QWidget *page, const ExportedMacro &exported)
{
    const QString path = filedialog::askForNewFile(page, filter(), QStringLiteral("ini"),
                                                   exported.name + QStringLiteral(".ini"));
    if (!path.isEmpty())
        saveExportedMacro(path, exported,
                          {iconBytes("MacroDown.png"), iconBytes("MacroUp.png"), iconBytes("MacroTime.png")});
}

std::optional<ExportedMacro> askAndImport(QWidget *page)
{
    const QString path = filedialog::askForFile(page, filter());
    return path.isEmpty() ? std::nullopt : loadExportedMacro(path);
}

} // namespace macro
