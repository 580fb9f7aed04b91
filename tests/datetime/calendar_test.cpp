// The calendar entries: date values to records and back, seconds, and the
// record check.

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "civil.h"
#include "support.h"
#include "vlcore.h"

namespace {

constexpr double kDaysPerSecond = 1.1574074074074073e-5;

VL_DATE_RECORD record_of(int year, int mon, int mday, int hour = 0, int min = 0, int sec = 0) {
    VL_DATE_RECORD r{};
    r.tm_year = year, r.tm_mon = mon, r.tm_mday = mday, r.tm_hour = hour, r.tm_min = min, r.tm_sec = sec;
    return r;
}

// The six fields of a record the data file writes, "year month day hour
// minute second", as they stand.
std::string fields(const VL_DATE_RECORD& r) {
    return std::to_string(r.tm_year) + " " + std::to_string(r.tm_mon) + " " + std::to_string(r.tm_mday) + " " +
           std::to_string(r.tm_hour) + " " + std::to_string(r.tm_min) + " " + std::to_string(r.tm_sec);
}

TEST(Calendar, RecordsAndValuesConvertAsTheTableSays) {
    vltest::for_rows("datetime/calendar_records.tsv", 5, [](const std::vector<std::string>& row) {
        VL_DATE_RECORD record{};
        std::istringstream(row[1]) >> record.tm_year >> record.tm_mon >> record.tm_mday >> record.tm_hour >>
            record.tm_min >> record.tm_sec;
        const double value = vltest::number(row[3]);
        if (row[0] != "from") {
            for (uint32_t mode : {6u, 8u}) {  // mode 8 is mode 6
                VL_DATE_RECORD r = record;
                double v = -5.0;
                EXPECT_EQ(DateTime_CvtDouble(&v, &r, mode), std::stoi(row[2])) << "mode " << mode;
                EXPECT_EQ(vltest::bits(v), vltest::bits(value)) << "mode " << mode << ": " << v;
            }
        }
        if (row[0] != "to") {
            double v = value;
            VL_DATE_RECORD r{};
            ASSERT_EQ(DateTime_CvtDouble(&v, &r, 0), 0);
            EXPECT_EQ(fields(r), row[1]);
            EXPECT_EQ(v, value) << "mode 0 leaves the value alone";
        }
    });
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
        const VL_DATE_RECORD given =
            record_of(static_cast<int>(c.year), c.month - 1, c.day, secs / 3600, secs / 60 % 60, secs % 60);
        VL_DATE_RECORD r = given;
        r.tm_isdst = 7;
        double v = 0;
        const double expected = static_cast<double>(z) + vltest::kUnixDayValue + secs * kDaysPerSecond;
        // Years below 100 would be widened; the first day of the range is
        // only reached from its value.  The conversion to a value clears the
        // daylight flag; the one to a record leaves it alone.
        if (c.year >= 100 &&
            (DateTime_CvtDouble(&v, &r, 6) != 0 || vltest::bits(v) != vltest::bits(expected) || r.tm_isdst != 0)) {
            ADD_FAILURE() << "to value: " << vltest::describe(r) << " gave " << v;
            ++failures;
            continue;
        }
        VL_DATE_RECORD back{}, want = given;
        back.tm_isdst = want.tm_isdst = 5;
        want.tm_wday = vltest::weekday_from_days(z);
        want.tm_yday = vltest::day_of_year(c);
        const int rc = DateTime_CvtDouble(const_cast<double*>(&expected), &back, 0);
        if (rc != 0 || vltest::describe(back) != vltest::describe(want)) {
            ADD_FAILURE() << "from value " << expected << ": " << vltest::describe(back) << ", want "
                          << vltest::describe(want);
            ++failures;
        }
    }
    EXPECT_EQ(failures, 0);
}

TEST(Calendar, ValuesOutsideTheRangeAreRefusedAndLeaveTheRecord) {
    const double cases[] = {5373483.5, 5373483.0 + 1e-9, 1757582.9,    1757583.0 - 1e-9, 1.0,
                            0.0,       VL_MISSING_VALUE, std::nan(""), INFINITY,         -INFINITY};
    for (double value : cases) {
        SCOPED_TRACE(std::to_string(value));
        VL_DATE_RECORD r{1, 2, 3, 4, 5, 6, 7, 8, 9};
        double v = value;
        EXPECT_EQ(DateTime_CvtDouble(&v, &r, 0), 1);
        EXPECT_EQ(vltest::describe(r), vltest::describe(VL_DATE_RECORD{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }
}

TEST(Calendar, SecondsAndDays) {
    const struct {
        const char* name;
        double in;
        uint32_t mode;
        double out;
    } cases[] = {
        {"days to seconds", 1.5, 2, 129600.0},
        {"seconds to days multiplies", 129600.0, 3, 129600.0 * kDaysPerSecond},
        {"marker", 123.0, 4, 0.666666},
        {"high bits of the mode ignored", 1.5, 0x10002, 129600.0},
        {"seconds become days through 32 bits", 90.0, 7, 90.0 * kDaysPerSecond},
        {"seconds above 32 bits wrap", 4294967296.0 + 60.0, 7, 60.0 * kDaysPerSecond},
        {"fractions of a second are cut", 59.9, 7, 59.0 * kDaysPerSecond},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        double v = c.in;
        EXPECT_EQ(DateTime_CvtDouble(&v, nullptr, c.mode), 0);
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

TEST(Calendar, TimeZoneOffsetIsAddedToLastSecondsByMode0) {
    const struct {
        const char* tz;
        uint32_t offset;  // seconds west of UTC
    } cases[] = {{"EST5", 18000}, {"UTC0", 0}, {"JST-9", static_cast<uint32_t>(-32400)}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tz);
        vltest::set_env("TZ", c.tz);
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
    vltest::set_env("TZ", nullptr);
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
        {"year 0 passes", record_of(0, 2, 5), 1},
        {"31 December 9999 passes", record_of(9999, 11, 31), 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        VL_DATE_RECORD want = c.r;
        want.tm_hour = 7;
        VL_DATE_RECORD r = want;
        EXPECT_EQ(DateTime_CheckDate(&r, 0), c.rc);
        EXPECT_EQ(vltest::describe(r), vltest::describe(want)) << "without repair nothing changes";
        r = want;
        want.tm_hour = 0;
        EXPECT_EQ(DateTime_CheckDate(&r, 16), c.rc);
        EXPECT_EQ(vltest::describe(r), vltest::describe(want)) << "clear time runs whatever the test found";
    }
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
        EXPECT_EQ(vltest::describe(r), vltest::describe(c.out));
    }
}

TEST(ResetTimeOfDay, ClearsTimeAndDaylightOnly) {
    VL_DATE_RECORD r{1, 2, 3, 4, 5, 6, 7, 8, 9};
    DateTime_ResetTimeOfDay(&r);
    EXPECT_EQ(vltest::describe(r), vltest::describe(VL_DATE_RECORD{0, 0, 0, 4, 5, 6, 7, 8, 0}));
}

}  // namespace
