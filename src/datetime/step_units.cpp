// DateTime_UnitValue: reading, classifying and printing step quantities.

#include "datetime/step_units.h"

#include <cmath>
#include <string_view>

#include "datetime/calendar.h"
#include "datetime/text_out.h"
#include "platform/platform.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

struct StepUnit {
    const char* name;
    int32_t seconds;
    uint16_t style;  // the date style word for steps of this unit
};

// Ascending, so that a count of units whose length is at most n finds the
// largest unit that fits.
constexpr StepUnit kUnits[] = {
    {"sec", 1, 0},
    {"min", 60, 0},
    {"hour", 3600, 0},
    {"day", 86400, 66},  // first letter of the weekday
    {"week", 604800, 0},
    {"month", 2678400, 274},    // first letter of the month
    {"quarter", 7862400, 352},  // Q1 to Q4
    {"year", 31536000, 384},    // the year
};
constexpr int kUnitCount = static_cast<int>(std::size(kUnits));
constexpr int kDay = 3, kWeek = 4, kMonth = 5, kYear = 7;

// Style words handed out carry this bit, so they aren't taken for format
// numbers.
constexpr uint16_t kStyleWordMark = 16384;

// Quantities beyond this many units go one unit up.
constexpr double kMostUnits = 370.0;

// Whole seconds of a length, kept within what the table can classify.
int64_t whole_seconds(double v) noexcept {
    if (!(v > 0.0)) return 0;
    return v < 9.0e18 ? static_cast<int64_t>(v) : INT64_MAX;
}

int32_t read_quantity(double* value, char* text) noexcept {
    if (!text) return 1;
    // 1. Blanks go: "3 weeks" is "3weeks".
    KELUTIL_strip(text);
    // 2. The unit starts at the first letter, or is the whole text.
    char* unit = text;
    for (char* p = text; *p; ++p)
        if (platform::is_alpha(*p)) {
            unit = p;
            break;
        }
    // 3. The first unit whose name and the text agree as far as the shorter
    //    goes, in any case: "s", "mo", "weeks".
    int found = -1;
    for (int i = 0; i < kUnitCount && found < 0; ++i)
        if (text::str_prefix_cmpi(unit, kUnits[i].name) == 0 || text::str_prefix_cmpi(kUnits[i].name, unit) == 0)
            found = i;
    // 4. No unit: seconds, and the answer says so.
    const int32_t result = found < 0 ? 1 : 0;
    const StepUnit& u = kUnits[found < 0 ? 0 : found];
    // 5. The number in front of the unit, or one unit.
    *unit = '\0';
    double quantity = text[0] ? KELUTIL_str2real(text) * u.seconds : u.seconds;
    // 6. In days.
    DateTime_CvtDouble(&quantity, nullptr, VL_CVT_SECONDS_TO_DAYS);
    if (value) *value = quantity;
    return result;
}

int32_t classify(double* value, uint16_t mode, char* text) noexcept {
    // 1. Seconds, and their whole number.
    if (mode & kUnitInDays) *value *= kSecondsPerDay;
    const int64_t n = whole_seconds(*value);
    const auto nd = static_cast<double>(n);
    // 2. How many units fit into n.
    int i = 0;
    while (i < kUnitCount && kUnits[i].seconds <= n) ++i;
    // 3. Less than a second.
    if (i == 0) {
        if (mode & kUnitNice) {
            *value = 1.0;
            return 1;
        }
        return 0;
    }
    // 4. The count in the largest unit that fits.
    const double q0 = nd / kUnits[i - 1].seconds;
    // 5. A style word: the fitting unit when there are two or more of it,
    //    else the one below (a week is told by its days).
    if (mode & kUnitStyle) {
        if (i < 2) return 0;
        int unit = i < kUnitCount ? i : kYear;
        if (q0 < 2.0) unit = i - 1 == kWeek ? kDay : i - 1;
        return kUnits[unit].style | kStyleWordMark;
    }
    // 6. The walk starts at the unit above, with a tight tolerance.
    if (i > kYear) i = kYear;
    const bool nice = mode & kUnitNice;
    double tolerance = nice ? 0.05 : 0.001;
    const double limit = nice ? 0.95 : 1.0;
    // 7. Down the units until the length is near a whole number of one;
    //    the tolerance loosens tenfold at each step.
    int j = i;
    double q = 0.0;
    for (; j >= 0; --j) {
        q = nd / kUnits[j].seconds;
        if (q < limit) continue;
        if (q > kMostUnits) {
            if (j < kYear) ++j;
            q = nd / kUnits[j].seconds;
            break;
        }
        if (q - std::trunc(q) < tolerance) {
            q = std::trunc(q);
            break;
        }
        tolerance *= 10.0;
    }
    if (j < 0) j = 0;  // not reached: a count of seconds always ends the walk
    // 8. The count, and the answer the mode asks for.
    *value = q;
    if (mode & kUnitIndex) return j >= kMonth ? j : 0;
    if (mode & kUnitPrint) {
        if (text) {
            KELUTIL_real2str(q, text, "*3*");
            TextSink::behind(text).text(kUnits[j].name);
        }
        return 0;
    }
    if (mode & kUnitNice) {
        // The count goes with the unit the walk found, so that their product
        // stays near the length asked for.
        const double count = std::trunc(q + 0.5);
        *value = count < 1.0 ? 1.0 : count;
    }
    return kUnits[j].seconds;
}

}  // namespace

int32_t DateTime_UnitValue(double* value, uint16_t mode, char* text) noexcept {
    if (mode == kUnitRead) return read_quantity(value, text);
    if (!value) return 0;
    return classify(value, mode, text);
}

}  // namespace vl::datetime
