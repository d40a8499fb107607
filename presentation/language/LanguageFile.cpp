// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "LanguageFile.h"

#include "app/environment/SafeFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstring>

namespace language
{
namespace
{

constexpr int MaxDepth = 64; // of objects and arrays; a language file has five

// Walks the members of nested objects in the order of the file, which QJsonObject does not keep. The bytes
// have passed QJsonDocument before, so that the grammar needs no second check here.
class Walker
{
public:
    Walker(const QByteArray &json, LanguageFile *file) : m_json(json), m_file(file) {}

    void walk()
    {
        skipBlanks();
        value(QString());
    }

private:
    char peek() const { return m_at < m_json.size() ? m_json.at(m_at) : '\0'; }
    void skipBlanks()
    {
        while (peek() != '\0' && strchr(" \t\r\n", peek()) != nullptr)
            ++m_at;
    }
    void skip(char mark)
    {
        skipBlanks();
        if (peek() == mark)
            ++m_at;
        skipBlanks();
    }

    void value(const QString &name)
    {
        switch (peek()) {
        case '{':
            object();
            break;
        case '[':
            takeChoices(name, array());
            break;
        case '"':
            takeText(name, string());
            break;
        default: // a number or a word of the language
            while (peek() != '\0' && strchr(",]} \t\r\n", peek()) == nullptr)
                ++m_at;
        }
    }
    void object()
    {
        skip('{');
        while (peek() != '}' && m_at < m_json.size()) {
            const QString name = string();
            skip(':');
            enter(name);
            value(name);
            skip(',');
        }
        ++m_at;
    }
    void skipString()
    {
        for (++m_at; peek() != '"' && m_at < m_json.size(); ++m_at) {
            if (peek() == '\\')
                ++m_at;
        }
        ++m_at;
    }
    QString string()
    {
        const int start = m_at;
        skipString();
        return QJsonDocument::fromJson('[' + m_json.mid(start, m_at - start) + ']').array().at(0).toString();
    }
    QJsonArray array()
    {
        const int start = m_at;
        int depth = 0;
        do {
            const char c = peek();
            depth += c == '[' ? 1 : c == ']' ? -1 : 0;
            if (c == '"')
                skipString();
            else
                ++m_at;
        } while (depth > 0 && m_at < m_json.size());
        return QJsonDocument::fromJson(m_json.mid(start, m_at - start)).array();
    }

    void enter(const QString &name)
    {
        if (name == QLatin1String("keyboard"))
            m_word = Word::Keyboard;
        else if (name == QLatin1String("mouse"))
            m_word = Word::Mouse;
        for (std::size_t i = 0; i < Sections.size(); ++i) {
            if (name == QLatin1String(Sections[i].name))
                m_section = int(i);
        }
    }
    void takeText(const QString &name, const QString &text)
    {
        if (text.isEmpty() || m_section < 0)
            return;
        if (m_word == Word::Mouse || Sections[std::size_t(m_section)].forKeyboard)
            m_file->texts[std::size_t(m_word)][std::size_t(m_section)].insert(name, text);
    }
    void takeChoices(const QString &name, const QJsonArray &elements)
    {
        for (std::size_t i = 0; i < Choices.size(); ++i) {
            if (Choices[i].word == m_word && name == QLatin1String(Choices[i].name))
                takeElements(Choices[i], elements, &m_file->choices[i]);
        }
    }
    static QString asText(const QJsonValue &value)
    {
        return value.isDouble() ? QString::number(value.toDouble(), 'g', 15) : value.toString();
    }
    static void takeElements(const ChoiceRow &row, const QJsonArray &elements, Texts *table)
    {
        for (const QJsonValue &element : elements) {
            const QJsonObject object = element.toObject();
            const QJsonValue key = object.value(QLatin1String(row.keyField));
            const QJsonValue label = object.value(QLatin1String(row.valueField));
            const bool wanted = row.type == nullptr ||
                                object.value(QLatin1String("type")).toString() == QLatin1String(row.type);
            if (wanted && (key.isString() || key.isDouble()) && label.isString())
                table->insert(asText(key), label.toString());
            takeElements(row, object.value(QLatin1String("children")).toArray(), table);
        }
    }

    const QByteArray m_json;
    LanguageFile *m_file;
    int m_at = 0;
    Word m_word = Word::Keyboard;
    int m_section = -1; // none yet
};

bool isTooDeep(const QByteArray &json)
{
    int depth = 0;
    bool inString = false;
    for (int i = 0; i < json.size() && depth <= MaxDepth; ++i) {
        const char c = json.at(i);
        if (inString && c == '\\')
            ++i;
        else if (c == '"')
            inString = !inString;
        else if (!inString)
            depth += c == '{' || c == '[' ? 1 : c == '}' || c == ']' ? -1 : 0;
    }
    return depth > MaxDepth;
}

} // namespace

const Texts &LanguageFile::section(Word word, Section section) const
{
    return texts[std::size_t(word)][std::size_t(section)];
}

Texts LanguageFile::choice(const char *name, Word word, const char *type) const
{
    for (std::size_t i = 0; i < Choices.size(); ++i) {
        const ChoiceRow &row = Choices[i];
        if (row.word == word && qstrcmp(row.name, name) == 0 && qstrcmp(row.type, type) == 0)
            return choices[i];
    }
    return {};
}

LanguageFile readLanguage(const QByteArray &json)
{
    LanguageFile file;
    const QByteArray content = json.startsWith("\xEF\xBB\xBF") ? json.mid(3) : json;
    QJsonParseError error;
    if (!isTooDeep(content))
        QJsonDocument::fromJson(content, &error);
    else
        error.error = QJsonParseError::DeepNesting;
    if (error.error == QJsonParseError::NoError)
        Walker(content, &file).walk();
    return file;
}

LanguageFile readLanguageFile(const QString &path)
{
    return readLanguage(readFile(path, LanguageSizeLimit).value_or(QByteArray()));
}

} // namespace language
