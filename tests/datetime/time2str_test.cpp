// Times of day and lengths of time to text and back.

#include <cmath>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace {

using vltest::Poisoned;

// h:m:s as a fraction of a day, built the way a reader would: by seconds.
double hms(int h, int m, double s) { return ((h * 60 + m) * 60 + s) / 86400.0; }

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

TEST(TimeText, FormatTable) {
    const double t = hms(13, 5, 9.25);
    const struct {
        uint32_t format;
        const char* text;
    } cases[] = {
        {0, "13:05"},
        {1, "13"},
        {2, "13:05:09"},
        {3, "13:05:09.25"},
        {4, "01 PM"},
        {5, "01:05 PM"},
        {6, "05:09"},
        {7, "05:09.25"},
        {8, "1305"},
        {9, "130509"},
        {10, "13:05:09.250"},
        {11, "13:05:09.3"},
        {12, "13:05:09.2500"},
        // Style words: the low 8 bits, whatever the high byte.
        {0x100 + 3, "13:05:09"},
        {0x4000 + 1, "13:05"},
        {0x100 + 0x40 + 7, "13:05:09.250"},
        {0x100 + 2, "1309"},  // seconds without minutes, and no colon without the minutes bit
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("format " + std::to_string(c.format));
        EXPECT_EQ(print(t, c.format), c.text);
    }
}

TEST(TimeText, RoundingAndCarries) {
    const struct {
        const char* name;
        double value;
        uint32_t format;
        const char* text;
    } cases[] = {
        {"the day doesn't count", 2460374.5452430556, 2, "13:05:09"},
        {"lengths below 240 days show total hours", 1.5, 0, "36:00"},
        {"a date value keeps the hour of the day", 240.5, 0, "12:00"},
        {"239 days", 239.25, 0, "5742:00"},
        {"decimals carry into the minute", hms(9, 5, 59.996), 3, "09:06:00.00"},
        {"half a hundredth stays", hms(9, 5, 59.5), 3, "09:05:59.50"},
        {"from 59.5 seconds the minute carries", hms(9, 5, 59.5), 2, "09:06:00"},
        {"seconds are cut, not rounded", hms(9, 5, 58.9), 2, "09:05:58"},
        {"a quarter second", hms(0, 0, 5.25), 3, "00:00:05.25"},
        {"the hour may reach 24", hms(23, 59, 59.7), 2, "24:00:00"},
        {"minutes carry into the hour", hms(10, 59, 59.6), 0, "11:00"},
        {"midnight in 12-hour form", hms(0, 30, 0), 5, "12:30 AM"},
        {"noon in 12-hour form", hms(12, 30, 0), 5, "12:30 PM"},
        {"evening", hms(23, 0, 0), 4, "11 PM"},
        {"one decimal rounds", hms(1, 2, 3.06), 11, "01:02:03.1"},
        {"four decimals", hms(1, 2, 3.00013), 12, "01:02:03.0001"},
        {"zero", 0.0, 2, "00:00:00"},
        {"a whole day is a length of 24 hours", 1.0, 2, "24:00:00"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(print(c.value, c.format), c.text);
    }
}

TEST(TimeText, MissingValueAndCommands) {
    EXPECT_EQ(print(VL_MISSING_VALUE, 2), "--");
    EXPECT_EQ(KELUTIL_time2str(0.0, 4096, nullptr), 10) << "the finest format the date printer uses";
    EXPECT_EQ(KELUTIL_time2str(0.0, 4097, nullptr), 0);
    EXPECT_EQ(KELUTIL_time2str(5.0, 7, nullptr), 0);
    EXPECT_EQ(print(hms(1, 2, 3), 2), "01:02:03") << "an unknown command sets no period";
}

TEST(TimeText, PeriodWrapsPrintedTimes) {
    PeriodOff off;
    const struct {
        const char* name;
        double hours;
        double value;
        uint32_t format;
        const char* text;
    } cases[] = {
        {"a whole period prints as the period", 24.0, 1.0, 2, "24:00:00"},
        {"a day and a half", 24.0, 1.5, 2, "12:00:00"},
        {"zero stays zero", 24.0, 0.0, 2, "00:00:00"},
        {"two periods", 24.0, 2.0, 2, "24:00:00"},
        {"a 12-hour period", 12.0, 0.75, 0, "06:00"},
        {"days don't add hours under a period", 48.0, 3.0, 0, "24:00"},
        {"a date value wraps too", 24.0, 2460374.25, 0, "06:00"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(KELUTIL_time2str(c.hours, 0, nullptr), 0);
        EXPECT_EQ(print(c.value, c.format), c.text);
    }
    KELUTIL_time2str(0.0, 0, nullptr);
    EXPECT_EQ(print(1.5, 0), "36:00") << "0 switches the period off";
}

TEST(TimeText, ExactRoom) {
    // "13:05:09.2500" and its terminator: 14 bytes, and not one more.
    Poisoned out(14 + 3);
    KELUTIL_time2str(hms(13, 5, 9.25), 12, out.data());
    EXPECT_EQ(out.text(), "13:05:09.2500");
    EXPECT_EQ(out.untouched_from(0), 14u);
}

TEST(TimeRead, TextsToDays) {
    const struct {
        const char* name;
        const char* text;
        uint32_t format;
        double days;
    } cases[] = {
        {"afternoon", "12:30 PM", 0, hms(12, 30, 0)},
        {"after midnight", "12:30 AM", 0, hms(0, 30, 0)},
        {"one in the afternoon with seconds", "1:05:09 PM", 0, hms(13, 5, 9)},
        {"hours above a day", "36:00", 0, 1.5},
        {"no blank before PM: minutes are no number", "12:30PM", 0, hms(12, 0, 0)},
        {"digit pairs", "1305", 8, hms(13, 5, 0)},
        {"digit pairs, hours only", "13", 8, hms(13, 0, 0)},
        {"digit pairs with seconds", "130509", 9, hms(13, 5, 9)},
        {"minutes and seconds only", "05:09", 6, hms(0, 5, 9)},
        {"no hours: hours of the text are not read", "26:00", 6, hms(0, 26, 0)},
        {"decimal seconds", "13:05:09.25", 3, hms(13, 5, 9.25)},
        {"13 PM is 25 hours", "13 PM", 0, hms(25, 0, 0)},
        {"a small a is morning", "12 am", 0, 0.0},
        {"both marks: afternoon wins", "1:00 AP", 0, hms(13, 0, 0)},
        {"the rest behind the seconds is ignored", "1:02:03:04", 2, hms(1, 2, 3)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<char> text = vltest::writable(c.text);
        EXPECT_NEAR(KELUTIL_str2time(text.data(), c.format), c.days, 1e-12);
    }
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
        const double t = hms(minute / 60, minute % 60, 0);
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
