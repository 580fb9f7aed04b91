// Moving dates: calendar steps, snapped steps, weekdays, texts and month
// starts.

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "pinned_today.h"
#include "vlcore.h"

namespace {

class DateInc : public vltest::PinnedToday {};

TEST_F(DateInc, MovesAsTheTableSays) {
    vltest::for_rows("datetime/dateinc_moves.tsv", 5, [](const std::vector<std::string>& row) {
        const uint32_t op = vltest::word(row[1]);
        double date = vltest::moment(row[0]), days = op == 5 ? 0.0 : vltest::number(row[2]);
        std::vector<char> text = vltest::writable(row[2]);
        const intptr_t argument = op == 1   ? reinterpret_cast<intptr_t>(&days)
                                  : op == 5 ? reinterpret_cast<intptr_t>(text.data())
                                            : static_cast<intptr_t>(days);
        EXPECT_EQ(KELUTIL_dateinc(&date, argument, op), 0);
        vltest::expect_moment(date, row[3]);
    });
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

TEST_F(DateInc, OnlyTheNamedOperationsWriteTheLastStep) {
    // A model of the last-step double over generated call sequences: 2
    // leaves its kind (told by the snapped step it gives), 1 on a whole
    // number of months, quarters or years and 4, 5 on a day or weekday, 7
    // and 8 leave the date they give; 0, 1 on plain days, 5 on a date text,
    // 6 and the unknown operations leave it as it was.  3 reads it.
    struct Step {
        double days;
        bool calendar;
    };
    constexpr Step kSteps[] = {{31, true},   {62, true},   {91, true},  {365, true}, {403, true}, {30, false},
                               {1.5, false}, {7, false},   {-31, false}, {0.25, false}, {14, false}};
    constexpr const char* kDayTexts[] = {"15", "1", "28", "Fri", "Monday", "sun"};
    constexpr const char* kOtherTexts[] = {"3/7/99", "abc", "32", "0"};
    std::mt19937 rng(4711);
    auto below = [&](uint32_t n) { return std::uniform_int_distribution<uint32_t>(0, n - 1)(rng); };
    double model = 0.0;
    double date = vltest::moment("2024-01-15");
    double kind_probe = 30.0;
    KELUTIL_dateinc(&kind_probe, 0, 2);  // a known state to begin with: a month
    model = 32;
    std::string trail;
    for (int i = 0; i < 4000; ++i) {
        // Keep the walk inside the calendar.
        if (!(date > vltest::moment("1950-01-01") && date < vltest::moment("2090-01-01")))
            date = vltest::moment("2024-01-15");
        const uint32_t op = below(11);
        trail += " " + std::to_string(op);
        switch (op) {
            case 0: {
                double step = kSteps[below(std::size(kSteps))].days;
                KELUTIL_dateinc(&date, reinterpret_cast<intptr_t>(&step), 0);
                break;
            }
            case 1: {
                const Step step = kSteps[below(std::size(kSteps))];
                double days = step.days;
                KELUTIL_dateinc(&date, reinterpret_cast<intptr_t>(&days), 1);
                if (step.calendar) model = date;
                break;
            }
            case 2: {
                double snapped = kSteps[below(std::size(kSteps))].days;
                KELUTIL_dateinc(&snapped, 0, 2);
                model = std::fabs(snapped - 7) < 1e-6    ? 16
                        : std::fabs(snapped - 31) < 1e-6 ? 32
                        : std::fabs(snapped - 91) < 1e-6 ? 64
                                                         : 0;
                break;
            }
            case 3: break;
            case 4:
                KELUTIL_dateinc(&date, static_cast<intptr_t>(below(7)), 4);
                model = date;
                break;
            case 5: {
                const bool day = below(2) == 0;
                auto text = vltest::writable(day ? kDayTexts[below(std::size(kDayTexts))]
                                                 : kOtherTexts[below(std::size(kOtherTexts))]);
                double moved = date;
                KELUTIL_dateinc(&moved, reinterpret_cast<intptr_t>(text.data()), 5);
                if (day) model = moved;
                if (moved != VL_MISSING_VALUE) date = moved;
                break;
            }
            case 7:
            case 8:
                KELUTIL_dateinc(&date, static_cast<intptr_t>(1 + below(28)), op);
                model = date;
                break;
            default: {
                const double before = date;
                KELUTIL_dateinc(&date, 0, op == 6 ? 6 : 9 + below(100));
                ASSERT_EQ(date, before) << "operation " << op << " moved the date";
            }
        }
        ASSERT_EQ(KELUTIL_dateinc(nullptr, 0, 3), static_cast<int32_t>(std::trunc(model)))
            << "after the operations" << trail.substr(trail.size() > 80 ? trail.size() - 80 : 0);
    }
}

}  // namespace
