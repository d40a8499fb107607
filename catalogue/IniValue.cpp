// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/IniValue.h"

#include <QByteArrayList>
#include <algorithm>
#include <cstring>

namespace
{

// The letter behind the backslash, and what it stands for.
constexpr char EscapeLetters[] = "abfnrtv\"?'\\";
constexpr char EscapeValues[] = "\a\b\f\n\r\t\v\"?'\\";

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

class ValueParser
{
public:
    explicit ValueParser(const QByteArray &stored) : m_at(stored.constData()), m_end(m_at + stored.size()) {}

    QStringList parse()
    {
        skipSpaces();
        while (m_at < m_end)
            step();
        endItem();
        return m_items;
    }

private:
    void step()
    {
        const char c = *m_at++;
        if (c == '\\')
            escape();
        else if (c == '"')
            quote();
        else if (c == ',' && !m_inQuotes)
            separator();
        else
            m_bytes += c;
    }
    void skipSpaces()
    {
        while (m_at < m_end && (*m_at == ' ' || *m_at == '\t'))
            ++m_at;
    }
    void quote()
    {
        m_quoted = true;
        m_inQuotes = !m_inQuotes;
        if (!m_inQuotes)
            skipSpaces();
    }
    void separator()
    {
        endItem();
        skipSpaces();
    }
    void escape()
    {
        if (m_at == m_end)
            return;
        const char letter = *m_at++;
        const char *known = letter == '\0' ? nullptr : strchr(EscapeLetters, letter);
        if (known != nullptr)
            append(ushort(EscapeValues[known - EscapeLetters]));
        else if (letter == 'x' && m_at < m_end && hexDigit(*m_at) >= 0)
            append(number(16));
        else if (letter >= '0' && letter <= '7')
            --m_at, append(number(8));
        else if ((letter == '\n' || letter == '\r') && m_at < m_end && *m_at != letter &&
                 (*m_at == '\n' || *m_at == '\r'))
            ++m_at;
    }
    ushort number(int base)
    {
        unsigned value = 0;
        for (int digit; m_at < m_end && (digit = hexDigit(*m_at)) >= 0 && digit < base; ++m_at)
            value = value * unsigned(base) + unsigned(digit);
        return ushort(value);
    }
    // Escapes are 16-bit characters, the rest is UTF-8, so each run of bytes is decoded by itself.
    void decodeBytes()
    {
        m_item += QString::fromUtf8(m_bytes);
        m_bytes.clear();
    }
    void append(ushort character)
    {
        decodeBytes();
        m_item += QChar(character);
        m_keepLength = m_item.size();
    }
    void endItem()
    {
        decodeBytes();
        if (!m_quoted) {
            while (m_item.size() > m_keepLength &&
                   (m_item.endsWith(QLatin1Char(' ')) || m_item.endsWith(QLatin1Char('\t'))))
                m_item.chop(1);
        }
        m_items << plainText();
        m_item.clear();
        m_keepLength = 0;
        m_quoted = false;
    }
    QString plainText() const
    {
        if (!m_item.startsWith(QLatin1Char('@')))
            return m_item;
        if (m_item.startsWith(QLatin1String("@@")))
            return m_item.mid(1);
        for (const char *form : {"@String(", "@ByteArray("}) {
            const QLatin1String prefix(form);
            if (m_item.startsWith(prefix) && m_item.endsWith(QLatin1Char(')')))
                return m_item.mid(prefix.size(), m_item.size() - prefix.size() - 1);
        }
        return isObject() ? QString() : m_item;
    }
    bool isObject() const
    {
        constexpr const char *Forms[] = {"@Variant(", "@DateTime(", "@Rect(",
                                         "@Size(",    "@Point(",    "@Invalid("};
        return m_item.endsWith(QLatin1Char(')')) &&
               std::any_of(std::begin(Forms), std::end(Forms),
                           [this](const char *form) { return m_item.startsWith(QLatin1String(form)); });
    }

    const char *m_at;
    const char *m_end;
    QStringList m_items;
    QString m_item;
    QByteArray m_bytes;
    int m_keepLength = 0; // characters that came from escapes are no trailing blanks
    bool m_inQuotes = false;
    bool m_quoted = false;
};

class ValueFormatter
{
public:
    QByteArray format(const QString &text)
    {
        for (const uint character : text.toUcs4())
            append(character);
        const bool edges = m_out.startsWith(' ') || m_out.endsWith(' ');
        return m_needsQuotes || edges ? '"' + m_out + '"' : m_out;
    }

private:
    void append(uint character)
    {
        const bool digitAfterNumber = m_afterNumber && character < 128 && hexDigit(char(character)) >= 0;
        m_afterNumber = false;
        const char *control =
            character == 0 || character > 31 ? nullptr : strchr(EscapeValues, int(character));
        if (control != nullptr)
            m_out.append('\\').append(EscapeLetters[control - EscapeValues]);
        else if (character < 32 || digitAfterNumber)
            appendNumber(character);
        else
            appendPlain(character);
    }
    void appendNumber(uint character)
    {
        m_out.append("\\x").append(QByteArray::number(character, 16));
        m_afterNumber = true; // a hexadecimal digit next would read as part of this number
    }
    void appendPlain(uint character)
    {
        m_needsQuotes |= character == ';' || character == ',' || character == '=';
        if (character == '"' || character == '\\')
            m_out.append('\\');
        m_out.append(QString::fromUcs4(&character, 1).toUtf8());
    }

    QByteArray m_out;
    bool m_needsQuotes = false;
    bool m_afterNumber = false;
};

// The character behind a "%" as two digits, or as "U" and four; `used` is how many characters that took.
int percentCharacter(const QByteArray &stored, int at, int *used)
{
    const bool wide = at < stored.size() && stored.at(at) == 'U';
    const int first = at + (wide ? 1 : 0);
    const int count = wide ? 4 : 2;
    if (first + count > stored.size())
        return -1;
    int value = 0;
    for (int i = first; i < first + count; ++i) {
        if (hexDigit(stored.at(i)) < 0)
            return -1;
        value = value * 16 + hexDigit(stored.at(i));
    }
    *used = first + count - at;
    return value;
}

bool isPlainInName(QChar c)
{
    return c.unicode() < 128 &&
           (c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('-') || c == QLatin1Char('.'));
}

} // namespace

QStringList parseIniValue(const QByteArray &stored) { return ValueParser(stored).parse(); }

QByteArray formatIniValue(const QStringList &items)
{
    QByteArrayList stored;
    for (const QString &item : items) {
        // A second "@" marks a text that only looks like a serialised object.
        const QString text = item.startsWith(QLatin1Char('@')) ? QLatin1Char('@') + item : item;
        stored << ValueFormatter().format(text);
    }
    return stored.join(", ");
}

QString parseIniName(const QByteArray &stored)
{
    QString name;
    for (int i = 0; i < stored.size(); ++i) {
        int used = 0;
        const int escaped = stored.at(i) == '%' ? percentCharacter(stored, i + 1, &used) : -1;
        if (escaped >= 0)
            name += QChar(ushort(escaped));
        else
            name += stored.at(i) == '\\' ? QLatin1Char('/') : QLatin1Char(stored.at(i));
        i += used;
    }
    return name;
}

QByteArray formatIniName(const QString &name)
{
    QByteArray stored;
    for (const QChar c : name) {
        if (c == QLatin1Char('/'))
            stored += '\\';
        else if (isPlainInName(c))
            stored += c.toLatin1();
        else if (c.unicode() < 256)
            stored += '%' + QByteArray::number(c.unicode(), 16).rightJustified(2, '0').toUpper();
        else
            stored += "%U" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0').toUpper();
    }
    return stored;
}
