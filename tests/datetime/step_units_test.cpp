// Step quantities: reading "3 weeks", and the unit behind a length of time.

#include "datetime/step_units.h"

#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace {

using vl::datetime::DateTime_UnitValue;

constexpr double kDaysPerSecond = 1.1574074074074073e-5;

TEST(StepUnits, ReadingQuantities) {
    const struct {
        const char* text;
        double seconds;
        int32_t result;
    } cases[] = {
        {"week", 604800, 0},
        {"3 weeks", 3 * 604800.0, 0},
        {"2h", 7200, 0},
        {"1 month", 2678400, 0},
        {"q", 7862400, 0},
        {"1y", 31536000, 0},
        {"90min", 5400, 0},
        {"2.5 HOURS", 9000, 0},
        {"m", 60, 0},
        {"mo", 2678400, 0},
        {"s", 1, 0},
        {"seconds", 1, 0},
        {"D a Y", 86400, 0},
        {"xyz", 1, 1},
        {"12", 1, 1},
        {"5 fortnights", 5, 1},
        {"Quarter", 7862400, 0},
        {"10 sec", 10, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        std::vector<char> text = vltest::writable(c.text);
        double days = -1.0;
        EXPECT_EQ(DateTime_UnitValue(&days, 0, text.data()), c.result);
        // The seconds are turned into days by a multiplication.
        EXPECT_EQ(vltest::bits(days), vltest::bits(c.seconds * kDaysPerSecond)) << days;
    }
}

TEST(StepUnits, ReadingGivesTheDocumentedDays) {
    std::vector<char> week = vltest::writable("week");
    double days = 0;
    DateTime_UnitValue(&days, 0, week.data());
    EXPECT_NEAR(days, 7.0, 1e-12);
    std::vector<char> min90 = vltest::writable("90min");
    DateTime_UnitValue(&days, 0, min90.data());
    EXPECT_NEAR(days, 0.0625, 1e-15);
}

TEST(StepUnits, PrintingALength) {
    const struct {
        double days;
        const char* text;
    } cases[] = {
        {7.0, "1week"}, {1.5, "36hour"},    {365.0, "1year"}, {730.0, "2year"},      {0.5, "12hour"},
        {2.0, "2day"},  {91.0, "1quarter"}, {3.0, "3day"},    {1.0 / 1024, "84sec"}, {400.0, "57week"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        double v = c.days;
        vltest::Poisoned out(32);
        EXPECT_EQ(DateTime_UnitValue(&v, vl::datetime::kUnitInDays | vl::datetime::kUnitPrint, out.data()), 0);
        EXPECT_EQ(out.text(), c.text);
    }
    // A count of seconds without the days bit.
    double secs = 90.0;
    vltest::Poisoned out(32);
    DateTime_UnitValue(&secs, vl::datetime::kUnitPrint, out.data());
    EXPECT_EQ(out.text(), "90sec");
}

TEST(StepUnits, UnitIndexAndSeconds) {
    const struct {
        const char* name;
        double seconds;
        uint16_t mode;
        int32_t result;
        double value;
    } cases[] = {
        {"a week in seconds", 604800, 0x0001, 604800, 1.0},
        {"36 hours", 129600, 0x0001, 3600, 36.0},
        {"index below month is 0", 604800, vl::datetime::kUnitIndex, 0, 1.0},
        {"month index", 2678400, vl::datetime::kUnitIndex, 5, 1.0},
        {"year index", 3 * 31536000.0, vl::datetime::kUnitIndex, 7, 3.0},
        {"below a second", 0.5, 0x0001, 0, 0.5},
        {"below a second, nice", 0.5, vl::datetime::kUnitNice, 1, 1.0},
        // Nice: a count of the unit the walk found, at least 1.
        {"eight days, nice", 8 * 86400.0, vl::datetime::kUnitNice, 86400, 8.0},
        {"a week less a bit, nice", 604000, vl::datetime::kUnitNice, 3600, 167.0},
        {"ten minutes, nice", 600, vl::datetime::kUnitNice, 60, 10.0},
        // Beyond 370 of the unit below, one unit up.
        {"400 years go to years", 400 * 31536000.0, 0x0001, 31536000, 400.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        double v = c.seconds;
        EXPECT_EQ(DateTime_UnitValue(&v, c.mode, nullptr), c.result);
        EXPECT_NEAR(v, c.value, 1e-9);
    }
}

}  // namespace
