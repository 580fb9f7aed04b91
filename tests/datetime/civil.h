// An independent proleptic Gregorian calendar for checking the library's:
// days counted from 1970-01-01 by whole eras of 400 years, with the year
// starting in March so that the leap day falls last.
#pragma once

#include <cstdint>

namespace vltest {

struct Civil {
    int64_t year;
    int month;  // 1 to 12
    int day;    // 1 to 31
};

constexpr int64_t days_from_civil(int64_t y, int m, int d) {
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const int64_t yoe = y - era * 400;
    const int64_t doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

constexpr Civil civil_from_days(int64_t z) {
    z += 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const int64_t doe = z - era * 146097;
    const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const int64_t mp = (5 * doy + 2) / 153;
    const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return {yoe + era * 400 + (m <= 2), m, d};
}

// 0 Sunday; 1 January 1970 was a Thursday.
constexpr int weekday_from_days(int64_t z) { return static_cast<int>(((z + 4) % 7 + 7) % 7); }

// The library's date value of a day: 1 January 1970 is 2440587.0.
constexpr double kUnixDayValue = 2440587.0;

constexpr bool is_leap(int64_t y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }

// Day of the year, 1 for 1 January.
constexpr int day_of_year(const Civil& c) {
    return static_cast<int>(days_from_civil(c.year, c.month, c.day) - days_from_civil(c.year, 1, 1)) + 1;
}

static_assert(days_from_civil(1970, 1, 1) == 0);
static_assert(days_from_civil(2000, 3, 1) == 11017);
static_assert(civil_from_days(11017).month == 3);

}  // namespace vltest
