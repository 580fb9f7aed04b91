// "Now" from the pinned clock, and the record conversions' internal knobs.

#include <string>

#include "datetime/calendar.h"
#include "datetime/regional.h"
#include "datetime/state.h"
#include "pinned_today.h"
#include "vlcore.h"

namespace {

using namespace vl::datetime;
using vltest::set_env;

// Now is pinned and the zone is UTC, so local time is the pinned instant.
class PinnedNow : public vltest::PinnedToday {};

TEST_F(PinnedNow, NowIsTheLocalBreakdownWithTheFullYear) {
    const struct {
        const char* pin;
        DateRecord want;  // tm_yday counts from 0, as the runtime's
    } cases[] = {
        {"1795046400", {0, 0, 0, 19, 10, 2026, 4, 322, 0}},  // Thursday 19 November 2026
        {"1709643909", {9, 5, 13, 5, 2, 2024, 2, 64, 0}},    // Tuesday 5 March 2024 13:05:09
        {"951782400.75", {0, 0, 0, 29, 1, 2000, 2, 59, 0}},  // 29 February 2000
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pin);
        set_env("VLCORE_NOW", c.pin);
        EXPECT_EQ(vltest::describe(DateTime_Now()), vltest::describe(c.want));
    }
}

TEST_F(PinnedNow, CheckDateFillsAndRepairsFromNow) {
    set_env("VLCORE_NOW", "1709643909");
    VL_DATE_RECORD r{1, 1, 1, 1, 1, 1, 1, 1, 1};
    EXPECT_EQ(DateTime_CheckDate(&r, 1 | 16), 1);
    EXPECT_EQ(r.tm_year, 2024);
    EXPECT_EQ(r.tm_hour, 13) << "fill returns at once: the time is not cleared";
    // Repair takes only the bad fields from now, and still reports them.
    VL_DATE_RECORD bad{5, 6, 7, 40, 1, -3, 0, 0, 0};
    EXPECT_EQ(DateTime_CheckDate(&bad, 2), 0);
    EXPECT_EQ(bad.tm_mday, 5);
    EXPECT_EQ(bad.tm_mon, 1);
    EXPECT_EQ(bad.tm_year, 2024);
    EXPECT_EQ(bad.tm_hour, 7);
}

TEST_F(PinnedNow, TheLoadStartsTheWorkingRecordAtNow) {
    set_env("VLCORE_NOW", "1795046400");
    KELUTIL_date2str(0.0, 32768, nullptr);
    EXPECT_EQ(working_record.tm_year, 2026);
    EXPECT_EQ(working_record.tm_mon, 10);
    EXPECT_EQ(working_record.tm_mday, 19);
    // Printing leaves its date there for the readers.
    char out[64];
    KELUTIL_date2str(2460374.5, 0, out);
    EXPECT_EQ(working_record.tm_year, 2024);
    EXPECT_EQ(working_record.tm_hour, 12);
}

TEST(Calendar, ExactConversionTruncatesTheSeconds) {
    const double v = 2460374.0 + 59.9 / 86400.0;
    DateRecord rounded{}, exact{};
    ASSERT_TRUE(DateTime_FromValue(v, rounded, 0));
    ASSERT_TRUE(DateTime_FromValue(v, exact, 1));
    EXPECT_EQ(rounded.tm_min, 1);
    EXPECT_EQ(rounded.tm_sec, 0);
    EXPECT_EQ(exact.tm_min, 0);
    EXPECT_EQ(exact.tm_sec, 59);
    DateRecord untouched{1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_FALSE(DateTime_FromValue(kLastDateValue + 0.5, untouched, 1));
    EXPECT_EQ(untouched.tm_year, 6);
}

TEST(RegionalTables, NamesComeFromTheStringTable) {
    KELUTIL_date2str(0.0, 32768, nullptr);
    // The names themselves are printed by the date printer's tests; the
    // rows behind the last stay empty.
    const RegionalDateTables& t = regional_date_tables;
    EXPECT_STREQ(t.month_abbreviations[0], "Jan");
    EXPECT_STREQ(t.month_abbreviations[4], "May");
    EXPECT_STREQ(t.month_names[12], "");
    EXPECT_STREQ(t.weekday_names[7], "");
}

}  // namespace
