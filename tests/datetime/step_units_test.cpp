// Step quantities: reading "3 weeks", and the unit behind a length of time.

#include "datetime/step_units.h"

#include <string>
#include <vector>

#include "civil.h"
#include "support.h"
#include "vlcore.h"

namespace {

using namespace vl::datetime;

constexpr double kDaysPerSecond = 1.1574074074074073e-5;

TEST(StepUnits, ReadsAndPrintsAsTheTableSays) {
    vltest::for_rows("datetime/step_units.tsv", 4, [](const std::vector<std::string>& row) {
        const double length = vltest::number(row[2]);
        std::vector<char> text = vltest::writable(row[1]);
        double value = length;
        vltest::Poisoned out(32);
        if (row[0] == "read") {
            value = -1.0;
            EXPECT_EQ(DateTime_UnitValue(&value, 0, text.data()), std::stoi(row[3]));
            EXPECT_EQ(vltest::bits(value), vltest::bits(length * kDaysPerSecond)) << value;
            EXPECT_DOUBLE_EQ(value, length / 86400);
        } else {
            const uint16_t mode = row[0] == "days" ? kUnitInDays | kUnitPrint : kUnitPrint;
            EXPECT_EQ(DateTime_UnitValue(&value, mode, out.data()), std::stoi(row[3]));
            EXPECT_EQ(out.text(), row[1]);
        }
    });
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
        {"index below month is 0", 604800, kUnitIndex, 0, 1.0},
        {"month index", 2678400, kUnitIndex, 5, 1.0},
        {"year index", 3 * 31536000.0, kUnitIndex, 7, 3.0},
        {"below a second", 0.5, 0x0001, 0, 0.5},
        {"below a second, nice", 0.5, kUnitNice, 1, 1.0},
        // Nice: a count of the unit the walk found, at least 1.
        {"eight days, nice", 8 * 86400.0, kUnitNice, 86400, 8.0},
        {"a week less a bit, nice", 604000, kUnitNice, 3600, 167.0},
        {"ten minutes, nice", 600, kUnitNice, 60, 10.0},
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
