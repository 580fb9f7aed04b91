// The calendar entries: date values to records and back, seconds, and the
// record check.

#include <cmath>
#include <string>

#include "civil.h"
#include "support.h"
#include "vlcore.h"

namespace {

constexpr double kDaysPerSecond = 1.1574074074074073e-5;
constexpr double kRefused = 2451323.4653704;

VL_DATE_RECORD record_of(int year, int mon, int mday, int hour = 0, int min = 0, int sec = 0) {
    VL_DATE_RECORD r{};
    r.tm_year = year, r.tm_mon = mon, r.tm_mday = mday, r.tm_hour = hour, r.tm_min = min, r.tm_sec = sec;
    return r;
}

std::string describe(const VL_DATE_RECORD& r) {
    char buf[96];
    std::snprintf(buf, sizeof buf, "%d-%02d-%02d %02d:%02d:%02d wday %d yday %d dst %d", r.tm_year, r.tm_mon + 1,
                  r.tm_mday, r.tm_hour, r.tm_min, r.tm_sec, r.tm_wday, r.tm_yday, r.tm_isdst);
    return buf;
}

TEST(Calendar, KnownDatesConvertBothWays) {
    const struct {
        const char* name;
        int year, mon, mday, hour, min, sec;
        double value;
        int wday;
    } cases[] = {
        {"1 January of year 100", 100, 0, 1, 0, 0, 0, 1757584.0, 5},
        {"30 December 1899", 1899, 11, 30, 0, 0, 0, 2415018.0, 6},
        {"1 January 1900", 1900, 0, 1, 0, 0, 0, 2415020.0, 1},
        {"1 January 1970", 1970, 0, 1, 0, 0, 0, 2440587.0, 4},
        {"31 December 1999", 1999, 11, 31, 0, 0, 0, 2451543.0, 5},
        {"1 January 2000", 2000, 0, 1, 0, 0, 0, 2451544.0, 6},
        {"5 March 2024", 2024, 2, 5, 0, 0, 0, 2460374.0, 2},
        // 47109 seconds times the double nearest 1/86400, added to the day.
        {"5 March 2024 13:05:09", 2024, 2, 5, 13, 5, 9, 2460374.0 + 47109 * kDaysPerSecond, 2},
        {"31 December 9999", 9999, 11, 31, 0, 0, 0, 5373483.0, 5},
        {"29 February 2000", 2000, 1, 29, 0, 0, 0, 2451603.0, 2},
        {"1582 has no reform gap", 1582, 9, 10, 0, 0, 0, 2299155.0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        VL_DATE_RECORD r = record_of(c.year, c.mon, c.mday, c.hour, c.min, c.sec);
        r.tm_isdst = 7;
        double v = 0;
        ASSERT_EQ(DateTime_CvtDouble(&v, &r, 6), 0);
        EXPECT_EQ(vltest::bits(v), vltest::bits(c.value)) << v;
        EXPECT_EQ(r.tm_isdst, 0) << "the conversion to a value clears the daylight flag";
        VL_DATE_RECORD back{};
        back.tm_isdst = 5;
        ASSERT_EQ(DateTime_CvtDouble(&v, &back, 0), 0);
        EXPECT_EQ(describe(back), describe(VL_DATE_RECORD{c.sec, c.min, c.hour, c.mday, c.mon, c.year, c.wday,
                                                          vltest::day_of_year({c.year, c.mon + 1, c.mday}), 5}));
    }
    EXPECT_EQ(2460374.0 + 47109 * kDaysPerSecond, 2460374.5452430556);
}

TEST(Calendar, EveryDayOfTheRangeAgreesWithAnIndependentCalendar) {
    // Day by day from 31 December of year 99 to 31 December 9999, with a
    // time of day that moves through all hours, minutes and seconds.
    const int64_t first = vltest::days_from_civil(99, 12, 31);
    const int64_t last = vltest::days_from_civil(9999, 12, 31);
    ASSERT_EQ(static_cast<double>(first) + vltest::kUnixDayValue, 1757583.0);
    ASSERT_EQ(static_cast<double>(last) + vltest::kUnixDayValue, 5373483.0);
    int failures = 0;
    for (int64_t z = first; z <= last && failures < 10; ++z) {
        const vltest::Civil c = vltest::civil_from_days(z);
        const int secs = z == last ? 0 : static_cast<int>((z * 7919 % 86400 + 86400) % 86400);
        VL_DATE_RECORD r =
            record_of(static_cast<int>(c.year), c.month - 1, c.day, secs / 3600, secs / 60 % 60, secs % 60);
        double v = 0;
        const double expected = static_cast<double>(z) + vltest::kUnixDayValue + secs * kDaysPerSecond;
        // Years below 100 would be widened; the first day of the range is
        // only reached from its value.
        if (c.year >= 100) {
            if (DateTime_CvtDouble(&v, &r, 6) != 0 || vltest::bits(v) != vltest::bits(expected)) {
                ADD_FAILURE() << "to value: " << describe(r) << " gave " << v;
                ++failures;
                continue;
            }
        }
        VL_DATE_RECORD back{};
        const int rc = DateTime_CvtDouble(const_cast<double*>(&expected), &back, 0);
        const VL_DATE_RECORD want{secs % 60,
                                  secs / 60 % 60,
                                  secs / 3600,
                                  c.day,
                                  c.month - 1,
                                  static_cast<int>(c.year),
                                  vltest::weekday_from_days(z),
                                  vltest::day_of_year(c),
                                  0};
        if (rc != 0 || describe(back) != describe(want)) {
            ADD_FAILURE() << "from value " << expected << ": " << describe(back) << ", want " << describe(want);
            ++failures;
        }
    }
    EXPECT_EQ(failures, 0);
}

TEST(Calendar, TimeOfDayRoundsToTheSecondWithinItsDay) {
    const struct {
        const char* name;
        double value;
        int year, mon, mday, hour, min, sec;
    } cases[] = {
        {"6:00 before 1899 stays 6:00", 2396821.25, 1850, 2, 5, 6, 0, 0},
        {"last half second stays on its day", 2451543.99999999, 1999, 11, 31, 0, 0, 0},
        {"half a second rounds up", 2451543.0 + 10.5 / 86400.0, 1999, 11, 31, 0, 0, 11},
        {"just under half a second rounds down", 2451543.0 + 10.49 / 86400.0, 1999, 11, 31, 0, 0, 10},
        {"noon", 2451543.5, 1999, 11, 31, 12, 0, 0},
        {"first value of the range", 1757583.0, 99, 11, 31, 0, 0, 0},
        {"just before the end of the first day", 1757583.99999, 99, 11, 31, 23, 59, 59},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        double v = c.value;
        VL_DATE_RECORD r{};
        ASSERT_EQ(DateTime_CvtDouble(&v, &r, 0), 0);
        EXPECT_EQ(r.tm_year, c.year);
        EXPECT_EQ(r.tm_mon, c.mon);
        EXPECT_EQ(r.tm_mday, c.mday);
        EXPECT_EQ(r.tm_hour, c.hour);
        EXPECT_EQ(r.tm_min, c.min);
        EXPECT_EQ(r.tm_sec, c.sec);
        EXPECT_EQ(v, c.value) << "mode 0 leaves the value alone";
    }
}

TEST(Calendar, ValuesOutsideTheRangeAreRefusedAndLeaveTheRecord) {
    const double cases[] = {5373483.5, 5373483.0 + 1e-9, 1757582.9,    1757583.0 - 1e-9, 1.0,
                            0.0,       VL_MISSING_VALUE, std::nan(""), INFINITY,         -INFINITY};
    for (double value : cases) {
        SCOPED_TRACE(std::to_string(value));
        VL_DATE_RECORD r{1, 2, 3, 4, 5, 6, 7, 8, 9};
        double v = value;
        EXPECT_EQ(DateTime_CvtDouble(&v, &r, 0), 1);
        EXPECT_EQ(describe(r), describe(VL_DATE_RECORD{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }
}

TEST(Calendar, RecordsThatAreNoDateAreRefused) {
    const struct {
        const char* name;
        VL_DATE_RECORD r;
        int rc;
        double value;
    } cases[] = {
        {"29 February 1900", record_of(1900, 1, 29), 1, kRefused},
        {"29 February 2000", record_of(2000, 1, 29), 0, 2451603.0},
        {"28 February 2100", record_of(2100, 1, 28), 0, 2488127.0},
        {"29 February 2100", record_of(2100, 1, 29), 1, kRefused},
        {"31 April", record_of(2024, 3, 31), 1, kRefused},
        {"30 April", record_of(2024, 3, 30), 0, 2460430.0},
        {"day 0", record_of(2024, 0, 0), 1, kRefused},
        {"month 12", record_of(2024, 12, 1), 1, kRefused},
        {"month -1 is 0 after the +1", record_of(2024, -1, 1), 1, kRefused},
        {"year -1 arrives as 65535", record_of(-1, 0, 1), 1, kRefused},
        {"year 10000", record_of(10000, 0, 1), 1, kRefused},
        {"hour 24", record_of(2024, 0, 1, 24), 1, kRefused},
        {"minute 60", record_of(2024, 0, 1, 0, 60), 1, kRefused},
        {"second 60", record_of(2024, 0, 1, 0, 0, 60), 1, kRefused},
        {"negative second", record_of(2024, 0, 1, 0, 0, -1), 1, kRefused},
        {"year 44 is 2044", record_of(44, 0, 1), 0, 2467615.0},
        {"year 45 is 1945", record_of(45, 0, 1), 0, 2431456.0},
        {"year 99 is 1999", record_of(99, 0, 1), 0, 2451179.0},
        {"year 0 is 2000", record_of(0, 0, 1), 0, 2451544.0},
        {"year 100 stays", record_of(100, 0, 1), 0, 1757584.0},
        {"a year is cut to 16 bits", record_of(65536 + 2000, 0, 1), 0, 2451544.0},
        {"23:59:59", record_of(2024, 0, 1, 23, 59, 59), 0, 2460310.0 + 86399 * kDaysPerSecond},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        VL_DATE_RECORD r = c.r;
        double v = -5.0;
        EXPECT_EQ(DateTime_CvtDouble(&v, &r, 6), c.rc);
        EXPECT_EQ(vltest::bits(v), vltest::bits(c.value)) << v;
        v = -5.0;
        r = c.r;
        EXPECT_EQ(DateTime_CvtDouble(&v, &r, 8), c.rc) << "mode 8 is mode 6";
        EXPECT_EQ(vltest::bits(v), vltest::bits(c.value)) << v;
    }
    // The widened years agree with the calendar's own count.
    EXPECT_EQ(vltest::days_from_civil(2044, 1, 1) + vltest::kUnixDayValue, 2467615.0);
    EXPECT_EQ(vltest::days_from_civil(1945, 1, 1) + vltest::kUnixDayValue, 2431456.0);
    EXPECT_EQ(vltest::days_from_civil(2100, 2, 28) + vltest::kUnixDayValue, 2488127.0);
}

TEST(Calendar, SecondsAndDays) {
    const struct {
        const char* name;
        double in;
        uint32_t mode;
        double out;
        int32_t rc;
    } cases[] = {
        {"days to seconds", 1.5, 2, 129600.0, 0},
        {"seconds to days multiplies", 129600.0, 3, 129600.0 * kDaysPerSecond, 0},
        {"marker", 123.0, 4, 0.666666, 0},
        {"high bits of the mode ignored", 1.5, 0x10002, 129600.0, 0},
        {"seconds become days through 32 bits", 90.0, 7, 90.0 * kDaysPerSecond, 0},
        {"seconds above 32 bits wrap", 4294967296.0 + 60.0, 7, 60.0 * kDaysPerSecond, 0},
        {"fractions of a second are cut", 59.9, 7, 59.0 * kDaysPerSecond, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        double v = c.in;
        EXPECT_EQ(DateTime_CvtDouble(&v, nullptr, c.mode), c.rc);
        EXPECT_EQ(vltest::bits(v), vltest::bits(c.out)) << v;
    }
}

TEST(Calendar, LastSecondsAreClampedTo32Bits) {
    const struct {
        const char* name;
        double value;
        int32_t seconds;
    } cases[] = {
        {"one day", 1.0, 86400},
        {"a date value is beyond 32 bits", 2460374.5, -1},
        {"the far end", 1e300, -1},
        {"negative", -0.5, 0},
        {"fraction cut", 1.5 / 86400.0, 1},
        {"zero", 0.0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        double v = c.value;
        EXPECT_EQ(DateTime_CvtDouble(&v, nullptr, 1), c.seconds);
        EXPECT_EQ(v, c.value);
        // Mode 9 and above hand the seconds back as days.
        double days = -1.0;
        EXPECT_EQ(DateTime_CvtDouble(&days, nullptr, 9), 0);
        EXPECT_EQ(vltest::bits(days),
                  vltest::bits(static_cast<double>(static_cast<uint32_t>(c.seconds)) * kDaysPerSecond));
    }
}

void set_tz(const char* value) {
#ifdef _WIN32
    _putenv_s("TZ", value ? value : "");
#else
    if (value)
        setenv("TZ", value, 1);
    else
        unsetenv("TZ");
#endif
}

TEST(Calendar, TimeZoneOffsetIsAddedToLastSecondsByMode0) {
    const struct {
        const char* tz;
        uint32_t offset;  // seconds west of UTC
    } cases[] = {{"EST5", 18000}, {"UTC0", 0}, {"JST-9", static_cast<uint32_t>(-32400)}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tz);
        set_tz(c.tz);
        ASSERT_EQ(DateTime_CvtDouble(nullptr, nullptr, 5), 0);
        // A date value's seconds are clamped to 4294967295; the offset is
        // added to that and the sum cut to 32 bits: offset - 1.
        VL_DATE_RECORD r{};
        double d = 2451544.0;
        ASSERT_EQ(DateTime_CvtDouble(&d, &r, 0), 0);
        double days = 0;
        DateTime_CvtDouble(&days, nullptr, 9);
        EXPECT_EQ(vltest::bits(days), vltest::bits(static_cast<double>(c.offset - 1) * kDaysPerSecond));
        // A refused value adds nothing.
        d = 1.0;
        ASSERT_EQ(DateTime_CvtDouble(&d, &r, 0), 1);
        DateTime_CvtDouble(&days, nullptr, 9);
        EXPECT_EQ(vltest::bits(days), vltest::bits(86400.0 * kDaysPerSecond));
    }
    set_tz(nullptr);
    DateTime_CvtDouble(nullptr, nullptr, 5);
}

TEST(CheckDate, TestsMonthDayAndYear) {
    const struct {
        const char* name;
        VL_DATE_RECORD r;
        int32_t rc;
    } cases[] = {
        {"good", record_of(2024, 2, 5), 1},
        {"31 April passes: the length of the month is not checked", record_of(2024, 3, 31), 1},
        {"month 12", record_of(2024, 12, 5), 0},
        {"month -1", record_of(2024, -1, 5), 0},
        {"day 0", record_of(2024, 2, 0), 0},
        {"day 32", record_of(2024, 2, 32), 0},
        {"year -1", record_of(-1, 2, 5), 0},
        {"year 10000", record_of(10000, 2, 5), 0},
        {"year 0 and 9999 pass", record_of(0, 2, 5), 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        VL_DATE_RECORD r = c.r;
        r.tm_hour = 7;
        EXPECT_EQ(DateTime_CheckDate(&r, 0), c.rc);
        VL_DATE_RECORD want = c.r;
        want.tm_hour = 7;
        EXPECT_EQ(describe(r), describe(want)) << "without repair nothing changes";
        r = c.r;
        r.tm_hour = 7;
        EXPECT_EQ(DateTime_CheckDate(&r, 16), c.rc);
        want.tm_hour = 0;
        EXPECT_EQ(describe(r), describe(want)) << "clear time runs whatever the test found";
    }
    VL_DATE_RECORD last = record_of(9999, 11, 31);
    EXPECT_EQ(DateTime_CheckDate(&last, 0), 1);
}

TEST(CheckDate, MonthStartMovesTheSecondHalfOfAMonth) {
    const struct {
        const char* name;
        VL_DATE_RECORD in, out;
    } cases[] = {
        {"16 December 1999", record_of(1999, 11, 16, 5), record_of(2000, 0, 1, 5)},
        {"15 December 1999", record_of(1999, 11, 15, 5), record_of(1999, 11, 15, 5)},
        {"31 January", record_of(2024, 0, 31), record_of(2024, 1, 1)},
        {"other flags are ignored", record_of(2024, 0, 20, 5), record_of(2024, 1, 1, 5)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        VL_DATE_RECORD r = c.in;
        EXPECT_EQ(DateTime_CheckDate(&r, 4096 | 16 | 1), 1);
        EXPECT_EQ(describe(r), describe(c.out));
    }
}

TEST(ResetTimeOfDay, ClearsTimeAndDaylightOnly) {
    VL_DATE_RECORD r{1, 2, 3, 4, 5, 6, 7, 8, 9};
    DateTime_ResetTimeOfDay(&r);
    EXPECT_EQ(describe(r), describe(VL_DATE_RECORD{0, 0, 0, 4, 5, 6, 7, 8, 0}));
}

}  // namespace
