// Times of day and lengths of time to text and back.

#include <cmath>
#include <string>
#include <vector>

#include "civil.h"
#include "support.h"
#include "vlcore.h"

namespace {

using Row = std::vector<std::string>;
using vltest::hours;
using vltest::Poisoned;

std::string print(double value, uint32_t format) {
    Poisoned out(48);
    EXPECT_EQ(KELUTIL_time2str(value, format, out.data()), 0);
    const std::string text = out.text();
    EXPECT_TRUE(out.clean_from(text.size() + 1)) << "only the text and its terminator are written";
    return text;
}

// The period is process-wide: each test that sets it switches it off again.
struct PeriodOff {
    ~PeriodOff() { KELUTIL_time2str(0.0, 0, nullptr); }
};

TEST(TimeText, PrintsAsTheTableSays) {
    PeriodOff off;
    vltest::for_rows("datetime/time2str_texts.tsv", 5, [](const Row& row) {
        EXPECT_EQ(KELUTIL_time2str(vltest::number(row[2]), 0, nullptr), 0);
        EXPECT_EQ(print(vltest::moment(row[0]), vltest::word(row[1])), row[3]);
    });
}

TEST(TimeText, MissingValueAndCommands) {
    EXPECT_EQ(print(VL_MISSING_VALUE, 2), "--");
    EXPECT_EQ(KELUTIL_time2str(0.0, 4096, nullptr), 10) << "the finest format the date printer uses";
    EXPECT_EQ(KELUTIL_time2str(0.0, 4097, nullptr), 0);
    EXPECT_EQ(KELUTIL_time2str(5.0, 7, nullptr), 0);
    EXPECT_EQ(print(hours(1, 2, 3), 2), "01:02:03") << "an unknown command sets no period";
}

TEST(TimeText, ExactRoom) {
    // "13:05:09.2500" and its terminator: 14 bytes, and not one more.
    Poisoned out(14 + 3);
    KELUTIL_time2str(hours(13, 5, 9.25), 12, out.data());
    EXPECT_EQ(out.text(), "13:05:09.2500");
    EXPECT_EQ(out.untouched_from(0), 14u);
}

TEST(TimeRead, TextsToDays) {
    vltest::for_rows("datetime/time2str_reads.tsv", 4, [](const Row& row) {
        std::vector<char> text = vltest::writable(row[0]);
        EXPECT_NEAR(KELUTIL_str2time(text.data(), vltest::word(row[1])), vltest::moment(row[2]), 1e-12);
    });
    std::vector<char> empty = vltest::writable("");
    EXPECT_EQ(KELUTIL_str2time(empty.data(), 0), VL_MISSING_VALUE);
}

TEST(TimeRead, WeightsAreTheHostsProducts) {
    // The minutes and seconds are scaled by repeated products of 1/60 and
    // 1/24 as doubles, so a result is reproducible to the bit.
    std::vector<char> text = vltest::writable("1:02:03");
    const double got = KELUTIL_str2time(text.data(), 2);
    const double k = 0.041666666666666664, m = 0.016666666666666666;
    EXPECT_EQ(vltest::bits(got), vltest::bits(1 * k + 2.0 * m * k + 3.0 * m * m * k));
}

TEST(TimeText, PrintedTimesReadBack) {
    // Every minute of a day by format 0 and back by format 0.
    for (int minute = 0; minute < 24 * 60; ++minute) {
        const double t = hours(minute / 60, minute % 60, 0);
        const std::string text = print(t, 0);
        std::vector<char> buf = vltest::writable(text);
        const double back = KELUTIL_str2time(buf.data(), 0);
        if (std::abs(back - t) > 1e-9) {
            ADD_FAILURE() << text << " read as " << back << ", want " << t;
            break;
        }
    }
}

}  // namespace
