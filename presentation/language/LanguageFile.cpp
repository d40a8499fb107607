// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/language/LanguageFile.h"

#include "environment/SafeFile.h"
#include "presentation/language/JsonTree.h"

namespace language
{
namespace
{

constexpr int MaxDepth = 64; // of objects and arrays; a language file has five

class Walker
{
public:
    explicit Walker(LanguageFile *file) : file_(file) {}

    void walk(const QString &name, const JsonValue &value)
    {
        if (value.kind == JsonValue::Kind::Array)
            takeChoices(name, value);
        for (const JsonMember &member : value.members) {
            enter(member.name);
            if (member.value.kind == JsonValue::Kind::Text)
                takeText(member.name, member.value.text);
            walk(member.name, member.value);
        }
    }

private:
    // A word and a section apply until the next one, at any depth of the tree.
    void enter(const QString &name)
    {
        if (name == QLatin1String("keyboard"))
            word_ = Word::Keyboard;
        else if (name == QLatin1String("mouse"))
            word_ = Word::Mouse;
        for (std::size_t i = 0; i < Sections.size(); ++i) {
            if (name == QLatin1String(Sections[i].name))
                section_ = int(i);
        }
    }
    void takeText(const QString &name, const QString &text)
    {
        if (text.isEmpty() || section_ < 0)
            return;
        if (word_ == Word::Mouse || Sections[std::size_t(section_)].forKeyboard)
            file_->texts[std::size_t(word_)][std::size_t(section_)].insert(name, text);
    }
    void takeChoices(const QString &name, const JsonValue &elements)
    {
        for (std::size_t i = 0; i < Choices.size(); ++i) {
            if (Choices[i].word == word_ && name == QLatin1String(Choices[i].name))
                takeElements(Choices[i], elements, &file_->choices[i]);
        }
    }
    static void takeElements(const ChoiceRow &row, const JsonValue &elements, Texts *table)
    {
        for (const JsonValue &element : elements.items) {
            const JsonValue &key = element.member(row.keyField);
            const JsonValue &label = element.member(row.valueField);
            const bool hasKey = key.kind == JsonValue::Kind::Text || key.kind == JsonValue::Kind::Number;
            const bool wanted = row.type == nullptr || element.member("type").text == QLatin1String(row.type);
            if (wanted && hasKey && label.kind == JsonValue::Kind::Text)
                table->insert(key.text, label.text);
            takeElements(row, element.member("children"), table);
        }
    }

    LanguageFile *file_;
    Word word_ = Word::Keyboard;
    int section_ = -1; // none yet
};

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
    if (const auto tree = parseJson(json, MaxDepth))
        Walker(&file).walk(QString(), *tree);
    return file;
}

LanguageFile readLanguageFile(const QString &path)
{
    return readLanguage(readFile(path, LanguageSizeLimit).value_or(QByteArray()));
}

} // namespace language
