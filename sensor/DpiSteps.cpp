// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/DpiSteps.h"

#include <optional>

namespace
{

struct Range {
    int min, max, step;
    bool holds(int dpi) const { return min <= dpi && dpi <= max; }
};

Range rangeAt(const DpiRanges &ranges, int index)
{
    return {ranges.DpiRangeMins[index], ranges.DpiRangeMaxs[index], ranges.DpiRangeSteps[index]};
}

std::optional<Range> rangeAround(int dpi, const DpiRanges &ranges)
{
    for (int i = 0; i < ranges.DpiRangeMins.size(); ++i)
        if (rangeAt(ranges, i).holds(dpi))
            return rangeAt(ranges, i);
    return {};
}

std::optional<Range> rangeBehindGap(int dpi, const DpiRanges &ranges)
{
    for (int i = 1; i < ranges.DpiRangeMins.size(); ++i)
        if (ranges.DpiRangeMaxs[i - 1] < dpi && dpi < ranges.DpiRangeMins[i])
            return rangeAt(ranges, i);
    return {};
}

} // namespace

DpiRest dpiRestAt(int dpi, const DpiRanges &ranges)
{
    if (const auto range = rangeAround(dpi, ranges))
        return {dpi - dpi % range->step, range->step};
    if (const auto range = rangeBehindGap(dpi, ranges))
        return {range->min, range->step};
    return {dpi, 0};
}

int dpiAbove(int dpi, const DpiRanges &ranges)
{
    const int last = ranges.DpiRangeMins.size() - 1;
    for (int i = 0; i < last; ++i) {
        const Range range = rangeAt(ranges, i);
        const int next = ranges.DpiRangeMins[i + 1];
        if (range.min <= dpi && dpi < range.max)
            return dpi + range.step;
        if (range.max <= dpi && dpi < next)
            return next;
    }
    return last >= 0 && rangeAt(ranges, last).holds(dpi) ? dpi + ranges.DpiRangeSteps[last] : dpi;
}

int dpiBelow(int dpi, const DpiRanges &ranges)
{
    if (const auto range = rangeAround(dpi, ranges))
        return dpi - range->step;
    if (const auto range = rangeBehindGap(dpi, ranges))
        return range->min;
    return dpi;
}
