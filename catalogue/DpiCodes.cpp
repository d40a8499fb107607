// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/DpiCodes.h"

#include "catalogue/DpiCounts.h"

#include <limits>

namespace
{

constexpr uint8_t HighBits = 0xC0; // bits 8 and 9 of the code, shifted right by two

bool isWide(const QString &sensor) { return isWideSensor(sensor.toStdString()); }

QString tablePrefix(const QString &sensor)
{
    return QStringLiteral("SENSOR_") + sensor + QStringLiteral("_DPI");
}

// The number behind the "I_" of "DPI_".
int dpiInName(const QString &name) { return name.mid(name.indexOf(QLatin1Char('I')) + 2).toInt(); }

int rangeOf(int dpi, const DpiRanges &ranges)
{
    for (int i = int(ranges.DpiRangeMins.size()) - 1; i > 0; --i)
        if (ranges.DpiRangeMins[i] <= dpi)
            return i;
    return 0;
}

DpiMultiplier multiplierFor(int dpi, const DpiRanges &ranges)
{
    if (ranges.DpiFlagValue == FourTimesDpi)
        return dpiMultiplier(FourTimesDpi, rangeOf(dpi, ranges));
    const bool isAbove = !ranges.DpiRangeMaxs.isEmpty() && dpi > ranges.DpiRangeMaxs.first();
    return dpiMultiplier(ranges.DpiFlagValue, isAbove ? 1 : 0);
}

// The high bits of the code, for both axes.
uint8_t highBitFlags(int code)
{
    const unsigned high = unsigned(code >> 8);
    return uint8_t(((high << 4) | high) * 4);
}

} // namespace

SensorCodes currentCodes() { return {SensorDefineNames, SensorDefineValues, SensorName}; }

bool SensorCodes::hasTable() const
{
    const QString prefix = tablePrefix(sensor);
    for (const QString &name : names)
        if (name.contains(prefix))
            return true;
    return false;
}

std::optional<int> SensorCodes::codeOf(int dpi) const
{
    const int index = int(names.indexOf(tablePrefix(sensor) + QLatin1Char('_') + QString::number(dpi)));
    if (index < 0 || index >= values.size())
        return std::nullopt;
    return values[index];
}

std::optional<int> SensorCodes::dpiOf(int code) const
{
    const QString prefix = tablePrefix(sensor);
    const int count = int(qMin(names.size(), values.size()));
    for (int i = 0; i < count; ++i)
        if (values[i] == code && names[i].contains(prefix))
            return dpiInName(names[i]);
    return std::nullopt;
}

DpiStageCode encodeDpi(int dpi, uint8_t presentFlags, const SensorCodes &codes, const DpiRanges &ranges)
{
    const DpiMultiplier multiplier = multiplierFor(dpi, ranges);
    if (codes.hasTable()) {
        // Uses the step of the present flags, which may differ from that of the new ones.
        const int byStep = dpi / (presentFlags & DoublesDpiStep ? 2 * DpiStep : DpiStep);
        return {codes.codeOf(dpi / multiplier.divisor).value_or(byStep), multiplier.flags};
    }
    const int code = dpi / (multiplier.divisor * DpiStep) - 1;
    const uint8_t high = isWide(codes.sensor) ? highBitFlags(code) : uint8_t(0);
    return {code, uint8_t(multiplier.flags | high)};
}

int decodeDpi(uint8_t xCode, uint8_t flags, const SensorCodes &codes)
{
    qint64 dpi = 0;
    if (codes.hasTable()) {
        dpi = codes.dpiOf(xCode).value_or(0);
    } else {
        const int high = isWide(codes.sensor) ? (flags & HighBits) * 4 : 0;
        dpi = (qint64(xCode | high) + 1) * DpiStep;
    }
    if (flags & DoublesDpiStep)
        dpi *= 2;
    if (flags & DoublesDpi)
        dpi *= 2;
    // A table may hold any number.
    return int(qBound<qint64>(std::numeric_limits<int>::min(), dpi, std::numeric_limits<int>::max()));
}

int SensorDpiDecode(uint8_t xCode, uint8_t flags) { return decodeDpi(xCode, flags, currentCodes()); }

int DpiToCodeSimple(int dpi, const SensorCodes &codes)
{
    if (codes.hasTable())
        return codes.codeOf(dpi).value_or(dpi / DpiStep);
    return dpi / DpiStep - 1;
}

int CodeToDpiSimple(int code, const SensorCodes &codes)
{
    if (codes.hasTable())
        return codes.dpiOf(code).value_or(0);
    return (code + 1) * DpiStep;
}
