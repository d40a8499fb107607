// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The name of a crash file, computed with arithmetic alone, since localtime() is not async-signal-safe.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr std::size_t CrashNameSize = sizeof "yyyy_MM_dd_hh_mm_ss.dmp"; // with the final zero

namespace crashname
{

inline char *putDigits(char *out, int64_t value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        out[i] = char('0' + value % 10);
        value /= 10;
    }
    return out + count;
}

} // namespace crashname

// localSeconds: seconds since 1970-01-01 00:00 of the local calendar, 0 or more. name: CrashNameSize bytes.
inline void formatCrashName(int64_t localSeconds, char *name)
{
    const int64_t days = localSeconds / 86400;
    const int64_t second = localSeconds % 86400;
    // Years that begin in March put the leap day last, so that the months need no table.
    const int64_t shifted = days + 719468;
    const int64_t dayOfEra = shifted % 146097;
    const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const int64_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    const int64_t year = shifted / 146097 * 400 + yearOfEra + (month <= 2 ? 1 : 0);
    const int64_t parts[] = {month, dayOfYear - (153 * marchMonth + 2) / 5 + 1, second / 3600,
                             second / 60 % 60, second % 60};
    char *out = crashname::putDigits(name, year, 4);
    for (const int64_t part : parts) {
        *out++ = '_';
        out = crashname::putDigits(out, part, 2);
    }
    for (const char *suffix = ".dmp"; *suffix != '\0'; ++suffix)
        *out++ = *suffix;
    *out = '\0';
}
