// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/IniValue.h"

#include <QByteArrayList>
#include <algorithm>
#include <cstring>

namespace
{

// The letter after the backslash, and the character that it means.
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
    explicit ValueParser(const QByteArray &stored) : at_(stored.constData()), end_(at_ + stored.size()) {}

    QStringList parse()
    {
        skipSpaces();
        while (at_ < end_)
            step();
        endItem();
        return items_;
    }

private:
    void step()
    {
        const char c = *at_++;
        if (c == '\\')
            escape();
        else if (c == '"')
            quote();
        else if (c == ',' && !inQuotes_)
            separator();
        else
            bytes_ += c;
    }
    void skipSpaces()
    {
        while (at_ < end_ && (*at_ == ' ' || *at_ == '\t'))
            ++at_;
    }
    void quote()
    {
        quoted_ = true;
        inQuotes_ = !inQuotes_;
        if (!inQuotes_)
            skipSpaces();
    }
    void separator()
    {
        endItem();
        skipSpaces();
    }
    void escape()
    {
        if (at_ == end_)
            return;
        const char letter = *at_++;
        const char *known = letter == '\0' ? nullptr : strchr(EscapeLetters, letter);
        if (known != nullptr)
            append(ushort(EscapeValues[known - EscapeLetters]));
        else if (letter == 'x' && at_ < end_ && hexDigit(*at_) >= 0)
            append(number(16));
        else if (letter >= '0' && letter <= '7')
            --at_, append(number(8));
        else if ((letter == '\n' || letter == '\r') && at_ < end_ && *at_ != letter &&
                 (*at_ == '\n' || *at_ == '\r'))
            ++at_;
    }
    ushort number(int base)
    {
        unsigned value = 0;
        for (int digit; at_ < end_ && (digit = hexDigit(*at_)) >= 0 && digit < base; ++at_)
            value = value * unsigned(base) + unsigned(digit);
        return ushort(value);
    }
    // Escapes are 16-bit characters, the rest is UTF-8, so each run of bytes is decoded by itself.
    void decodeBytes()
    {
        item_ += QString::fromUtf8(bytes_);
        bytes_.clear();
    }
    void append(ushort character)
    {
        decodeBytes();
        item_ += QChar(character);
        keepLength_ = item_.size();
    }
    void endItem()
    {
        decodeBytes();
        if (!quoted_) {
            while (item_.size() > keepLength_ &&
                   (item_.endsWith(QLatin1Char(' ')) || item_.endsWith(QLatin1Char('\t'))))
                item_.chop(1);
        }
        items_ << plainText();
        item_.clear();
        keepLength_ = 0;
        quoted_ = false;
    }
    QString plainText() const
    {
        if (!item_.startsWith(QLatin1Char('@')))
            return item_;
        if (item_.startsWith(QLatin1String("@@")))
            return item_.mid(1);
        for (const char *form : {"@String(", "@ByteArray("}) {
            const QLatin1String prefix(form);
            if (item_.startsWith(prefix) && item_.endsWith(QLatin1Char(')')))
                return item_.mid(prefix.size(), item_.size() - prefix.size() - 1);
        }
        return isObject() ? QString() : item_;
    }
    bool isObject() const
    {
        constexpr const char *Forms[] = {"@Variant(", "@DateTime(", "@Rect(",
                                         "@Size(",    "@Point(",    "@Invalid("};
        return item_.endsWith(QLatin1Char(')')) &&
               std::any_of(std::begin(Forms), std::end(Forms),
                           [this](const char *form) { return item_.startsWith(QLatin1String(form)); });
    }

    const char *at_;
    const char *end_;
    QStringList items_;
    QString item_;
    QByteArray bytes_;
    int keepLength_ = 0; // length up to the last escaped character, which is never trimmed as a blank
    bool inQuotes_ = false;
    bool quoted_ = false;
};

class ValueFormatter
{
public:
    QByteArray format(const QString &text)
    {
        for (const uint character : text.toUcs4())
            append(character);
        const bool edges = out_.startsWith(' ') || out_.endsWith(' ');
        return needsQuotes_ || edges ? '"' + out_ + '"' : out_;
    }

private:
    void append(uint character)
    {
        const bool digitAfterNumber = afterNumber_ && character < 128 && hexDigit(char(character)) >= 0;
        afterNumber_ = false;
        const char *control =
            character == 0 || character > 31 ? nullptr : strchr(EscapeValues, int(character));
        if (control != nullptr)
            out_.append('\\').append(EscapeLetters[control - EscapeValues]);
        else if (character < 32 || digitAfterNumber)
            appendNumber(character);
        else
            appendPlain(character);
    }
    void appendNumber(uint character)
    {
        out_.append("\\x").append(QByteArray::number(character, 16));
        afterNumber_ = true; // a hexadecimal digit that follows would be read as part of this number
    }
    void appendPlain(uint character)
    {
        needsQuotes_ |= character == ';' || character == ',' || character == '=';
        if (character == '"' || character == '\\')
            out_.append('\\');
        out_.append(QString::fromUcs4(&character, 1).toUtf8());
    }

    QByteArray out_;
    bool needsQuotes_ = false;
    bool afterNumber_ = false;
};

// Decodes the digits after a "%": two, or "U" and four. `used` is the number of characters read.
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
