// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/DesktopEntry.h"

#include "environment/SafeFile.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>

namespace
{

constexpr qint64 SizeLimit = 262144; // bytes; the translations make some of them long

constexpr QChar Backslash = QLatin1Char('\\');

QString unescaped(const QString &value)
{
    QString text;
    for (int i = 0; i < value.size(); ++i) {
        if (value[i] != Backslash || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        const QChar code = value[++i];
        text += code == QLatin1Char('s')   ? QLatin1Char(' ')
                : code == QLatin1Char('n') ? QLatin1Char('\n')
                : code == QLatin1Char('t') ? QLatin1Char('\t')
                : code == QLatin1Char('r') ? QLatin1Char('\r')
                                           : code;
    }
    return text;
}

// Splits at blanks outside of double quotes, inside of which a backslash quotes the next character.
QStringList words(const QString &line)
{
    QStringList found;
    QString word;
    bool quoted = false;
    bool begun = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar each = line[i];
        if (each == QLatin1Char('"')) {
            quoted = !quoted;
            begun = true;
        } else if (quoted && each == Backslash && i + 1 < line.size()) {
            word += line[++i];
        } else if (!quoted && each.isSpace()) {
            if (begun)
                found << word;
            word.clear();
            begun = false;
        } else {
            word += each;
            begun = true;
        }
    }
    return begun ? found << word : found;
}

bool isFieldCode(const QString &word)
{
    return word.size() == 2 && word[0] == QLatin1Char('%') && word[1] != QLatin1Char('%');
}

bool isInstalled(const QString &program) { return !QStandardPaths::findExecutable(program).isEmpty(); }

bool shareOne(const QStringList &left, const QStringList &right)
{
    return std::any_of(left.begin(), left.end(),
                       [&right](const QString &each) { return right.contains(each); });
}

} // namespace

DesktopEntry::DesktopEntry(const QString &path)
{
    bool inGroup = false;
    const QString content = QString::fromUtf8(readFile(path, SizeLimit).value_or(QByteArray()));
    for (const QString &line : content.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line.trimmed() == QLatin1String("[Desktop Entry]");
            continue;
        }
        const int at = line.indexOf(QLatin1Char('='));
        if (inGroup && at > 0 && !line.startsWith(QLatin1Char('#')))
            values_.insert(line.left(at).trimmed(), line.mid(at + 1).trimmed());
    }
}

QString DesktopEntry::text(const char *key) const { return unescaped(values_.value(QLatin1String(key))); }

QStringList DesktopEntry::list(const char *key) const
{
    QStringList items = text(key).split(QLatin1Char(';'));
    items.removeAll(QString());
    return items;
}

QStringList DesktopEntry::command() const
{
    QStringList found;
    for (const QString &word : words(text("Exec")))
        if (!isFieldCode(word))
            found << QString(word).replace(QLatin1String("%%"), QLatin1String("%"));
    return found;
}

bool DesktopEntry::isOffered(const QStringList &desktops) const
{
    const auto isTrue = [this](const char *key) { return text(key) == QLatin1String("true"); };
    const QStringList only = list("OnlyShowIn");
    if (isTrue("Hidden") || isTrue("Terminal") || shareOne(list("NotShowIn"), desktops) ||
        (!only.isEmpty() && !shareOne(only, desktops)))
        return false;
    const QString needed = text("TryExec");
    return isInstalled(command().value(0)) && (needed.isEmpty() || isInstalled(needed));
}

QString DesktopEntry::escaped(const QString &text)
{
    return QString(text)
        .replace(Backslash, QLatin1String("\\\\"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"));
}

// The argument is quoted first, and then the whole value is escaped as every string is.
QString DesktopEntry::quotedArgument(const QString &argument)
{
    QString quoted;
    for (const QChar each : argument) {
        if (QStringLiteral("\"`$\\").contains(each))
            quoted += Backslash;
        quoted += each;
    }
    quoted.replace(QLatin1Char('%'), QLatin1String("%%"));
    return escaped(QLatin1Char('"') + quoted + QLatin1Char('"'));
}
