// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/SensorDefines.h"

#include "catalogue/SensorMacros.h"
#include "environment/DataRoot.h"
#include "environment/SafeFile.h"
#include "environment/Words.h"

#include <iterator>

namespace
{

using CapabilityText = QString SensorCapabilities::*;
// By the index of the macro.
constexpr CapabilityText CapabilityTexts[] = {
    &SensorCapabilities::SensorModeSupport, &SensorCapabilities::LodSupport,
    &SensorCapabilities::RippleSupport,     &SensorCapabilities::FixLineSupport,
    &SensorCapabilities::MotionSyncSupport, &SensorCapabilities::MousepadCalSupport,
};
static_assert(std::size(CapabilityTexts) == std::size(CapabilityMacros), "each macro has a text");
constexpr QLatin1Char LineEnd('\n');

CapabilityText capabilityIn(const QString &text)
{
    for (std::size_t i = 0; i < std::size(CapabilityMacros); ++i)
        if (text.contains(QLatin1String(CapabilityMacros[i])))
            return CapabilityTexts[i];
    return nullptr;
}

QString withoutLineEnd(QString text) { return text.remove(LineEnd); }

int32_t numberOf(const QString &text)
{
    return text.toInt(nullptr, text.contains(QLatin1String("0x")) ? 16 : 10);
}

class DefineReader
{
public:
    DefineReader(QStringList *nameList, QVector<int32_t> *valueList) : names_(nameList), values_(valueList) {}

    void take(const QString &line)
    {
        const QStringList words = splitWords(line, QLatin1Char(' '));
        if (words.size() == 2)
            takeTwo(words[0], words[1]);
        else if (words.size() == 3 && (words[2].contains(QLatin1String("//")) || words[2].contains(LineEnd)))
            takeThree(words[1], words[2]);
    }

    SensorCapabilities capabilities;

private:
    void append(const QString &name, int32_t value)
    {
        names_->append(name);
        values_->append(value);
    }

    void takeTwo(const QString &first, const QString &second)
    {
        const QStringList parts = splitWords(second, QLatin1Char('\t'));
        if (const CapabilityText text = capabilityIn(second)) {
            if (parts.size() > 1)
                capabilities.*text = withoutLineEnd(parts[1]);
        } else if (first == QLatin1String("#define") && parts.size() > 1 && parts[1].contains(LineEnd)) {
            append(parts[0], numberOf(withoutLineEnd(parts[1])));
        }
    }

    // A value after a tab is decimal; the rest of the line is a comment.
    void takeThree(const QString &second, const QString &third)
    {
        const QStringList parts = second.split(QLatin1Char('\t'));
        if (parts.size() == 2)
            append(parts[0], parts[1].toInt());
        else if (parts.size() == 1)
            append(parts[0], numberOf(third));
    }

    QStringList *names_;
    QVector<int32_t> *values_;
};

} // namespace

SensorCapabilities parseSensorDefines(const QByteArray &content, QStringList *names, QVector<int32_t> *values)
{
    QByteArray text = content;
    text.replace("\r", "");
    DefineReader reader(names, values);
    int start = 0;
    while (start < text.size()) { // QIODevice::readLine() would go byte by byte
        const int newline = text.indexOf('\n', start);
        const int next = newline < 0 ? text.size() : newline + 1;
        reader.take(QString::fromUtf8(text.mid(start, next - start)));
        start = next;
    }
    return reader.capabilities;
}

SensorCapabilities ReadSensorDefines(QStringList *names, QVector<int32_t> *values)
{
    const QString path = applicationFolder() + QStringLiteral("/driver_sensor.h");
    return parseSensorDefines(readFile(path, SensorHeaderLimit).value_or(QByteArray()), names, values);
}

SensorCapabilities ReadSensorDefines() { return ReadSensorDefines(&SensorDefineNames, &SensorDefineValues); }
