// Moving dates: calendar steps, snapped steps, weekdays, texts and month
// starts.

#include <string>
#include <vector>

#include "pinned_today.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::day_value;
using vltest::hours;

constexpr double kRefused = 2451323.4653704;

class DateInc : public vltest::PinnedToday {
  protected:
    static double step(double date, double days) {
        KELUTIL_dateinc(&date, reinterpret_cast<intptr_t>(&days), 1);
        return date;
    }
};

TEST_F(DateInc, CalendarSteps) {
    const double jan15 = day_value(2024, 1, 15);
    const struct {
        const char* name;
        double from, days, want;
    } rows[] = {
        {"a month", jan15, 31, day_value(2024, 2, 15)},
        {"two months", jan15, 62, day_value(2024, 3, 15)},
        {"a quarter", jan15, 91, day_value(2024, 4, 15)},
        {"a year", jan15, 365, day_value(2025, 1, 15)},
        {"30 days are days", jan15, 30, day_value(2024, 2, 14)},
        {"13 months over a year end", day_value(2023, 12, 15), 31 * 13, day_value(2025, 1, 15)},
        {"the time moves with days", jan15 + hours(6), 1.5, jan15 + hours(42)},
        {"the time stays with months", jan15 + hours(6), 31, day_value(2024, 2, 15) + hours(6)},
        {"a negative step is days", jan15, -31, day_value(2023, 12, 15)},
        // Days the target month lacks stop at its last day.
        {"31 January plus a month", day_value(2024, 1, 31), 31, day_value(2024, 2, 29)},
        {"31 January 2023 plus a month", day_value(2023, 1, 31), 31, day_value(2023, 2, 28)},
        {"29 February plus a year", day_value(2024, 2, 29), 365, day_value(2025, 2, 28)},
        {"31 August plus a quarter", day_value(2023, 8, 31) + hours(9), 91, day_value(2023, 11, 30) + hours(9)},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_NEAR(step(r.from, r.days), r.want, 1e-7);
    }
}

TEST_F(DateInc, SnappedSteps) {
    const struct {
        double days, want;
        int kind;
    } rows[] = {{7, 7, 16}, {30, 31, 32}, {91, 91, 64}, {0.5, 0.5, 0}, {365, 365, 0}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.days);
        double d = r.days;
        EXPECT_EQ(KELUTIL_dateinc(&d, 0, 2), 0);
        EXPECT_NEAR(d, r.want, 1e-9);
        EXPECT_EQ(KELUTIL_dateinc(nullptr, 0, 3), r.kind);
    }
}

TEST_F(DateInc, WeekdaysTextsAndMonthStarts) {
    const double sample = day_value(2024, 3, 5) + hours(13, 5, 9);
    const struct {
        const char* name;
        double from;
        uint32_t op;
        intptr_t number;
        const char* text;
        double want;
    } rows[] = {
        {"to Friday", sample, 4, 5, nullptr, day_value(2024, 3, 8) + hours(13, 5, 9)},
        {"to Sunday across a month", day_value(2024, 10, 1) + hours(7), 4, 0, nullptr,
         day_value(2024, 9, 29) + hours(7)},
        {"to Saturday across a year", day_value(2025, 12, 29), 4, 6, nullptr, day_value(2026, 1, 3)},
        {"day 15", sample, 5, 0, "15", day_value(2024, 3, 15)},
        {"day 31 in April", day_value(2024, 4, 10), 5, 0, "31", day_value(2024, 4, 30)},
        {"Fri", sample, 5, 0, "Fri", day_value(2024, 3, 8)},
        {"a date", sample, 5, 0, "3/7/99", day_value(1999, 3, 7)},
        {"18th, margin 17", day_value(2024, 3, 18) + hours(5), 7, 1, nullptr, day_value(2024, 3, 1) + hours(5)},
        {"19th, margin 17", day_value(2024, 3, 19), 7, 1, nullptr, day_value(2024, 4, 1)},
        {"20 December", day_value(2023, 12, 20), 7, 1, nullptr, day_value(2024, 1, 1)},
        {"16th, margin 15", day_value(2024, 3, 16), 8, 1, nullptr, day_value(2024, 3, 1)},
        {"before the day", day_value(2024, 3, 2), 8, 5, nullptr, day_value(2024, 4, 1)},
        {"no such operation", sample, 9, 0, nullptr, sample},
        {"operation 6", sample, 6, 0, nullptr, sample},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        double d = r.from;
        std::vector<char> text = vltest::writable(r.text ? r.text : "");
        const intptr_t argument = r.text ? reinterpret_cast<intptr_t>(text.data()) : r.number;
        EXPECT_EQ(KELUTIL_dateinc(&d, argument, r.op), 0);
        EXPECT_NEAR(d, r.want, 1e-7);
    }
}

// However far a date is moved, a move that gives no date leaves it as it
// was instead of the fixed number of a refused conversion.
TEST_F(DateInc, NoMoveStoresTheRefusedNumber) {
    const double first = 1757584.0, last = 5373483.0;  // 1 January 100, 31 December 9999
    const struct {
        const char* name;
        double from;
        uint32_t op;
        intptr_t argument;
    } rows[] = {
        {"long before year 100", first, 4, -128},
        {"past 9999 by weekday", last, 4, 6},
        {"past 9999 by month start", last, 7, 1},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        double d = r.from;
        KELUTIL_dateinc(&d, r.argument, r.op);
        EXPECT_NE(vltest::bits(d), vltest::bits(kRefused));
        EXPECT_EQ(d, r.from);
    }
    for (double days : {365.0, 31.0, 91.0}) {
        SCOPED_TRACE(days);
        EXPECT_EQ(step(last, days), last);
    }
}

}  // namespace
