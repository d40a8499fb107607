// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/SensorHeader.h"

#include "catalogue/DpiCounts.h"
#include "catalogue/SensorMacros.h"
#include "tools/encode/KeyForms.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace
{

using Items = std::vector<std::string>;

constexpr std::string_view SensorList = "SENSORS";
constexpr std::string_view CodeStart = "SENSOR_";
constexpr std::string_view CodeMiddle = "_DPI_";
constexpr std::string_view FamilyStarts[] = {"SENSOR", "SENSORS", "SUPPORT"};
constexpr std::string_view SensorLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-";
constexpr std::string_view Blanks = " \t\n";
constexpr int HighestCode = 255; // a byte

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

bool holds(const std::string &text, std::string_view part) { return text.find(part) != std::string::npos; }

bool isIn(const Items &items, const std::string &item)
{
    return std::find(items.begin(), items.end(), item) != items.end();
}

// Decimal, or hexadecimal behind 0x.
std::optional<int> codeOf(const std::string &text)
{
    constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";
    const bool isHex = startsWith(text, "0x") && text.size() > 2 && text.size() < 10 &&
                       text.find_first_not_of(hexDigits, 2) == std::string::npos;
    const std::optional<int> code = isHex ? std::stoi(text, nullptr, 16) : decimalNumber(text);
    return code && *code >= 0 && *code <= HighestCode ? code : std::nullopt;
}

bool isCapability(const std::string &name)
{
    return std::any_of(std::begin(CapabilityMacros), std::end(CapabilityMacros),
                       [&name](const char *macro) { return name == macro; });
}

// Whether the words are equal but for one letter, or for two neighbours in the wrong order.
bool isNearly(std::string_view word, std::string_view other)
{
    while (!word.empty() && !other.empty() && word.front() == other.front()) {
        word.remove_prefix(1);
        other.remove_prefix(1);
    }
    while (!word.empty() && !other.empty() && word.back() == other.back()) {
        word.remove_suffix(1);
        other.remove_suffix(1);
    }
    return (word.size() <= 1 && other.size() <= 1) ||
           (word.size() == 2 && other.size() == 2 && word[0] == other[1] && word[1] == other[0]);
}

// Whether a macro speaks of sensors, even misspelt. All others have no meaning to the program.
bool isOfSensors(const std::string &name)
{
    const std::string_view word = std::string_view(name).substr(0, name.find('_'));
    return std::any_of(std::begin(FamilyStarts), std::end(FamilyStarts), [&](std::string_view start) {
        return startsWith(name, start) || isNearly(word, start);
    });
}

// A macro as a compiler takes it, and so as its author means it.
struct Macro {
    std::string name;
    std::string value;
    std::string line; // with its line end, if it has one
    int number = 0;
};

// Takes what stands in front of the next blank from `rest`, and the blanks behind it.
std::string nextWord(std::string_view &rest)
{
    std::string word(rest.substr(0, rest.find_first_of(Blanks)));
    rest.remove_prefix(std::min(rest.find_first_not_of(Blanks, word.size()), rest.size()));
    return word;
}

std::optional<Macro> macroIn(const std::string &line, int number)
{
    const std::string code = line.substr(0, std::min(line.find("//"), line.find("/*")));
    std::string_view rest = code;
    rest.remove_prefix(std::min(rest.find_first_not_of(Blanks), rest.size()));
    std::string directive = nextWord(rest);
    if (directive == "#")
        directive += nextWord(rest);
    const std::string name = nextWord(rest);
    if (directive != "#define" || name.empty())
        return std::nullopt;
    return Macro{name, std::string(rest.substr(0, rest.find_last_not_of(Blanks) + 1)), line, number};
}

// What the program takes from a line, by the rules of catalogue/SensorDefines.h.
struct Taken {
    enum class As { Capability, Number, Decimal };
    As as;
    std::string name;
    std::string value;
};

Items partsOf(const std::string &text, char separator)
{
    Items parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        if (!part.empty())
            parts.push_back(part);
    }
    return parts;
}

std::string withoutLineEnd(const std::string &text) { return text.substr(0, text.find('\n')); }

std::optional<Taken> takenFrom(const std::string &line)
{
    const Items words = partsOf(line, ' ');
    if (words.size() == 2) {
        const Items parts = partsOf(words[1], '\t');
        if (parts.size() < 2)
            return std::nullopt;
        if (isCapability(parts[0]))
            return Taken{Taken::As::Capability, parts[0], withoutLineEnd(parts[1])};
        if (words[0] == "#define" && holds(parts[1], "\n"))
            return Taken{Taken::As::Number, parts[0], withoutLineEnd(parts[1])};
    } else if (words.size() == 3 && (holds(words[2], "//") || holds(words[2], "\n"))) {
        const std::size_t tab = words[1].find('\t');
        if (tab == std::string::npos)
            return Taken{Taken::As::Number, words[1], withoutLineEnd(words[2])};
        if (words[1].find('\t', tab + 1) == std::string::npos)
            return Taken{Taken::As::Decimal, words[1].substr(0, tab), words[1].substr(tab + 1)};
    }
    return std::nullopt;
}

class Reader
{
public:
    bool take(std::string line)
    {
        ++line_;
        line.erase(std::remove(line.begin(), line.end(), '\r'), line.end());
        const std::optional<Macro> macro = macroIn(line, line_);
        if (!macro) {
            const std::optional<Taken> taken = takenFrom(line);
            return !taken || !(isCapability(taken->name) || isCode(taken->name)) ||
                   fail(line_, "is no #define, but the program reads " + taken->name + " from it");
        }
        if (!isOfSensors(macro->name))
            return true;
        if (macro->value.empty()) // such as an include guard
            return !(macro->name == SensorList || isCapability(macro->name) || isCode(macro->name)) ||
                   fail(line_, macro->name + " has no value");
        if (macro->name == SensorList)
            return takeSensors(*macro);
        macros_.push_back(*macro);
        return true;
    }
    // The order of the lines has no meaning.
    bool end()
    {
        return listLine_ == 0 ? fail(0, "has no line SENSORS")
                              : std::all_of(macros_.begin(), macros_.end(), [this](const Macro &macro) {
                                    return isCapability(macro.name) ? takeCapability(macro) : takeCode(macro);
                                });
    }
    SensorHeader result;

private:
    static bool isCode(const std::string &name)
    {
        return startsWith(name, CodeStart) && holds(name, CodeMiddle);
    }

    bool fail(int line, const std::string &reason)
    {
        result.error = reason;
        result.errorLine = line;
        return false;
    }
    bool failForm(const Macro &macro)
    {
        return fail(macro.number, "the program does not read " + macro.name +
                                      " in this form; it takes #define, a blank, the name, a tab and the "
                                      "value, without other blanks and with a line end");
    }

    // The program itself does not read this list.
    bool takeSensors(const Macro &macro)
    {
        if (listLine_ != 0)
            return fail(macro.number, "SENSORS stands in line " + std::to_string(listLine_) + " already");
        listLine_ = macro.number;
        for (const std::string &name : splitItems(macro.value)) {
            if (name.empty())
                return fail(macro.number, "SENSORS holds an empty name");
            if (name.find_first_not_of(SensorLetters) != std::string::npos)
                return fail(macro.number,
                            "the sensor " + name + " has other characters than letters, digits and -");
            if (isIn(result.sensors, name))
                return fail(macro.number, "SENSORS holds " + name + " twice");
            result.sensors.push_back(name);
        }
        return true;
    }

    // The program looks for the names of sensors within the text.
    bool takeCapability(const Macro &macro)
    {
        const auto [at, isNew] = capabilityLines_.emplace(macro.name, macro.number);
        if (!isNew)
            return fail(macro.number,
                        macro.name + " stands in line " + std::to_string(at->second) + " already");
        const std::optional<Taken> taken = takenFrom(macro.line);
        if (!taken || taken->as != Taken::As::Capability)
            return failForm(macro);
        const Items named = splitItems(macro.value);
        for (const std::string &name : named) {
            if (!name.empty() && !isIn(result.sensors, name))
                return fail(macro.number, "the sensor " + name + " does not stand in the line SENSORS");
        }
        for (const std::string &sensor : result.sensors) {
            const bool isNamed = isIn(named, sensor);
            if (isNamed && !holds(taken->value, sensor))
                return failForm(macro);
            if (!isNamed && holds(taken->value, sensor))
                return fail(macro.number, "the program finds the sensor " + sensor +
                                              " too, within the name of another one");
        }
        return true;
    }

    // The DPI is read behind the first capital I, and of a doubled name or code the first one counts.
    bool takeCode(const Macro &macro)
    {
        if (!isCode(macro.name))
            return fail(macro.number, macro.name + " is neither SENSORS, nor one of the SUPPORT_ names, nor "
                                                   "SENSOR_, the sensor, _DPI_ and the DPI");
        const std::string name = macro.name.substr(CodeStart.size());
        const std::size_t middle = name.find(CodeMiddle);
        const std::string sensor = name.substr(0, middle);
        const std::optional<int> dpi = decimalNumber(name.substr(middle + CodeMiddle.size()));
        if (!dpi || *dpi < 1)
            return fail(macro.number, macro.name + " does not end with a DPI");
        if (!isIn(result.sensors, sensor))
            return fail(macro.number, "the sensor " + sensor + " does not stand in the line SENSORS");
        if (holds(sensor, "I"))
            return fail(macro.number,
                        "the sensor " + sensor + " holds a capital I, and its DPI values are not read");
        const std::optional<int> code = codeOf(macro.value);
        if (!code)
            return fail(macro.number, "the code " + macro.value + " is no number from 0 to 255");
        const std::optional<Taken> taken = takenFrom(macro.line);
        if (!taken || taken->name != macro.name || taken->value != macro.value)
            return failForm(macro);
        if (taken->as == Taken::As::Decimal && startsWith(macro.value, "0x"))
            return fail(macro.number,
                        "the program reads " + macro.value + " as 0 where a blank stands behind it");
        std::map<int, int> &codes = result.codesByDpi[sensor];
        if (std::any_of(codes.begin(), codes.end(),
                        [&](const auto &known) { return known.first == *dpi || known.second == *code; }))
            return fail(macro.number, "the DPI or its code stands above already");
        codes[*dpi] = *code;
        return true;
    }

    int line_ = 0;
    int listLine_ = 0; // 0 before the line SENSORS
    std::vector<Macro> macros_;
    std::map<std::string, int> capabilityLines_;
};

} // namespace

SensorHeader readSensorHeader(std::istream &source)
{
    Reader reader;
    for (std::string line; std::getline(source, line);) {
        if (!reader.take(source.eof() ? line : line + '\n'))
            return reader.result;
    }
    reader.end();
    return reader.result;
}

bool countsEachDpi(const std::string &sensor, const std::vector<std::string> &ranges,
                   const SensorHeader &header)
{
    const auto table = header.codesByDpi.find(sensor);
    const auto counts = [&](int dpi) {
        if (table != header.codesByDpi.end())
            return table->second.count(dpi) > 0;
        return dpi % DpiStep == 0 && dpi / DpiStep <= (isWideSensor(sensor) ? WideCounts : ByteCounts);
    };
    const int flag = std::stoi(ranges.back(), nullptr, 16);
    for (std::size_t i = 0; i + 3 <= ranges.size(); i += 3) {
        const int divisor = dpiMultiplier(flag, int(i / 3)).divisor;
        const int step = *decimalNumber(ranges[i + 2]);
        for (int dpi = *decimalNumber(ranges[i]); dpi <= *decimalNumber(ranges[i + 1]); dpi += step) {
            if (dpi % divisor != 0 || !counts(dpi / divisor))
                return false;
        }
    }
    return true;
}
