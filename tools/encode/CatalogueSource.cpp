// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/CatalogueSource.h"

#include "catalogue/EncodedKeys.h"

#include <cstdint>
#include <set>

namespace
{

std::string trimmed(const std::string &text)
{
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string base64(const std::string &bytes)
{
    constexpr char Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (std::size_t j = i; j < i + 3; ++j)
            group = group << 8 | (j < bytes.size() ? uint8_t(bytes[j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            out += i + j <= bytes.size() ? Digits[group >> (18 - 6 * j) & 63U] : '=';
    }
    return out;
}

std::string encodeItems(const std::string &value, bool encoded)
{
    std::string out;
    for (std::size_t start = 0; start <= value.size();) {
        const std::size_t comma = std::min(value.find(',', start), value.size());
        const std::string item = trimmed(value.substr(start, comma - start));
        out += (start == 0 ? "" : ",") + (encoded ? base64(item) : item);
        start = comma + 1;
    }
    return out;
}

class Encoder
{
public:
    // Each returns its error text, empty for none.
    std::string line(const std::string &line)
    {
        if (line.empty() || line.front() == ';')
            return {};
        return line.front() == '[' ? heading(line) : value(line);
    }
    std::string end() const
    {
        if (total_ != std::to_string(models_))
            return "DeviceTotal is \"" + total_ + "\", but there are " + std::to_string(models_) + " models";
        return {};
    }
    const std::string &text() const { return text_; }

private:
    std::string heading(const std::string &line)
    {
        const std::string expected =
            section_.empty() ? "[Option]" : "[Drive" + std::to_string(models_ + 1) + "]";
        if (line != expected)
            return "expected " + expected;
        models_ += section_.empty() ? 0 : 1;
        section_ = line;
        keys_.clear();
        text_ += (text_.empty() ? "" : "\n") + line + "\n";
        return {};
    }
    std::string value(const std::string &line)
    {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos)
            return "neither [section], nor Key=Value, nor a comment";
        if (section_.empty())
            return "a value before the first section";
        const std::string key = trimmed(line.substr(0, equals));
        const std::string content = trimmed(line.substr(equals + 1));
        constexpr char KeyLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";
        if (key.empty() || key.find_first_not_of(KeyLetters) != std::string::npos)
            return "\"" + key + "\" is no key";
        if (!keys_.insert(key).second)
            return key + " stands twice in " + section_;
        return checkedValue(key, content);
    }
    std::string checkedValue(const std::string &key, const std::string &content)
    {
        for (const char c : content) {
            if (std::string_view("\"\\;@").find(c) != std::string_view::npos || uint8_t(c) < 32 ||
                uint8_t(c) > 126)
                return "the value of " + key +
                       " holds a character that has a meaning of its own or is not ASCII";
        }
        if (section_ == "[Option]" && key == "DeviceTotal")
            total_ = content;
        text_ += key + "=" + encodeItems(content, isEncodedKey(key)) + "\n";
        return {};
    }

    std::string text_;
    std::string section_;
    std::set<std::string> keys_; // of this section
    std::string total_;
    int models_ = 0;
};

} // namespace

EncodedCatalogue encodeCatalogue(std::istream &source)
{
    Encoder encoder;
    EncodedCatalogue result;
    for (std::string line; std::getline(source, line);) {
        ++result.errorLine;
        result.error = encoder.line(trimmed(line));
        if (!result.error.empty())
            return result;
    }
    result.error = encoder.end();
    result.text = encoder.text();
    return result;
}
