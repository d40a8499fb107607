// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/KeyForms.h"

#include "keys/KeyTable.h"
#include "keys/MediaKeys.h"

#include <algorithm>
#include <array>

namespace
{

using Items = std::vector<std::string>;

constexpr std::size_t NameLimit = 63; // of a firmware file's head
constexpr std::array<std::string_view, 4> FlagValues = {"0x00", "0x11", "0x22", "0x33"};
constexpr std::string_view HexDigits = "0123456789abcdefABCDEF";
constexpr std::string_view NameLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.";
constexpr std::size_t KeysOfCombination = 3;

Items split(const std::string &text, char separator)
{
    Items items;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        const std::string item = text.substr(start, end - start);
        const std::size_t first = item.find_first_not_of(" \t");
        items.push_back(first == std::string::npos
                            ? std::string()
                            : item.substr(first, item.find_last_not_of(" \t") - first + 1));
        start = end + 1;
    }
    return items;
}

bool consistsOf(std::string_view text, std::string_view letters)
{
    return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

bool isNumber(const std::string &text, int min, int max)
{
    const std::optional<int> number = decimalNumber(text);
    return number && *number >= min && *number <= max;
}

bool areNumbers(const Items &items, int min, int max)
{
    return std::all_of(items.begin(), items.end(),
                       [=](const std::string &item) { return isNumber(item, min, max); });
}

bool hasDoubles(Items items)
{
    std::sort(items.begin(), items.end());
    return std::adjacent_find(items.begin(), items.end()) != items.end();
}

bool isHex16(const std::string &text)
{
    return text.size() == 6 && text.compare(0, 2, "0x") == 0 && consistsOf(text.substr(2), HexDigits);
}

// Ascending ranges, each with a step that leads from its min to its max.
bool areRanges(const CatalogueKey &key, const Items &items)
{
    const std::size_t count = items.size() / 3;
    if (items.size() % 3 != 1 || count < 1 || count > std::size_t(key.items) ||
        !areNumbers({items.begin(), items.end() - 1}, key.min, key.max) ||
        std::find(FlagValues.begin(), FlagValues.end(), items.back()) == FlagValues.end())
        return false;
    int below = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const int min = *decimalNumber(items[3 * i]);
        const int max = *decimalNumber(items[3 * i + 1]);
        if (min <= below || max <= min || (max - min) % *decimalNumber(items[3 * i + 2]) != 0)
            return false;
        below = max;
    }
    return true;
}

// As the keys of a combination are called: modifiers without their side.
bool isKey(std::string_view name)
{
    return !name.empty() && std::any_of(KeyTable.begin(), KeyTable.end(), [name](const KeyRow &row) {
        return row.kind == KeyKind::Keyboard ? name == row.name : row.name[0] == 'L' && name == row.name + 1;
    });
}

// The program takes a name as it stands, with the blanks around it.
bool areKeys(const std::string &combination)
{
    const Items names = split(combination, '+');
    return combination.find_first_of(" \t") == std::string::npos && names.size() <= KeysOfCombination &&
           !hasDoubles(names) && std::all_of(names.begin(), names.end(), isKey);
}

bool isMediaUsage(const std::string &text)
{
    return isHex16(text) && std::any_of(MediaKeys.begin(), MediaKeys.end(), [&text](MediaKey key) {
               return uint16_t(key) == std::stoul(text, nullptr, 16);
           });
}

// Of the items between the kind and the action only their count is read.
bool isDefaultAction(const Items &items)
{
    return items[0] == "0x05" &&
           ((items.size() == 3 && isMediaUsage(items[2])) || (items.size() == 4 && areKeys(items[3])));
}

// One that does not lead out of the folder of the firmware, or hide there.
bool isBaseName(const std::string &name)
{
    return name.size() <= NameLimit && consistsOf(name, NameLetters) && name.front() != '.';
}

bool isSensor(const std::string &name, const Items &sensors)
{
    return std::find(sensors.begin(), sensors.end(), name) != sensors.end();
}

std::string fromTo(const CatalogueKey &key)
{
    return " from " + std::to_string(key.min) + " to " + std::to_string(key.max);
}

} // namespace

std::vector<std::string> splitItems(const std::string &value) { return split(value, ','); }

std::optional<int> decimalNumber(const std::string &text)
{
    if (text.size() > 6 || text.find_first_not_of("-0123456789") != std::string::npos ||
        text.find_first_of("0123456789") == std::string::npos || text.find('-', 1) != std::string::npos)
        return std::nullopt;
    const int number = std::stoi(text);
    return std::to_string(number) == text ? std::optional(number) : std::nullopt;
}

std::string describeForm(const CatalogueKey &key)
{
    const std::string items = std::to_string(key.items);
    switch (key.form) {
    case KeyForm::Number:
        return "a number" + fromTo(key);
    case KeyForm::Numbers:
        return items + " numbers" + fromTo(key);
    case KeyForm::Ids:
        return "USB ids, each 0x and four hexadecimal digits, not all 0";
    case KeyForm::Name:
        return "up to " + std::to_string(NameLimit) + " letters, digits, _, - and ., not at the front";
    case KeyForm::Sensor:
        return "a name from the line SENSORS of driver_sensor.h";
    case KeyForm::StageDpis:
        return items + " numbers, each within DPIRange and on its step";
    case KeyForm::StageColors:
        return "red, green and blue of at least DPIMaxGrade and at most " + items + " stages, each a number" +
               fromTo(key);
    case KeyForm::DpiRanges:
        return "min, max and step of 1 to " + items +
               " ascending ranges in whole steps, then 0x00, 0x11, 0x22 or 0x33";
    case KeyForm::DefaultAction:
        return "0x05,0,USAGE (of a media key) or 0x05,0,0,KEYS (the names of up to " +
               std::to_string(KeysOfCombination) + " keys, with + between)";
    case KeyForm::ResetDefaults:
        return "2 numbers, from -1 to 1 and from -1 to 3";
    }
    return {};
}

bool fitsForm(const CatalogueKey &key, const Items &items, const Items &sensors)
{
    switch (key.form) {
    case KeyForm::Number:
        return items.size() == 1 && areNumbers(items, key.min, key.max);
    case KeyForm::Numbers:
    case KeyForm::StageDpis:
        return items.size() == std::size_t(key.items) && areNumbers(items, key.min, key.max);
    case KeyForm::Ids:
        return std::all_of(items.begin(), items.end(),
                           [](const std::string &item) { return isHex16(item) && item != "0x0000"; });
    case KeyForm::Name:
        return items.size() == 1 && isBaseName(items[0]);
    case KeyForm::Sensor:
        return items.size() == 1 && isSensor(items[0], sensors);
    case KeyForm::StageColors:
        return items.size() % 3 == 0 && items.size() <= 3 * std::size_t(key.items) &&
               areNumbers(items, key.min, key.max);
    case KeyForm::DpiRanges:
        return areRanges(key, items);
    case KeyForm::DefaultAction:
        return isDefaultAction(items);
    case KeyForm::ResetDefaults:
        return items.size() == 2 && isNumber(items[0], -1, 1) && isNumber(items[1], -1, 3);
    }
    return false;
}
