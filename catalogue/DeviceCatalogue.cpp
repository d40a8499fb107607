// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/DeviceCatalogue.h"

#include <algorithm>

namespace
{

constexpr int LargestTotal = 255;
constexpr char SafeColour[] = "224,224,224";

QString optionSection() { return QStringLiteral("Option"); }

bool isColourPart(const QString &item)
{
    bool isNumber = false;
    const int value = item.toInt(&isNumber);
    return isNumber && value >= 0 && value <= 255;
}

} // namespace

int DeviceCatalogue::total() const { return std::min(option("DeviceTotal"), LargestTotal); }

QString DeviceCatalogue::section(int driveIndex)
{
    return QStringLiteral("Drive") + QString::number(driveIndex + 1);
}

int DeviceCatalogue::find(int cid, int mid) const
{
    const int count = total();
    for (int i = 0; i < count; ++i) {
        if (option("CID") == cid && number(i, "MID") == mid)
            return i;
    }
    return count;
}

QString DeviceCatalogue::text(int driveIndex, const char *key) const
{
    return reader_.ReadConfig(section(driveIndex), QString::fromLatin1(key));
}

QStringList DeviceCatalogue::list(int driveIndex, const char *key) const
{
    return reader_.ReadConfigList(section(driveIndex), QString::fromLatin1(key));
}

int DeviceCatalogue::number(int driveIndex, const char *key) const { return text(driveIndex, key).toInt(); }

QStringList DeviceCatalogue::optionList(const char *key) const
{
    return reader_.ReadConfigList(optionSection(), QString::fromLatin1(key));
}

QString DeviceCatalogue::optionText(const char *key) const
{
    return reader_.ReadConfig(optionSection(), QString::fromLatin1(key));
}

int DeviceCatalogue::option(const char *key) const { return optionText(key).toInt(); }

QString DeviceCatalogue::colour(const char *key) const
{
    const QStringList parts = optionList(key).mid(0, 3);
    if (parts.size() < 3 || !std::all_of(parts.cbegin(), parts.cend(), isColourPart))
        return QString::fromLatin1(SafeColour);
    return parts.join(QLatin1Char(','));
}
