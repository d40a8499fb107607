// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The contents of one language file: texts by device word, section and key, and choice lists by name. The two
// tables below are the whole schema. Reading has no side effects; the result is immutable.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <array>

namespace language
{

enum class Word : uint8_t { Keyboard, Mouse };

enum class Section : uint8_t {
    AdvancedSettings,
    Settings,
    common,
    home,
    infoTips,
    key,
    light,
    macro,
    pair,
    sensor,
    update,
};

struct SectionRow {
    const char *name;
    bool forKeyboard; // under "keyboard" the other sections are skipped
};
constexpr std::array<SectionRow, 11> Sections = {{
    {"AdvancedSettings", false},
    {"Settings", true},
    {"common", true},
    {"home", false},
    {"infoTips", false},
    {"key", true},
    {"light", true},
    {"macro", true},
    {"pair", true},
    {"sensor", false},
    {"update", true},
}};

// A choice table collects the elements of the arrays of its name under its word: the value field of each
// under its key field. A type takes only the elements whose member "type" is equal.
struct ChoiceRow {
    const char *name;
    Word word;
    const char *keyField;
    const char *valueField;
    const char *type; // null: all elements
};
constexpr std::array<ChoiceRow, 30> Choices = {{
    {"KeyOptions", Word::Mouse, "value", "label", nullptr},
    {"LightOffTimeOptions", Word::Keyboard, "value", "option", nullptr},
    {"LightOffTimeOptions", Word::Mouse, "value", "option", nullptr},
    {"ReportRates", Word::Keyboard, "value", "option", nullptr},
    {"ReportRates", Word::Mouse, "value", "option", nullptr},
    {"keyboardTabList", Word::Keyboard, "value", "option", nullptr},
    {"DisableList", Word::Keyboard, "value", "option", nullptr},
    {"FunctionList", Word::Keyboard, "value", "option", nullptr},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x00"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x01"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x02"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x03"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x05"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x06"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x09"},
    {"keyboardKeyfunctions", Word::Keyboard, "value", "label", "0x0A"},
    {"modeList", Word::Keyboard, "value", "option", nullptr},
    {"InsertEventOptions", Word::Keyboard, "command", "option", nullptr},
    {"InsertEventOptions", Word::Mouse, "command", "option", nullptr},
    {"dpiModeOptions", Word::Mouse, "value", "option", nullptr},
    {"tabsList", Word::Mouse, "id", "option", nullptr},
    {"ProfileOptions", Word::Mouse, "value", "option", nullptr},
    {"DPIEffectOptions", Word::Mouse, "value", "option", nullptr},
    {"LightModeOptions", Word::Mouse, "value", "option", nullptr},
    {"StatusDescriptionList", Word::Mouse, "value", "option", nullptr},
    {"receiverList", Word::Mouse, "value", "option", nullptr},
    {"receiverStatusList", Word::Mouse, "info", "option", nullptr},
    {"LODOptions", Word::Mouse, "value", "option", nullptr},
    {"PerformanceOptions", Word::Mouse, "value", "option", nullptr},
    {"SensorModeOptions", Word::Mouse, "value", "option", nullptr},
}};

using Texts = QMap<QString, QString>;

struct LanguageFile {
    std::array<std::array<Texts, Sections.size()>, 2> texts; // by word, by section
    std::array<Texts, Choices.size()> choices;

    const Texts &section(Word word, Section section) const;
    // Empty for a name that has no table under this word.
    Texts choice(const char *name, Word word = Word::Mouse, const char *type = nullptr) const;
};

constexpr qint64 LanguageSizeLimit = 4194304; // bytes

// Reads members in the file's order, because a section's name applies until the next one. Empty for bytes
// that are not JSON.
LanguageFile readLanguage(const QByteArray &json);
// Empty for a file that is missing, too large or not JSON.
LanguageFile readLanguageFile(const QString &path);

} // namespace language
