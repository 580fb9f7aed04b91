// An independent proleptic Gregorian calendar for checking the library's:
// days counted from 1970-01-01 by whole eras of 400 years, with the year
// starting in March so that the leap day falls last.  Also the reading of
// the date tests' data files by that calendar.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

#include "support.h"
#include "vlcore.h"

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

// Day of the year, 1 for 1 January.
constexpr int day_of_year(const Civil& c) {
    return static_cast<int>(days_from_civil(c.year, c.month, c.day) - days_from_civil(c.year, 1, 1)) + 1;
}

// A date record in full, for comparing and for failure messages.
inline std::string describe(const VL_DATE_RECORD& r) {
    char buf[96];
    std::snprintf(buf, sizeof buf, "%d-%02d-%02d %02d:%02d:%02d wday %d yday %d dst %d", r.tm_year, r.tm_mon + 1,
                  r.tm_mday, r.tm_hour, r.tm_min, r.tm_sec, r.tm_wday, r.tm_yday, r.tm_isdst);
    return buf;
}

// The date value of a day at midnight, and a time of day in days.
inline double day_value(int64_t y, int m, int d) {
    return static_cast<double>(days_from_civil(y, m, d)) + kUnixDayValue;
}
inline double hours(double h, double m = 0, double s = 0) { return ((h * 60 + m) * 60 + s) / 86400.0; }

// A moment as the data files write it: "-" for no date, "2024-03-05" or
// "2024-03-05 13:05:09.25" for a day and a time, "13:05:09.25" for a time
// alone (a fraction of a day, or more), anything else a plain number.
inline double moment(const std::string& field) {
    if (field == "-") return VL_MISSING_VALUE;
    const bool dated = field.size() >= 10 && field[4] == '-' && field[7] == '-';
    const std::string time = dated ? field.substr(std::min<std::size_t>(field.size(), 11)) : field;
    if (!dated && time.find(':') == std::string::npos) return number(field);
    const double day =
        dated ? day_value(std::stoi(field.substr(0, 4)), std::stoi(field.substr(5, 2)), std::stoi(field.substr(8, 2)))
              : 0.0;
    if (time.empty()) return day;
    const std::size_t first = time.find(':'), second = time.find(':', first + 1);
    const double s = second == std::string::npos ? 0.0 : number(time.substr(second + 1));
    return day + hours(std::stoi(time.substr(0, first)), std::stoi(time.substr(first + 1)), s);
}

// A date the library gave against a data file's: bit for bit for a whole
// day, a number or no date; to 1e-7 of a day (under 0.01 s) with a time.
inline void expect_moment(double got, const std::string& want) {
    if (want.find(':') != std::string::npos)
        EXPECT_NEAR(got, moment(want), 1e-7);
    else
        EXPECT_EQ(bits(got), bits(moment(want))) << got << ", want " << want;
}

// A flag word as the data files write it: a sum such as "16384+66".
inline uint32_t word(const std::string& field) {
    uint32_t sum = 0;
    std::istringstream parts(field);
    for (std::string part; std::getline(parts, part, '+');) sum += static_cast<uint32_t>(std::stoul(part, nullptr, 0));
    return sum;
}

// Runs a check on every row of a data file, each failure naming its row.
template <class Check>
void for_rows(const char* file, std::size_t columns, Check&& check) {
    const DataTable table(file);
    EXPECT_GT(table.size(), 0u) << file;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const std::vector<std::string>& row = table.row(i);
        SCOPED_TRACE(row_label(file, i, row));
        ASSERT_EQ(row.size(), columns);
        check(row);
    }
}

static_assert(days_from_civil(1970, 1, 1) == 0);
static_assert(days_from_civil(2000, 3, 1) == 11017);
static_assert(civil_from_days(11017).month == 3);

}  // namespace vltest
