// Moving dates: calendar steps, snapped steps, weekdays, texts and month
// starts.

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

}  // namespace
