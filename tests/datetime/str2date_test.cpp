// Text to dates: the reading by the regional pictures, the formats, the one
// retry, the flag words, and a round trip through the printer.

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "pinned_today.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::day_value;
using vltest::hours;
using vltest::Intl;

constexpr double kMissing = VL_MISSING_VALUE;

double read(const std::string& text, uint32_t flags = 0, uint32_t format = 0) {
    std::vector<char> buffer = vltest::writable(text);
    return KELUTIL_str2date(buffer.data(), flags, format);
}

struct Row {
    const char* text;
    uint32_t format;
    double want;
};

void check(std::initializer_list<Row> rows, uint32_t flags = 0) {
    for (const Row& r : rows) {
        SCOPED_TRACE(std::string("\"") + r.text + "\" format " + std::to_string(r.format));
        const double got = read(r.text, flags, r.format);
        if (r.want == kMissing)
            EXPECT_EQ(vltest::bits(got), vltest::bits(kMissing));
        else
            EXPECT_NEAR(got, r.want, 1e-7);
    }
}

class ReadDate : public vltest::PinnedToday {};

TEST_F(ReadDate, ByTheMonthFirstShortPicture) {
    const double march5 = day_value(2024, 3, 5);
    check({
        {"3/5/99", 0, day_value(1999, 3, 5)},
        {"3-5-99", 0, day_value(1999, 3, 5)},
        {"3.5.99", 0, day_value(1999, 3, 5)},
        {"3,5,99", 0, day_value(1999, 3, 5)},
        {"3 5 99", 0, day_value(1999, 3, 5)},
        {"3//5/99", 0, day_value(1999, 3, 5)},
        {"Mar 5, 2024", 0, march5},
        {"TUE 3/5/2024", 0, march5},
        {"tuesday 3/5/2024", 0, march5},
        {"March", 0, day_value(2026, 3, 19)},
        {"3/5", 0, day_value(2026, 3, 5)},
        {"3/5/2024 12:30", 0, march5 + hours(12, 30)},
        {"3/5/2024 1:05:09 PM", 0, march5 + hours(13, 5, 9)},
        {"3/5/44", 0, day_value(2044, 3, 5)},
        {"3/5/45", 0, day_value(1945, 3, 5)},
        {"3/5/2024 extra tokens", 0, march5},
        {"", 0, kMissing},
        {"-1", 0, kMissing},
        {"31/3/99", 0, kMissing},
        {"2/30/99", 0, kMissing},
        {"2/29/2023", 0, kMissing},
        {"2/29/2024", 0, day_value(2024, 2, 29)},
        {"x/5/99", 0, kMissing},
        // A ":" cuts at the first blank: March of today, the rest a time.
        {"March 5 2024 12:30", 0, day_value(2026, 3, 19) + hours(0, 30)},
        {" 12:30", 0, vltest::day_value(2026, 11, 19) + hours(12, 30)},
        {" 12:30", 1, vltest::day_value(2026, 11, 19) + hours(12, 30)},
        {" 12:30", 3, kMissing},
        {" 12:30", 10, kMissing},
        {"3/5/2024", 25, march5},  // above 20 reads as 0
    });
}

TEST_F(ReadDate, FormatsAndTheirRetry) {
    const double march5 = day_value(2024, 3, 5);
    check({
        {"Tue, March 5, 2024", 1, march5},  // "ddd" takes MARCH, the retry reads it short
        {"5", 4, day_value(2026, 11, 5)},
        {"3/5", 3, day_value(2026, 3, 5)},
        {"32", 4, kMissing},
        {"Wed", 5, day_value(2026, 11, 18)},
        {"saturday", 18, day_value(2026, 11, 21)},
        {"1999", 7, day_value(1999, 11, 19)},
        {"24", 8, day_value(2024, 11, 19)},
        {"19999", 7, kMissing},
        {"991231", 11, day_value(1999, 12, 31)},
        {"240305", 12, march5},
        {"000305", 13, day_value(2000, 3, 5)},
        {"99", 11, kMissing},
        {"991331", 11, kMissing},
        {"991231 2359", 14, day_value(1999, 12, 31) + hours(23, 59)},
        {"991231 235930", 15, day_value(1999, 12, 31) + hours(23, 59, 30)},
        {"3/5/24 13:05", 9, march5 + hours(13, 5)},
        {"Mar", 17, kMissing},
        {"3/5", 17, day_value(2026, 3, 5)},
        // A weekday or year format given a whole date reads the date.
        {"3/5/99", 7, day_value(1999, 3, 5)},
        {"3/5/99", 5, day_value(1999, 3, 5)},
    });
}

TEST_F(ReadDate, TheRetryIsUsedOnce) {
    // Format 7's pre-check fails, and format 10 finds no month 19999.
    EXPECT_EQ(vltest::bits(read("19999", 0, 7)), vltest::bits(kMissing));
    // Bit 128 with a compact format reads YYMMDD, otherwise the short picture.
    EXPECT_EQ(read("240305", 128, 11), day_value(2024, 3, 5));
    EXPECT_EQ(read("3/5/24", 128, 1), day_value(2024, 3, 5));
}

TEST_F(ReadDate, AWeekdayOfThisWeekMayLieInTheNeighbouringMonth) {
    pin(2026, 12, 1);  // a Tuesday
    check({{"Sun", 5, day_value(2026, 11, 29)}, {"Sat", 5, day_value(2026, 12, 5)}});
    pin(2026, 10, 30);  // a Friday
    check({{"Sat", 6, day_value(2026, 10, 31)}, {"Mon", 6, day_value(2026, 10, 26)}});
}

TEST_F(ReadDate, FlagWords) {
    check({{"fri", 0, 5}, {"7", 0, kMissing}, {"0", 0, 0}, {"x", 0, kMissing}}, 1024);
    check({{"12", 0, 12}, {"dec", 0, 12}, {"Ma", 0, 3}, {"J", 0, 1}, {"13", 0, kMissing}, {"Decembers", 0, kMissing}},
          2048);
    check({{"3 weeks", 0, 21}, {"1 month", 0, 31}}, 4096);
    EXPECT_EQ(read("", 3), today_);
    EXPECT_EQ(read("", 131), today_);
    EXPECT_EQ(read("", 4), 0.666666);
}

TEST_F(ReadDate, TheCallersTextIsOnlyRead) {
    std::vector<char> text = vltest::writable("mar/5/2024 1:05 pm");
    const std::vector<char> before = text;
    EXPECT_NEAR(KELUTIL_str2date(text.data(), 0, 0), day_value(2024, 3, 5) + hours(13, 5), 1e-7);
    EXPECT_EQ(text, before);
    EXPECT_EQ(KELUTIL_str2date_ex(text.data(), 0, 0), KELUTIL_str2date(text.data(), 0, 0));
}

TEST_F(ReadDate, DayFirstPictureReadsDayFirst) {
    apply(Intl{.iDate = "1", .sShortDate = "dd/MM/yyyy"});
    check({{"3/5/99", 0, day_value(1999, 5, 3)}, {"13/5/99", 0, day_value(1999, 5, 13)}, {"5/13/99", 0, kMissing}});
}

// What the printer writes, the reader reads back, wherever the format
// keeps the whole date.
TEST_F(ReadDate, PrintedDatesReadBack) {
    const struct {
        const char* name;
        Intl intl;
        std::vector<uint32_t> formats;
    } settings[] = {
        {"month first", Intl{}, {0, 1, 9, 10, 11, 12, 13, 14, 15}},
        {"day first",
         Intl{.iDate = "1", .sDate = ".", .sShortDate = "dd.MM.yyyy", .sLongDate = "dddd d MMMM yyyy"},
         {0, 1, 9, 10, 11, 12, 13, 14, 15}},
    };
    for (const auto& s : settings) {
        SCOPED_TRACE(s.name);
        apply(s.intl);
        int failures = 0;
        for (int64_t z = vltest::days_from_civil(1900, 1, 1);
             z <= vltest::days_from_civil(2199, 12, 31) && failures < 5; z += 11) {
            const double value = static_cast<double>(z) + vltest::kUnixDayValue;
            const int64_t year = vltest::civil_from_days(z).year;
            for (uint32_t format : s.formats) {
                // The compact forms keep two digits of the year.
                if (format >= 11 && (year < 1945 || year > 2044)) continue;
                char out[64];
                KELUTIL_date2str(value, format, out);
                const double back = read(out, 0, format);
                if (back != value) {
                    ADD_FAILURE() << "format " << format << " printed \"" << out << "\" for " << value << ", read "
                                  << back;
                    ++failures;
                }
            }
        }
    }
}

}  // namespace

namespace {

// Texts that end where a timestamp's digits or separators would follow, in
// buffers of exactly their own size: the reader must stop at the end.
// Under the sanitizers a read past the end fails the test.
TEST_F(ReadDate, ShortTextsAreReadNoFurtherThanTheirEnd) {
    for (const char* text : {"2", "22", "202", "2024", "2024-", "2024-03-0", "2024-03-05 1", "2024-03-05 13:0",
                             "2024-03-05 13:05:", "2024-03-05 13:05:0"}) {
        SCOPED_TRACE(text);
        const std::size_t n = std::strlen(text) + 1;
        auto exact = std::make_unique<char[]>(n);
        std::memcpy(exact.get(), text, n);
        const double got = KELUTIL_str2date(exact.get(), 0, 0);
        EXPECT_TRUE(got == kMissing || got > 0.0);
        EXPECT_STREQ(exact.get(), text);
    }
}

// A month number at the edge of 32 bits is refused, not wrapped into a date.
TEST_F(ReadDate, MonthNumbersAtTheEdgeOf32BitsAreRefused) {
    check({{"-2147483648/5/99", 0, kMissing}, {"2147483647/5/99", 0, kMissing}});
}

}  // namespace
