// Date value <-> date record, and the local "now".

#include "datetime/calendar.h"
#include "platform/platform.h"

namespace vl::datetime {
namespace {

// Days before each month of a common year; the 13th entry is the year.
constexpr int32_t kDaysBefore[13] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

// Block lengths of the Gregorian cycle, in days.
constexpr int32_t kDays400Years = 146097;

// Day zero's distance from 1 January of year 0, and the same origin seen
// from the value count of DateTime_ToValue.
constexpr int32_t kDayZeroFromYear0 = 693959;
constexpr int32_t kValueOfYear0 = 1721059;

// w must stay within these for year 100 to 9999.
constexpr double kHighestOffset = 2958465.0;
constexpr double kLowestOffset = -657435.0;
// Half a second in days: the rounding of exact 0.
constexpr double kHalfSecond = 5.787037037037037e-6;

constexpr bool is_leap(uint32_t year) noexcept { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

// The calendar arithmetic of DateTime_FromValue works on a day count that
// starts on 1 March of a year far before any date value, so that every
// division is of unsigned numbers: 1 March of year 0 is day 60 of the count
// from 1 January of year 0, and kShiftedYears whole 400-year cycles lie
// before it.
constexpr int32_t kShiftedYears = 400 * 82;
constexpr uint32_t kShiftedYear0 = static_cast<uint32_t>(kDays400Years) * 82 - 60;
// 2^32 / 1461 * 4, rounded up: the year within a century by a product.
constexpr uint32_t kYearMultiplier = 2939745;
// Months from 1 March as a line: 153 days every 5 months.
constexpr uint32_t kMonthSlope = 2141;
constexpr uint32_t kMonthIntercept = 197913;
constexpr uint32_t kDaysMarchToDecember = 306;

}  // namespace

DateRecord DateTime_Now() noexcept {
    // 1. The instant and whether daylight saving is in force.
    const platform::ClockReading clock = platform::clock_reading();
    int64_t seconds = clock.seconds;
    // 2. The runtime's breakdown leaves out daylight saving (its flag is
    //    cleared); unless TZ overrides the zone, the hour is put back here.
    if (clock.daylight && !platform::environment_has("TZ")) seconds += 3600;
    // 3. Broken down, with the full year.
    int32_t f[9] = {};
    platform::local_time(seconds, f);
    return DateRecord{f[0], f[1], f[2], f[3], f[4], f[5] + 1900, f[6], f[7], f[8]};
}

bool DateTime_FromValue(double value, DateRecord& record, int exact) noexcept {
    // 1. Days from 30 December 1899; out of range and non-numbers refused.
    const double w = value - kDayZero;
    if (!(w <= kHighestOffset && w >= kLowestOffset)) return false;

    // 2. The whole day, before any rounding, kept as an integer too so that
    //    it is converted only once.
    auto whole_day = static_cast<int32_t>(w);
    if (static_cast<double>(whole_day) > w) --whole_day;
    const auto day = static_cast<double>(whole_day);

    // 3. Seconds of the day: only the time is rounded, so the last half
    //    second of a day is 00:00:00 of that same day.  The rounded value
    //    lies below the next day but one, so its floor is the day or the
    //    next day, decided by one comparison.
    const double source = exact == 0 ? w + kHalfSecond : w;
    const double source_day = source >= day + 1.0 ? day + 1.0 : day;
    const auto seconds = static_cast<uint32_t>((source - source_day) * kSecondsPerDay);

    // 4. Days from 1 January of year 0, which was a Saturday; always
    //    positive within the range of step 1.
    const auto a = static_cast<uint32_t>(whole_day + kDayZeroFromYear0);
    record.tm_wday = static_cast<int32_t>((a - 1) % 7);

    // 5. Year, month and day.  The count is shifted so that years begin on
    //    1 March (the leap day falls last) and so that it stays positive;
    //    each step is then a multiplication and a shift, with no branch a
    //    random date could mispredict.
    const uint32_t n = a + kShiftedYear0;
    // 5a. Centuries, and the day within the century.
    const uint32_t n1 = 4 * n + 3;
    const uint32_t century = n1 / kDays400Years;
    const uint32_t day_of_century = n1 % kDays400Years / 4;
    // 5b. Years in the century, and the day within the year (from 1 March).
    const uint32_t n2 = 4 * day_of_century + 3;
    const uint64_t p2 = uint64_t{kYearMultiplier} * n2;
    const auto year_in_century = static_cast<uint32_t>(p2 >> 32);
    const uint32_t day_from_march = static_cast<uint32_t>(p2) / kYearMultiplier / 4;
    // 5c. Month (3 to 14) and day, from a straight line through the months.
    const uint32_t n3 = kMonthSlope * day_from_march + kMonthIntercept;
    const uint32_t month = n3 >> 16;
    const uint32_t mday = (n3 & 0xFFFF) / kMonthSlope + 1;
    // 5d. January and February belong to the next year; as a number, so
    //     that the fields below are sums rather than a branch.
    const uint32_t early = day_from_march >= kDaysMarchToDecember ? 1 : 0;
    const auto year = static_cast<int32_t>(100 * century + year_in_century + early) - kShiftedYears;
    // 5e. Whether the year of this 1 March, its February behind it, is a
    //     leap year, from the two parts just found: the shift is whole
    //     400-year cycles, so the year within the century and the century's
    //     place in its cycle answer it.  Bitwise, not short-circuit: one
    //     year in four is a leap year, which no branch would predict.
    const uint32_t leap_day =
        static_cast<uint32_t>((year_in_century % 4 == 0) & ((year_in_century != 0) | (century % 4 == 0)));

    // 6. Into the record; the day of the year counts from 1 January.
    record.tm_year = year;
    //    From 1 March the days before are 59 and the leap day; in January
    //    and February the count of the next year starts a whole year later.
    record.tm_mon = static_cast<int32_t>(month - 12 * early) - 1;
    record.tm_mday = static_cast<int32_t>(mday);
    record.tm_yday =
        static_cast<int32_t>(day_from_march + 1 + kDaysBefore[2] + leap_day - early * (kDaysBefore[12] + leap_day));

    // 7. The time of day.
    record.tm_sec = static_cast<int32_t>(seconds % 60);
    record.tm_min = static_cast<int32_t>(seconds / 60 % 60);
    record.tm_hour = static_cast<int32_t>(seconds / 3600);
    return true;
}

bool DateTime_ToValue(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t minute, uint16_t second,
                      double& value) noexcept {
    // 1. A refused date leaves this behind.
    value = kRefusedValue;
    // 2. Two-digit years: 0-44 are 2000s, 45-99 1900s.
    uint32_t y = year;
    if (y < 100) y += y < 45 ? 2000 : 1900;
    // 3. Year and month.
    if (y > 9999 || month < 1 || month > 12) return false;
    // 4.-5. Day within its month, and the time of day.
    const bool leap = is_leap(y);
    const int32_t length = month == 2 && leap ? 29 : kDaysBefore[month] - kDaysBefore[month - 1];
    if (day < 1 || day > length || hour > 23 || minute > 59 || second > 59) return false;
    // 6. Whole days: 1 January of year 0 counts as 1721060 less its leap day.
    int32_t days = static_cast<int32_t>(y * 365 + y / 4 - y / 100 + y / 400) + day + kDaysBefore[month - 1];
    if (leap && month <= 2) --days;
    days += kValueOfYear0;
    // 7. The seconds, multiplied into days.
    const int32_t seconds = (hour * 60 + minute) * 60 + second;
    value = static_cast<double>(days) + static_cast<double>(seconds) * kDaysPerSecond;
    return true;
}

}  // namespace vl::datetime
