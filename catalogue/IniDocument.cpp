// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/IniDocument.h"

#include "catalogue/IniValue.h"

namespace
{

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

// Logical lines: a backslash takes the next character along, quotes may span line ends, and an unquoted
// ";" begins a comment.
class LineSplitter
{
public:
    explicit LineSplitter(const QByteArray &bytes) : m_bytes(bytes) {}

    bool next(QByteArray *line, int *equals)
    {
        while (m_at < m_bytes.size() && isSpace(m_bytes.at(m_at)))
            ++m_at;
        if (m_at >= m_bytes.size())
            return false;
        const int start = m_at;
        *equals = -1;
        m_inQuotes = false;
        while (m_at < m_bytes.size() && !endsLine(m_bytes.at(m_at)))
            step(start, equals);
        *line = m_bytes.mid(start, m_at - start);
        skipComment();
        return true;
    }

private:
    bool endsLine(char c) const { return !m_inQuotes && (isLineEnd(c) || c == ';'); }
    void step(int start, int *equals)
    {
        const char c = m_bytes.at(m_at++);
        if (c == '"')
            m_inQuotes = !m_inQuotes;
        else if (c == '=' && *equals < 0)
            *equals = m_at - 1 - start;
        else if (c == '\\' && m_at < m_bytes.size())
            skipEscaped();
    }
    void skipEscaped()
    {
        const bool carriageReturn = m_bytes.at(m_at++) == '\r';
        if (carriageReturn && m_at < m_bytes.size() && m_bytes.at(m_at) == '\n')
            ++m_at;
    }
    void skipComment()
    {
        if (m_at < m_bytes.size() && m_bytes.at(m_at) == ';') {
            while (m_at < m_bytes.size() && !isLineEnd(m_bytes.at(m_at)))
                ++m_at;
        }
    }

    const QByteArray &m_bytes;
    int m_at = 0;
    bool m_inQuotes = false;
};

// One slash between levels and none at the ends, whatever a file says.
QString path(const QString &section, const QString &key)
{
    const QLatin1Char slash('/');
    return (section + slash + key).split(slash, Qt::SkipEmptyParts).join(slash);
}

// "General" is what the format calls the values without a section.
QString sectionName(const QByteArray &heading)
{
    if (heading.compare("general", Qt::CaseInsensitive) == 0)
        return {};
    return heading.compare("%general", Qt::CaseInsensitive) == 0 ? parseIniName(heading.mid(1))
                                                                 : parseIniName(heading);
}

QByteArray heading(const QString &section)
{
    if (section.isEmpty())
        return "General";
    const QByteArray name = formatIniName(section);
    return name.compare("general", Qt::CaseInsensitive) == 0 ? '%' + name : name;
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
            m_values.insert(name, parseIniValue(line.mid(equals + 1)));
    }
}

QByteArray IniDocument::serialise() const
{
    QMap<QString, QByteArray> sections; // heading to its lines
    for (auto value = m_values.cbegin(); value != m_values.cend(); ++value) {
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
    return m_values.value(path(section, key));
}

bool IniDocument::contains(const QString &section, const QString &key) const
{
    return m_values.contains(path(section, key));
}

void IniDocument::set(const QString &section, const QString &key, const QString &text)
{
    m_values.insert(path(section, key), {text});
}

void IniDocument::remove(const QString &section, const QString &key) { m_values.remove(path(section, key)); }
