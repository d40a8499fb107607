// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/encode/SensorHeader.h"

#include "catalogue/DpiSteps.h"
#include "tools/encode/KeyForms.h"

#include <algorithm>

namespace
{

constexpr std::string_view Define = "#define ";
constexpr std::string_view MacroStart = "SENSOR_";
constexpr std::string_view MacroMiddle = "_DPI_";
constexpr int HighestCode = 255; // a byte
constexpr int ByteCounts = 256;
constexpr int WideCounts = 1024;

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

// Decimal, or hexadecimal behind 0x.
std::optional<int> codeOf(const std::string &text)
{
    constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";
    const bool isHex = startsWith(text, "0x") && (text.size() == 3 || text.size() == 4) &&
                       text.find_first_not_of(hexDigits, 2) == std::string::npos;
    const std::optional<int> code = isHex ? std::stoi(text, nullptr, 16) : decimalNumber(text);
    return code && *code >= 0 && *code <= HighestCode ? code : std::nullopt;
}

class Reader
{
public:
    bool take(std::string line, bool hasEnd)
    {
        ++line_;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!startsWith(line, Define))
            return true;
        if (!hasEnd)
            return fail("has no line end, and is not read");
        const std::size_t tab = line.find('\t');
        const std::string name = line.substr(Define.size(), std::min(tab, line.size()) - Define.size());
        const std::string value = tab == std::string::npos ? std::string() : line.substr(tab + 1);
        if (name.empty() || value.empty() || (name + value).find_first_of(" \t") != std::string::npos)
            return fail("is not #define, a blank, the name, a tab and the value, without other blanks");
        if (name == "SENSORS")
            return takeSensors(value);
        return !startsWith(name, MacroStart) || takeMacro(name.substr(MacroStart.size()), value);
    }
    bool end()
    {
        line_ = 0;
        return !result.sensors.empty() || fail("has no line SENSORS");
    }
    SensorHeader result;

private:
    bool fail(const std::string &reason)
    {
        result.error = reason;
        result.errorLine = line_;
        return false;
    }

    // The program looks for a name within texts, and for the first capital I of a macro.
    bool takeSensors(const std::string &value)
    {
        result.sensors = splitItems(value);
        for (const std::string &name : result.sensors) {
            const auto holds = std::count_if(
                result.sensors.begin(), result.sensors.end(),
                [&name](const std::string &other) { return other.find(name) != std::string::npos; });
            if (holds != 1)
                return fail("the sensor \"" + name + "\" is a part of another one, or empty");
            if (name.find('I') != std::string::npos)
                return fail("the sensor " + name + " holds a capital I");
        }
        return true;
    }

    bool takeMacro(const std::string &name, const std::string &value)
    {
        const std::size_t middle = name.find(MacroMiddle);
        const std::string sensor = name.substr(0, middle);
        const auto dpi = middle == std::string::npos
                             ? std::nullopt
                             : decimalNumber(name.substr(middle + MacroMiddle.size()));
        if (!dpi || *dpi < 1)
            return fail("SENSOR_" + name + " is not SENSOR_, the sensor, _DPI_ and the DPI");
        if (std::count(result.sensors.begin(), result.sensors.end(), sensor) == 0)
            return fail("the sensor " + sensor + " does not stand in a line SENSORS above it");
        const std::optional<int> code = codeOf(value);
        if (!code)
            return fail("the code " + value + " is no number from 0 to 255");
        std::map<int, int> &codes = result.codesByDpi[sensor];
        if (std::any_of(codes.begin(), codes.end(),
                        [&](const auto &known) { return known.first == *dpi || known.second == *code; }))
            return fail("the DPI or its code stands above already");
        codes[*dpi] = *code;
        return true;
    }

    int line_ = 0;
};

} // namespace

SensorHeader readSensorHeader(std::istream &source)
{
    Reader reader;
    for (std::string line; std::getline(source, line);) {
        if (!reader.take(line, !source.eof()))
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
