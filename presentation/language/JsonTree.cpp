// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/language/JsonTree.h"

#include <QTextCodec>

namespace
{

// Each function consumes one element at the front and returns whether it was valid.
class Parser
{
public:
    Parser(const QString &json, int maxDepth) : json_(json), depthLeft_(maxDepth) {}

    bool document(JsonValue *value) { return this->value(value) && at_ == json_.size(); }

private:
    QChar peek() const { return at_ < json_.size() ? json_.at(at_) : QChar(); }
    bool take(char mark)
    {
        if (at_ == json_.size() || peek() != QLatin1Char(mark))
            return false;
        ++at_;
        return true;
    }
    bool takeWord(const char *word)
    {
        const QLatin1String text(word);
        const bool found = json_.midRef(at_, text.size()) == text;
        at_ += found ? text.size() : 0;
        return found;
    }
    void skipBlanks()
    {
        while (take(' ') || take('\t') || take('\r') || take('\n')) {
        }
    }
    bool takeMark(char mark)
    {
        skipBlanks();
        const bool found = take(mark);
        skipBlanks();
        return found;
    }

    bool value(JsonValue *value)
    {
        skipBlanks();
        const bool found = bareValue(value);
        skipBlanks();
        return found;
    }
    bool bareValue(JsonValue *value)
    {
        switch (peek().unicode()) {
        case '{':
            value->kind = JsonValue::Kind::Object;
            return nested('}', [&] { return member(value); });
        case '[':
            value->kind = JsonValue::Kind::Array;
            return nested(']', [&] {
                value->items.emplace_back();
                return this->value(&value->items.back());
            });
        case '"':
            value->kind = JsonValue::Kind::Text;
            return string(&value->text);
        default:
            return takeWord("true") || takeWord("false") || takeWord("null") || number(value);
        }
    }
    // Comma-separated elements between two brackets.
    template <typename Part> bool nested(char end, Part part)
    {
        ++at_;
        if (depthLeft_-- == 0)
            return false;
        if (!takeMark(end)) {
            do {
                if (!part())
                    return false;
            } while (takeMark(','));
            if (!take(end))
                return false;
        }
        ++depthLeft_;
        return true;
    }
    bool member(JsonValue *object)
    {
        object->members.emplace_back();
        JsonMember &member = object->members.back();
        return string(&member.name) && takeMark(':') && value(&member.value);
    }
    bool string(QString *text)
    {
        if (!take('"'))
            return false;
        while (at_ < json_.size() && peek() != QLatin1Char('"')) {
            if (!take('\\'))
                *text += json_.at(at_++);
            else if (!escape(text))
                return false;
        }
        return take('"');
    }
    bool escape(QString *text)
    {
        static const QString letters = QStringLiteral("\"\\/bfnrt");
        static const QString values = QStringLiteral("\"\\/\b\f\n\r\t");
        if (take('u'))
            return fourDigits(text);
        const int known = at_ < json_.size() ? letters.indexOf(peek()) : -1;
        if (known >= 0)
            *text += values.at(known);
        ++at_;
        return known >= 0;
    }
    bool fourDigits(QString *text)
    {
        const QString digits = json_.mid(at_, 4);
        bool isNumber = digits.size() == 4 && digits.at(0).isLetterOrNumber(); // no sign, no blank
        const ushort character = isNumber ? digits.toUShort(&isNumber, 16) : 0;
        *text += QChar(character);
        at_ += 4;
        return isNumber;
    }
    bool digits()
    {
        const int start = at_;
        while (peek() >= QLatin1Char('0') && peek() <= QLatin1Char('9'))
            ++at_;
        return at_ > start;
    }
    bool number(JsonValue *value)
    {
        const int start = at_;
        take('-');
        if (!take('0') && !digits())
            return false;
        if (take('.') && !digits())
            return false;
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            if (!digits())
                return false;
        }
        value->kind = JsonValue::Kind::Number;
        value->text = QString::number(json_.midRef(start, at_ - start).toDouble(), 'g', 15);
        return true;
    }

    const QString &json_;
    int at_ = 0;
    int depthLeft_;
};

} // namespace

const JsonValue &JsonValue::member(const char *name) const
{
    static const JsonValue none;
    for (auto member = members.crbegin(); member != members.crend(); ++member) {
        if (member->name == QLatin1String(name))
            return member->value;
    }
    return none;
}

std::optional<JsonValue> parseJson(const QByteArray &json, int maxDepth)
{
    QTextCodec::ConverterState state;
    const QString text = QTextCodec::codecForName("UTF-8")->toUnicode(json.constData(), json.size(), &state);
    JsonValue value;
    const bool isUtf8 = state.invalidChars == 0 && state.remainingChars == 0;
    if (!isUtf8 || !Parser(text, maxDepth).document(&value))
        return std::nullopt;
    return value;
}
