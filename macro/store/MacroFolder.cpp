// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/store/MacroFolder.h"

#include "environment/DataRoot.h"
#include "environment/MacroName.h"
#include "environment/SafeFile.h"
#include "macro/store/MacroFile.h"

#include <QDir>
#include <QRegularExpression>

namespace macro
{

namespace
{

const QString Extension = QStringLiteral(".ini");
constexpr int NumberDigits = 6; // in front of a kept file's name

// What a safe write leaves behind when the program is killed in the middle of it.
bool isLeftover(const QString &file)
{
    static const QRegularExpression unfinished(QStringLiteral("\\.ini\\.[A-Za-z]{6}$"));
    return file.contains(unfinished);
}

bool namesOneFile(const QString &name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QChar());
}

// Nothing, or a file; no link, folder, pipe or device.
bool mayBeWritten(const QString &path)
{
    const QFileInfo entry(path);
    return !entry.isSymLink() && (!entry.exists() || entry.isFile());
}

// A link that leads nowhere takes the name as well.
bool isFree(const QString &name)
{
    const QFileInfo entry(macroPath(name));
    return isMacroName(name) && !entry.exists() && !entry.isSymLink();
}

QStringList keptFiles() { return QDir(keptFolder()).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name); }

QString keptPath(const QString &file) { return keptFolder() + QLatin1Char('/') + file; }

} // namespace

QString macroFolder() { return dataRoot() + QStringLiteral("/usersetting/MacroPage"); }

QString keptFolder() { return dataRoot() + QStringLiteral("/usersetting/MacroKept"); }

QString macroPath(const QString &name) { return macroFolder() + QLatin1Char('/') + name + Extension; }

QStringList macroNames()
{
    QStringList names;
    const QDir folder(macroFolder());
    for (QString file : folder.entryList(QDir::Files | QDir::NoSymLinks, QDir::Name | QDir::IgnoreCase)) {
        if (file.contains(QLatin1String("xml")) || isLeftover(file))
            continue;
        if (file.endsWith(Extension))
            file.chop(Extension.size());
        names << file;
    }
    return names;
}

bool macroExists(const QString &name)
{
    const QFileInfo entry(macroPath(name));
    return namesOneFile(name) && entry.isFile() && !entry.isSymLink();
}

bool createMacro(const QString &name) { return isFree(name) && writeMacroFile(name, QByteArray("")); }

bool renameMacro(const QString &name, const QString &newName)
{
    return macroExists(name) && isFree(newName) && QFile::rename(macroPath(name), macroPath(newName));
}

bool removeMacro(const QString &name) { return macroExists(name) && QFile::remove(macroPath(name)); }

QByteArray readMacroFile(const QString &name)
{
    QByteArray text;
    if (!macroExists(name) || readFile(macroPath(name), MacroFileLimit, &text) != ReadResult::Read)
        return {};
    return text.isNull() ? QByteArray("") : text;
}

bool writeMacroFile(const QString &name, const QByteArray &text)
{
    return namesOneFile(name) && mayBeWritten(macroPath(name)) && writeFileSafely(macroPath(name), text);
}

bool keepMacro(const QString &name)
{
    const QByteArray text = readMacroFile(name);
    if (text.isNull())
        return mayBeWritten(macroPath(name)) && !macroExists(name);
    if (text.isEmpty())
        return true;
    const QString file = QLatin1Char(' ') + name + Extension;
    QStringList kept = keptFiles();
    for (const QString &each : qAsConst(kept))
        if (each.mid(NumberDigits) == file && readFile(keptPath(each), MacroFileLimit) == text)
            return true;
    const int number = kept.isEmpty() ? 1 : kept.last().left(NumberDigits).toInt() + 1;
    const QString next = QString::number(number).rightJustified(NumberDigits, QLatin1Char('0')) + file;
    if (!QDir().mkpath(keptFolder()) || !writeFileSafely(keptPath(next), text))
        return false;
    kept << next;
    while (kept.size() > KeptFiles)
        QFile::remove(keptPath(kept.takeFirst()));
    return true;
}

} // namespace macro
