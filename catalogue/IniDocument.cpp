// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/IniDocument.h"

#include "catalogue/IniValue.h"
#include "environment/Words.h"

namespace
{

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

// Splits into logical lines: a backslash escapes the next character, quotes may span line ends, and an
// unquoted ";" begins a comment.
class LineSplitter
{
public:
    explicit LineSplitter(const QByteArray &bytes) : bytes_(bytes) {}

    bool next(QByteArray *line, int *equals)
    {
        while (at_ < bytes_.size() && isSpace(bytes_.at(at_)))
            ++at_;
        if (at_ >= bytes_.size())
            return false;
        const int start = at_;
        *equals = -1;
        inQuotes_ = false;
        while (at_ < bytes_.size() && !endsLine(bytes_.at(at_)))
            step(start, equals);
        *line = bytes_.mid(start, at_ - start);
        skipComment();
        return true;
    }

private:
    bool endsLine(char c) const { return !inQuotes_ && (isLineEnd(c) || c == ';'); }
    void step(int start, int *equals)
    {
        const char c = bytes_.at(at_++);
        if (c == '"')
            inQuotes_ = !inQuotes_;
        else if (c == '=' && *equals < 0)
            *equals = at_ - 1 - start;
        else if (c == '\\' && at_ < bytes_.size())
            skipEscaped();
    }
    void skipEscaped()
    {
        const bool carriageReturn = bytes_.at(at_++) == '\r';
        if (carriageReturn && at_ < bytes_.size() && bytes_.at(at_) == '\n')
            ++at_;
    }
    void skipComment()
    {
        if (at_ < bytes_.size() && bytes_.at(at_) == ';') {
            while (at_ < bytes_.size() && !isLineEnd(bytes_.at(at_)))
                ++at_;
        }
    }

    const QByteArray &bytes_;
    int at_ = 0;
    bool inQuotes_ = false;
};

// Joins the levels with single slashes and removes those at the ends.
QString path(const QString &section, const QString &key)
{
    const QLatin1Char slash('/');
    return splitWords(section + slash + key, slash).join(slash);
}

// The format stores values without a section under "General".
QString sectionName(const QByteArray &heading)
{
    if (heading.toLower() == "general")
        return {};
    return heading.toLower() == "%general" ? parseIniName(heading.mid(1)) : parseIniName(heading);
}

QByteArray heading(const QString &section)
{
    if (section.isEmpty())
        return "General";
    const QByteArray name = formatIniName(section);
    return name.toLower() == "general" ? '%' + name : name;
}

} // namespace

IniDocument IniDocument::parse(const QByteArray &bytes)
{
    IniDocument document;
    QString section;
    const QByteArray content = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    LineSplitter lines(content);
    QByteArray line;
    for (int equals = -1; lines.next(&line, &equals);)
        document.parseLine(line, equals, &section);
    return document;
}

void IniDocument::parseLine(const QByteArray &line, int equals, QString *section)
{
    if (line.startsWith('[')) {
        const int end = line.indexOf(']');
        *section = sectionName(line.mid(1, end < 0 ? -1 : end - 1).trimmed());
    } else if (equals > 0) {
        const QString name = path(*section, parseIniName(line.left(equals).trimmed()));
        if (!name.isEmpty())
            values_.insert(name, parseIniValue(line.mid(equals + 1)));
    }
}

QByteArray IniDocument::serialise() const
{
    QMap<QString, QByteArray> sections; // heading to its lines
    for (auto value = values_.cbegin(); value != values_.cend(); ++value) {
        const int slash = value.key().indexOf(QLatin1Char('/'));
        sections[value.key().left(qMax(slash, 0))] +=
            formatIniName(value.key().mid(slash + 1)) + '=' + formatIniValue(value.value()) + '\n';
    }
    QByteArray bytes;
    for (auto section = sections.cbegin(); section != sections.cend(); ++section)
        bytes += (bytes.isEmpty() ? "[" : "\n[") + heading(section.key()) + "]\n" + section.value();
    return bytes;
}

QString IniDocument::text(const QString &section, const QString &key) const
{
    const QStringList items = list(section, key);
    return items.size() == 1 ? items.first() : QString();
}

QStringList IniDocument::list(const QString &section, const QString &key) const
{
    return values_.value(path(section, key));
}

void IniDocument::set(const QString &section, const QString &key, const QString &text)
{
    values_.insert(path(section, key), {text});
}

void IniDocument::remove(const QString &section, const QString &key) { values_.remove(path(section, key)); }
